// Exported functions: files (load, copy, write, close), counts of a load, errors, versions. Tested
// by tests/load_test.cpp, tests/write_test.cpp and tests/handles_test.cpp.
#include <cstring>
#include <memory>
#include <utility>

#include "api/zon.h"
#include "api/zoncopyout.h"
#include "api/zonerrortext.h"
#include "api/zonfilewriter.h"
#include "api/zonguard.h"
#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "base/zonemptytext.h"
#include "base/zonhook.h"  // does not compile if it differs from zon.h
#include "base/zonversion.h"
#include "reader/zonload.h"

using zon::CopyOut;
using zon::EmpSt;
using zon::HandleOf;
using zon::Query;
using zon::Update;

namespace {

// As Query, for the parser of a loaded file; 0 if nothing was read.
template <class F>
unsigned int QueryParser(void* handle, F&& question) {
  return Query<CzonLoad>(handle, 0U, [&](CzonLoad& load) {
    return load.GetParser() != nullptr ? question(*load.GetParser()) : 0U;
  });
}

bool Write(void* handle, const char* fileName) {
  return Query<CzonData>(handle, false,
                         [&](CzonData& data) { return zon::WriteTree(data, fileName); });
}

}  // namespace

extern "C" {

void* zonLoadFile(const char* fileName, int quiet) {
  zonGetErrorGlb();  // clears the pending code
  return zon::Guarded<void*>(zon::kErrFileInit, nullptr, [&]() -> void* {
    // Allocated first: once the file was read, its errors must reach the host.
    auto load = std::make_unique<CzonLoad>(nullptr);
    zon::HandleAccess::SetFile(*load, fileName, false);
    std::unique_ptr<CzonParser> parser = zon::LoadFile(fileName, quiet != 0);
    if (parser == nullptr) return nullptr;
    zon::HandleAccess::SetParser(*load, std::move(parser));
    return HandleOf(load.release());
  });
}

void zonClose(void** handle) {
  Update<CzonData>(handle != nullptr ? *handle : nullptr, [&](CzonData& data) {
    delete &data;
    *handle = nullptr;
  });
}

int zonFileCopy(const char* source, const char* target) {
  void* handle = zonLoadFile(source, 0);
  const auto hasFailed = [] { return zon::PeekErrorOfThread() != zon::kErrNone; };
  if (!hasFailed()) {
    zonExplore(handle, [](CzonNode* node) { zonFileCopyCallBack(HandleOf(node)); });
  }
  // If out of memory, a name is not resolved, and the copy would be wrong.
  const bool written = !hasFailed() && Write(handle, target);
  if (handle != nullptr) zonClose(&handle);
  return written ? 1 : 0;
}

void zonWrite(void* handle, const char* fileName) {
  Write(handle, fileName);
}
void zonAppend(void* handle, const char* fileName) {
  Write(handle, fileName);
}

const char* zonGetSyntaxErr(void* handle, unsigned int* line, unsigned int* position,
                            const char** message) {
  if (line != nullptr) *line = 0;
  if (position != nullptr) *position = 0;
  const char* text = Query<CzonLoad, const char*>(handle, EmpSt(), [&](CzonLoad& load) {
    const CzonParser* parser = load.GetParser();
    if (parser == nullptr) return static_cast<const char*>(nullptr);
    if (line != nullptr) *line = parser->GetErrorLine();
    if (position != nullptr) *position = parser->GetErrorPosition();
    return parser->GetError().c_str();
  });
  if (message != nullptr && text != nullptr) *message = text;
  return text;
}

unsigned int zonNoChars(void* handle) {
  return QueryParser(handle,
                     [](const CzonParser& parser) { return parser.GetInput().GetNoChars(); });
}
unsigned int zonNoLines(void* handle) {
  return QueryParser(handle,
                     [](const CzonParser& parser) { return parser.GetInput().GetNoLines(); });
}
unsigned int zonNoComments(void* handle) {
  return QueryParser(handle, [](const CzonParser& parser) { return parser.GetNoComments(); });
}
unsigned int zonNoTokens(void* handle) {
  return QueryParser(handle, [](const CzonParser& parser) { return parser.GetNoTokens(); });
}

int zonGetErrorGlb(void) {
  return zon::ConsumeError();
}
int zonPeekErrorGlb(void) {
  return zon::PeekError();
}

const char* zonGetErrorMessageFromErrorCode(int code) {
  // Compatibility: each call replaces the text of the call before in this thread.
  static thread_local char text[64];
  std::strncpy(text, zon::TextOfCode(code), sizeof text - 1);
  return text;
}

const char* zonGetErrorFromZonData(void* handle) {
  const auto* data = zon::CastHandle<CzonData>(handle);
  if (data != nullptr) return data->GetErrorMessage().c_str();
  zon::RaiseError(zon::kErrHandle);
  return nullptr;
}

const char* zonGetVersion(void) {
  return zon::zonCompDate;
}
const char* zonGetBuildVersion(void) {
  return zon::kBuildVersion;
}
const char* zonGetDLLid(void) {
  return zon::kDllId;
}

int zonGetVersion2(char* buffer, int size) {
  return CopyOut(zonGetVersion(), buffer, size);
}
int zonGetBuildVersion2(char* buffer, int size) {
  return CopyOut(zonGetBuildVersion(), buffer, size);
}
int zonGetDLLid2(char* buffer, int size) {
  return CopyOut(zonGetDLLid(), buffer, size);
}

}  // extern "C"
