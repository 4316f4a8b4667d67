// Conditions on values, as the remarks of a template state them: "required; >= 0; unit m".
#ifndef ZON_COMPARING_ZONCONDITION_H
#define ZON_COMPARING_ZONCONDITION_H

#include <string>
#include <string_view>
#include <vector>

class CzonNode;

namespace zon {

// A number for exact comparisons: a double does not hold every whole number of 64 bits.
struct Number {
  bool isWhole = true;
  long long whole = 0;
  double real = 0;  // if it is not whole, or has more than 64 bits
};

// The text is a number and nothing else. Stores it.
bool ReadNumber(std::string_view text, Number* number);

// Stores the number of a value; false if it is none.
bool ReadNumber(const CzonNode& value, Number* number);

// Both are false if one of the numbers is NaN.
bool IsLess(const Number& a, const Number& b);
bool IsEqual(const Number& a, const Number& b);

// One end of a range.
struct Limit {
  std::string_view text;  // the condition; empty: no limit
  Number number;
  bool isIncluded = true;
};

struct Range {
  Limit low;
  Limit high;

  bool IsLimited() const { return !low.text.empty() || !high.text.empty(); }
  bool IsAboveLow(const Number& number) const;
  bool IsBelowHigh(const Number& number) const;
  bool Contains(const Number& number) const { return IsAboveLow(number) && IsBelowHigh(number); }
  bool IsEmpty() const;
  void Narrow(const Range& other);
};

// What "one of" allows. Sorted, for long lists.
struct Choice {
  std::string_view text;  // the condition; empty: anything
  std::vector<std::string> texts;
  std::vector<Number> numbers;  // as many as texts, if each is a number

  bool HasText(const std::string& wanted) const;
  bool HasNumber(const Number& number) const;
};

// The conditions of one remark. Texts are parts of it.
struct Conditions {
  bool isRequired = false;
  bool isOpen = false;
  std::string_view exists;  // the condition; empty: none
  Range range;
  Choice choice;
  bool hasTwoChoices = false;  // which cannot be meant

  bool IsAny() const { return isRequired || isOpen || IsOfValues(); }
  bool IsOfValues() const { return range.IsLimited() || !choice.text.empty() || !exists.empty(); }
};

// Other texts between the semicolons of the remark are skipped.
Conditions ParseConditions(std::string_view remark);

// Why values of a kind, a zonxKind, cannot have one of the conditions, such as "`>= 0` needs a
// number"; empty if they can.
std::string WhyUnfit(const Conditions& conditions, int kind);

// The conditions that a value breaks. Those that values of its kind cannot have are not broken.
struct BrokenConditions {
  std::string_view range;
  std::string_view choice;
  std::string_view exists;
};
BrokenConditions FindBroken(const Conditions& conditions, const CzonNode& value);

}  // namespace zon

#endif
