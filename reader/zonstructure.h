// Lines that show the structure of a file whatever precedes them: "[name", "EndSect", "name =" and
// "default (". After an error the checker goes on at the next one.
#ifndef ZON_READER_ZONSTRUCTURE_H
#define ZON_READER_ZONSTRUCTURE_H

#include "base/zonlexeme.h"

namespace zon {

// Blanks and tabs, but no line end.
inline const char* SkipBlanks(const char* at, const char* end) {
  while (at < end && IsClass(*at, kSpace) && *at != '\n') ++at;
  return at;
}

// The word of a comment "// name" that follows on the line; empty if the comment is not one word.
inline std::string_view NameInComment(const char* at, const char* end) {
  at = SkipBlanks(at, end);
  if (end - at < 2 || at[0] != '/' || at[1] != '/') return {};
  const char* const begin = SkipBlanks(at + 2, end);
  const char* const endOfWord = SkipWord(begin, end);
  const char* const next = SkipBlanks(endOfWord, end);
  if (next < end && *next != '\n') return {};
  return TextBetween(begin, endOfWord);
}

enum class LineKind { kOther, kHeader, kEndSect, kKeyword, kWord };

// What begins at `at`, the first character of a line that is no blank. kWord is a line that begins
// with a word or has a "=", and shows nothing else.
inline LineKind ClassifyLine(const char* at, const char* end) {
  if (at < end && *at == '[') {
    const char* name = SkipBlanks(at + 1, end);
    return name < end && IsClass(*name, kAlpha) ? LineKind::kHeader : LineKind::kOther;
  }
  if (at == end || !(IsClass(*at, kAlpha) || *at == '(')) {
    return FindChar('=', at, end) != nullptr ? LineKind::kWord : LineKind::kOther;
  }
  const char* const endOfWord = SkipWord(at, end);
  const std::string_view word = TextBetween(at, endOfWord);
  if (EqualNoCase(word, "endsect")) return LineKind::kEndSect;
  const char* next = SkipBlanks(endOfWord, end);
  if (next < end && *next == '(') {
    if (EqualNoCase(word, "default")) return LineKind::kKeyword;
    next = SkipBlanks(next + 1, end);
    if (next == end || *next != ')') return LineKind::kWord;
    next = SkipBlanks(next + 1, end);
  }
  if (next < end && *next == '{') {
    const char* const closer = FindChar('}', next, end);
    next = SkipBlanks(closer != nullptr ? closer + 1 : end, end);
  }
  return next < end && *next == '=' ? LineKind::kKeyword : LineKind::kWord;
}

}  // namespace zon

#endif
