// The operations of zon::Text: the name of a node, or a value as it was written.
//
// A Text is in one of three states:
//   characters   `where` points to `size` characters, mostly in the text of the file. Loaded nodes
//                begin so: no character is copied.
//   kept string  `where` points to a std::string of the arena. Made when a caller requests a
//                std::string, or when a text in an arena changes.
//   own string   the same in the free store, for nodes without an arena. Release frees it.
// Both kinds of strings are a KeptString, which remembers where the text of the file has the
// characters. A text that became a string stays a string and stores every later value, so an arena
// does not grow with the number of changes. Tested by tests/values_test.cpp, tests/edit_test.cpp
// and tests/faults/alloc_faults_test.cpp.
#ifndef ZON_TREE_ZONNODETEXT_H
#define ZON_TREE_ZONNODETEXT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/zonarena.h"
#include "tree/zonnodefields.h"

namespace zon {

// Values of Text::size that mark a string. Any smaller one is a number of characters.
constexpr std::uint32_t kKeptString = 0xFFFFFFFEU;
constexpr std::uint32_t kOwnString = 0xFFFFFFFFU;

inline std::string_view View(const Text& text) {
  if (text.size < kKeptString) return {static_cast<const char*>(text.where), text.size};
  return *static_cast<const std::string*>(text.where);
}

// The text terminated by a zero. In the text of a file the closing quote follows it instead, which
// must stay: the first call then makes a copy, which becomes the text.
inline const char* Terminated(Text& text, Arena& arena) {
  if (text.size >= kKeptString) return static_cast<const std::string*>(text.where)->c_str();
  if (text.size == 0) return "";
  const auto* chars = static_cast<const char*>(text.where);
  if (chars[text.size] == '\0') return chars;
  const char* copy = arena.CopyText({chars, text.size}, chars);
  text.where = copy;
  return copy;
}

// Turns characters into a string. Throws std::bad_alloc, the text unchanged.
void MakeString(Text& text, Arena* arena);

const std::string& EmptyString();

// The text as a string, valid until the text changes or is released. With an arena the string is
// kept there, otherwise it is the text's own.
inline const std::string& AsString(Text& text, Arena* arena) {
  if (text.size == 0) return EmptyString();  // shared: no arena fills up with empty strings
  if (text.size < kKeptString) MakeString(text, arena);
  return *static_cast<const std::string*>(text.where);
}

// Copies `value`, which may be a part of the text itself.
void Assign(Text& text, std::string_view value, Arena* arena);

// Refers to the characters, which must live as long as the tree.
inline void ReferTo(Text& text, std::string_view chars) {
  if (chars.size() < kKeptString) {
    text.where = chars.data();
    text.size = static_cast<std::uint32_t>(chars.size());
  } else {
    Assign(text, chars, nullptr);
  }
}

// Appends `addition`, which is no part of the text, in amortised constant time per character.
void Append(Text& text, std::string_view addition, Arena* arena);

inline void Swap(Text& a, Text& b) {
  const Text former = a;
  a = b;
  b = former;
}

// Where the text of a file that is from `begin` to `end` has the characters of a text that was
// loaded and not changed; null for any other text. A copy knows where its characters come from. Of
// a text without characters the place is kept as long as it has none. `lead` characters before the
// text belong to it.
const char* FindOrigin(const Text& text, const char* begin, const char* end, std::size_t lead = 0);

// Makes `origin` the place of the characters. A text that is itself between `oldBegin` and
// `oldEnd`, which will be freed, moves there; CanMoveTo says whether the characters are the same.
void SetOrigin(Text& text, const char* origin, const char* oldBegin, const char* oldEnd,
               std::size_t lead = 0);
bool CanMoveTo(const Text& text, const char* origin, const char* oldBegin, const char* oldEnd);

// How many characters before the content of a packed list belong to its text: "<CLOB:".
constexpr std::size_t kClobLead = 6;

// Whether the characters end at a zero of the file, so that Terminated has returned the place
// itself.
bool EndsAtZero(const Text& text, const char* begin, const char* end);

// Gives a text that replaces another one its origin: a renamed node is still the one of the file.
void InheritOrigin(Text& text, const Text& former);

// Whether the text has a string that only Release frees.
inline bool OwnsString(const Text& text) {
  return text.size == kOwnString;
}

// Frees the text's own string, if it has one, and makes the text empty.
void Release(Text& text);

}  // namespace zon

#endif
