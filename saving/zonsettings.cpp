#include "saving/zonsettings.h"

#include <memory>
#include <utility>

#include "paths/zonfilename.h"
#include "paths/zonfilepath.h"
#include "paths/zonresultfolder.h"
#include "tree/zonbool.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "tree/zontreewalk.h"

namespace zon {
namespace {

std::unique_ptr<CzonKeyword> MakeSetting(const char* name, std::unique_ptr<CzonParam> value) {
  auto keyword = std::make_unique<CzonKeyword>(name, 0, 0);
  keyword->AddParam(value.get());
  static_cast<void>(value.release());  // owned by the keyword
  return keyword;
}

// Sets one setting in the section.
void Set(CzonSection& system, const char* name, std::unique_ptr<CzonParam> value,
         TreeChanges& changes) {
  if (CzonParam* former = FindSetting(&system, name)) {
    changes.Replace(*former, std::move(value));
  } else if (CzonKeyword* keyword = system.KeywordByName(name)) {
    changes.Append(*keyword, std::move(value));
  } else {
    changes.Append(system, MakeSetting(name, std::move(value)));
  }
}

std::unique_ptr<CzonParam> MakeUse(bool use) {
  auto value = std::make_unique<CzonBool>();
  NodeAccess::SetValue(*value, use, nullptr);
  return value;
}

// Whether the value gives the folder when the file is loaded.
bool GivesFolder(const CzonParam* value, const std::string& folder, const std::string& fileName) {
  if (value == nullptr) return folder.empty();
  const auto* name = dynamic_cast<const CzonFilename*>(value);
  if (name == nullptr) return folder.empty();
  return ResolveFilename(NodeAccess::GetTextView(*name), fileName) ==
         ResolveFilename(folder, fileName);
}

}  // namespace

void UpdateSettings(CzonTargetList& root, const ResultSettings& former, const std::string& fileName,
                    TreeChanges& changes) {
  const ResultSettings settings = SettingsOf(root);
  if (settings == former) return;
  CzonSection* system = root.SectionByName(kSettingsSection);
  const bool hasRoot =
      GivesFolder(FindSetting(system, kResultRootSetting), settings.resultRoot, fileName);
  const bool isNew = system == nullptr;
  if (isNew) {
    auto section = std::make_unique<CzonSection>(kSettingsSection, 0, 0);
    system = section.get();
    changes.Append(root, std::move(section));
  }
  if (!hasRoot) {
    Set(*system, kResultRootSetting, std::make_unique<CzonFilename>(settings.resultRoot), changes);
  }
  const bool isSameCustom =
      settings.usesCustom == former.usesCustom && settings.customFolder == former.customFolder;
  if (isSameCustom && !isNew) return;
  // The use is only read together with a folder.
  Set(*system, kUseCustomSetting, MakeUse(settings.usesCustom != 0), changes);
  const CzonParam* custom = FindSetting(system, kCustomFolderSetting);
  if (custom == nullptr || !GivesFolder(custom, settings.customFolder, fileName)) {
    Set(*system, kCustomFolderSetting, std::make_unique<CzonFilename>(settings.customFolder),
        changes);
  }
}

namespace {

bool MayHaveFilenames(const CzonNamedNode& keyword) {
  const std::string_view text = NodeAccess::DeferredText(keyword);
  return text.empty() || text.find('|') != std::string_view::npos;
}

void MoveInKeyword(const CzonNamedNode& keyword, const std::string& from, const std::string& to,
                   TreeChanges& changes) {
  if (!MayHaveFilenames(keyword)) return;
  for (CzonNode* value : NodeAccess::Children(keyword)) {
    auto* name = dynamic_cast<CzonFilename*>(value);
    if (name == nullptr) continue;
    const std::string_view text = NodeAccess::GetTextView(*name);
    const std::string moved = MovedFilename(text, from, to);
    if (moved != text) changes.SetText(*name, moved);
  }
}

}  // namespace

void MoveFilenames(CzonTargetList& root, const std::string& from, const std::string& to,
                   TreeChanges& changes) {
  if (AreInOneFolder(from, to)) return;
  WalkKeywords(root,
               [&](const CzonNamedNode& keyword) { MoveInKeyword(keyword, from, to, changes); });
}

}  // namespace zon
