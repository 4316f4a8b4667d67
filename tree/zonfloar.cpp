#include "base/zonassert.h"
#include "tree/zonreference.h"

CzonFloatRef::CzonFloatRef(float* variable) : variable_(variable) {
  Init();  // no view is set: the value is in the variable
}
CzonNode* CzonFloatRef::CreateObj() {
  return new CzonFloatRef;
}
int CzonFloatRef::IsFloat() const {
  return variable_ != nullptr;
}
float CzonFloatRef::GetFloat() const {
  return variable_ != nullptr ? *variable_ : 0.0F;
}

void CzonFloatRef::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonFloatRef*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonfloar", "Node");
  CzonFloat::Copy(source);
  variable_ = other->variable_;
}
