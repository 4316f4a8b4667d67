// What every parser of parameter files has: its source, the texts of its tokens, the number of its
// comments and the first error.
#ifndef ZON_READER_YYPARSER_H
#define ZON_READER_YYPARSER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/zonexport.h"
#include "reader/yyinput.h"

namespace zon {
class Arena;
}

/** What scanners and parsers share: the source, comments, the first error, token texts. */
class ZON_API CyyParser {
 public:
  /** Takes ownership of the source, also if it throws. Null is an empty source. */
  explicit CyyParser(CyyInput* input);
  CyyParser(const CyyParser&) = delete;
  CyyParser& operator=(const CyyParser&) = delete;
  virtual ~CyyParser();

  /** Parse does everything, yylex returns the next token, yyparse runs the grammar. See
   *  CzonParser. */
  /** @{ */
  virtual int Parse(int keep) = 0;
  virtual int yylex() = 0;
  virtual int yyparse() = 0;
  /** @} */

  /** Skips a block comment with the comments nested in it, and counts each. `delimiters` are the
   *  two characters of the opener; the closer is the reverse. Returns 1 if a whole comment was
   *  consumed, 0 if there is none (nothing is consumed) or if the input ends in it. */
  virtual int SkipComment(const char* delimiters);

  /** Skips the rest of the line, up to its newline, and counts a comment. */
  virtual void SkipEOL();

  /** Records an error at the current place of the source. Only the first one is kept. */
  void yyerror(const char* message);

  void ClearTokens();                         ///< forgets the token texts
  void WriteTokens(std::ostream& out) const;  ///< each on a line of its own

  /** The first error, where it was noticed, and what was counted. */
  /** @{ */
  bool HasError() const { return hasError_; }
  const std::string& GetError() const { return error_; }    ///< empty while there is none
  unsigned int GetErrorLine() const { return errorLine_; }  ///< 0 while there is none
  unsigned int GetErrorPosition() const { return errorPosition_; }
  unsigned int GetNoComments() const { return comments_; }
  unsigned int GetNoTokens() const { return static_cast<unsigned int>(tokens_.size()); }
  const CyyInput& GetInput() const { return *input_; }
  /** @} */

 protected:
  /** The source as a plain file, whose characters may be consumed many at a time; null for any
   *  other. */
  CyyStream* GetStream() const { return stream_; }
  CyyInput& Input() const { return *input_; }  ///< the source

  /** The memory of token texts and of the nodes that are made of them. */
  zon::Arena& GetArena() const { return *arena_; }

  void AddToken(std::string_view text) { tokens_.push_back(text); }  ///< to the list of texts
  void ForgetError();  ///< the next error is then the first one
  void CountInput();   ///< brings the counters of a plain file up to date

 private:
  template <class Source>
  int SkipCommentIn(Source&& source, unsigned char first, unsigned char second);

  std::unique_ptr<CyyInput> input_;
  std::unique_ptr<zon::Arena> arena_;
  std::string error_;
  CyyStream* stream_;
  std::vector<std::string_view> tokens_;
  bool hasError_ = false;
  unsigned int errorLine_ = 0;
  unsigned int errorPosition_ = 0;
  unsigned int comments_ = 0;
};

#endif
