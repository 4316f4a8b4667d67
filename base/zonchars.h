// Character classes and letter case as in the "C" locale, whatever locale the host has set: a file
// must not read differently in Ankara. Bytes of 128 and above belong to no class and have no case.
#ifndef ZON_BASE_ZONCHARS_H
#define ZON_BASE_ZONCHARS_H

#include <array>
#include <cstddef>
#include <cstdint>
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

constexpr unsigned char Lower(char c) {
  return kLowerCase[static_cast<unsigned char>(c)];
}

constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool EqualNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

// Names are filed under their lower-cased form, the empty name under one blank. The hash of that
// form is made once, when the name is given.
constexpr std::string_view FiledName(std::string_view name) {
  return name.empty() ? " " : name;
}

constexpr std::uint32_t HashNoCase(std::string_view name) {
  std::uint64_t hash = 0x9E3779B97F4A7C15U;
  for (const char c : FiledName(name)) hash = (hash ^ Lower(c)) * 0x9FB21C651E98DF25U;
  return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace zon

#endif
