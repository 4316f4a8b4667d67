// The frame of the convenience functions, which find or add one keyword in one call. Tested by
// tests/params_test.cpp.
#ifndef ZON_API_ZONCONVENIENCE_H
#define ZON_API_ZONCONVENIENCE_H

#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"

namespace zon {

// Compatibility: the pending code alone decides about success, and it is not cleared. So a call
// fails while an older error is pending, and a refusal of the builder, which stores no code,
// succeeds.
inline bool NoErrorPending() {
  return zonPeekErrorGlb() == kErrNone;
}

// Stores in `out` what `question` returns for the value, and returns 1. Returns 0 and leaves `out`
// as it is if there is no such value or an error is pending.
template <class T, class F>
int GetParam(void* section, const char* keyword, int instance, int paramNo, T* out, F&& question) {
  return Guarded(kErrNode, 0, [&] {
    void* found = zonKeywordByNameNum(section, keyword, static_cast<unsigned int>(instance));
    if (found == nullptr) return 0;
    void* param = zonParamByNum(found, static_cast<unsigned int>(paramNo));
    if (param == nullptr) return 0;
    const auto value = question(param);
    if (!NoErrorPending()) return 0;
    if (out != nullptr) *out = value;
    return 1;
  });
}

// Adds the keyword, and its value by `add`; only the keyword if an error is pending.
template <class F>
int PutParam(void* handle, const char* keyword, F&& add) {
  zonAddKeyword(handle, keyword);
  if (!NoErrorPending()) return 0;
  add();
  return NoErrorPending() ? 1 : 0;
}

}  // namespace zon

#endif
