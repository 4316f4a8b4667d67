// A value keeps its node if the node can hold the new one: mostly if both are of one class. A node
// of a class of the host, or one that refers to a variable of the host, is replaced, because what a
// change of it does is not known.
#include "zonx/zonnewvalue.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <typeinfo>
#include <utility>

#include "api/zonx.h"
#include "base/zonnumber.h"
#include "editing/zonedit.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreal.h"
#include "tree/zonstring.h"
#include "zonx/zonkind.h"
#include "zonx/zonvalue.h"

namespace zon {
namespace {

// Makes a value with a text.
template <class T>
NewValue Make(std::string_view text) {
  auto value = std::make_unique<T>();
  NodeAccess::SetText(*value, text, nullptr);
  return value;
}

// The same for a class whose objects also keep what the text says.
template <class T>
NewValue MakeConverted(std::string_view text) {
  NewValue value = Make<T>(text);
  NodeAccess::ReadText(static_cast<T&>(*value));
  return value;
}

std::string_view TextOf(const CzonNode& value) {
  return NodeAccess::GetTextView(static_cast<const CzonParam&>(value));
}

// A float is written with six digits, and keeps its node only if these are the whole number.
bool FitsFloat(double value) {
  const float narrow = NodeAccess::GetFloatView<CzonNumeric>(value);
  return AreSameReals(TextToDouble(NumberText::OfFloat(narrow).View()), value);
}

// Whether the text of a real gives its number. It does not if that is infinite or none.
bool HasNumberOfText(const CzonParam& real) {
  return AreSameReals(TextToDouble(TextOf(real)), real.GetDouble());
}

bool CanHold(const CzonNode& old, const CzonParam& by) {
  if (IsExactly<CzonReal>(by) && !HasNumberOfText(by)) return false;
  if (typeid(old) == typeid(by)) return true;
  if (IsExactly<CzonInt>(by)) return IsExactly<CzonIntDef>(old);
  if (!IsExactly<CzonReal>(by)) return false;
  if (IsExactly<CzonFloat>(old) || IsExactly<CzonFloatDef>(old)) return FitsFloat(by.GetDouble());
  return IsExactly<CzonDouble>(old) || IsExactly<CzonDoubleDef>(old);
}

bool IsEmpty(const CzonNode& value) {
  return IsExactly<CzonUndefinedPar>(value) || IsExactly<CzonDefaultPar>(value);
}

// The views count too: a host can have set them apart from the text. A number too large for its
// type is compared by its text.
bool AreEqualIntegers(const CzonNode& a, const CzonNode& b) {
  long long left = 0;
  long long right = 0;
  const bool isEqual = ReadWhole(TextOf(a), &left) == ZONX_OK &&
                       ReadWhole(TextOf(b), &right) == ZONX_OK && left == right;
  return (isEqual || TextOf(a) == TextOf(b)) && a.IsInt() != 0 && a.GetInt() == b.GetInt();
}

bool AreEqualReals(const CzonNode& a, const CzonNode& b) {
  return AreSameReals(a.GetDouble(), b.GetDouble()) &&
         (std::isfinite(a.GetDouble()) || TextOf(a) == TextOf(b));
}

bool AreEqualNames(std::string_view a, std::string_view b) {
  const auto isSame = [](char left, char right) {
    return left == right || (left == '/' && right == '\\') || (left == '\\' && right == '/');
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), isSame);
}

// Whether a value that can hold the other one has the same data.
bool AreEqual(const CzonNode& old, const CzonParam& by) {
  const std::string_view text = TextOf(old);
  const bool hasText = !text.empty();  // a number of a host can be without
  if (IsExactly<CzonInt>(by)) return hasText && AreEqualIntegers(old, by);
  if (IsExactly<CzonReal>(by)) return hasText && AreEqualReals(old, by);
  if (IsExactly<CzonBool>(by)) return hasText && old.GetBool() == by.GetBool();
  return text == TextOf(by) || (IsExactly<CzonFilename>(by) && AreEqualNames(text, TextOf(by)));
}

}  // namespace

NewValue NewInteger(long long value) {
  return MakeConverted<CzonInt>(NumberText::OfInt64(value).View());
}

NewValue NewReal(double value) {
  return MakeConverted<CzonReal>(NumberText::Shortest(value).View());
}

NewValue NewReal(float value) {
  return MakeConverted<CzonReal>(NumberText::Shortest(value).View());
}

NewValue NewBoolean(bool value) {
  return MakeConverted<CzonBool>(value ? "true" : "false");
}

NewValue NewString(std::string_view text) {
  return Make<CzonString>(text);
}

NewValue NewFilename(std::string_view name) {
  return Make<CzonFilename>(name);
}

NewValue NewEmpty(bool isInDefinition) {
  if (isInDefinition) return std::make_unique<CzonDefaultPar>();
  return std::make_unique<CzonUndefinedPar>();
}

NewValue CopyOf(CzonNode& value) {
  NewValue copy(static_cast<CzonParam*>(value.CreateObj()));
  copy->Copy(&value);
  return copy;
}

ValueChange::ValueChange(CzonNode& old, NewValue by)
    : old_(old), by_(std::move(by)), fit_(FitOf(old, *by_)) {
  if (fit_ == Fit::kSameKind) {
    NodeAccess::PrepareText(static_cast<CzonParam&>(old_));
    NodeAccess::PrepareText(*by_);
  } else if (fit_ == Fit::kOtherKind && IsEmpty(*by_) && !old_.GetRemark().empty()) {
    by_ = std::make_unique<CzonUnknown>();  // as an empty place with a remark is loaded
  }
}

ValueChange::Fit ValueChange::FitOf(const CzonNode& old, const CzonParam& by) {
  if (IsEmpty(by) && IsExactly<CzonUnknown>(old)) return Fit::kEqual;
  if (!CanHold(old, by)) return Fit::kOtherKind;
  return AreEqual(old, by) ? Fit::kEqual : Fit::kSameKind;
}

void ValueChange::Apply(CzonData* handle) {
  const bool hasRemark = !by_->GetRemark().empty();
  const bool isReplaced = fit_ == Fit::kOtherKind;
  if (fit_ == Fit::kSameKind) KeepNode();
  if (hasRemark != isReplaced) NodeAccess::SwapRemarks(old_, *by_);
  if (!isReplaced) return;
  if (handle != nullptr) {
    ReplaceParam(old_, by_.release(), *handle);
  } else {
    ReplaceParam(old_, by_.release());
  }
}

void ValueChange::KeepNode() {
  NodeAccess::SwapTexts(static_cast<CzonParam&>(old_), *by_);
  if (IsExactly<CzonInt>(*by_)) {
    NodeAccess::ReadText(static_cast<CzonInt&>(old_));
  } else if (IsExactly<CzonReal>(*by_)) {
    NodeAccess::ReadText(static_cast<CzonReal&>(old_));
  } else if (IsExactly<CzonBool>(*by_)) {
    NodeAccess::ReadText(static_cast<CzonBool&>(old_));
  } else if (IsExactly<CzonClob>(*by_)) {
    NodeAccess::SwapItems(static_cast<CzonClob&>(old_), static_cast<CzonClob&>(*by_));
  }
}

}  // namespace zon
