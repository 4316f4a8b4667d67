// Tested by tests/paths_test.cpp.
#include "paths/zonfilename.h"

#include <algorithm>

#include "base/zonemptytext.h"
#include "base/zonput.h"
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
  std::string path = GetPath();
  // Padded with zeros: the host can append up to kPathRoom. Each call writes the whole room again.
  path.resize(std::max(path.size(), zon::kPathRoom));
  resolved_.Assign(path, GetArena());
  if (resolved_.IsOwner() && Has(kInArena)) const_cast<CzonFilename*>(this)->MarkDeep();
  // The buffer belongs to this node and is not shared, so the host may write into it.
  return const_cast<char*>(resolved_.View().data());
}

std::string CzonFilename::GetPath() const {
  return zon::ResolveFilename(GetTextView(), GetZonFilename());
}

const char* CzonFilename::GetFilenameString() const {
  return GetChars();
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
