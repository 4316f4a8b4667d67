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
  const auto* Node = dynamic_cast<const CzonDoubleRef*>(source);
  ZON_ASSERT_TEXT(Node != nullptr, "zondoubr", "Node");
  CzonDouble::Copy(source);
  variable_ = Node->variable_;
}
