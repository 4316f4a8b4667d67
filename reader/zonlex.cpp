// The scanner: characters into tokens. Tested by tests/scanner_test.cpp.
#include <algorithm>
#include <new>
#include <string_view>

#include "base/zonchars.h"
#include "reader/yysource.h"
#include "reader/zonparser.h"
#include "reader/zonvalues.h"

namespace {

// What yylex gives for a zero byte, whose own code would end the input: a character that fits
// nowhere.
constexpr int kNoCharacter = 256;

struct ReservedWord {
  std::string_view word;
  int token;
};
constexpr ReservedWord kReservedWords[] = {
    {"true", BOOLEAN}, {"false", BOOLEAN}, {"endsect", ENDSECT}, {"default", DEFAULT}};

int WordToken(std::string_view word) {
  if (word.size() < 4 || word.size() > 7) return IDENTIFIER;
  if (std::string_view("tTfFeEdD").find(word[0]) == std::string_view::npos) return IDENTIFIER;
  for (const ReservedWord& reserved : kReservedWords) {
    if (zon::EqualNoCase(word, reserved.word)) return reserved.token;
  }
  return IDENTIFIER;
}

bool MayHoldZero(int token) {
  return token == STRING || token == BRACE_TEXT || token == DATETIME || token == FILENAME;
}

}  // namespace

int CzonParser::yylex() {
  const int token = NextToken();
  if (GetStream() != nullptr) zon::StreamSource(*GetStream()).Sync();
  return token;
}

int CzonParser::NextToken() {
  if (HasError()) return ENDOFINPUT;
  try {
    if (GetStream() != nullptr) {
      zon::StreamSource source(*GetStream());
      return Scan(source);
    }
    zon::CallSource source(Input());
    return Scan(source);
  } catch (const zon::TokenTooLong&) {
    yyerror("Failed to extend buffer");
    return ENDOFINPUT;
  }
}

template <class Source>
int CzonParser::Scan(Source& source) {
  for (;;) {
    const int c = source.TakeBehindSpace();
    if (zon::IsClass(c, zon::kAlpha)) {
      source.Back(c);
      return ScanWord(source);
    }
    if (zon::IsClass(c, zon::kDigit) || c == '.') {
      source.Back(c);
      return ScanNumber(source);
    }
    switch (c) {
      case -1:
        return ENDOFINPUT;
      case '\0':
        return kNoCharacter;
      case '\'':
        return ScanString(source);
      case '|':
        return ScanDelimited(source, '|', true, FILENAME, "Missing |");
      case '#':
        return ScanDelimited(source, '#', true, DATETIME, "Missing #");
      case '{':
        return ScanDelimited(source, '}', false, BRACE_TEXT, "Missing }");
      case ';':
        source.Sync();
        SkipEOL();
        break;
      case '/':
        if (source.Peek() == '*') {
          source.Back(c);
          source.Sync();
          if (SkipComment("/*") == 0) return Fail(source, "Bad comment");
        } else if (source.Peek() == '/') {
          source.Sync();
          SkipEOL();
        } else {
          return c;
        }
        break;
      default:
        return c;
    }
  }
}

template <class Source>
int CzonParser::Fail(Source& source, const char* message) {
  source.Sync();
  yyerror(message);
  return ENDOFINPUT;
}

template <class Source>
int CzonParser::ScanWord(Source& source) {
  zon::Collector text(buffer_);
  source.CollectWord(text);
  return EndToken(WordToken(text.Text()), text);
}

// A sign is no part of the number: it is a character by itself.
template <class Source>
int CzonParser::ScanNumber(Source& source) {
  zon::Collector text(buffer_);
  int token = INTEGER;
  source.CollectDigits(text);
  if (source.Peek() == '.') {
    const bool leading = text.Text().empty();
    token = REAL;
    source.CollectOne(text);
    if (leading && !zon::IsClass(source.Peek(), zon::kDigit)) {
      source.Take();
      return Fail(source, "Expecting digit");
    }
    source.CollectDigits(text);
  }
  if (source.Peek() == 'e' || source.Peek() == 'E') {
    token = REAL;
    source.CollectOne(text);
    if (source.Peek() == '+' || source.Peek() == '-') source.CollectOne(text);
    if (!zon::IsClass(source.Peek(), zon::kDigit)) {
      source.Take();
      return Fail(source, "Bad scale factor");
    }
    source.CollectDigits(text);
  }
  return EndToken(token, text);
}

template <class Source>
int CzonParser::ScanString(Source& source) {
  zon::Collector text(buffer_);
  for (;;) {
    if (source.CollectTo('\'', false, text) < 0) return Fail(source, "Bad string");
    if (source.Peek() != '\'') return EndToken(STRING, text);
    source.CollectOne(text);
  }
}

template <class Source>
int CzonParser::ScanDelimited(Source& source, char closer, bool lineOnly, int token,
                              const char* error) {
  zon::Collector text(buffer_);
  if (source.CollectTo(closer, lineOnly, text) != closer) return Fail(source, error);
  const std::string_view collected = text.Text();
  if (token != BRACE_TEXT || collected.find('\n') == std::string_view::npos) {
    return EndToken(token, text);
  }
  std::string oneLine(collected);
  oneLine.erase(std::remove(oneLine.begin(), oneLine.end(), '\n'), oneLine.end());
  return EndToken(token, oneLine, false);
}

// A derived scanner may deliver any token by this function, a number too.
void CzonParser::EndToken(const char* text) {
  KeepText(text != nullptr ? text : "", true);
}

int CzonParser::EndToken(int token, zon::Collector& text) {
  const std::string_view collected = text.Text();
  return EndToken(token, collected, text.IsInPlace());
}

// A text that lies `inPlace` stays where the file was read to. Before any number one byte is free
// for its sign: in place the sign itself stands there, or what separates the two.
int CzonParser::EndToken(int token, std::string_view text, bool inPlace) {
  // A text ends at a zero byte, which no word and no number holds.
  if (MayHoldZero(token)) text = zon::UpToZero(text);
  if (inPlace) {
    SetTokenText(text);
  } else {
    KeepText(text, token == INTEGER || token == REAL);
  }
  return token;
}

void CzonParser::KeepText(std::string_view text, bool mayBeNumber) {
  SetTokenText({store_.CopyText(text, mayBeNumber ? 1 : 0), text.size()});
}

void CzonParser::SetTokenText(std::string_view text) {
  yylval_.SetText(text);
  if (!scansAhead_) tokens_.push_back(text);
}
