// File names as values. The text is the name as given; the path is resolved by each query, because
// the name of the parameter file and the working directory may change. Tested by
// tests/paths_test.cpp.
#include "paths/zonfilename.h"

#include <algorithm>

#include "base/zonemptytext.h"
#include "base/zonput.h"
#include "paths/zonfilepath.h"
#include "tree/zonnodeaccess.h"

CzonFilename::CzonFilename(const std::string& text) : CzonParam(text) {}

CzonFilename::~CzonFilename() {
  zon::Release(resolved_);
}

CzonNode* CzonFilename::CreateObj() {
  return new CzonFilename;
}

int CzonFilename::IsFilename() const {
  return 1;
}

char* CzonFilename::GetFilename() const {
  std::string path = zon::PathOf(*this);
  // Padded with zeros: the host can append up to kPathRoom. Each call writes the whole room again.
  path.resize(std::max(path.size(), zon::kPathRoom));
  zon::Assign(resolved_, path, GetArena());
  if (zon::OwnsString(resolved_) && Has(kInArena)) const_cast<CzonFilename*>(this)->MarkDeep();
  // The buffer belongs to this node and is not shared, so the host may write into it.
  return const_cast<char*>(zon::View(resolved_).data());
}

std::string zon::PathOf(const CzonFilename& name) {
  return zon::ResolveFilename(zon::NodeAccess::GetTextView(name), name.GetZonFilename());
}

const char* CzonFilename::GetFilenameString() const {
  return zon::NodeAccess::GetChars(*this);
}

std::ostream& CzonFilename::Write(std::ostream& out) const {
  zon::Put(out, '|');
  zon::Put(out, zon::WrittenFilename(zon::NodeAccess::GetTextView(*this), GetZonFilename()));
  zon::Put(out, '|');
  return out;
}

void CzonFilename::SetFilename(std::string_view text) {
  zon::NodeAccess::SetText(*this, text, GetArena());
}

int CzonFilename::GetSyntaxClass() const {
  return kZonFilename;
}
