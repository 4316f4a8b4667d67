// A remark is split at its semicolons. A part that is no condition is a text for people, so no part
// is an error. Limits are merged to the narrowest range, and the allowed values are sorted: the
// check of a value costs the same however many there are.
// Tested by tests/zonxvalidate_test.cpp.
#include "comparing/zoncondition.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "api/zonx.h"
#include "base/zonchars.h"
#include "base/zonlexeme.h"
#include "base/zonnumber.h"
#include "base/zonnumberscan.h"
#include "reader/zonmistake.h"
#include "tree/zonparam.h"
#include "zonx/zonkind.h"
#include "zonx/zonvalue.h"

namespace zon {
namespace {

std::string_view Trim(std::string_view text) {
  const char* const begin = SkipSpace(text.data(), text.data() + text.size());
  return TextBetween(begin, TrimEnd(begin, text.data() + text.size()));
}

// Removes the word and the space after it from the start of the text.
bool SkipText(std::string_view* text, std::string_view word) {
  const std::string_view start = text->substr(0, word.size());
  const std::string_view rest = text->substr(start.size());
  if (!EqualNoCase(start, word)) return false;
  if (IsClass(word.back(), kWord) && !rest.empty() && IsClass(rest.front(), kWord)) return false;
  *text = Trim(rest);
  return true;
}

// Whether the whole number is below the real one.
bool IsWholeLess(long long whole, double real) {
  if (real >= 9223372036854775808.0) return true;
  if (!(real > -9223372036854775808.0)) return false;
  const auto truncated = static_cast<long long>(real);  // towards 0
  return whole < truncated || (whole == truncated && static_cast<double>(truncated) < real);
}

bool IsRealLess(double real, long long whole) {
  if (real < -9223372036854775808.0) return true;
  if (!(real < 9223372036854775808.0)) return false;
  const auto truncated = static_cast<long long>(real);
  return truncated < whole || (whole == truncated && real < static_cast<double>(truncated));
}

// ---- Parsing ------------------------------------------------------------------------------------

void Narrow(Limit& limit, const Limit& other, bool isLow) {
  if (other.text.empty()) return;
  const bool isTighter =
      isLow ? IsLess(limit.number, other.number) : IsLess(other.number, limit.number);
  const bool isStricter = IsEqual(limit.number, other.number) && !other.isIncluded;
  if (limit.text.empty() || isTighter || isStricter) limit = other;
}

// "0 .. 1"
bool ParseInterval(std::string_view part, Range* range) {
  const std::size_t dots = part.find("..");
  if (dots == std::string_view::npos) return false;
  range->low.text = range->high.text = part;
  return ReadNumber(Trim(part.substr(0, dots)), &range->low.number) &&
         ReadNumber(Trim(part.substr(dots + 2)), &range->high.number);
}

// "< 100"
bool ParseLimit(std::string_view part, Range* range) {
  const bool isLow = part.substr(0, 1) == ">";
  if (!isLow && part.substr(0, 1) != "<") return false;
  Limit& limit = isLow ? range->low : range->high;
  limit.isIncluded = part.substr(1, 1) == "=";
  limit.text = part;
  return ReadNumber(Trim(part.substr(limit.isIncluded ? 2 : 1)), &limit.number);
}

// Reads a text in single quotes, in which a quote is written twice. Returns what follows it.
std::string_view ReadQuoted(std::string_view text, std::string* item) {
  std::size_t at = 1;
  for (; at < text.size(); ++at) {
    if (text[at] == '\'') {
      if (text.substr(at + 1, 1) != "'") break;
      ++at;
    }
    *item += text[at];
  }
  return text.substr(std::min(at + 1, text.size()));
}

// "one of a, b, 'c, d'"
bool ParseChoice(std::string_view part, Choice* choice) {
  choice->text = part;
  if (!SkipText(&part, "one") || !SkipText(&part, "of")) return false;
  // "one of the quays" is a text for people.
  const bool isSentence = part.find_first_of(",'") == std::string_view::npos &&
                          part.find_first_of(" \t\r\n") != std::string_view::npos;
  if (isSentence) return false;
  while (!part.empty()) {
    std::string item;
    const bool isQuoted = part.front() == '\'';
    if (isQuoted) part = ReadQuoted(part, &item);
    const std::size_t end = std::min(part.find(','), part.size());
    item += Trim(part.substr(0, end));
    if (isQuoted || !item.empty()) choice->texts.push_back(item);
    part = Trim(part.substr(std::min(end + 1, part.size())));
  }
  for (const std::string& text : choice->texts) {
    Number number;
    if (!ReadNumber(text, &number)) break;
    choice->numbers.push_back(number);
  }
  if (choice->numbers.size() < choice->texts.size()) choice->numbers.clear();
  std::sort(choice->texts.begin(), choice->texts.end());
  choice->texts.erase(std::unique(choice->texts.begin(), choice->texts.end()), choice->texts.end());
  std::sort(choice->numbers.begin(), choice->numbers.end(), IsLess);
  return !choice->texts.empty();
}

void ParsePart(std::string_view part, Conditions* conditions) {
  Range range;
  Choice choice;
  if (EqualNoCase(part, "required")) {
    conditions->isRequired = true;
  } else if (EqualNoCase(part, "open")) {
    conditions->isOpen = true;
  } else if (EqualNoCase(part, "exists")) {
    conditions->exists = part;
  } else if (ParseLimit(part, &range) || ParseInterval(part, &range)) {
    conditions->range.Narrow(range);
  } else if (ParseChoice(part, &choice)) {
    conditions->hasTwoChoices = !conditions->choice.text.empty();
    conditions->choice = std::move(choice);
  }
}

// ---- Values -------------------------------------------------------------------------------------

bool IsNumber(int kind) {
  return kind == ZONX_INTEGER || kind == ZONX_REAL;
}

bool IsTruth(const std::string& text) {
  return EqualNoCase(text, "true") || EqualNoCase(text, "false");
}

// A class of the host may have no text.
std::string TextOfName(const CzonNode& value) {
  const char* const name = value.GetFilenameString();
  return name != nullptr ? name : "";
}

bool IsAllowed(const Choice& choice, const CzonNode& value) {
  Number number;
  switch (KindOf(value)) {
    case ZONX_INTEGER:
    case ZONX_REAL:
      return ReadNumber(value, &number) && choice.HasNumber(number);
    case ZONX_BOOLEAN: {
      const std::string_view wanted = value.GetBool() != 0 ? "true" : "false";
      return std::any_of(choice.texts.begin(), choice.texts.end(),
                         [&](const std::string& text) { return EqualNoCase(text, wanted); });
    }
    case ZONX_STRING:
      return choice.HasText(value.GetString());
    case ZONX_FILENAME:
      return choice.HasText(TextOfName(value));
    case ZONX_DATETIME:
      return choice.HasText(static_cast<const CzonParam&>(value).GetText());
    default:
      return true;
  }
}

// Also true for a class of the host that has no path.
bool HasFile(const CzonNode& value) {
  const char* const name = value.GetFilenameString();
  std::string path;
  if (name == nullptr || ReadFilename(value, &path) != ZONX_OK) return true;
  struct stat facts {};
  return *name != '\0' && stat(path.c_str(), &facts) == 0;
}

}  // namespace

bool ReadNumber(std::string_view text, Number* number) {
  const char* at = text.data();
  const char* const end = at + text.size();
  if (at != end && (*at == '-' || *at == '+')) ++at;
  if (at == end || SkipNumber(at, end, &number->isWhole) != end) return false;
  if (number->isWhole && ReadWhole(text, &number->whole) == ZONX_OK) return true;
  number->isWhole = false;
  number->real = TextToDouble(text);
  return true;
}

bool ReadNumber(const CzonNode& value, Number* number) {
  if (!IsNumber(KindOf(value))) return false;
  number->isWhole = ReadValue(value, &number->whole) == ZONX_OK;
  if (!number->isWhole && ReadValue(value, &number->real) != ZONX_OK) {
    number->real = value.GetDouble();
  }
  return true;
}

bool IsLess(const Number& a, const Number& b) {
  if (a.isWhole && b.isWhole) return a.whole < b.whole;
  if (a.isWhole) return IsWholeLess(a.whole, b.real);
  return b.isWhole ? IsRealLess(a.real, b.whole) : a.real < b.real;
}

bool IsEqual(const Number& a, const Number& b) {
  if (!a.isWhole && !b.isWhole) return a.real == b.real;
  const bool hasNan = (!a.isWhole && a.real != a.real) || (!b.isWhole && b.real != b.real);
  return !hasNan && !IsLess(a, b) && !IsLess(b, a);
}

bool Range::IsAboveLow(const Number& number) const {
  if (low.text.empty() || IsLess(low.number, number)) return true;
  return low.isIncluded && IsEqual(low.number, number);
}

bool Range::IsBelowHigh(const Number& number) const {
  if (high.text.empty() || IsLess(number, high.number)) return true;
  return high.isIncluded && IsEqual(high.number, number);
}

bool Range::IsEmpty() const {
  if (low.text.empty() || high.text.empty() || IsLess(low.number, high.number)) return false;
  return !low.isIncluded || !high.isIncluded || !IsEqual(low.number, high.number);
}

void Range::Narrow(const Range& other) {
  zon::Narrow(low, other.low, true);
  zon::Narrow(high, other.high, false);
}

bool Choice::HasText(const std::string& wanted) const {
  return std::binary_search(texts.begin(), texts.end(), wanted);
}

bool Choice::HasNumber(const Number& number) const {
  const auto found = std::lower_bound(numbers.begin(), numbers.end(), number, IsLess);
  return found != numbers.end() && IsEqual(*found, number);
}

Conditions ParseConditions(std::string_view remark) {
  Conditions conditions;
  while (!remark.empty()) {
    const std::size_t end = std::min(remark.find(';'), remark.size());
    ParsePart(Trim(remark.substr(0, end)), &conditions);
    remark = remark.substr(std::min(end + 1, remark.size()));
  }
  return conditions;
}

std::string WhyUnfit(const Conditions& conditions, int kind) {
  const auto needs = [](std::string_view condition, const char* what) {
    return Quoted(condition.substr(0, 100)) + " needs " + what;
  };
  const Range& range = conditions.range;
  if (range.IsLimited() && !IsNumber(kind)) {
    return needs(range.low.text.empty() ? range.high.text : range.low.text, "a number");
  }
  if (!conditions.exists.empty() && kind != ZONX_FILENAME) {
    return needs(conditions.exists, "a file name");
  }
  const Choice& choice = conditions.choice;
  if (choice.text.empty()) return {};
  if (IsNumber(kind)) return choice.numbers.empty() ? needs(choice.text, "a text") : "";
  if (kind == ZONX_BOOLEAN) {
    const bool areTruths = std::all_of(choice.texts.begin(), choice.texts.end(), IsTruth);
    return areTruths ? "" : needs(choice.text, "true or false");
  }
  const bool isText = kind == ZONX_STRING || kind == ZONX_FILENAME || kind == ZONX_DATETIME;
  return isText ? "" : needs(choice.text, "a value to compare with");
}

BrokenConditions FindBroken(const Conditions& conditions, const CzonNode& value) {
  BrokenConditions broken;
  const Range& range = conditions.range;
  Number number;
  if (range.IsLimited() && ReadNumber(value, &number)) {
    if (!range.IsAboveLow(number)) broken.range = range.low.text;
    if (!range.IsBelowHigh(number)) broken.range = range.high.text;
  }
  if (!conditions.choice.text.empty() && !IsAllowed(conditions.choice, value)) {
    broken.choice = conditions.choice.text;
  }
  if (!conditions.exists.empty() && !HasFile(value)) broken.exists = conditions.exists;
  return broken;
}

}  // namespace zon
