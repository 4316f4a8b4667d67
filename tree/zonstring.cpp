#include "tree/zonstring.h"

#include "tree/zonnodeaccess.h"
#include "tree/zonquotedtext.h"

CzonString::CzonString(const std::string& text) : CzonParam(text) {}
CzonNode* CzonString::CreateObj() {
  return new CzonString;
}
int CzonString::IsString() const {
  return 1;
}
const std::string& CzonString::GetString() const {
  return GetText();
}

std::ostream& CzonString::Write(std::ostream& out) const {
  zon::PutQuoted(out, zon::NodeAccess::GetTextView(*this));
  return out;
}

int CzonString::GetSyntaxClass() const {
  return kZonString;
}
