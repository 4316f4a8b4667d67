#include "paths/zonfilen.h"

#include "base/zonempst.h"
#include "base/zonout.h"
#include "paths/zonpath.h"

CzonFilename::CzonFilename(const std::string& text) : CzonParam(text) {}

CzonFilename::~CzonFilename() {
  resolved_.Release();
}

CzonNode* CzonFilename::CreateObj() {
  return new CzonFilename;
}

int CzonFilename::IsFilename() const {
  return 1;
}

char* CzonFilename::GetFilename() const {
  const std::string path = zon::ResolveFilename(GetTextView(), GetZonFilename());
  if (path.empty()) return zon::EmpSt();
  resolved_.Assign(path, GetStore());
  const std::string& text = resolved_.AsString(GetStore());
  if (resolved_.IsOwner() && Has(kInStore)) const_cast<CzonFilename*>(this)->MarkDeep();
  // The characters lie in memory of ours, so they may be handed out as they are.
  return const_cast<char*>(text.c_str());
}

const char* CzonFilename::GetFilenameString() const {
  return text_.Terminated();
}

std::ostream& CzonFilename::Write(std::ostream& out) const {
  zon::Put(out, '|');
  zon::Put(out, zon::WrittenFilename(GetTextView(), GetZonFilename()));
  zon::Put(out, '|');
  return out;
}

int CzonFilename::GetSyntaxClass() const {
  return kZonFilename;
}
