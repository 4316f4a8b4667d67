// Writing a tree. The text is composed completely, then appended in one write (base/zonfile.h).
//
// The order of the effects is part of the interface: the section with the settings is added first,
// then the file is opened, then the name of the parameter file is set. If out of memory, the first
// and the last are undone. Tested by tests/write_test.cpp.
#include "api/zonfilewriter.h"

#include <string>

#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "base/zonfile.h"
#include "base/zontextstream.h"
#include "paths/zonfilename.h"
#include "paths/zonresultfolder.h"
#include "tree/zonbool.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

template <class Value, class Fill>
void AddSetting(CzonSection& section, const char* name, Arena& arena, Fill&& fill) {
  auto* value = NodeAccess::Make<Value>(arena);
  fill(*value);
  auto* keyword = NodeAccess::Make<CzonKeyword>(arena);
  NodeAccess::SetName(*keyword, name);
  keyword->AddParam(value);
  section.AddKeyword(keyword);
}

// Returns the new section; null if there are no settings. Compatibility: the section stays in the
// tree and each write adds another one, as files of older versions have it.
CzonSection* AddSettings(CzonData& data) {
  CzonTargetList* root = RequireRoot(data);
  if (root == nullptr) return nullptr;
  const std::string& resultRoot = root->GetResultRoot();
  std::string custom;
  int use = 0;
  root->GetCustomResultFolder(&use, &custom);
  if (resultRoot.empty() && custom.empty() && use == 0) return nullptr;
  if (data.GetCurrentSection() != nullptr) {
    data.AddTarget(kSettingsSection);  // is refused, with a report
    return nullptr;
  }
  Arena& arena = HandleAccess::GetArena(data);
  auto* section = NodeAccess::Make<CzonSection>(arena);
  NodeAccess::SetName(*section, kSettingsSection);
  AddSetting<CzonFilename>(*section, kResultRootSetting, arena, [&](CzonFilename& value) {
    NodeAccess::SetText(value, resultRoot, &arena);
  });
  AddSetting<CzonBool>(*section, kUseCustomSetting, arena,
                       [&](CzonBool& value) { NodeAccess::SetValue(value, use != 0, &arena); });
  AddSetting<CzonFilename>(*section, kCustomFolderSetting, arena, [&](CzonFilename& value) {
    NodeAccess::SetText(value, custom, &arena);
  });
  NodeAccess::SetHandle(*root, &data);
  root->AddSection(section);  // last: throws if out of memory
  return section;
}

bool WriteRoot(CzonTargetList& root, const std::string& name, OutputFile& file) {
  root.SetZonFilename(name);
  if (!file.IsOpen()) return false;
  TextStream text;
  root.Write(text);
  return text.good() && file.Write(text.Pieces());
}

}  // namespace

bool WriteTree(CzonData& data, const char* fileName) {
  const std::string name = TextOf(fileName);
  CzonTargetList* root = data.GetRoot();
  const std::string before = root != nullptr ? root->GetZonFilename() : "";
  CzonSection* settings = AddSettings(data);
  OutputFile file(name.c_str(), OutputFile::kAppend);
  if (root == nullptr) return false;
  try {
    return WriteRoot(*root, name, file);
  } catch (...) {  // out of memory: restore the tree
    root->SetZonFilename(before);
    if (settings != nullptr) {
      NodeAccess::Unfile(settings);
      NodeAccess::Free(settings);
    }
    throw;
  }
}

}  // namespace zon
