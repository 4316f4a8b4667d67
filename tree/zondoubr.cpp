#include "base/zonassert.h"
#include "tree/zonreference.h"

CzonDoubleRef::CzonDoubleRef(double* variable) : variable_(variable) {
  Init();  // no view is set: the value is in the variable
}
CzonNode* CzonDoubleRef::CreateObj() {
  return new CzonDoubleRef;
}
int CzonDoubleRef::IsDouble() const {
  return variable_ != nullptr;
}
double CzonDoubleRef::GetDouble() const {
  return variable_ != nullptr ? *variable_ : 0.0;
}

void CzonDoubleRef::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonDoubleRef*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zondoubr", "Node");
  CzonDouble::Copy(source);
  variable_ = other->variable_;
}
