// Finding and converting numbers in a text.
//
// SkipNumber finds the end of a number, eight digits at a time. NumberScan does it character by
// character, for sources that deliver no more than one. ShortNumber also converts numbers of at
// most 18 digits; all others are left to TextToDouble and TextToLong (zonnumber.h).
// Tested by tests/values_test.cpp and tests/scanner_test.cpp.
#ifndef ZON_BASE_ZONNUMBERSCAN_H
#define ZON_BASE_ZONNUMBERSCAN_H

#include <cstddef>
#include <cstdint>

#include "base/zonchars.h"

namespace zon {

// How many of eight characters are leading digits; turns each digit in `word` into its value. There
// is no branch on their number, which a processor would mispredict for nearly every number.
inline int LeadingDigits(std::uint64_t* word) {
  *word ^= kEachByte * '0';
  const std::uint64_t others = ((*word + kEachByte * 0x76) | *word) & kEachByte * 0x80;
  return others != 0 ? __builtin_ctzll(others) / 8 : 8;
}

inline bool IsDigit(char c) {
  return static_cast<unsigned char>(c - '0') <= 9;
}

inline const char* SkipDigits(const char* at, const char* end) {
  while (end - at >= 8) {
    std::uint64_t word = LoadEight(at);
    const int count = LeadingDigits(&word);
    at += count;
    if (count < 8) return at;
  }
  while (at < end && IsDigit(*at)) ++at;
  return at;
}

// The end of the number without sign that begins at `at`, and whether it has neither point nor
// exponent. Null if there is none.
inline const char* SkipNumber(const char* at, const char* end, bool* isWhole) {
  const char* const start = at;
  at = SkipDigits(at, end);
  bool hasDigits = at != start;
  *isWhole = true;
  if (at < end && *at == '.') {
    *isWhole = false;
    const char* const fraction = ++at;
    at = SkipDigits(at, end);
    hasDigits = hasDigits || at != fraction;
  }
  if (!hasDigits) return nullptr;
  if (at == end || (*at != 'e' && *at != 'E')) return at;
  *isWhole = false;
  ++at;
  if (at < end && (*at == '-' || *at == '+')) ++at;
  // Nearly every exponent has one or two digits: the processor predicts the end of this loop.
  const char* const power = at;
  while (at < end && IsDigit(*at)) ++at;
  return at != power ? at : nullptr;
}

// The state of a number that is read character by character, its sign included.
//
// Compatibility: a sign needs no digit after it. The token reader accepts "+" as an integer and
// "-e5" as a real; the loader's lexer never passes a sign.
class NumberScan {
 public:
  // Adds a character to the number; false if it does not belong to it.
  bool Accept(int c) {
    const State next = After(c);
    if (next == kStop) return false;
    state_ = next;
    return true;
  }

  bool IsWhole() const { return state_ <= kWhole; }  // neither point nor exponent
  bool IsComplete() const {
    return state_ != kPoint && state_ != kExponent && state_ != kExponentSign;
  }
  bool MissesFraction() const { return state_ == kPoint; }  // of ".", a digit must follow

 private:
  enum State : unsigned char {
    kStart,
    kSign,
    kWhole,
    kPoint,  // without a digit before it
    kFraction,
    kExponent,  // the letter alone
    kExponentSign,
    kExponentDigits,
    kStop
  };

  State After(int c) const {
    if (IsClass(c, kDigit)) {
      return state_ >= kExponent ? kExponentDigits : state_ >= kPoint ? kFraction : kWhole;
    }
    const bool mayGoOn = state_ == kSign || state_ == kWhole || state_ == kFraction;
    if (c == '.') return state_ == kWhole ? kFraction : state_ <= kSign ? kPoint : kStop;
    if (c == 'e' || c == 'E') return mayGoOn ? kExponent : kStop;
    if (c != '+' && c != '-') return kStop;
    return state_ == kStart ? kSign : state_ == kExponent ? kExponentSign : kStop;
  }

  State state_ = kStart;
};

class ShortNumber {
 public:
  // Reads the number without sign that begins at `at`. Returns its end; null if there is none, or
  // none that is short. The object is then unusable.
  const char* Read(const char* at, const char* end) {
    digits_ = 0;
    const char* const start = at;
    at = ReadDigits(at, end);
    std::ptrdiff_t count = at - start;
    scale_ = 0;
    isWhole_ = true;
    if (at < end && *at == '.') {
      isWhole_ = false;
      const char* const point = ++at;
      at = ReadDigits(at, end);
      count += at - point;
      scale_ = static_cast<int>(point - at);
    }
    if (count == 0 || count > kSafeDigits) return nullptr;
    return at < end && (*at == 'e' || *at == 'E') ? ReadPower(at + 1, end) : at;
  }

  bool IsWhole() const { return isWhole_; }  // neither point nor exponent
  std::int64_t Whole() const { return static_cast<std::int64_t>(digits_); }

  // Stores the value with its sign if one rounding is enough: with digits up to 2^53 and a
  // power of ten that a double holds exactly, one multiplication or division rounds correctly.
  bool ToDouble(bool negative, double* value) const {
    if (digits_ > (std::uint64_t{1} << 53)) return false;
    const auto digits = static_cast<std::int64_t>(digits_);
    if (scale_ <= 0 && scale_ >= -kLargestExactPower) {
      *value = Divide(negative, digits, static_cast<unsigned>(-scale_));
    } else if (scale_ > 0 && scale_ <= kLargestExactPower) {
      *value = WithSign(negative, digits) * kPowersOfTen[scale_];
    } else {
      return false;
    }
    return true;
  }

  // Digits up to 2^53, `fraction` of them after the point, at most 22: the division rounds
  // correctly.
  static double Divide(bool negative, std::int64_t digits, std::size_t fraction) {
    return WithSign(negative, digits) / kPowersOfTen[fraction];
  }

 private:
  static constexpr int kSafeDigits = 18;     // fit into 64 bits, whatever they are
  static constexpr int kExponentDigits = 4;  // more than any double needs
  static constexpr int kLargestExactPower = 22;
  static constexpr std::uint64_t kWholePowers[] = {1,      10,      100,      1000,     10000,
                                                   100000, 1000000, 10000000, 100000000};
  static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

  // By a table, as half of the signs would be mispredicted.
  static double WithSign(bool negative, std::int64_t digits) {
    static constexpr double kSigns[] = {1.0, -1.0};
    return static_cast<double>(digits) * kSigns[negative ? 1 : 0];
  }

  const char* ReadDigits(const char* at, const char* end) {
    while (end - at >= 8) {
      std::uint64_t word = LoadEight(at);
      const int count = LeadingDigits(&word);
      if (count == 0) return at;
      digits_ = digits_ * kWholePowers[count] + ValueOf(word << (64 - 8 * count));
      at += count;
      if (count < 8) return at;
    }
    for (; at < end && IsDigit(*at); ++at)
      digits_ = digits_ * 10 + static_cast<unsigned>(*at - '0');
    return at;
  }

  // The value of eight digits, the first one in the lowest byte: joins pairs, then fours, then all.
  static std::uint64_t ValueOf(std::uint64_t block) {
    block = (block * (1 + (10 << 8))) >> 8;
    block = ((block & 0x00FF00FF00FF00FF) * (1 + (std::uint64_t{100} << 16))) >> 16;
    return ((block & 0x0000FFFF0000FFFF) * (1 + (std::uint64_t{10000} << 32))) >> 32;
  }

  const char* ReadPower(const char* at, const char* end) {
    isWhole_ = false;
    const bool negative = at < end && *at == '-';
    if (at < end && (*at == '-' || *at == '+')) ++at;
    const char* const start = at;
    int power = 0;
    for (; at < end && IsDigit(*at); ++at) {
      if (at - start == kExponentDigits) return nullptr;
      power = power * 10 + (*at - '0');
    }
    if (at == start) return nullptr;
    scale_ += negative ? -power : power;
    return at;
  }

  std::uint64_t digits_ = 0;
  int scale_ = 0;  // the value is digits_ * 10^scale_
  bool isWhole_ = false;
};

}  // namespace zon

#endif
