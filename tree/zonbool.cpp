#include "tree/zonbool.h"

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "base/zonput.h"
#include "tree/zonnodeaccess.h"

CzonBool::CzonBool(const std::string& text) : CzonParam(text) {
  ReadText();
}
CzonNode* CzonBool::CreateObj() {
  return new CzonBool;
}
int CzonBool::IsBool() const {
  return 1;
}
int CzonBool::GetBool() const {
  return value_;
}

std::ostream& CzonBool::Write(std::ostream& out) const {
  zon::Put(out, GetBool() != 0 ? "true" : "false");
  return out;
}

int CzonBool::GetSyntaxClass() const {
  return kZonBool;
}

void CzonBool::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonBool*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonbool", "Node");
  CzonParam::Copy(source);
  value_ = other->value_;
}

void CzonBool::SetValue(bool value, zon::Arena* arena) {
  zon::NodeAccess::SetText(*this, value ? "true" : "false", arena);
  value_ = value ? 1 : 0;
}

void CzonBool::ReadText() {
  value_ = zon::EqualNoCase(zon::NodeAccess::GetTextView(*this), "true") ? 1 : 0;
}
