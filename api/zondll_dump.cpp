// The exported function zonDump. Tested by tests/write_test.cpp.
#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "api/zontreedump.h"

namespace {

// Returns the node, or the root of a file handle; null after a report.
CzonNode* RequireStart(void* handleOrNode) {
  if (auto* node = zon::CastHandle<CzonNode>(handleOrNode)) return node;
  // Compatibility: the code is stored for a good file handle too.
  zon::RaiseError(zon::kErrNode);
  auto* data = zon::CastHandle<CzonData>(handleOrNode);
  if (data != nullptr && data->GetRoot() != nullptr) return data->GetRoot();
  zon::SendMessage("zonDump: bad argument");
  return nullptr;
}

}  // namespace

extern "C" void zonDump(void* handleOrNode, const char* fileName) {
  zon::Guarded(zon::kErrNode, 0, [&] {
    CzonNode* start = RequireStart(handleOrNode);
    if (start != nullptr) zon::DumpTree(*start, zon::TextOf(fileName));
    return 0;
  });
}
