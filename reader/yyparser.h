// What any parser of parameter files has: its source, the texts of its tokens, the number of its
// comments and the first error.
#ifndef ZON_READER_YYPARSER_H
#define ZON_READER_YYPARSER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/zonexport.h"
#include "base/zonstore.h"
#include "reader/yyinput.h"

/** What scanners and parsers share: the source, comments, the first error, token texts. */
class ZON_API CyyParser {
 public:
  explicit CyyParser(CyyInput* input);  ///< takes the source over
  CyyParser(const CyyParser&) = delete;
  CyyParser& operator=(const CyyParser&) = delete;
  virtual ~CyyParser();

  /** The whole of the work; the next token; the grammar over the tokens. See CzonParser. */
  virtual int Parse(int keep) = 0;
  virtual int yylex() = 0;
  virtual int yyparse() = 0;

  /** Skips a block comment, nested ones in it included. `delimiters` are the two characters of its
   *  opener, of which the closer is the reverse. Gives 1 when a whole comment was consumed, each
   *  one in it counted; 0 when there is none (nothing consumed) or the input ends in it. */
  virtual int SkipComment(const char* delimiters);

  /** Skips the rest of the line, up to its newline, and counts a comment. */
  virtual void SkipEOL();

  /** Records an error at the present place of the source. The first one stays. */
  void yyerror(const char* message);

  void ClearTokens();                         ///< forgets the token texts
  void WriteTokens(std::ostream& out) const;  ///< each on a line of its own

  /** The first error, where it was noticed, and what was counted. */
  bool HasError() const { return hasError_; }
  const std::string& GetError() const { return error_; }    ///< empty while there is none
  unsigned int GetErrorLine() const { return errorLine_; }  ///< 0 while there is none
  unsigned int GetErrorPosition() const { return errorPosition_; }
  unsigned int GetNoComments() const { return comments_; }
  unsigned int GetNoTokens() const { return static_cast<unsigned int>(tokens_.size()); }
  const CyyInput& GetInput() const { return *input_; }

 protected:
  // The source as a plain file, whose characters may be taken many at a time; null for any other.
  CyyStream* GetStream() const { return stream_; }
  CyyInput& Input() const { return *input_; }

  zon::Store store_;                      // token texts and whatever is made of them; goes last
  std::vector<std::string_view> tokens_;  // the texts that are kept

 private:
  template <class Source>
  int SkipCommentIn(Source&& source, unsigned char first, unsigned char second);

  std::string error_;  // made first: nothing may fail once the source is taken over
  std::unique_ptr<CyyInput> input_;
  CyyStream* stream_;
  bool hasError_ = false;
  unsigned int errorLine_ = 0;
  unsigned int errorPosition_ = 0;
  unsigned int comments_ = 0;
};

#endif
