#include "api/zonhandleaccess.h"

#include <typeinfo>
#include <utility>

#include "base/zonfiletext.h"
#include "paths/zonfilepath.h"
#include "reader/zonsource.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

// The source of a loaded file; null if the host has supplied another one.
CyyStream* StreamOf(const CzonData& data) {
  const auto* load = dynamic_cast<const CzonLoad*>(&data);
  if (load == nullptr || load->GetParser() == nullptr) return nullptr;
  const CyyInput& input = load->GetParser()->GetInput();
  if (typeid(input) != typeid(CyyStream)) return nullptr;
  // The parser owns its input and makes none that is const.
  return const_cast<CyyStream*>(static_cast<const CyyStream*>(&input));
}

}  // namespace

ResultSettings SettingsOf(const CzonTargetList& root) {
  ResultSettings settings;
  settings.resultRoot = root.GetResultRoot();
  root.GetCustomResultFolder(&settings.usesCustom, &settings.customFolder);
  return settings;
}

bool operator==(const ResultSettings& a, const ResultSettings& b) {
  return a.resultRoot == b.resultRoot && a.customFolder == b.customFolder &&
         a.usesCustom == b.usesCustom;
}

CzonData* HandleAccess::OfTree(const CzonNode& node) {
  const auto* root = dynamic_cast<const CzonTargetList*>(node.GetTopNode());
  return root != nullptr ? dynamic_cast<CzonData*>(root->GetHandle()) : nullptr;
}

bool HandleAccess::IsSound(const CzonData& data) {
  if (data.GetRoot() == nullptr) return false;
  const auto* load = dynamic_cast<const CzonLoad*>(&data);
  return load == nullptr || load->GetParser() == nullptr || !load->GetParser()->HasError();
}

void HandleAccess::SetParser(CzonLoad& load, std::unique_ptr<CzonParser> parser) {
  const CzonTargetList* root = parser->GetRoot();
  if (root != nullptr && load.file_ != nullptr) load.file_->settings = SettingsOf(*root);
  load.SetParser(std::move(parser));
}

void HandleAccess::SetFile(CzonData& data, const char* fileName, bool isInMemory) {
  auto file = std::make_unique<LoadedFile>();
  const std::string name = fileName != nullptr ? fileName : "";
  if (!name.empty()) file->path = AbsoluteName(name);
  file->isInMemory = isInMemory;
  data.file_ = std::move(file);
}

std::shared_ptr<FileText> HandleAccess::GetText(const CzonData& data) {
  if (data.file_ != nullptr && data.file_->text != nullptr) return data.file_->text;
  const CyyStream* stream = StreamOf(data);
  return stream != nullptr ? TextSource::ShareText(*stream) : nullptr;
}

void HandleAccess::ReplaceText(CzonData& data, std::shared_ptr<FileText> empty) {
  if (CyyStream* stream = StreamOf(data)) TextSource::Detach(*stream, std::move(empty));
}

}  // namespace zon
