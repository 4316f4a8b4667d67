#include "reader/zonload.h"

#include <new>
#include <utility>

#include "base/zonerror.h"
#include "base/zonfiletext.h"
#include "base/zonhooks.h"
#include "paths/zonresultfolder.h"
#include "reader/zonsource.h"
#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

constexpr int kSeverity = 1;

// The file opened but cannot be read.
void FailToRead(bool quiet) {
  RaiseError(kErrFileInit);
  if (!quiet) SendReport("CyyStream", kSeverity);
}

void ReportSyntaxError(const CzonParser& parser, const char* fileName) {
  SendReport("Error: %\n in % near line % position %", kSeverity,
             {parser.GetError().c_str(), fileName, static_cast<int>(parser.GetErrorLine()),
              static_cast<int>(parser.GetErrorPosition())});
}

// The section stays in the tree; the settings are copies of its values.
void ApplySettings(CzonTargetList& root) {
  const CzonSection* system = root.SectionByName(kSettingsSection);
  if (system == nullptr) return;
  if (const CzonParam* value = FindSetting(system, kResultRootSetting)) {
    if (const char* folder = value->GetFilename()) root.SetResultRoot(folder);
  }
  const CzonParam* use = FindSetting(system, kUseCustomSetting);
  // A packed list is no truth value: to ask it for one would read an item.
  const int useCustomFolder = use != nullptr && !use->IsClob() ? use->GetBool() : 0;
  if (const CzonParam* value = FindSetting(system, kCustomFolderSetting)) {
    if (const char* folder = value->GetFilename()) {
      root.SetCustomResultFolder(useCustomFolder, folder);
    }
  }
}

}  // namespace

Loading Load(std::shared_ptr<FileText> text, const char* fileName) {
  if (fileName == nullptr) fileName = "";
  std::unique_ptr<CyyStream> input = TextSource::MakeStream(std::move(text));
  const CyyStream& stream = *input;
  // The memory of the parser is allocated before the stream is released to it.
  std::unique_ptr<CzonParser> parser(new CzonParser(input.release()));
  Loading loading{LoadStatus::kLoaded, std::move(parser)};
  const int failed = loading.parser->Parse(0);
  if (stream.HasFailed()) {
    // What was read is only a part of the file.
    return {LoadStatus::kCannotRead, nullptr};
  }
  if (failed != 0) loading.status = LoadStatus::kFaulty;
  loading.isSuspect = TextSource::TextOf(stream).IsSuspect();
  if (CzonTargetList* root = loading.parser->GetRoot()) {
    root->SetZonFilename(fileName);
    ApplySettings(*root);
  }
  return loading;
}

std::unique_ptr<CzonParser> LoadFile(const char* fileName, bool quiet) {
  if (fileName == nullptr) fileName = "";
  std::shared_ptr<FileText> text;
  try {
    text = std::make_shared<FileText>();
  } catch (const std::bad_alloc&) {
    FailToRead(quiet);
    return nullptr;
  }
  if (!text->Open(fileName)) {
    RaiseError(kErrFileOpen);
    if (!quiet) SendReport("Open error: %", kSeverity, {fileName});
    return nullptr;
  }
  Loading loading = Load(std::move(text), fileName);
  if (loading.status == LoadStatus::kCannotRead) FailToRead(quiet);
  if (loading.status == LoadStatus::kFaulty) {
    RaiseError(kErrParse);
    if (!quiet) ReportSyntaxError(*loading.parser, fileName);
  }
  return std::move(loading.parser);
}

}  // namespace zon
