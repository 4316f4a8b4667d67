// Conversion of numbers, independent of the locale, which strtod and printf are not.
//
// Text to double, in this order:
//   1. ShortNumber: up to 18 digits and a small exponent need one exact operation.
//   2. std::from_chars, which rounds correctly. Unlike strtod it accepts no "0x" and no "+", and
//      more signs and words in some places; these differences are handled before the call.
//   3. For a value out of range from_chars does not say at which end. IsAboveRange decides between
//      an infinity and 0.
//
// Numbers to text: std::to_chars with a precision is defined to print what printf prints in the "C"
// locale. Tested by tests/values_test.cpp, which compares the conversions with a table of hard
// cases.
#include "base/zonnumber.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <iterator>
#include <system_error>

#include "base/zonchars.h"
#include "base/zonnumberscan.h"

namespace zon {
namespace {

// The characters that are not yet read.
struct Input {
  const char* at;
  const char* end;

  int Peek() const { return at < end ? static_cast<unsigned char>(*at) : -1; }
  bool Accept(char c) {
    if (Peek() != c) return false;
    ++at;
    return true;
  }
};

Input SkipLeadingSpace(std::string_view text) {
  Input input{text.data(), text.data() + text.size()};
  while (IsClass(input.Peek(), kSpace)) ++input.at;
  return input;
}

bool AcceptSign(Input& input) {
  if (input.Accept('-')) return true;
  input.Accept('+');
  return false;
}

bool ConvertShort(Input input, double* value) {
  ShortNumber number;
  return number.Read(input.at, input.end) == input.end && number.ToDouble(false, value);
}

constexpr bool IsHexDigit(int c) {
  return IsClass(c, kDigit) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// For a number beyond the range of a double: whether it is above it or below. The place of its
// first digit that is not 0 plus its exponent decides, as it is far from 0 either way.
bool IsAboveRange(Input input, bool hexadecimal) {
  const auto isDigit = [hexadecimal](int c) {
    return hexadecimal ? IsHexDigit(c) : IsClass(c, kDigit);
  };
  long place = 0;  // of the first significant digit; 1 is directly before the point
  bool found = false;
  for (; isDigit(input.Peek()); ++input.at) {
    found = found || *input.at != '0';
    if (found) ++place;
  }
  if (input.Accept('.')) {
    for (; isDigit(input.Peek()); ++input.at) {
      found = found || *input.at != '0';
      if (!found) --place;
    }
  }
  if (hexadecimal) place *= 4;
  long exponent = 0;
  const char mark = hexadecimal ? 'p' : 'e';
  if (input.Peek() >= 0 && Lower(*input.at) == static_cast<unsigned char>(mark)) {
    ++input.at;
    const bool negative = AcceptSign(input);
    for (; IsClass(input.Peek(), kDigit) && exponent < LONG_MAX / 20; ++input.at) {
      exponent = exponent * 10 + (*input.at - '0');
    }
    if (negative) exponent = -exponent;
  }
  return place + exponent > 0;
}

// Returns false if there is no number.
bool ConvertUnsigned(Input input, double* value) {
  if (ConvertShort(input, value)) return true;
  bool hexadecimal = false;
  std::from_chars_result result{};
  // from_chars also accepts a sign or a word ("inf") after the x; strtod does not.
  if (input.end - input.at > 2 && input.at[0] == '0' && Lower(input.at[1]) == 'x' &&
      (IsHexDigit(input.at[2]) || input.at[2] == '.')) {
    result = std::from_chars(input.at + 2, input.end, *value, std::chars_format::hex);
    if (result.ec == std::errc::invalid_argument) return true;  // the 0 before the x
    hexadecimal = true;
  } else {
    // from_chars accepts a second sign; strtod does not.
    if (input.Peek() == '-' || input.Peek() == '+') return false;
    result = std::from_chars(input.at, input.end, *value);
    if (result.ec == std::errc::invalid_argument) return false;
  }
  if (result.ec == std::errc()) return true;
  if (hexadecimal) input.at += 2;
  *value = IsAboveRange(input, hexadecimal) ? HUGE_VAL : 0.0;
  return true;
}

// Without a point or an exponent it would be read as an integer. Requires room for two characters.
char* CompleteReal(const char* begin, char* end) {
  if (std::any_of(begin, const_cast<const char*>(end), [](char c) { return c == '.' || c == 'e'; }))
    return end;
  *end++ = '.';
  *end++ = '0';
  return end;
}

// Common magnitudes are written without an exponent, as people write them: 100000.0, not 1e+05.
template <class Real>
char* PutShortest(char* begin, const char* end, Real value) {
  const Real size = std::fabs(value);
  const bool isCommon = size == 0 || (size >= Real(1e-5) && size < Real(1e16));
  char* const limit = begin + (end - begin) - 2;
  const auto result = isCommon ? std::to_chars(begin, limit, value, std::chars_format::fixed)
                               : std::to_chars(begin, limit, value);
  return CompleteReal(begin, result.ptr);
}

}  // namespace

double TextToDouble(std::string_view text) {
  Input input = SkipLeadingSpace(text);
  const bool negative = AcceptSign(input);
  double value = 0.0;
  if (!ConvertUnsigned(input, &value)) return 0.0;
  return negative ? -value : value;
}

NumberText NumberText::OfInt64(long long value) {
  NumberText text;
  text.EndAt(std::to_chars(text.text_, std::end(text.text_), value).ptr);
  return text;
}

NumberText NumberText::OfSixDigits(double value) {
  NumberText text;
  text.EndAt(
      std::to_chars(text.text_, std::end(text.text_), value, std::chars_format::general, 6).ptr);
  return text;
}

NumberText NumberText::OfDouble(double value) {
  long long whole = 0;
  // 2^63 is whole too, but must not be converted to an integer: it gets the general form.
  if (!WholeNumber(value, &whole)) return OfDoubleDigits(value);
  NumberText text;
  text.EndAt(
      std::to_chars(text.text_, std::end(text.text_), value, std::chars_format::fixed, 1).ptr);
  return text;
}

NumberText NumberText::OfDoubleDigits(double value) {
  NumberText text;
  text.EndAt(
      std::to_chars(text.text_, std::end(text.text_), value, std::chars_format::general, 16).ptr);
  return text;
}

NumberText NumberText::Shortest(double value) {
  NumberText text;
  text.EndAt(PutShortest(text.text_, std::end(text.text_), value));
  return text;
}

NumberText NumberText::Shortest(float value) {
  NumberText text;
  text.EndAt(PutShortest(text.text_, std::end(text.text_), value));
  return text;
}

long TextToLong(std::string_view text) {
  Input input = SkipLeadingSpace(text);
  const bool negative = AcceptSign(input);
  // Summed up as a negative number, as the range reaches one further there.
  long value = 0;
  for (; IsClass(input.Peek(), kDigit); ++input.at) {
    const int digit = *input.at - '0';
    if (value < (LONG_MIN + digit) / 10) return negative ? LONG_MIN : LONG_MAX;
    value = value * 10 - digit;
  }
  if (negative) return value;
  return value == LONG_MIN ? LONG_MAX : -value;
}

}  // namespace zon
