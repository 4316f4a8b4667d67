// Relaxed: the code publishes no other memory. compare_exchange keeps the first of two errors of
// different threads. Tested by tests/handles_test.cpp.
#include "base/zonerror.h"

#include <atomic>

namespace zon {
namespace {

std::atomic<int> pendingError{kErrNone};

}  // namespace

void RaiseError(int code) {
  int none = kErrNone;
  pendingError.compare_exchange_strong(none, code, std::memory_order_relaxed);
}

int PeekError() {
  return pendingError.load(std::memory_order_relaxed);
}

int ConsumeError() {
  return pendingError.exchange(kErrNone, std::memory_order_relaxed);
}

}  // namespace zon
