// One keyword at a time: how every convenience function finds, adds, and judges success.
#ifndef ZON_API_ZONCONVENIENCE_H
#define ZON_API_ZONCONVENIENCE_H

#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"

namespace zon {

// Success is judged by the pending code alone, which is not cleared: while an older error is
// pending a call fails, and a refusal of the builder, which sets no such code, passes.
inline bool NoErrorPending() {
  return zonPeekErrorGlb() == kErrNone;
}

// Asks the value and stores it. 0 if there is none or an error is pending; `out` then stays.
template <class T, class F>
int GetParam(void* section, const char* keyword, int instance, int paramNo, T* out, F&& ask) {
  return Guarded(kErrNode, 0, [&] {
    void* found = zonKeywordByNameNum(section, keyword, static_cast<unsigned int>(instance));
    if (found == nullptr) return 0;
    void* param = zonParamByNum(found, static_cast<unsigned int>(paramNo));
    if (param == nullptr) return 0;
    const auto value = ask(param);
    if (!NoErrorPending()) return 0;
    if (out != nullptr) *out = value;
    return 1;
  });
}

// Adds the keyword and then its value. With an error pending the keyword alone is added.
template <class F>
int PutParam(void* handle, const char* keyword, F&& add) {
  zonAddKeyword(handle, keyword);
  if (!NoErrorPending()) return 0;
  add();
  return NoErrorPending() ? 1 : 0;
}

}  // namespace zon

#endif
