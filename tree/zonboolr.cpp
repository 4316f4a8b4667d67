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
  const auto* Node = dynamic_cast<const CzonBoolRef*>(source);
  ZON_ASSERT_TEXT(Node != nullptr, "zonboolr", "Node");
  CzonBool::Copy(source);
  variable_ = Node->variable_;
}
