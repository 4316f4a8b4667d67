// Numbers as text, both ways, as in the "C" locale whatever locale the host has set.
#ifndef ZON_BASE_ZONNUMBER_H
#define ZON_BASE_ZONNUMBER_H

#include <cmath>
#include <cstdint>
#include <string_view>

namespace zon {

// Converts the number that a text begins with, by the rules of strtod: leading white space and
// trailing text are ignored, a text without a number is 0, a number too large is an infinity.
double TextToDouble(std::string_view text);

// The same by the rules of strtol in base 10: beyond 64 bits it is the nearest end of the range.
long TextToLong(std::string_view text);

// The low 32 bits of a whole number, as the integer views of values keep them.
inline int LowBits(long long value) {
  return static_cast<int>(static_cast<std::uint32_t>(static_cast<unsigned long long>(value)));
}

// A number as it is written into a file. The text lives as long as the object.
class NumberText {
 public:
  static NumberText OfInt(int value) { return OfInt64(value); }
  static NumberText OfInt64(long long value);
  static NumberText OfFloat(float value) { return OfSixDigits(static_cast<double>(value)); }
  static NumberText OfSixDigits(double value);  // as "%g": no trailing zeros

  // As "%#.1f" for a whole number, else as "%.16g".
  static NumberText OfDouble(double value);
  static NumberText OfDoubleDigits(double value);  // as "%.16g" always

  // The fewest digits that read back to the same finite number, with a point or an exponent: always
  // read as a real. @{
  static NumberText Shortest(double value);
  static NumberText Shortest(float value);
  // @}

  std::string_view View() const { return {text_, size_}; }

 private:
  NumberText() = default;
  void EndAt(const char* end) { size_ = static_cast<unsigned>(end - text_); }

  char text_[44];
  unsigned size_ = 0;
};

// Whether two reals are the same number with the same sign: 0.0 is not -0.0.
inline bool AreSameReals(double a, double b) {
  return a == b && std::signbit(a) == std::signbit(b);
}

// Returns whether the value is whole and within 64 bits, and stores it. 2^63 itself is outside.
inline bool WholeNumber(double value, long long* whole) {
  if (!(value >= -9223372036854775808.0 && value < 9223372036854775808.0)) return false;
  const auto truncated = static_cast<long long>(value);
  if (static_cast<double>(truncated) != value) return false;
  *whole = truncated;
  return true;
}

}  // namespace zon

#endif
