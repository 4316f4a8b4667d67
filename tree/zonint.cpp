// Integers. For a number beyond 32 bits the integer view has its low bits and the double view its
// value. Tested by tests/values_test.cpp.
#include "tree/zonint.h"

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "base/zonnumber.h"
#include "base/zonput.h"
#include "tree/zonnodeaccess.h"

CzonInt::CzonInt(const std::string& text) : CzonNumeric(text) {}

CzonNode* CzonInt::CreateObj() {
  return new CzonInt;
}

int CzonInt::IsInt() const {
  return Has(kHasInt);
}

int CzonInt::GetInt() const {
  return integer_;
}

std::ostream& CzonInt::Write(std::ostream& out) const {
  zon::Put(out, zon::NumberText::OfInt(GetInt()).View());
  return out;
}

int CzonInt::GetSyntaxClass() const {
  return kZonInt;
}

void CzonInt::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonInt*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonint", "Node");
  CzonNumeric::Copy(source);
  Set(kHasInt, other->Has(kHasInt));
  integer_ = other->integer_;
}

long CzonInt::CStoInt() {
  const long value = zon::TextToLong(zon::NodeAccess::GetTextView(*this));
  integer_ = zon::LowBits(value);
  Set(kHasInt);
  return value;
}

void CzonInt::SetValue(int value, zon::Arena* arena) {
  zon::NodeAccess::SetText(*this, zon::NumberText::OfInt(value).View(), arena);
  Double(value);
  integer_ = value;
  Set(kHasInt);
}

void CzonInt::ReadText() {
  CStoReals();
  CStoInt();
}

CzonIntDef::CzonIntDef() {
  Init();
  Set(kHasInt);
}

CzonIntDef::CzonIntDef(const std::string& text) : CzonInt(text) {}
CzonNode* CzonIntDef::CreateObj() {
  return new CzonIntDef;
}
int CzonIntDef::isInt() const {
  return 1;
}
