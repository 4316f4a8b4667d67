// The lexer: characters into tokens.
//
// Token texts of a file are views of the file's text; no copy is made. Texts that differ from their
// spelling (doubled quotes, newlines in a remark) and texts of a host's source are copied to the
// arena. One readable byte precedes every token text, so a sign can be looked for there.
//
// Plain values, and a whole line `name = values`, can be consumed at once: see zonvaluelist.h for
// what is plain. The lexer does that only when the engine asks for it.
#ifndef ZON_READER_ZONLEXER_H
#define ZON_READER_ZONLEXER_H

#include <string>
#include <string_view>

#include "base/zonarena.h"
#include "reader/yyparser.h"

namespace zon {

class TextSource;

class Lexer {
 public:
  Lexer(CyyParser& parser, CyyInput& input, CyyStream* stream, Arena& arena)
      : parser_(parser), input_(input), stream_(stream), arena_(arena) {}

  // The next token, a CzonToken or a character; 0 at the end and after an error. The counters of a
  // stream are not brought up to date.
  int Next();

  // Only for a plain file (stream_ is not null). After an IDENTIFIER: if "=" follows, with only
  // blanks before it, and then a whole list of plain values within the text already read, consumes
  // both and returns true. Else consumes nothing.
  bool ConsumeLine();

  // The same for as many plain values as are complete in the text already read; false if none.
  bool ConsumeValues();

  // The text of the last token; of a line its name.
  std::string_view Text() const { return text_; }

  // In the text of a file: where the last token begins, and where the one before it ends. The begin
  // of a token that has failed is that of its opening delimiter.
  const char* TokenBegin() const { return tokenBegin_; }
  const char* PreviousEnd() const { return previousEnd_; }

  // Where the last quoted text begins that was a token by itself; null if there was none.
  const char* StringBegin() const { return stringBegin_; }

  // In the text of a file: whether a check may warn of something that was read. A load notes it at
  // no cost, so that a sound file is only checked if there may be a warning.
  bool IsSuspect() const { return isSuspect_; }

  // In the text of a file: up to where it has been read; null for another source.
  const char* End() const;

  // In the text of a file: reads on from another place.
  void MoveTo(const char* at);

  // From now on the text of a token is as it is spelled, so no text is copied.
  void KeepSpelling() { keepsSpelling_ = true; }

  // The values that were consumed last, as they are written.
  std::string_view Values() const { return values_; }

  // Copies the text to the arena and makes it the text of the current token. `origin`: where the
  // file has it; null if it does not.
  void SetText(std::string_view text, const char* origin = nullptr);

  // Frees the token buffer. Call after the parse.
  void Release() { buffer_ = std::string(); }

 private:
  static constexpr char kNoText[2] = {};  // a byte precedes this text too

  template <class Source>
  int Scan(Source& source);
  template <class Source>
  int ScanWord(Source& source);
  template <class Source>
  int ScanNumber(Source& source);
  template <class Source>
  int ScanString(Source& source);
  template <class Source>
  int ScanDelimited(Source& source, char closer, bool inLine, int token, const char* error);
  template <class Source>
  void SkipLine(Source& source);
  template <class Source>
  bool SkipComment(Source& source);
  template <class Source>
  int Fail(Source& source, const char* message);
  template <class Source>
  int Finish(int token, std::string_view text);
  void StoreValues(TextSource& source, const char* begin, const char* end);

  CyyParser& parser_;
  CyyInput& input_;
  CyyStream* stream_;  // the input as a plain file; null for any other
  Arena& arena_;
  std::string buffer_;  // of a text from a host's source
  std::string_view text_ = std::string_view(kNoText + 1);
  std::string_view values_;
  std::string_view space_;  // after the last line: it need not be looked at again
  const char* tokenBegin_ = nullptr;
  const char* previousEnd_ = nullptr;
  const char* stringBegin_ = nullptr;
  bool keepsSpelling_ = false;
  bool isSuspect_ = false;
};

}  // namespace zon

#endif
