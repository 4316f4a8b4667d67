// Tested by tests/values_test.cpp, which holds the conversions against a table of hard cases.
#include "base/zonnumber.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <iterator>
#include <system_error>

#include "base/zonchars.h"
#include "base/zonnumberscan.h"

namespace zon {
namespace {

struct Cursor {
  const char* at;
  const char* end;

  int Peek() const { return at < end ? static_cast<unsigned char>(*at) : -1; }
  bool Accept(char c) {
    if (Peek() != c) return false;
    ++at;
    return true;
  }
};

Cursor SkipSpace(std::string_view text) {
  Cursor cursor{text.data(), text.data() + text.size()};
  while (IsClass(cursor.Peek(), kSpace)) ++cursor.at;
  return cursor;
}

bool AcceptSign(Cursor& cursor) {
  if (cursor.Accept('-')) return true;
  cursor.Accept('+');
  return false;
}

bool ConvertShort(Cursor cursor, double* value) {
  ShortNumber number;
  return number.Read(cursor.at, cursor.end) == cursor.end && number.ToDouble(false, value);
}

constexpr bool IsHexDigit(int c) {
  return IsClass(c, kDigit) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Where a number lies beyond the range of a double, whether that is above it. The place of its
// first digit that is not 0 and its exponent decide; so far out neither can mislead.
bool IsAboveRange(Cursor cursor, bool hexadecimal) {
  const auto isDigit = [hexadecimal](int c) {
    return hexadecimal ? IsHexDigit(c) : IsClass(c, kDigit);
  };
  long place = 0;  // of the first significant digit, 1 standing directly before the point
  bool found = false;
  for (; isDigit(cursor.Peek()); ++cursor.at) {
    found = found || *cursor.at != '0';
    if (found) ++place;
  }
  if (cursor.Accept('.')) {
    for (; isDigit(cursor.Peek()); ++cursor.at) {
      found = found || *cursor.at != '0';
      if (!found) --place;
    }
  }
  if (hexadecimal) place *= 4;
  long exponent = 0;
  const char mark = hexadecimal ? 'p' : 'e';
  if (cursor.Peek() >= 0 && Lower(*cursor.at) == static_cast<unsigned char>(mark)) {
    ++cursor.at;
    const bool negative = AcceptSign(cursor);
    for (; IsClass(cursor.Peek(), kDigit) && exponent < LONG_MAX / 20; ++cursor.at) {
      exponent = exponent * 10 + (*cursor.at - '0');
    }
    if (negative) exponent = -exponent;
  }
  return place + exponent > 0;
}

// False when no number stands there.
bool ConvertUnsigned(Cursor cursor, double* value) {
  if (ConvertShort(cursor, value)) return true;
  bool hexadecimal = false;
  std::from_chars_result result{};
  // from_chars also takes a sign or a word ("inf") behind the x; strtod does not.
  if (cursor.end - cursor.at > 2 && cursor.at[0] == '0' && Lower(cursor.at[1]) == 'x' &&
      (IsHexDigit(cursor.at[2]) || cursor.at[2] == '.')) {
    result = std::from_chars(cursor.at + 2, cursor.end, *value, std::chars_format::hex);
    if (result.ec == std::errc::invalid_argument) return true;  // the 0 before the x
    hexadecimal = true;
  } else {
    // from_chars takes a second sign; strtod does not.
    if (cursor.Peek() == '-' || cursor.Peek() == '+') return false;
    result = std::from_chars(cursor.at, cursor.end, *value);
    if (result.ec == std::errc::invalid_argument) return false;
  }
  if (result.ec == std::errc()) return true;
  if (hexadecimal) cursor.at += 2;
  *value = IsAboveRange(cursor, hexadecimal) ? HUGE_VAL : 0.0;
  return true;
}

}  // namespace

double TextToDouble(std::string_view text) {
  Cursor cursor = SkipSpace(text);
  const bool negative = AcceptSign(cursor);
  double value = 0.0;
  if (!ConvertUnsigned(cursor, &value)) return 0.0;
  return negative ? -value : value;
}

NumberText NumberText::OfInt(int value) {
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
  // 2^63 is whole too, but a conversion of it is not defined: it takes the general form.
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

long TextToLong(std::string_view text) {
  Cursor cursor = SkipSpace(text);
  const bool negative = AcceptSign(cursor);
  // Gathered on the negative side, which reaches one further.
  long value = 0;
  for (; IsClass(cursor.Peek(), kDigit); ++cursor.at) {
    const int digit = *cursor.at - '0';
    if (value < (LONG_MIN + digit) / 10) return negative ? LONG_MIN : LONG_MAX;
    value = value * 10 - digit;
  }
  if (negative) return value;
  return value == LONG_MIN ? LONG_MAX : -value;
}

}  // namespace zon
