// Exported functions: saving. Tested by tests/zonsave_test.cpp and tests/replace.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "saving/zonfilesave.h"
#include "tree/zonsection.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

// A copy that zonxFree releases, with a zero after it.
int CopyText(std::string_view view, char** text, size_t* size) {
  auto* copy = static_cast<char*>(std::malloc(view.size() + 1));
  if (copy == nullptr) return ZONX_NO_MEMORY;
  if (!view.empty()) std::memcpy(copy, view.data(), view.size());
  copy[view.size()] = '\0';
  *text = copy;
  if (size != nullptr) *size = view.size();
  return ZONX_OK;
}

constexpr unsigned int kAllFlags =
    ZONX_PLAIN | ZONX_NEW | ZONX_OVERWRITE | ZONX_BACKUP | ZONX_NAMES_AS_WRITTEN;

const char* NameInReports(const CzonData& data, const char* fileName) {
  if (fileName != nullptr) return fileName;
  return data.GetRoot() != nullptr ? data.GetRoot()->GetOwnFilename().c_str() : "";
}

}  // namespace
}  // namespace zon

extern "C" {

int zonxSave(void* handle, const char* fileName, unsigned int flags, zonxReporter function,
             void* context) {
  int systemError = 0;
  const int status = zon::WithStatus([&]() -> int {
    auto* data = zon::CastHandle<CzonData>(handle);
    if (data == nullptr || (flags & ~zon::kAllFlags) != 0) return ZONX_BAD_ARGUMENT;
    const std::string name = zon::NameInReports(*data, fileName);
    zon::Reporter reporter(function, context, name.c_str());
    zon::FileSave save(*data, flags, reporter);
    const int saved = save.ToFile(fileName);
    systemError = save.SystemError();
    return saved;
  });
  if (status == ZONX_CANNOT_READ || status == ZONX_CANNOT_WRITE) errno = systemError;
  return status;
}

int zonxText(void* handle, unsigned int flags, char** text, size_t* size, zonxReporter function,
             void* context) {
  if (text == nullptr) return ZONX_BAD_ARGUMENT;
  return zon::WithStatus([&]() -> int {
    auto* data = zon::CastHandle<CzonData>(handle);
    if (data == nullptr || (flags & ~zon::kAllFlags) != 0) return ZONX_BAD_ARGUMENT;
    const std::string name = zon::NameInReports(*data, nullptr);
    zon::Reporter reporter(function, context, name.c_str());
    zon::SavedText saved;
    const int status = zon::FileSave(*data, flags, reporter).ToText(&saved);
    return status == ZONX_OK ? zon::CopyText(saved.text->View(), text, size) : status;
  });
}

void zonxFree(void* memory) {
  std::free(memory);
}

}  // extern "C"
