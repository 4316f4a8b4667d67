// Integers are read from their text, because a node keeps 32 bits and a double of them. A list of
// plain values is read in one pass over its text: doubles in blocks of 64 characters, a short
// number with one rounding while it is scanned, any other by the general conversion.
#include "zonx/zonvalue.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <sstream>

#include "api/zonx.h"
#include "base/zonlexeme.h"
#include "base/zonnumber.h"
#include "base/zonnumberblock.h"
#include "base/zonnumberscan.h"
#include "paths/zonfilename.h"
#include "paths/zonfilepath.h"
#include "tree/zonint.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonquotedtext.h"
#include "tree/zonreference.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

// What a value of another kind is to a function that wants one of its own.
int StatusOfOther(const CzonNode& value) {
  switch (KindOf(value)) {
    case ZONX_EMPTY:
    case ZONX_UNKNOWN:
    case ZONX_PLACEHOLDER:
      return ZONX_MISSING;
    default:
      return ZONX_WRONG_KIND;
  }
}

// An integer has its whole number as text, unless it is a variable of the host.
bool HasWholeText(const CzonNode& value) {
  return IsExactly<CzonInt>(value) || IsExactly<CzonIntDef>(value);
}

double RealOf(const CzonNode& value) {
  if (dynamic_cast<const CzonFloatRef*>(&value) != nullptr) {
    return static_cast<double>(value.GetFloat());
  }
  return value.GetDouble();
}

// A real of a program, which zonWrite would write with 6 or 16 digits, with all digits that it has.
// False for any other value.
bool ReadBuiltReal(const CzonNode& value, std::string* out) {
  const bool isSingle = IsExactly<CzonFloat>(value) || IsExactly<CzonFloatDef>(value) ||
                        IsExactly<CzonFloatRef>(value);
  const bool isDouble = IsExactly<CzonDouble>(value) || IsExactly<CzonDoubleDef>(value) ||
                        IsExactly<CzonDoubleRef>(value);
  if (!isSingle && !isDouble) return false;
  const double real = RealOf(value);
  if (!std::isfinite(real)) return false;
  *out = isSingle ? NumberText::Shortest(static_cast<float>(real)).View()
                  : NumberText::Shortest(real).View();
  return true;
}

int Narrow(long long wide, int* out) {
  if (wide < INT_MIN || wide > INT_MAX) return ZONX_OUT_OF_RANGE;
  *out = static_cast<int>(wide);
  return ZONX_OK;
}

int Finite(double value, double* out) {
  if (!std::isfinite(value)) return ZONX_OUT_OF_RANGE;
  *out = value;
  return ZONX_OK;
}

// One value of a plain list. The text is that of a number with its sign.
struct PlainNumber {
  const char* end;  // null if the value is no number
  bool isWhole;
};

PlainNumber SkipPlainNumber(const char* at, const char* end) {
  PlainNumber number{nullptr, false};
  const bool hasSign = *at == '-' || *at == '+';
  if (IsDigit(*at) || *at == '.' || hasSign) {
    number.end = SkipNumber(at + (hasSign ? 1 : 0), end, &number.isWhole);
  }
  return number;
}

int ReadPlainValue(const char* at, const char* end, const char** next, long long* out) {
  const PlainNumber number = SkipPlainNumber(at, end);
  if (number.end == nullptr || !number.isWhole) return ZONX_WRONG_KIND;
  *next = number.end;
  return ReadWhole(TextBetween(at, number.end), out);
}

int ReadPlainValue(const char* at, const char* end, const char** next, int* out) {
  long long wide = 0;
  const int status = ReadPlainValue(at, end, next, &wide);
  return status == ZONX_OK ? Narrow(wide, out) : status;
}

int ReadPlainValue(const char* at, const char* end, const char** next, double* out) {
  const bool isNegative = *at == '-';
  ShortNumber number;
  const char* endOfNumber = number.Read(at + (isNegative ? 1 : 0), end);
  if (endOfNumber != nullptr && number.ToDouble(isNegative, out)) {
    *next = endOfNumber;
    return ZONX_OK;
  }
  endOfNumber = SkipPlainNumber(at, end).end;
  if (endOfNumber == nullptr) return ZONX_WRONG_KIND;
  *next = endOfNumber;
  return Finite(TextToDouble(TextBetween(at, endOfNumber)), out);
}

// Reads the first values of the block at `at` and adds their number to *count. Returns the end of
// the last one; null if none could be read.
const char* ReadBlock(const char* at, double* out, std::size_t room, std::size_t* count) {
  const char* end = nullptr;
  std::size_t number = *count;
  for (NumberBlock block(at); block.HasValue(); ++number) {
    double value = 0.0;
    const char* const next = block.Read(&value);
    if (next == nullptr) break;
    if (number < room) out[number] = value;
    end = next;
  }
  *count = number;
  return end;
}
// Lists of integers are not read in blocks.
template <class T>
const char* ReadBlock(const char*, T*, std::size_t, std::size_t*) {
  return nullptr;
}

// So many values are read one by one after a block of which none could be.
constexpr std::size_t kBetweenBlocks = 16;

// The values are separated by commas; nothing but white space is between a value and a comma.
template <class T>
int ReadPlainList(std::string_view list, T* out, std::size_t room, std::size_t* count) {
  const char* at = list.data();
  const char* const end = at + list.size();
  std::size_t nextBlock = 0;
  for (std::size_t number = 0;;) {
    const char* endOfValue = nullptr;
    if (number >= nextBlock && end - at >= CharBlock::kSize) {
      endOfValue = ReadBlock(at, out, room, &number);
      if (endOfValue == nullptr) nextBlock = number + kBetweenBlocks;
    }
    if (endOfValue == nullptr) {
      T value{};
      const int status = ReadPlainValue(SkipSpace(at, end), end, &endOfValue, &value);
      if (number < room && status == ZONX_OK) out[number] = value;
      ++number;
      *count = number;
      if (status != ZONX_OK) return status;
    }
    at = SkipSpace(endOfValue, end);
    if (at == end) return ZONX_OK;
    ++at;
  }
}

}  // namespace

int ReadWhole(std::string_view text, long long* out) {
  const bool isNegative = !text.empty() && text.front() == '-';
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  const std::uint64_t limit = static_cast<std::uint64_t>(LLONG_MAX) + (isNegative ? 1 : 0);
  std::uint64_t value = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return ZONX_WRONG_KIND;
    const auto digit = static_cast<unsigned>(c - '0');
    if (value > (limit - digit) / 10) return ZONX_OUT_OF_RANGE;
    value = value * 10 + digit;
  }
  *out = static_cast<long long>(isNegative ? 0 - value : value);
  return ZONX_OK;
}

int ReadValue(const CzonNode& value, long long* out) {
  if (KindOf(value) != ZONX_INTEGER) return StatusOfOther(value);
  if (HasWholeText(value)) {
    return ReadWhole(NodeAccess::GetTextView(static_cast<const CzonInt&>(value)), out);
  }
  *out = value.GetInt();
  return ZONX_OK;
}

int ReadValue(const CzonNode& value, int* out) {
  long long wide = 0;
  const int status = ReadValue(value, &wide);
  return status == ZONX_OK ? Narrow(wide, out) : status;
}

int ReadValue(const CzonNode& value, double* out) {
  // Most reals are of this class, so their operation need not be looked up.
  if (IsExactly<CzonReal>(value))
    return Finite(static_cast<const CzonReal&>(value).CzonReal::GetDouble(), out);
  const int kind = KindOf(value);
  if (kind == ZONX_REAL) return Finite(RealOf(value), out);
  if (kind != ZONX_INTEGER) return StatusOfOther(value);
  return Finite(HasWholeText(value) ? value.GetDouble() : value.GetInt(), out);
}

int ReadValue(const CzonNode& value, bool* out) {
  if (KindOf(value) != ZONX_BOOLEAN) return StatusOfOther(value);
  *out = value.GetBool() != 0;
  return ZONX_OK;
}

int ReadValue(const CzonNode& value, const char** out) {
  if (KindOf(value) != ZONX_STRING) return StatusOfOther(value);
  // GetString makes a std::string. A class of the host can override it.
  *out = IsExactly<CzonString>(value) ? NodeAccess::GetChars(static_cast<const CzonString&>(value))
                                      : value.GetString().c_str();
  return ZONX_OK;
}

int ReadFilename(const CzonNode& value, std::string* out) {
  if (KindOf(value) != ZONX_FILENAME) return StatusOfOther(value);
  const auto* name = dynamic_cast<const CzonFilename*>(&value);
  *out = name != nullptr ? PathOf(*name) : value.GetFilename();
  return ZONX_OK;
}

int ReadText(const CzonNode& value, std::string* out) {
  const int kind = KindOf(value);
  const auto* param = dynamic_cast<const CzonParam*>(&value);
  if (param == nullptr || StatusOfOther(value) == ZONX_MISSING) return StatusOfOther(value);
  const std::string_view text = NodeAccess::GetTextView(*param);
  switch (kind) {
    case ZONX_FILENAME:
      *out = "|" + std::string(text) + "|";
      return ZONX_OK;
    case ZONX_SUBSTITUTION:
      *out = "%" + std::string(text);
      return ZONX_OK;
    case ZONX_INTEGER:
    case ZONX_REAL:
    case ZONX_BOOLEAN:
      if (HasWholeText(value) || IsExactly<CzonReal>(value) || IsExactly<CzonBool>(value)) {
        *out = std::string(text);
        return ZONX_OK;
      }
      if (ReadBuiltReal(value, out)) return ZONX_OK;
      break;
    default:
      break;
  }
  std::ostringstream written;
  value.Write(written);
  *out = written.str();
  return ZONX_OK;
}

int ReadPlainValues(std::string_view list, long long* out, std::size_t room, std::size_t* count) {
  return ReadPlainList(list, out, room, count);
}
int ReadPlainValues(std::string_view list, int* out, std::size_t room, std::size_t* count) {
  return ReadPlainList(list, out, room, count);
}
int ReadPlainValues(std::string_view list, double* out, std::size_t room, std::size_t* count) {
  return ReadPlainList(list, out, room, count);
}

}  // namespace zon
