// Values made of their texts, and lists of values that are made when they are first asked for.
//
// A list of plain values is kept as text: the reader only checks its form, and MakePlainValues makes
// the nodes later. A value is plain if it is spelled as its text and nothing but the value is in its
// place: no remark, no comment, no doubled quote, no substitution. Everything else goes through the
// grammar, which remains the judge of errors.
// Tested by tests/grammar_test.cpp and fuzz/load_fuzz.cpp.
#ifndef ZON_READER_ZONVALUES_H
#define ZON_READER_ZONVALUES_H

#include <string_view>

#include "base/zonarena.h"

class CzonKeyword;
class CzonNode;

namespace zon {

// The text of a token ends at a zero byte.
inline std::string_view UpToZero(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// A value in the arena, from the text of its token; that of a number has its sign. Null if the token
// is no value by itself.
CzonNode* MakeValue(Arena& arena, int token, std::string_view text);

// The plain values, with the commas between them, that begin at `at`.
struct PlainValues {
  const char* end = nullptr;  // after the last one; null if there are none
  bool isWhole = false;       // the list ends with it
};

// The last value counts only if what follows it is visible and does not belong to it.
PlainValues FindValues(const char* at, const char* end);

// Appends the values of such a text to the keyword.
void MakePlainValues(CzonKeyword& keyword, std::string_view text);

}  // namespace zon

#endif
