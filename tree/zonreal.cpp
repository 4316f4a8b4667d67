// Reals. CzonReal inherits Write and so keeps the digits of the file; CzonFloat and CzonDouble
// write their value. Tested by tests/values_test.cpp and tests/write_test.cpp.
#include "tree/zonreal.h"

#include "base/zonassert.h"
#include "base/zonnumber.h"
#include "base/zonput.h"
#include "tree/zonnodeaccess.h"

namespace {

// A new object with the integer view that its value has.
template <class T>
CzonNode* NewReal() {
  auto* real = new T;
  real->FloatToInt();
  return real;
}

}  // namespace

CzonReal::CzonReal(const std::string& text) : CzonNumeric(text) {}
CzonNode* CzonReal::CreateObj() {
  return NewReal<CzonReal>();
}
int CzonReal::IsInt() const {
  return Has(kHasInt);
}
int CzonReal::GetInt() const {
  return integer_;
}
int CzonReal::GetSyntaxClass() const {
  return kZonReal;
}

void CzonReal::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonReal*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonreal", "Node");
  CzonNumeric::Copy(source);
  Set(kHasInt, other->Has(kHasInt));
  integer_ = other->integer_;
}

long long CzonReal::FloatToInt() {
  long long whole = 0;
  const bool isWhole = IsDouble() && zon::WholeNumber(GetDouble(), &whole);
  Set(kHasInt, isWhole);
  integer_ = zon::LowBits(whole);
  return whole;
}

void CzonReal::ReadText() {
  CStoReals();
  FloatToInt();
}

void CzonReal::SetReal(double value, std::string_view text, zon::Arena* arena) {
  zon::NodeAccess::SetText(*this, text, arena);
  zon::NodeAccess::SetViews(*this, value);
}

CzonFloat::CzonFloat(const std::string& text) : CzonReal(text) {}
CzonNode* CzonFloat::CreateObj() {
  return NewReal<CzonFloat>();
}

std::ostream& CzonFloat::Write(std::ostream& out) const {
  zon::Put(out, zon::NumberText::OfFloat(GetFloat()).View());
  return out;
}

void CzonFloat::SetValue(float value, zon::Arena* arena) {
  const auto wide = static_cast<double>(value);
  SetReal(wide, zon::NumberText::OfFloat(FloatView(wide)).View(), arena);
}

CzonDouble::CzonDouble(const std::string& text) : CzonReal(text) {}
CzonNode* CzonDouble::CreateObj() {
  return NewReal<CzonDouble>();
}

std::ostream& CzonDouble::Write(std::ostream& out) const {
  const double value = GetDouble();
  zon::Put(out,
           (IsDouble() ? zon::NumberText::OfDouble(value) : zon::NumberText::OfDoubleDigits(value))
               .View());
  return out;
}

void CzonDouble::SetValue(double value, zon::Arena* arena) {
  SetReal(value, zon::NumberText::OfDouble(value).View(), arena);
}

CzonFloatDef::CzonFloatDef(const std::string& text) : CzonFloat(text) {}
CzonNode* CzonFloatDef::CreateObj() {
  return NewReal<CzonFloatDef>();
}
int CzonFloatDef::IsFloat() const {
  return 1;
}

CzonDoubleDef::CzonDoubleDef(const std::string& text) : CzonDouble(text) {}
CzonNode* CzonDoubleDef::CreateObj() {
  return NewReal<CzonDoubleDef>();
}
int CzonDoubleDef::IsDouble() const {
  return 1;
}
