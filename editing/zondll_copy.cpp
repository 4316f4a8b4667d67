// Exported functions: zonCopy and zonInsert. Tested by tests/edit_test.cpp.
#include "api/zon.h"
#include "api/zonhandlecheck.h"
#include "editing/zoncopy.h"

extern "C" {

int zonCopy(void* source, void* target) {
  return zon::Query<CzonNode>(source, 0, [&](CzonNode& from) {
    return zon::Query<CzonNode>(target, 0, [&](CzonNode& to) {
      if (!zon::CanCopy(from, to)) {
        zon::SendMessage("zonCopy:\n\tsection/section or\n\tkeyword/keyword required");
        return 0;
      }
      zon::CopyNode(from, to);
      return 1;
    });
  });
}

void* zonInsert(void* source, void* reference, int after) {
  return zon::Query<CzonNode, void*>(source, nullptr, [&](CzonNode& from) {
    return zon::Query<CzonNode, void*>(reference, nullptr, [&](CzonNode& beside) -> void* {
      if (!zon::CanInsertCopy(from, beside)) {
        zon::RaiseError(zon::kErrSection);
        zon::SendMessage("Invalid zonNode (CzonSection)");
        return nullptr;
      }
      return zon::HandleOf(zon::InsertCopy(from, beside, after != 0));
    });
  });
}

}  // extern "C"
