// Lists of numbers, looked at sixty-four characters at a time.
//
// Each class of characters is a set of places: bit n of a word stands for character n. Neighbours
// are compared by shifts, and a run of digits is followed to its end by the carry of an addition.
// No branch depends on the length of a number.
//
// Only usual values are recognised: an optional minus sign, digits, at most one point. A block ends
// before anything else, and its user takes that value in the general way. So a block may hold less
// than the list allows, never more.
// Tested by Zonx.ListsInBlocks in tests/zonx_test.cpp.
#ifndef ZON_BASE_ZONNUMBERBLOCK_H
#define ZON_BASE_ZONNUMBERBLOCK_H

#include <emmintrin.h>

#include <cstdint>

#include "base/zonnumberscan.h"

namespace zon {

// Sixty-four characters, and the places of those that pass a test.
class CharBlock {
 public:
  static constexpr int kSize = 64;

  explicit CharBlock(const char* at) : at_(at) {}

  template <class Test>
  std::uint64_t Where(Test&& test) const {
    std::uint64_t places = 0;
    for (int from = 0; from < kSize; from += 16) {
      const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at_ + from));
      const auto bits = static_cast<unsigned>(_mm_movemask_epi8(test(text)));
      places |= static_cast<std::uint64_t>(bits) << from;
    }
    return places;
  }

  std::uint64_t Equal(char c) const {
    return Where([c](__m128i text) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); });
  }

  // Shifts the range to the lower end of the signed characters, where one comparison decides.
  std::uint64_t Within(char first, char last) const {
    return Where([first, last](__m128i text) {
      const __m128i moved = _mm_sub_epi8(text, _mm_set1_epi8(static_cast<char>(first - 128)));
      return _mm_cmplt_epi8(moved, _mm_set1_epi8(static_cast<char>(last - first - 127)));
    });
  }

 private:
  const char* at_;
};

// The places before the first one of a set.
inline std::uint64_t Before(std::uint64_t places) {
  return ~places & (places - 1);
}

// The comma after the last usual value of a block that begins at a value or at the white space
// before it; null if there is none. A comma follows each such value directly, and no check warns of
// it: an integer has less than ten characters.
inline const char* LastCommaOfBlock(const char* at) {
  const CharBlock block(at);
  const std::uint64_t digits = block.Within('0', '9');
  const std::uint64_t points = block.Equal('.');
  const std::uint64_t signs = block.Equal('-');
  const std::uint64_t commas = block.Equal(',');
  const std::uint64_t spaces = block.Equal(' ') | block.Within('\t', '\r');
  const std::uint64_t numbers = digits | points | signs;
  // Adding the first digit of each fraction clears the fraction and sets the place after it.
  const std::uint64_t carried = digits + (digits & points << 1);
  const std::uint64_t afterPoint = (carried & ~digits) | points << 1;
  const std::uint64_t whole = (carried & digits) | signs;
  const std::uint64_t two = whole & whole >> 1;
  const std::uint64_t four = two & two >> 2;
  const std::uint64_t ten = four & four >> 4 & two >> 8;
  const std::uint64_t noSign = signs & (numbers << 1 | ~((digits | points) >> 1));
  const std::uint64_t noPoint = points & (afterPoint | ~(digits << 1 | digits >> 1));
  const std::uint64_t unusual =
      ~(numbers | commas | spaces) | (commas ^ (~numbers & numbers << 1)) | ten | noSign | noPoint;
  const std::uint64_t usual = commas & Before(unusual);
  return usual != 0 ? at + (CharBlock::kSize - 1 - __builtin_clzll(usual)) : nullptr;
}

// Converts the usual values of a block of a list that was accepted as one of plain values. So only
// what does not belong to a usual value need be looked for: a run of digits, points and signs is a
// number.
class NumberBlock {
 public:
  // Begins at a value or at the white space before it. The 16 characters before it must be
  // readable.
  explicit NumberBlock(const char* at) : at_(at) {
    const CharBlock block(at);
    const std::uint64_t numbers = block.Within('-', '9');  // no slash is in such a list
    const std::uint64_t separators = block.Equal(',') | block.Within(0, ' ');
    points_ = block.Equal('.');
    starts_ = numbers & ~(numbers << 1);
    ends_ = ~numbers & numbers << 1 & Before(~(numbers | separators));
  }

  // Whether a value is left.
  bool HasValue() const { return ends_ != 0; }

  // Removes the next value and converts it, correctly rounded. Returns its end; null, and nothing
  // is changed, if it has too many digits.
  const char* Read(double* value) {
    const auto start = Lowest(starts_);
    const auto end = Lowest(ends_);
    const auto point = Lowest(points_ | kLast);
    const bool isNegative = at_[start] == '-';
    const bool isReal = point < end;
    const std::size_t count = end - start - (isReal ? 1 : 0) - (isNegative ? 1 : 0);
    if (count > kMostDigits) return nullptr;
    const std::size_t fraction = isReal ? end - point - 1 : 0;
    const std::int64_t digits = DigitsBefore(at_ + end, count, isReal ? fraction : kLanes);
    *value = ShortNumber::Divide(isNegative, digits, fraction);
    starts_ &= starts_ - 1;
    ends_ &= ends_ - 1;
    points_ &= ~std::uint64_t{0} << end;
    return at_ + end;
  }

 private:
  static constexpr std::uint64_t kLast = std::uint64_t{1} << (CharBlock::kSize - 1);
  static constexpr std::size_t kMostDigits = 15;  // less than 2^53, whatever they are
  static constexpr std::size_t kLanes = 16;

  static std::size_t Lowest(std::uint64_t places) {
    return static_cast<std::size_t>(__builtin_ctzll(places));
  }

  static __m128i Load(const void* at) { return _mm_loadu_si128(static_cast<const __m128i*>(at)); }

  // The value of the `count` digits before `end`. A point is before the last `fraction` ones,
  // unless that is kLanes: what is before the point moves one place up.
  static std::int64_t DigitsBefore(const char* end, std::size_t count, std::size_t fraction) {
    static constexpr unsigned char kLastLanes[2 * kLanes] = {
        0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,
        255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
    const __m128i inFraction = Load(kLastLanes + fraction);
    const __m128i text = _mm_or_si128(_mm_and_si128(inFraction, Load(end - kLanes)),
                                      _mm_andnot_si128(inFraction, Load(end - kLanes - 1)));
    const __m128i ones =
        _mm_and_si128(Load(kLastLanes + count), _mm_sub_epi8(text, _mm_set1_epi8('0')));
    // Joins pairs, then fours, then eights.
    const __m128i pairs =
        _mm_add_epi16(_mm_mullo_epi16(_mm_and_si128(ones, _mm_set1_epi16(255)), _mm_set1_epi16(10)),
                      _mm_srli_epi16(ones, 8));
    const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(100 | 1 << 16));
    const __m128i eights =
        _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(10000 | 1 << 16));
    const std::int64_t both = _mm_cvtsi128_si64(eights);
    return (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
  }

  const char* at_;
  std::uint64_t points_;
  std::uint64_t starts_;
  std::uint64_t ends_;
};

}  // namespace zon

#endif
