// Values made of the texts that stand for them in a file.
#ifndef ZON_READER_ZONVALUES_H
#define ZON_READER_ZONVALUES_H

#include <string_view>

#include "base/zonstore.h"

class CzonKeyword;
class CzonNode;

namespace zon {

// The text of a token ends at a zero byte.
inline std::string_view UpToZero(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// A value in the store, from the text of its token, a number's with its sign. Null for a token that
// is no value by itself.
CzonNode* MakeValue(Store& store, int token, std::string_view text);

// How much of a text is made of plain values and the commas between them.
struct PlainValues {
  const char* end = nullptr;   // behind the last value; null for none
  const char* next = nullptr;  // behind what has been passed: that value, or a comma
  bool isWhole = false;        // no comma follows, and nothing else that belongs to the last value
  bool hasNewline = false;     // in front of `next`
};

// A value is plain when nothing but the value itself stands in its place: no comment and no remark.
// It is passed only when what follows it can be seen.
PlainValues PassPlainValues(std::string_view text);

// Appends the values that such a text holds.
void MakePlainValues(CzonKeyword& keyword, std::string_view text);

}  // namespace zon

#endif
