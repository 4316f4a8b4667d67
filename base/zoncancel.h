// The cancellation of a thread unwinds its stack like an exception. A handler that catches it must
// rethrow it.
#ifndef ZON_BASE_ZONCANCEL_H
#define ZON_BASE_ZONCANCEL_H

#include <cxxabi.h>

namespace zon {

// In a handler of all exceptions: whether it caught a cancellation, which it must rethrow. That is
// not an exception of C++, so it has no type. (A handler for abi::__forced_unwind would bind a null
// reference, which the sanitizer for undefined behaviour reports.)
inline bool IsCancellation() {
  return abi::__cxa_current_exception_type() == nullptr;
}

}  // namespace zon

#endif
