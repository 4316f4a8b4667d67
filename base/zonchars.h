// Character classes and letter case as in the "C" locale, whatever locale the host has set: the
// same file must read the same everywhere. Bytes of 128 and above belong to no class and have no
// case.
#ifndef ZON_BASE_ZONCHARS_H
#define ZON_BASE_ZONCHARS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zon {

enum CharClass : unsigned char { kSpace = 1, kAlpha = 2, kDigit = 4, kWord = 8 };

constexpr std::array<unsigned char, 256> MakeCharClasses() {
  std::array<unsigned char, 256> table{};
  for (unsigned c = 0; c < 256; ++c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    const bool digit = c >= '0' && c <= '9';
    unsigned bits = 0;
    if (c == ' ' || (c >= '\t' && c <= '\r')) bits |= kSpace;
    if (letter) bits |= kAlpha;
    if (digit) bits |= kDigit;
    if (letter || digit || c == '_') bits |= kWord;
    table[c] = static_cast<unsigned char>(bits);
  }
  return table;
}

constexpr std::array<unsigned char, 256> MakeLowerCase() {
  std::array<unsigned char, 256> table{};
  for (unsigned c = 0; c < 256; ++c) {
    table[c] = static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  }
  return table;
}

inline constexpr std::array<unsigned char, 256> kCharClasses = MakeCharClasses();
inline constexpr std::array<unsigned char, 256> kLowerCase = MakeLowerCase();

constexpr bool IsClass(int c, unsigned classes) {
  return c >= 0 && (kCharClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

constexpr bool IsClass(char c, unsigned classes) {
  return (kCharClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

constexpr unsigned char Lower(char c) {
  return kLowerCase[static_cast<unsigned char>(c)];
}

constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Eight characters as a word, the first one in its lowest byte.
inline std::uint64_t LoadEight(const char* at) {
  std::uint64_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

constexpr std::uint64_t kEachByte = 0x0101010101010101;

// Turns A to Z into a to z in eight bytes at once: a byte is a capital letter if adding one
// constant sets its high bit and adding another does not.
constexpr std::uint64_t LowerEach(std::uint64_t word) {
  const std::uint64_t low = word & kEachByte * 0x7F;
  const std::uint64_t fromA = low + kEachByte * (0x80 - 'A');   // the high bit: at least 'A'
  const std::uint64_t afterZ = low + kEachByte * (0x7F - 'Z');  // the high bit: above 'Z'
  return word | ((fromA & ~afterZ & ~word & kEachByte * 0x80) >> 2);
}

inline bool EqualNoCase(std::string_view a, std::string_view b) {
  const std::size_t size = a.size();
  if (size != b.size()) return false;
  if (size < 8) {
    for (std::size_t at = 0; at < size; ++at) {
      if (Lower(a[at]) != Lower(b[at])) return false;
    }
    return true;
  }
  const auto differ = [&](std::size_t at) {
    const std::uint64_t left = LoadEight(a.data() + at);
    const std::uint64_t right = LoadEight(b.data() + at);
    return left != right && LowerEach(left) != LowerEach(right);
  };
  for (std::size_t at = 0; at + 8 < size; at += 8) {
    if (differ(at)) return false;
  }
  return !differ(size - 8);  // overlaps what was compared
}

// A text of less than eight bytes, and not empty, as a word. Some bytes can be in it twice: texts
// of one size differ in it as they differ themselves.
inline std::uint64_t LoadShort(std::string_view text) {
  const char* const at = text.data();
  const std::size_t size = text.size();
  if (size >= 4) {
    std::uint32_t first;
    std::uint32_t last;
    std::memcpy(&first, at, sizeof first);
    std::memcpy(&last, at + size - sizeof last, sizeof last);
    return first | std::uint64_t{last} << 32;
  }
  const auto byte = [at](std::size_t place) -> std::uint64_t {
    return static_cast<unsigned char>(at[place]);
  };
  return byte(0) | byte(size / 2) << 8 | byte(size - 1) << 16;
}

// Names are filed under their lower-cased form, the empty name under one blank.
constexpr std::string_view FiledName(std::string_view name) {
  return name.empty() ? " " : name;
}

// What is compared of the name of a node that is searched. Names of at most kFoldedSize characters
// are equal if their sizes, heads and tails are.
struct FoldedName {
  std::string_view name;  // as it is filed, but not in lower case
  std::uint64_t head;     // the first eight characters in lower case; for fewer LoadShort of all
  std::uint64_t tail;     // the last eight; 0 for a name of at most eight
  std::uint32_t hash;     // of the lower case
};

constexpr std::size_t kFoldedSize = 16;

// The hash is keyed with a secret of the process: the author of a file cannot choose names that
// collide.
FoldedName Fold(std::string_view name);

inline std::uint32_t HashNoCase(std::string_view name) {
  return Fold(name).hash;
}

}  // namespace zon

#endif
