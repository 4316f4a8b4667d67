// The lexemes that every reader of the format knows: white space, words, and texts between
// delimiters. Each function looks at the characters from `at` up to `end`.
#ifndef ZON_BASE_ZONLEXEME_H
#define ZON_BASE_ZONLEXEME_H

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "base/zonchars.h"

namespace zon {

inline std::string_view TextBetween(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

// The end of a run of characters of these classes.
inline const char* SkipClass(const char* at, const char* end, unsigned classes) {
  while (at < end && IsClass(*at, classes)) ++at;
  return at;
}

inline const char* SkipSpace(const char* at, const char* end) {
  return SkipClass(at, end, kSpace);
}

// The end of a text that ends at `end`, without the white space before it.
inline const char* TrimEnd(const char* begin, const char* end) {
  while (end > begin && IsClass(end[-1], kSpace)) --end;
  return end;
}

// The place of the character; null if it is missing.
inline const char* FindChar(char c, const char* at, const char* end) {
  if (at == end) return nullptr;
  return static_cast<const char*>(std::memchr(at, c, static_cast<std::size_t>(end - at)));
}

// How often the character occurs, counted sixteen at a time.
inline std::size_t CountChar(char c, const char* at, const char* end) {
  std::size_t count = 0;
  const __m128i wanted = _mm_set1_epi8(c);
  const __m128i zero = _mm_setzero_si128();
  for (std::ptrdiff_t rows = (end - at) / 16; rows > 0;) {
    __m128i counts = zero;  // of each of sixteen columns, at most 255
    const std::ptrdiff_t left = rows - std::min<std::ptrdiff_t>(rows, 255);
    for (; rows > left; --rows, at += 16) {
      const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
      counts = _mm_sub_epi8(counts, _mm_cmpeq_epi8(text, wanted));  // found is -1
    }
    const __m128i sums = _mm_sad_epu8(counts, zero);
    count += static_cast<std::size_t>(_mm_cvtsi128_si64(sums)) +
             static_cast<std::size_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
  }
  for (; at < end; ++at) count += *at == c ? 1 : 0;
  return count;
}

// The end of a run of letters, digits and underlines, found sixteen characters at a time.
inline const char* SkipWord(const char* at, const char* end) {
  // Shifts a range of bytes to the lower end of the signed ones, where one comparison decides.
  const auto within = [](__m128i bytes, char first, char count) {
    const __m128i moved = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(first - 128)));
    return _mm_cmplt_epi8(moved, _mm_set1_epi8(static_cast<char>(count - 128)));
  };
  for (; end - at >= 16; at += 16) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i letters = within(_mm_or_si128(text, _mm_set1_epi8(0x20)), 'a', 26);
    const __m128i digits = within(text, '0', 10);
    const __m128i underline = _mm_cmpeq_epi8(text, _mm_set1_epi8('_'));
    const auto word = static_cast<unsigned>(
        _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(letters, digits), underline)));
    if (word != 0xFFFF) return at + __builtin_ctz(~word);
  }
  return SkipClass(at, end, kWord);
}

// In a text that spells its closing delimiter as two: the place of the first single one. Null if
// there is none before `end`, also if it is the last character: a second one could follow there.
inline const char* FindClosing(char delimiter, const char* at, const char* end) {
  for (;;) {
    const char* found = FindChar(delimiter, at, end);
    if (found == nullptr || found + 1 == end) return nullptr;
    if (found[1] != delimiter) return found;
    at = found + 2;
  }
}

// Such a text with every doubled delimiter as one.
std::string WithoutDoubled(char delimiter, std::string_view text);

// The end of a comment that begins at `at`, before the newline of one that ends with its line; `at`
// if there is none. Comments between "/*" and "*/" can be nested.
const char* SkipComment(const char* at, const char* end);

// Skips white space and comments, which can be between any two tokens.
const char* SkipGaps(const char* at, const char* end);

}  // namespace zon

#endif
