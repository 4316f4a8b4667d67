// The token reader: a parameter file as a stream of tokens, without a tree.
//
// It is independent of the loader and accepts less: no templates, defaults, date-times or
// substitutions; text in braces is a comment, comments do not nest, and EndSect, true and false are
// case-sensitive. Each call of NextToken returns one token; a stack of states stores what is
// expected after it (see zontoken.cpp). Letters, digits and white space are those of the "C"
// locale, whatever locale the host has set. Tested by tests/tokens_test.cpp and
// fuzz/tokens_fuzz.cpp.
#ifndef ZON_TOKENS_ZONTOKEN_H
#define ZON_TOKENS_ZONTOKEN_H

#include <memory>
#include <string>
#include <vector>

#include "base/zonexport.h"
#include "tokens/zoninput.h"

/** What the reader parses next: each value selects the Parse function of that name. */
enum class EParseState : unsigned char {
  kParFile = 0,
  kSectionList = 1,
  kSection = 2,
  kSectionBody = 3,
  kEndSection = 4,
  kKeyword = 5,
  kMoreParameter = 6,
  kSimParameter = 7
};

/** Reads tokens from an input. Token codes, with the token text in brackets (otherwise it is
 *  empty):
 *
 *       0  end of the file
 *     100  section header [its name]          1010  true
 *     101  EndSect                            1011  false
 *     200  keyword and "=" [its name]         1020  integer [as written, with its sign]
 *    1000  empty parameter place              1021  real [as written, with its sign]
 *      -1  error [as far as read]             1030  string [contents, '' reduced to ']
 *                                             1200  file name [contents]
 *
 *  An error consumes the character that did not fit, except if an EndSect is missing. Reading may
 *  continue after it: 0 is returned after at most as many calls as the file has bytes and section
 *  headers, plus two.
 *
 *  Most hosts need only NextToken. The Parse functions are for hosts that read a part of a file
 *  themselves; they return the same codes as NextToken and append to the token text. */
class ZON_API CzonTokenReader {
 public:
  /** Takes ownership of the input, even if it throws. Null is read like an empty file. */
  explicit CzonTokenReader(CzonInput* input);
  virtual ~CzonTokenReader();
  CzonTokenReader(const CzonTokenReader&) = delete;
  CzonTokenReader& operator=(const CzonTokenReader&) = delete;

  /** Returns the next token. After reading the file has failed, returns the error "Read error" as
   *  long as sections are open, and no token that the failure may have cut short.
   *  throws  std::bad_alloc if the states of nested sections need more memory than there is */
  int NextToken();

  int ParseParFile();        ///< a file is a list of sections
  int ParseSectionList();    ///< a section or the end of the file
  int ParseSection();        ///< the section header that is next; body and EndSect follow
  int ParseSectionBody();    ///< a section, a keyword, or the token after the body
  int ParseEndSection();     ///< EndSect or the end of the file
  int ParseKeyword();        ///< the name that is next, and "="; parameters follow
  int ParseMoreParameter();  ///< a comma and a parameter, or the token after the keyword
  int ParseSimParameter();   ///< one parameter, possibly an empty place

  bool ParseSectionHeader();  ///< "[name]"; false after an error
  int ParseNumber(int c);     ///< a number whose first character `c` is already consumed
  int ParseString();          ///< a string after its opening quote
  int ParseFilename();        ///< a file name after its opening bar

  /** Consumes the next character that is neither white space nor in a comment, and returns it. -1
   *  at the end of the file, and after the error of a comment that does not end. */
  int GetChSkipBlanks();

  /** Whether `c`, already consumed, and the characters after it are `word`. If so they are
   *  consumed, otherwise they stay unread. */
  bool InputIs(int c, const char* word);

  /** As InputIs, but consumes nothing. */
  bool InputPeak(int c, const char* word);

  /** Stores an error at the current place of the input, replacing any earlier one. Without an
   *  input, line and position have all bits set. */
  void Error(const char* message);

  /** The text of the current token; valid until the next call. May contain zero bytes. */
  const std::string& GetTokenText() const { return text_; }

  /** Text, line (from 1) and position of the last error; empty, 0 and 0 before the first. @{ */
  const std::string& GetErrorText() const { return errorText_; }
  unsigned int GetErrorLine() const { return errorLine_; }
  unsigned int GetErrorPosition() const { return errorPosition_; }
  /** @} */

 private:
  friend class zon::TokenScanner;

  std::vector<EParseState> states_;  // the stack; the last one is next
  std::unique_ptr<CzonInput> input_;
  std::string text_;
  unsigned int errorLine_ = 0;
  unsigned int errorPosition_ = 0;
  std::string errorText_;
  bool hasInput_;
  bool textLost_ = false;  // set if the token text could not grow; the token becomes an error
};

#endif
