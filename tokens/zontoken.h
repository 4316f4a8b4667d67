/* The token reader: a parameter file as a stream of tokens, without a tree.
 *
 * It is a reader of its own beside the loader and knows less: no templates, defaults, date-times or
 * substitutions; text in braces is a comment, comments do not nest, and EndSect, true and false are
 * spelled exactly so. A stack of states says what is to follow, so that reading can stop behind any
 * token; each call of NextToken gives one. Letters, digits and white space are those of the "C"
 * locale whatever the host has set. Tested by tests/tokens_test.cpp. */
#ifndef ZON_TOKENS_ZONTOKEN_H
#define ZON_TOKENS_ZONTOKEN_H

#include <memory>
#include <string>
#include <vector>

#include "base/zonexport.h"
#include "tokens/zoninput.h"

/** What the reader does next; each value selects the operation of the same name. */
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

/** Reads tokens from an input. Token codes, with the token text in brackets (else it is empty):
 *
 *       0  end of the file
 *     100  section header [its name]          1010  true
 *     101  EndSect                            1011  false
 *     200  keyword and "=" [its name]         1020  integer [as written, with its sign]
 *    1000  empty parameter place              1021  real [as written, with its sign]
 *      -1  error [as far as read]             1030  string [contents, '' reduced to ']
 *                                             1200  file name [contents]
 *
 *  At an error the reader stands behind the character that did not fit, except where an EndSect is
 *  missing. Reading may go on: every further call answers, and 0 comes after at most as many calls
 *  as the file has bytes and open sections, and two more.
 *
 *  NextToken is all that a host needs. The operations of the states are open to hosts that read a
 *  part of a file themselves; they answer like NextToken and add to the token text. */
class ZON_API CzonTokenReader {
 public:
  /** Takes the input over, from the call on even if it throws, and deletes it with the reader. Null
   *  is read like an empty file. */
  explicit CzonTokenReader(CzonInput* input);
  virtual ~CzonTokenReader();
  CzonTokenReader(const CzonTokenReader&) = delete;
  CzonTokenReader& operator=(const CzonTokenReader&) = delete;

  /** Gives the next token. Once reading the file has failed it gives the error "Read error" for as
   *  long as sections are open, and no token that the failure may have cut short.
   *  throws  std::bad_alloc when sections are nested too deeply for the memory */
  int NextToken();

  int ParseParFile();        ///< a file is a list of sections
  int ParseSectionList();    ///< a section or the end of the file
  int ParseSection();        ///< a section header, at its bracket; body and EndSect follow
  int ParseSectionBody();    ///< a section, a keyword, or what follows the body
  int ParseEndSection();     ///< EndSect or the end of the file
  int ParseKeyword();        ///< name and "=", at the name; parameters follow
  int ParseMoreParameter();  ///< a comma and a parameter, or what follows the keyword
  int ParseSimParameter();   ///< one parameter, possibly an empty place

  bool ParseSectionHeader();  ///< "[name]"; false after an error
  int ParseNumber(int c);     ///< a number of which `c` is already taken
  int ParseString();          ///< a string behind its opening quote
  int ParseFilename();        ///< a file name behind its opening bar

  /** Takes the next character that is neither white space nor in a comment. -1 at the end of the
   *  file, and after the error of a comment without its end. */
  int GetChSkipBlanks();

  /** Whether `c`, already taken, and the characters after it read `word`. If so those are taken,
   *  else they stay unread. */
  bool InputIs(int c, const char* word);

  /** As InputIs, but takes nothing. */
  bool InputPeak(int c, const char* word);

  /** Records an error where the input stands now, in place of any earlier one. Without an input,
   *  line and position have all bits set. */
  void Error(const char* message);

  /** The text of the current token, until the next call. May hold zero bytes. */
  const std::string& GetTokenText() const { return text_; }

  /** Text, line (from 1) and position of the last error; empty, 0 and 0 before the first. */
  const std::string& GetErrorText() const { return errorText_; }
  unsigned int GetErrorLine() const { return errorLine_; }
  unsigned int GetErrorPosition() const { return errorPosition_; }

 private:
  friend class zontScanner;

  std::vector<EParseState> states_;  // last one next
  std::unique_ptr<CzonInput> input_;
  std::string text_;
  unsigned int errorLine_ = 0;
  unsigned int errorPosition_ = 0;
  std::string errorText_;
  bool hasInput_;
  bool textLost_ = false;  // the token text could not grow
};

#endif
