#include "base/zonassert.h"
#include "tree/zonreference.h"

CzonIntRef::CzonIntRef(int* variable) : variable_(variable) {
  Init();  // no view is set: the value is in the variable
}
CzonNode* CzonIntRef::CreateObj() {
  return new CzonIntRef;
}
int CzonIntRef::IsInt() const {
  return variable_ != nullptr;
}
int CzonIntRef::GetInt() const {
  return variable_ != nullptr ? *variable_ : 0;
}

void CzonIntRef::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonIntRef*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonintr", "Node");
  CzonInt::Copy(source);
  variable_ = other->variable_;
}
