#include "reader/zonload.h"

#include <new>

#include "base/zonerror.h"
#include "base/zonhooks.h"
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

// The first value of the first keyword of that name; null if either is missing.
const CzonParam* Setting(const CzonSection& system, const char* name) {
  const CzonKeyword* keyword = system.KeywordByName(name);
  return keyword != nullptr ? keyword->ParamByNum(1) : nullptr;
}

// The section stays in the tree; the settings are copies of its values.
void ApplySettings(CzonTargetList& root) {
  const CzonSection* system = root.SectionByName("SYSTEM");
  if (system == nullptr) return;
  if (const CzonParam* value = Setting(*system, "ResultRootFolder")) {
    if (const char* folder = value->GetFilename()) root.SetResultRoot(folder);
  }
  const CzonParam* use = Setting(*system, "UseCustomResultFolder");
  // A packed list is no truth value: to ask it for one would read an item.
  const int useCustomFolder = use != nullptr && !use->IsClob() ? use->GetBool() : 0;
  if (const CzonParam* value = Setting(*system, "CustomResultFolder")) {
    if (const char* folder = value->GetFilename()) {
      root.SetCustomResultFolder(useCustomFolder, folder);
    }
  }
}

}  // namespace

std::unique_ptr<CzonParser> LoadFile(const char* fileName, bool quiet) {
  if (fileName == nullptr) fileName = "";
  std::unique_ptr<CyyStream> input;
  try {
    input = std::make_unique<CyyStream>(fileName);
  } catch (const std::bad_alloc&) {
    FailToRead(quiet);
    return nullptr;
  }
  if (input->GetStatus() != 0) {
    RaiseError(kErrFileOpen);
    if (!quiet) SendReport("Open error: %", kSeverity, {fileName});
    return nullptr;
  }
  const CyyStream& stream = *input;
  // The memory of the parser is allocated before the stream is released to it.
  std::unique_ptr<CzonParser> parser(new CzonParser(input.release()));
  const int failed = parser->Parse(0);
  if (stream.HasFailed()) {
    // What was read is only a part of the file.
    FailToRead(quiet);
    return nullptr;
  }
  if (failed != 0) {
    RaiseError(kErrParse);
    if (!quiet) ReportSyntaxError(*parser, fileName);
  }
  if (CzonTargetList* root = parser->GetRoot()) {
    root->SetZonFilename(fileName);
    ApplySettings(*root);
  }
  return parser;
}

}  // namespace zon
