// The cancellation of a thread unwinds the stack as an exception that must be thrown on. Every function
// that catches all exceptions first catches abi::__forced_unwind and throws it again.
#ifndef ZON_BASE_ZONCANCEL_H
#define ZON_BASE_ZONCANCEL_H

#include <cxxabi.h>

// For these functions: there is no object of that type, so the reference to it is null, which the
// sanitizer for undefined behaviour would report.
#define ZON_SEES_CANCELLATION __attribute__((no_sanitize("null")))

#endif
