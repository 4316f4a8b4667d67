#include "base/zonassert.h"
#include "tree/zonreference.h"

CzonBoolRef::CzonBoolRef(int* variable) : variable_(variable) {}
CzonNode* CzonBoolRef::CreateObj() {
  return new CzonBoolRef;
}
int CzonBoolRef::GetBool() const {
  return variable_ != nullptr ? *variable_ : 0;
}

void CzonBoolRef::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonBoolRef*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonboolr", "Node");
  CzonBool::Copy(source);
  variable_ = other->variable_;
}
