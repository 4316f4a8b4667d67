// Exceptions to failure values: no exception escapes an exported function.
//
// If out of memory, the call stores an error code, reports "No memory" and returns its failure
// value. An exception of another type can only come from a hook of the host; then the code is
// stored without a report. The forced unwinding of a cancelled thread passes through.
// Tested by tests/faults/alloc_faults_test.cpp and tests/hooks_host.
#ifndef ZON_API_ZONGUARD_H
#define ZON_API_ZONGUARD_H

#include <new>

#include "base/zoncancel.h"
#include "base/zonerror.h"
#include "base/zonhooks.h"

namespace zon {

// At most 15 characters: a std::string holds it without allocating.
inline constexpr char kNoMemory[] = "No memory";

// Runs `body` and returns true. If it runs out of memory, calls `outOfMemory`; if it or
// `outOfMemory` throws anything else, calls `hookThrew`; both return false.
template <class Body, class OutOfMemory, class HookThrew>
bool RunGuarded(Body&& body, OutOfMemory&& outOfMemory, HookThrew&& hookThrew) {
  try {
    try {
      body();
      return true;
    } catch (const std::bad_alloc&) {
      outOfMemory();
    }
  } catch (...) {
    if (IsCancellation()) throw;
    hookThrew();
  }
  return false;
}

// Returns the result of `body`. If it throws, stores `code` and returns `failure`.
template <class R, class F>
R Guarded(int code, R failure, F&& body) {
  R result = failure;
  RunGuarded([&] { result = body(); },
             [&] {
               RaiseError(code);
               SendMessage(kNoMemory);
             },
             [&] { RaiseError(code); });
  return result;
}

}  // namespace zon

#endif
