#include "reader/zonmistake.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <vector>

#include "base/zonlexeme.h"
#include "base/zonnearest.h"
#include "base/zonnumberscan.h"
#include "reader/zonstructure.h"
#include "reader/zontokencode.h"

namespace zon {
namespace {

constexpr std::size_t kLongestQuoted = 40;

bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

std::string NameOfCharacter(char c) {
  char text[48];
  const unsigned byte = static_cast<unsigned char>(c);
  std::snprintf(text, sizeof text, "the %s 0x%02X",
                byte < 128 ? "control character" : "byte outside ASCII", byte);
  return text;
}

const char* LineBegin(const char* at, const char* textBegin) {
  while (at > textBegin && at[-1] != '\n') --at;
  return at;
}

const char* LineEnd(const char* at, const char* textEnd) {
  const char* const newline = FindChar('\n', at, textEnd);
  return newline != nullptr ? newline : textEnd;
}

bool IsOnOneLine(const char* begin, const char* end) {
  return FindChar('\n', begin, end) == nullptr;
}

struct Phrase {
  std::uint32_t bit;
  const char* text;
};

constexpr Phrase kPhrases[] = {{kExpectValue, "a value"},
                               {kExpectNumber, "a number"},
                               {kExpectEquals, "`=`"},
                               {kExpectComma, "`,`"},
                               {kExpectBracket, "`]`"},
                               {kExpectMarker, "`(`"},
                               {kExpectParen, "`)`"},
                               {kExpectName, "a name"},
                               {kExpectHeader, "a section header"},
                               {kExpectEndSect, "`EndSect`"},
                               {kExpectEnd, "the end of the file"}};

// What could follow, in words of the format, from the bits that the tables gave.
std::string Describe(std::uint32_t expected) {
  if ((expected & kExpectValue) != 0) return "a value";
  if ((expected & kExpectEndSect) != 0) expected &= ~std::uint32_t{kExpectMarker | kExpectEquals};
  std::vector<const char*> phrases;
  for (const Phrase& phrase : kPhrases) {
    if ((expected & phrase.bit) == 0) continue;
    const bool isKeyword = phrase.bit == kExpectName && (expected & kExpectEndSect) != 0;
    phrases.push_back(isKeyword ? "a keyword" : phrase.text);
  }
  std::string text;
  for (std::size_t at = 0; at < phrases.size(); ++at) {
    if (at > 0) text += at + 1 == phrases.size() ? " or " : ", ";
    text += phrases[at];
  }
  return text;
}

constexpr char kNameHint[] = "a name is one word: a letter, then letters, digits and underlines";

struct LexerMistake {
  std::string_view error;  // the message of the lexer
  const char* rule;
  const char* message;
  const char* hint;
};

constexpr LexerMistake kLexerMistakes[] = {
    {"Bad string", "unclosed-quote", "the text that begins here has no closing quote",
     "end the text with '; a quote inside a text is written twice"},
    {"Missing |", "unclosed-bar", "the file name that begins here has no closing bar in its line",
     "end the file name with |"},
    {"Missing #", "unclosed-date", "the date-time that begins here has no closing # in its line",
     "end the date-time with #; a comment begins with // or ;"},
    {"Missing }", "unclosed-brace", "the remark that begins here has no closing brace",
     "end the remark with }"},
    {"Bad comment", "unclosed-comment", "the comment that begins here has no end",
     "end the comment with */; comments can be nested, so each /* needs its own */"}};

// Words that other formats use for values.
struct ForeignWord {
  std::string_view word;
  const char* hint;
};

constexpr ForeignWord kForeignWords[] = {{"yes", "write true"},
                                         {"on", "write true"},
                                         {"no", "write false"},
                                         {"off", "write false"},
                                         {"t", "write true"},
                                         {"f", "write false"},
                                         {"none", "leave the place empty"},
                                         {"null", "leave the place empty"},
                                         {"nan", "a number has digits"},
                                         {"inf", "a number has digits"}};

// Ends that other formats have, or that are nearly right.
bool LooksLikeEnd(std::string_view word) {
  return EqualNoCase(word, "end") || EqualNoCase(word, "endsection") ||
         EqualNoCase(word, "end_section") || EditDistance(word, "endsect", 2) <= 2;
}

bool BeginsValue(int token) {
  switch (token) {
    case INTEGER:
    case REAL:
    case BOOLEAN:
    case STRING:
    case DATETIME:
    case FILENAME:
    case '+':
    case '-':
    case '%':
      return true;
    default:
      return false;
  }
}

class MistakeFinder {
 public:
  MistakeFinder(const ParseFailure& failure, const ParseScene& scene)
      : failure_(failure), scene_(scene) {
    mistake_.after = scene.tokenBegin;
    mistake_.finding.place = {scene.tokenBegin, scene.tokenEnd};
  }

  Mistake Find() {
    if (!FindOpenQuote() && !FindLexerMistake() && !FindCharacter() && !FindOfContext()) {
      Unexpected();
    }
    return std::move(mistake_);
  }

 private:
  std::string_view Token() const { return TextBetween(scene_.tokenBegin, scene_.tokenEnd); }
  const char* EndOfWord(const char* at) const { return SkipWord(at, scene_.textEnd); }
  bool IsAfterPrevious() const { return scene_.previousEnd == scene_.tokenBegin; }
  bool IsOnLineOfPrevious() const { return IsOnOneLine(scene_.previousEnd, scene_.tokenBegin); }

  // Sets what is wrong; true, for the function that has found it.
  bool Report(const char* rule, std::string message, std::string hint = std::string()) {
    mistake_.finding.rule = rule;
    mistake_.finding.message = std::move(message);
    mistake_.finding.hint = std::move(hint);
    return true;
  }
  void At(const char* begin, const char* end) {
    mistake_.finding.place = {begin, end};
    mistake_.after = begin;
  }

  std::string Found() const {
    if (failure_.token == ENDOFINPUT) return "the end of the file";
    if (failure_.token > 0 && failure_.token < 256 && !IsPrintable(*scene_.tokenBegin)) {
      return NameOfCharacter(*scene_.tokenBegin);
    }
    return Quoted(Token());
  }

  void Unexpected() {
    Report(failure_.context == ParseContext::kValue ? "bad-value" : "unexpected",
           "expected " + Describe(failure_.expected) + ", found " + Found());
  }

  bool FindOpenQuote();
  bool HoldsStructure(const char* begin, const char* end) const;
  bool TryOpenQuote(const char* begin, const char* end, Span line);
  bool FindLexerMistake();
  bool FindBadNumber(const char* begin, const char* reason);
  bool FindQuoteInText();
  bool FindCharacter();
  bool FindOfContext();
  bool FindBracketedList();
  bool FindInHeader();
  bool FindEndInBrackets(std::string_view header);
  bool FindSurplusEnd(const char* end);
  bool ReportKeywordName(const char* begin, const char* equals);
  bool FindAfterName();
  bool FindAfterValueOrPlace(const char* name, const char* nameEnd, const char* lineBegin);
  bool FindWordAsValue(const char* begin, const char* end);
  bool FindAfterValue();
  bool FindInBody();
  bool FindOutside();

  const ParseFailure& failure_;
  const ParseScene& scene_;
  Mistake mistake_;
};

// ---- Quotes that are not closed -----------------------------------------------------------------

// Whether a line of the text after its first one looks like structure.
bool MistakeFinder::HoldsStructure(const char* begin, const char* end) const {
  for (const char* line = FindChar('\n', begin, end); line != nullptr;
       line = FindChar('\n', line, end)) {
    ++line;
    const char* const lineEnd = LineEnd(line, end);
    const LineKind kind = ClassifyLine(SkipBlanks(line, lineEnd), lineEnd);
    if (kind != LineKind::kOther && kind != LineKind::kWord) return true;
  }
  return false;
}

// A quoted text that has taken in lines of structure, and ends on the line of the error, is one
// whose closing quote is missing: it ends at the opening quote of the next text. `line`: the line
// of the error up to the error.
bool MistakeFinder::TryOpenQuote(const char* begin, const char* end, Span line) {
  if (end < line.begin || end > line.end || !HoldsStructure(begin, end)) return false;
  At(begin, begin + 1);
  mistake_.isOpen = true;
  return Report(kLexerMistakes[0].rule, kLexerMistakes[0].message, kLexerMistakes[0].hint);
}

bool MistakeFinder::FindOpenQuote() {
  // The word after the quote, if the error is noticed after it.
  const char* const next =
      failure_.context == ParseContext::kName ? failure_.anchor.chars : scene_.tokenBegin;
  const Span line{LineBegin(next, scene_.textBegin), next};
  const std::string_view values = scene_.values;
  if (!values.empty() && values.data() + values.size() <= scene_.tokenBegin) {
    const char* const end = values.data() + values.size();
    const char* quote = FindChar('\'', values.data(), end);
    while (quote != nullptr) {
      const char* const closer = FindChar('\'', quote + 1, end);
      if (closer == nullptr) break;
      if (TryOpenQuote(quote, closer + 1, line)) return true;
      quote = FindChar('\'', closer + 1, end);
    }
  }
  if (scene_.stringBegin == nullptr || scene_.stringBegin >= scene_.tokenBegin) return false;
  const char* const end = FindClosing('\'', scene_.stringBegin + 1, scene_.textEnd);
  return end != nullptr && end < scene_.tokenBegin &&
         TryOpenQuote(scene_.stringBegin, end + 1, line);
}

// ---- Errors of the lexer ------------------------------------------------------------------------

bool MistakeFinder::FindBadNumber(const char* begin, const char* reason) {
  const char* end = begin;
  while (end < scene_.textEnd &&
         (IsClass(*end, kWord) || *end == '.' ||
          ((*end == '+' || *end == '-') && end > begin && Lower(end[-1]) == 'e'))) {
    ++end;
  }
  end = std::max(end, begin + 1);
  At(begin, end);
  const std::string_view text = TextBetween(begin, end);
  return Report("bad-number", Quoted(text) + " is not a number: " + reason);
}

bool MistakeFinder::FindLexerMistake() {
  if (scene_.lexerError.empty()) return false;
  if (scene_.lexerError == "Expecting digit") {
    return FindBadNumber(scene_.tokenBegin, "a digit must follow the point");
  }
  if (scene_.lexerError == "Bad scale factor") {
    return FindBadNumber(scene_.tokenBegin, "digits must follow the e of the exponent");
  }
  if (FindQuoteInText()) return true;
  // File names and date-times end with their lines.
  mistake_.isOpen = scene_.lexerError != "Missing |" && scene_.lexerError != "Missing #";
  for (const LexerMistake& mistake : kLexerMistakes) {
    if (scene_.lexerError != mistake.error) continue;
    At(scene_.tokenBegin,
       std::min(scene_.tokenBegin + (mistake.error == "Bad comment" ? 2 : 1), scene_.textEnd));
    return Report(mistake.rule, mistake.message, mistake.hint);
  }
  return Report("unexpected", std::string(scene_.lexerError));
}

// A word directly after the closing quote of a text.
bool MistakeFinder::FindQuoteInText() {
  if (failure_.context != ParseContext::kName) return false;
  const char* const name = failure_.anchor.chars;
  if (name == scene_.textBegin || name[-1] != '\'') return false;
  At(name - 1, name);
  return Report("quote-in-text", "a word follows the closing quote of a text",
                "write a quote inside a text twice: 'it''s'");
}

bool MistakeFinder::FindCharacter() {
  if (failure_.token < 0 || failure_.token > 256 || scene_.tokenBegin == scene_.tokenEnd)
    return false;
  const std::string_view rest = TextBetween(scene_.tokenBegin, scene_.textEnd);
  if (scene_.tokenBegin == scene_.textBegin && rest.substr(0, 3) == "\xEF\xBB\xBF") {
    At(scene_.tokenBegin, scene_.tokenBegin + 3);
    return Report("byte-order-mark", "the file begins with a byte order mark",
                  "save the file as UTF-8 without a byte order mark");
  }
  if (IsPrintable(*scene_.tokenBegin)) return false;
  const bool isUtf16 = scene_.tokenBegin == scene_.textBegin &&
                       (rest.substr(0, 2) == "\xFF\xFE" || rest.substr(0, 2) == "\xFE\xFF");
  return Report(
      "bad-character",
      NameOfCharacter(*scene_.tokenBegin) + " is only allowed in texts, remarks and comments",
      isUtf16 ? "save the file as ASCII or UTF-8, not as UTF-16" : "");
}

// ---- Errors of the grammar ----------------------------------------------------------------------

bool MistakeFinder::FindOfContext() {
  if (failure_.token == '"') {
    const char* const lineEnd = LineEnd(scene_.tokenBegin, scene_.textEnd);
    const char* const closer = FindChar('"', scene_.tokenEnd, lineEnd);
    At(scene_.tokenBegin, closer != nullptr ? closer + 1 : scene_.tokenEnd);
    return Report("double-quote", "a text in double quotes is not allowed",
                  "write the text in single quotes: 'text'");
  }
  switch (failure_.context) {
    case ParseContext::kOutside:
      return FindOutside();
    case ParseContext::kHeader:
      return FindBracketedList() || FindInHeader();
    case ParseContext::kMarker:
      return FindBracketedList();
    case ParseContext::kName:
      return FindAfterName();
    case ParseContext::kSign: {
      const char* const sign = failure_.anchor.chars;
      At(sign, sign + 1);
      return Report("sign-without-number", "a number must follow the sign, found " + Found());
    }
    case ParseContext::kSubstitution: {
      const char* const percent = failure_.anchor.chars;
      At(percent, percent + 1);
      return Report("bad-substitution",
                    "a name or a whole number must follow `%`, found " + Found());
    }
    case ParseContext::kAfterValue:
      return FindAfterValue();
    case ParseContext::kBody:
      return FindInBody();
    default:
      return false;
  }
}

// A bracket where a value should be.
bool MistakeFinder::FindBracketedList() {
  const char* const bracket = failure_.anchor.chars;
  const char* last = bracket;
  while (last > scene_.textBegin && (last[-1] == ' ' || last[-1] == '\t')) --last;
  if (last == scene_.textBegin || (last[-1] != '=' && last[-1] != ',')) return false;
  At(bracket, bracket + 1);
  return Report("bad-value", "expected a value, found " + Quoted({bracket, 1}),
                "write the values of a list without brackets, with commas between them");
}

bool MistakeFinder::FindInHeader() {
  const char* const bracket = failure_.anchor.chars;
  const char* const lineEnd = LineEnd(bracket, scene_.textEnd);
  const char* const name = SkipBlanks(bracket + 1, lineEnd);
  const char* const closer = FindChar(']', bracket, lineEnd);
  if (failure_.token != ENDOFINPUT) mistake_.action = Resumption::kOpenSection;
  if (closer == nullptr) {
    At(bracket, bracket + 1);
    return Report("unclosed-bracket", "the section header that begins here has no closing bracket",
                  "end the name of the section with ]");
  }
  At(bracket, closer + 1);
  if (name == closer)
    return Report("bad-name", "the section has no name", "write it in the brackets");
  const std::string_view text = TextBetween(name, TrimEnd(name, closer));
  if (failure_.token == ENDSECT && EqualNoCase(text, "endsect"))
    return FindEndInBrackets(TextBetween(bracket, closer + 1));
  return Report("bad-name", Quoted(text) + " is no name of a section", kNameHint);
}

// "[EndSect]"
bool MistakeFinder::FindEndInBrackets(std::string_view header) {
  const char* const end = header.data() + header.size();
  mistake_.action = Resumption::kStay;
  if (failure_.sections == 0) return FindSurplusEnd(end);
  mistake_.action = Resumption::kCloseSection;
  mistake_.isExact = true;
  mistake_.after = end;
  return Report("misspelled-endsect", "expected `EndSect`, found " + Quoted(header),
                "a section ends with EndSect, without brackets");
}

// `begin` and `end` are a word that is where a value should be.
bool MistakeFinder::FindWordAsValue(const char* begin, const char* end) {
  const std::string_view word = TextBetween(begin, end);
  At(begin, end);
  std::string hint =
      "write a text in single quotes: '" + std::string(word.substr(0, kLongestQuoted)) + "'";
  for (const ForeignWord& foreign : kForeignWords) {
    if (EqualNoCase(word, foreign.word)) hint = foreign.hint;
  }
  return Report("bad-value", "expected a value, found " + Quoted(word), std::move(hint));
}

// Where the letters, digits and points before `at` begin.
const char* BeginOfNumber(const char* at, const char* limit) {
  while (at > limit && (IsClass(at[-1], kWord) || at[-1] == '.')) --at;
  return at;
}

// Whether the text up to `end`, on its line, ends with a value, which may have a remark.
bool FollowsValue(const char* lineBegin, const char* end) {
  while (end > lineBegin && (IsClass(end[-1], kSpace) || end[-1] == '}')) {
    const bool isRemark = *--end == '}';
    while (isRemark && end > lineBegin && *end != '{') --end;
  }
  const char* word = end;
  while (word > lineBegin && IsClass(word[-1], kWord)) --word;
  const bool isEnd = EqualNoCase(TextBetween(word, end), "endsect");
  return end > lineBegin && end[-1] != ']' && !isEnd;
}

// A word that is not the first of its line: a part of a number, a word after a text or value, or a
// word in an empty place.
bool MistakeFinder::FindAfterValueOrPlace(const char* name, const char* nameEnd,
                                          const char* lineBegin) {
  const std::string_view word = TextBetween(name, nameEnd);
  const char before = name[-1];
  if (IsDigit(before) || before == '.') {
    return FindBadNumber(BeginOfNumber(name, lineBegin),
                         "a number has decimal digits, a point and an exponent");
  }
  if (FindQuoteInText()) return true;
  const char* const last = TrimEnd(lineBegin, name);
  if (last > lineBegin && (last[-1] == '=' || last[-1] == ',') && scene_.emptyPlace == last - 1) {
    return FindWordAsValue(name, nameEnd);
  }
  if (last > lineBegin && FollowsValue(lineBegin, last)) {
    At(name, nameEnd);
    return Report("word-after-value", Quoted(word) + " follows a value",
                  "write a unit as a remark: {" + std::string(word.substr(0, kLongestQuoted)) +
                      "}, and values with commas between them");
  }
  return false;
}

// What is before an equals sign.
bool MistakeFinder::ReportKeywordName(const char* begin, const char* equals) {
  const char* const end = TrimEnd(begin, equals);
  At(begin, end);
  return Report("bad-name", Quoted(TextBetween(begin, end)) + " is no name of a keyword",
                kNameHint);
}

// After a name at the begin of a line, where "=" does not follow. What came before the name says
// what the name was meant to be.
bool MistakeFinder::FindAfterName() {
  const char* const name = failure_.anchor.chars;
  const char* const nameEnd = EndOfWord(name);
  const std::string_view word = TextBetween(name, nameEnd);
  const char* const lineBegin = LineBegin(name, scene_.textBegin);
  const bool isFirst = SkipBlanks(lineBegin, name) == name;
  if (LooksLikeEnd(word) && isFirst) {
    At(name, nameEnd);
    mistake_.action = Resumption::kCloseSection;
    return Report("misspelled-endsect", "expected `EndSect`, found " + Quoted(word),
                  "a section ends with EndSect");
  }
  if (!isFirst && FindAfterValueOrPlace(name, nameEnd, lineBegin)) return true;
  const char* const lineEnd = LineEnd(name, scene_.textEnd);
  const char* const equals = FindChar('=', name, lineEnd);
  if (equals != nullptr && scene_.tokenBegin < equals) return ReportKeywordName(name, equals);
  At(name, nameEnd);
  return Report("missing-equals", "expected `=` after " + Quoted(word) + ", found " + Found());
}

bool MistakeFinder::FindAfterValue() {
  if (BeginsValue(failure_.token) && IsOnLineOfPrevious()) {
    if (failure_.token == REAL && IsAfterPrevious() && *scene_.tokenBegin == '.') {
      return FindBadNumber(BeginOfNumber(scene_.tokenBegin, scene_.textBegin), "it has two points");
    }
    return Report("missing-comma", "expected `,` between values, found " + Found());
  }
  return FindInBody();
}

bool MistakeFinder::FindInBody() {
  if (failure_.token == '=') {
    return Report("missing-name", "expected the name of a keyword before `=`");
  }
  const char* const lineBegin = LineBegin(scene_.tokenBegin, scene_.textBegin);
  const char* const lineEnd = LineEnd(scene_.tokenBegin, scene_.textEnd);
  const bool isFirst = SkipBlanks(lineBegin, scene_.tokenBegin) == scene_.tokenBegin;
  const char* const equals =
      FindChar('=', scene_.tokenEnd < lineEnd ? scene_.tokenEnd : lineEnd, lineEnd);
  if (!isFirst || equals == nullptr || !IsClass(*scene_.tokenBegin, kDigit)) return false;
  return ReportKeywordName(scene_.tokenBegin, equals);
}

bool MistakeFinder::FindSurplusEnd(const char* end) {
  mistake_.isExact = true;
  mistake_.after = end;
  return Report("surplus-endsect", "this `EndSect` ends no section",
                "remove it, or add the header of its section");
}

bool MistakeFinder::FindOutside() {
  if (failure_.token == ENDSECT) return FindSurplusEnd(scene_.tokenEnd);
  const std::string found = Found();
  return Report("outside-section", "expected a section header, found " + found,
                "every keyword belongs to a section: [Name] ... EndSect");
}

}  // namespace

std::string Quoted(std::string_view text) {
  text = text.substr(0, text.find('\n'));
  const bool isLong = text.size() > kLongestQuoted;
  text = text.substr(0, kLongestQuoted);
  // No part of a character of several bytes is left at the end.
  while (isLong && !text.empty() && (static_cast<unsigned char>(text.back()) & 0x80) != 0) {
    text.remove_suffix(1);
  }
  std::string quoted = "`";
  for (const char c : text) quoted += static_cast<unsigned char>(c) >= ' ' && c != 0x7F ? c : '?';
  quoted += isLong ? "...`" : "`";
  return quoted;
}

Mistake FindMistake(const ParseFailure& failure, const ParseScene& scene) {
  return MistakeFinder(failure, scene).Find();
}

}  // namespace zon
