// Numbers as people mostly write them, converted while they are looked for: few digits, with a point,
// a power of ten or neither.
#ifndef ZON_BASE_ZONDECIM_H
#define ZON_BASE_ZONDECIM_H

#include <cstddef>
#include <cstdint>

namespace zon {

class Decimal {
 public:
  // Reads the number without sign that begins at `at`. Gives its end; null when none of this kind
  // stands there, and the object is then in no particular state.
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

  bool IsWhole() const { return isWhole_; }  // neither point nor power
  std::int64_t Whole() const { return static_cast<std::int64_t>(digits_); }

  // Gives the value if a single rounding makes it: up to 2^53 and with a power of ten that a double
  // holds exactly, one multiplication or division rounds once and so correctly.
  bool ToDouble(double* value) const {
    if (digits_ > (std::uint64_t{1} << 53)) return false;
    const auto mantissa = static_cast<double>(digits_);
    if (scale_ == 0) {
      *value = mantissa;
    } else if (scale_ < 0 && scale_ >= -kLargestExactPower) {
      *value = mantissa / kPowersOfTen[-scale_];
    } else if (scale_ > 0 && scale_ <= kLargestExactPower) {
      *value = mantissa * kPowersOfTen[scale_];
    } else {
      return false;
    }
    return true;
  }

 private:
  static constexpr int kSafeDigits = 18;     // as many digits always fit into 64 bits
  static constexpr int kExponentDigits = 4;  // more than enough for any double
  static constexpr int kLargestExactPower = 22;
  static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

  static unsigned DigitAt(const char* at) {  // above 9 for anything else
    return static_cast<unsigned char>(*at) - unsigned{'0'};
  }

  const char* ReadDigits(const char* at, const char* end) {
    std::uint64_t digits = digits_;
    for (; at < end && DigitAt(at) <= 9; ++at) digits = digits * 10 + DigitAt(at);
    digits_ = digits;
    return at;
  }

  const char* ReadPower(const char* at, const char* end) {
    isWhole_ = false;
    const bool negative = at < end && *at == '-';
    if (at < end && (*at == '-' || *at == '+')) ++at;
    const char* const start = at;
    int power = 0;
    for (; at < end && DigitAt(at) <= 9; ++at) {
      if (at - start == kExponentDigits) return nullptr;
      power = power * 10 + static_cast<int>(DigitAt(at));
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
