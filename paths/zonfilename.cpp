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
  // Zeros as room for what the host appends. Every call writes all of the room anew.
  path.resize(std::max(path.size(), zon::kPathRoom));
  resolved_.Assign(path, GetArena());
  if (resolved_.IsOwner() && Has(kInArena)) const_cast<CzonFilename*>(this)->MarkDeep();
  // The characters lie in memory of ours, so they may be handed out as they are.
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
