// The scanner: characters into tokens. Tested by tests/scanner_test.cpp.
#include <algorithm>
#include <new>
#include <stdexcept>

#include "base/zonchars.h"
#include "reader/yysource.h"
#include "reader/zonparser.h"

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
  for (const ReservedWord& reserved : kReservedWords) {
    if (zon::EqualNoCase(word, reserved.word)) return reserved.token;
  }
  return IDENTIFIER;
}

bool IsNumber(int token) {
  return token == INTEGER || token == REAL;
}

}  // namespace

int CzonParser::yylex() {
  if (HasError()) return ENDOFINPUT;
  try {
    if (GetStream() != nullptr) {
      zon::StreamSource source(*GetStream());
      return Scan(source);
    }
    zon::CallSource source(Input());
    return Scan(source);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  yyerror("Failed to extend buffer");
  return ENDOFINPUT;
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
        source.Resume();
        break;
      case '/':
        if (source.Peek() == '*') {
          source.Back(c);
          source.Sync();
          const bool whole = SkipComment("/*") != 0;
          source.Resume();
          if (!whole) return Fail(source, "Bad comment");
        } else if (source.Peek() == '/') {
          source.Sync();
          SkipEOL();
          source.Resume();
        } else {
          return c;
        }
        break;
      default:
        return c;
    }
  }
}

// The source has to have counted up to here.
template <class Source>
int CzonParser::Fail(Source& source, const char* message) {
  source.Sync();
  yyerror(message);
  return ENDOFINPUT;
}

template <class Source>
int CzonParser::ScanWord(Source& source) {
  zon::Collector text(buffer_);
  source.Collect(zon::kWord, text);
  const std::string_view word = text.Text();
  const int token = WordToken(word);
  if (!keepTokens_ && (token == ENDSECT || token == DEFAULT))
    return token;  // nobody needs its text
  return EndToken(token, word);
}

// A sign is no part of the number: it is a character by itself.
template <class Source>
int CzonParser::ScanNumber(Source& source) {
  zon::Collector text(buffer_);
  int token = INTEGER;
  source.Collect(zon::kDigit, text);
  if (source.Peek() == '.') {
    const bool leading = text.Text().empty();
    token = REAL;
    source.CollectOne(text);
    if (leading && !zon::IsClass(source.Peek(), zon::kDigit)) {
      source.Take();
      return Fail(source, "Expecting digit");
    }
    source.Collect(zon::kDigit, text);
  }
  if (source.Peek() == 'e' || source.Peek() == 'E') {
    token = REAL;
    source.CollectOne(text);
    if (source.Peek() == '+' || source.Peek() == '-') source.CollectOne(text);
    if (!zon::IsClass(source.Peek(), zon::kDigit)) {
      source.Take();
      return Fail(source, "Bad scale factor");
    }
    source.Collect(zon::kDigit, text);
  }
  return EndToken(token, text.Text());
}

template <class Source>
int CzonParser::ScanString(Source& source) {
  zon::Collector text(buffer_);
  for (;;) {
    if (source.CollectTo('\'', false, text) < 0) return Fail(source, "Bad string");
    if (source.Peek() != '\'') return EndToken(STRING, text.Text());
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
    return EndToken(token, collected);
  }
  std::string oneLine(collected);
  oneLine.erase(std::remove(oneLine.begin(), oneLine.end(), '\n'), oneLine.end());
  return EndToken(token, oneLine);
}

void CzonParser::EndToken(const char* text) {
  EndToken(IDENTIFIER, text != nullptr ? text : "");
}

int CzonParser::EndToken(int token, std::string_view text) {
  // A text ends at a zero byte.
  const std::size_t size = std::min(text.find('\0'), text.size());
  text = text.substr(0, size);
  yylval_.SetText({store_.CopyText(text, IsNumber(token) ? 1 : 0), size});
  if (keepTokens_) tokens_.push_back(yylval_.Text());
  return token;
}
