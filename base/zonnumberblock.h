// Sixty-four characters of a list of numbers, looked at together.
//
// Each class of characters is a set of places: bit n of a word stands for character n. Neighbours are
// compared by shifts, and a run of digits is followed to its end by the carry of an addition. No branch
// depends on the length of a number.
//
// Only usual values are recognised: an optional minus sign, digits with at most one point, white space
// before them and a comma directly after them. Before anything else the block ends, and its user takes
// that value in the general way. So a block may hold less than a list allows, never more.
// Tested by Zonx.ListsInBlocks in tests/zonx_test.cpp.
#ifndef ZON_BASE_ZONNUMBERBLOCK_H
#define ZON_BASE_ZONNUMBERBLOCK_H

#include <emmintrin.h>

#include <cstdint>

#include "base/zonnumberscan.h"

namespace zon {

class NumberBlock {
 public:
  static constexpr int kSize = 64;

  // Of the kSize characters at `at`, where a value, or the white space before it, begins.
  explicit NumberBlock(const char* at) : at_(at) {
    const std::uint64_t digits = Places([](__m128i text) { return Within(text, '0', 10); });
    const std::uint64_t commas = Places([](__m128i text) { return Equal(text, ','); });
    const std::uint64_t blanks =
        Places([](__m128i text) { return _mm_or_si128(Equal(text, ' '), Within(text, '\t', 5)); });
    points_ = Places([](__m128i text) { return Equal(text, '.'); });
    const std::uint64_t signs = Places([](__m128i text) { return Equal(text, '-'); });
    const std::uint64_t numbers = digits | points_ | signs;
    starts_ = (digits | points_) & ~((digits | points_) << 1);
    const std::uint64_t unusual = ~(numbers | commas | blanks) |
                                  (commas ^ (~numbers & numbers << 1)) |
                                  UnusualNumbers(digits, signs);
    ends_ = commas & ~unusual & (unusual - 1);  // those before the first unusual place
  }

  // Whether a value is left.
  bool HasValue() const { return ends_ != 0; }

  // The comma after the last value; there must be one.
  const char* LastComma() const { return at_ + (kSize - 1 - __builtin_clzll(ends_)); }

  // Removes the next value and converts it, correctly rounded. Returns the place after its comma; null,
  // and nothing is changed, if it has too many digits. The 16 characters before the block must be
  // readable.
  const char* Read(double* value) {
    const auto start = Lowest(starts_);
    const auto end = Lowest(ends_);
    const auto point = Lowest(points_ | kLast);
    const bool isReal = point < end;
    const std::size_t count = end - start - (isReal ? 1 : 0);
    if (count > kMostDigits) return nullptr;
    const std::size_t fraction = isReal ? end - point - 1 : 0;
    const std::int64_t digits = DigitsBefore(at_ + end, count, isReal ? fraction : kLanes);
    *value = ShortNumber::Divide((at_ + start)[-1] == '-', digits, fraction);
    starts_ &= starts_ - 1;
    ends_ &= ends_ - 1;
    points_ &= ~std::uint64_t{0} << end;
    return at_ + end + 1;
  }

 private:
  static constexpr std::uint64_t kLast = std::uint64_t{1} << (kSize - 1);
  static constexpr std::size_t kMostDigits = 15;  // less than 2^53, whatever they are
  static constexpr std::size_t kLanes = 16;

  static std::size_t Lowest(std::uint64_t places) {
    return static_cast<std::size_t>(__builtin_ctzll(places));
  }

  static __m128i Equal(__m128i text, char c) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(c)); }

  // Shifts a range of characters to the lower end of the signed ones, where one comparison decides.
  static __m128i Within(__m128i text, char first, char count) {
    const __m128i moved = _mm_sub_epi8(text, _mm_set1_epi8(static_cast<char>(first - 128)));
    return _mm_cmplt_epi8(moved, _mm_set1_epi8(static_cast<char>(count - 128)));
  }

  static __m128i Load(const void* at) { return _mm_loadu_si128(static_cast<const __m128i*>(at)); }

  template <class Test>
  std::uint64_t Places(Test&& test) const {
    std::uint64_t places = 0;
    for (int from = 0; from < kSize; from += 16) {
      const auto bits = static_cast<unsigned>(_mm_movemask_epi8(test(Load(at_ + from))));
      places |= static_cast<std::uint64_t>(bits) << from;
    }
    return places;
  }

  // A place in each malformed number, and in one with ten characters before its point or its end: of such
  // an integer a check may warn.
  std::uint64_t UnusualNumbers(std::uint64_t digits, std::uint64_t signs) const {
    // Adding the first digit of each fraction clears the fraction and sets the place after it.
    const std::uint64_t carried = digits + (digits & points_ << 1);
    const std::uint64_t afterPoint = (carried & ~digits) | points_ << 1;
    const std::uint64_t whole = (carried & digits) | signs;
    const std::uint64_t two = whole & whole >> 1;
    const std::uint64_t four = two & two >> 2;
    const std::uint64_t ten = four & four >> 4 & two >> 8;
    const std::uint64_t noSign =
        signs & ((digits | points_ | signs) << 1 | ~((digits | points_) >> 1));
    const std::uint64_t noPoint = points_ & (afterPoint | ~(digits << 1 | digits >> 1));
    return ten | noSign | noPoint;
  }

  // The value of the `count` digits before `end`. A point is before the last `fraction` ones, unless that
  // is kLanes: what is before the point moves one place up.
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
  std::uint64_t starts_;  // of numbers, after their signs
  std::uint64_t ends_;    // the commas after usual values
};

}  // namespace zon

#endif
