// Exported functions: loading and checking. Tested by tests/reports_test.cpp.
#include <cerrno>
#include <memory>
#include <utility>

#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "base/zonfiletext.h"
#include "base/zonhooks.h"
#include "reader/zonload.h"
#include "zonx/zoncheckreport.h"
#include "zonx/zonreporter.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

// Loads a text that was opened or assigned. The checker reads it again from memory.
int LoadAndCheck(const std::shared_ptr<FileText>& text, const char* fileName, bool isInMemory,
                 void** handle, Reporter& reporter) {
  auto load = std::make_unique<CzonLoad>(nullptr);
  HandleAccess::SetFile(*load, fileName, isInMemory);
  Loading loading = Load(text, fileName);
  if (loading.status == LoadStatus::kCannotRead) {
    reporter.ReportFile("cannot-read", "the file cannot be read to its end", text->Error());
    return ZONX_CANNOT_READ;
  }
  const int status = loading.IsSound() ? ZONX_OK : ZONX_FAULTY;
  if (reporter.IsOn() && (status == ZONX_FAULTY || loading.isSuspect))
    CheckAndReport(text, reporter);
  text->Close();
  if (loading.parser->GetRoot() == nullptr) text->Release();
  HandleAccess::SetParser(*load, std::move(loading.parser));
  *handle = HandleOf(load.release());
  return status;
}

int LoadText(const std::shared_ptr<FileText>& text, const char* fileName, bool isInMemory,
             void** handle, Reporter& reporter) {
  if (handle == nullptr) return CheckAndReport(text, reporter);
  return LoadAndCheck(text, fileName, isInMemory, handle, reporter);
}

}  // namespace
}  // namespace zon

extern "C" {

int zonxLoadFile(const char* fileName, void** handle, zonxReporter function, void* context) {
  if (handle != nullptr) *handle = nullptr;
  if (fileName == nullptr) fileName = "";
  int systemError = 0;
  const int status = zon::WithStatus([&]() -> int {
    zon::Reporter reporter(function, context, fileName);
    const auto text = std::make_shared<zon::FileText>();
    if (!text->Open(fileName)) {
      systemError = text->Error();
      reporter.ReportFile("cannot-open", "the file cannot be opened", systemError);
      return ZONX_CANNOT_OPEN;
    }
    const int loaded = zon::LoadText(text, fileName, false, handle, reporter);
    systemError = text->Error();
    return loaded;
  });
  if (status == ZONX_CANNOT_OPEN || status == ZONX_CANNOT_READ) errno = systemError;
  return status;
}

int zonxLoadText(const char* text, size_t size, const char* fileName, void** handle,
                 zonxReporter function, void* context) {
  if (handle != nullptr) *handle = nullptr;
  if (text == nullptr && size > 0) return ZONX_BAD_ARGUMENT;
  if (fileName == nullptr) fileName = "";
  return zon::WithStatus([&] {
    zon::Reporter reporter(function, context, fileName);
    const auto copy = std::make_shared<zon::FileText>();
    copy->Assign({text, size});
    return zon::LoadText(copy, fileName, true, handle, reporter);
  });
}

void zonxSetHooks(void (*message)(const char* text, void* context),
                  void (*report)(const char* text, int severity, void* context), void* context) {
  zon::SetHooks(message, report, context);
}

}  // extern "C"
