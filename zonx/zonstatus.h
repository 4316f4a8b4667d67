// The frame of the functions of zonx.h: hooks and code of zon.h are off, and exceptions become a
// status.
#ifndef ZON_ZONX_ZONSTATUS_H
#define ZON_ZONX_ZONSTATUS_H

#include <new>

#include "api/zonx.h"
#include "base/zoncancel.h"
#include "base/zonsilence.h"

namespace zon {

// Returns what `body` returns; ZONX_NO_MEMORY if it throws.
template <class F>
int WithStatus(F&& body) {
  const Silence silence;
  try {
    return body();
  } catch (...) {
    if (IsCancellation()) throw;
    return ZONX_NO_MEMORY;
  }
}

// Calls a function of the host, which may use zon.h with its hooks. An exception of it ends there.
template <class F>
void CallHost(F&& call) {
  try {
    const Silence off(false);
    call();
  } catch (...) {
    if (IsCancellation()) throw;
  }
}

}  // namespace zon

#endif
