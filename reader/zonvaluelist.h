// Makes values from their texts, and finds lists of plain values, whose nodes are made on first
// access (MakePlainValues). A list that is read in two steps is made during the parse.
//
// A value is plain if its text is a substring of the file and no remark or comment touches it: no
// doubled quote, no substitution, no blank after the sign. Everything else, and every error, goes
// through the grammar.
// Tested by tests/grammar_test.cpp and fuzz/load_fuzz.cpp.
#ifndef ZON_READER_ZONVALUELIST_H
#define ZON_READER_ZONVALUELIST_H

#include <string_view>
#include <vector>

#include "base/zonarena.h"
#include "base/zonchars.h"

class CzonNamedNode;
class CzonNode;

namespace zon {

// The text of a token ends at a zero byte.
inline std::string_view UpToZero(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// A value in the arena, from the text of its token; that of a number has its sign. Null if the
// token is no value by itself.
CzonNode* MakeValue(Arena& arena, int token, std::string_view text);

// Whether a check may warn of an integer: it may have more than 32 bits, or it follows another
// number and a comma without a blank.
inline bool IsLong(std::string_view integer) {
  return integer.size() > 9;
}
inline bool FollowsNumber(std::string_view integer) {
  return integer.data()[-1] == ',' && IsClass(integer.data()[-2], kDigit);
}

// The plain values, with the commas between them, that begin at `at`.
struct PlainValues {
  const char* end = nullptr;   // after the last one; null if there are none
  const char* next = nullptr;  // of a whole list: after the white space that follows
  bool isWhole = false;        // the list ends with it
  bool isSuspect = false;      // a check may warn of them: see Lexer::IsSuspect
};

// The last value counts only if the next character is already in the buffer and begins no remark or
// comment: "12" could go on as "123" in the next block.
PlainValues FindValues(const char* at, const char* end);

// Appends the values of the text to the keyword. The text was accepted by FindValues and the
// keyword is in an arena. Appends in batches of 64, so the list grows rarely.
void MakePlainValues(CzonNamedNode& keyword, std::string_view text);

// A value of such a text, as MakeValue takes it.
struct PlainValue {
  int token;
  std::string_view text;
};

// Stores the values of the text without making nodes.
void SplitPlainValues(std::string_view text, std::vector<PlainValue>* values);

}  // namespace zon

#endif
