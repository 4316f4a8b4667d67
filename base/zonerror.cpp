// Relaxed: the code publishes no other memory. compare_exchange keeps the first of two errors of
// different threads. Tested by tests/handles_test.cpp and tests/threads_test.cpp.
#include "base/zonerror.h"

#include <atomic>

#include "base/zonsilence.h"

namespace zon {
namespace {

std::atomic<int> pendingError{kErrNone};
thread_local int errorOfThread = kErrNone;  // the same if there is only one thread

}  // namespace

void RaiseError(int code) {
  if (IsSilent()) return;
  int none = kErrNone;
  pendingError.compare_exchange_strong(none, code, std::memory_order_relaxed);
  if (errorOfThread == kErrNone) errorOfThread = code;
}

int PeekError() {
  return pendingError.load(std::memory_order_relaxed);
}

int PeekErrorOfThread() {
  return errorOfThread;
}

int ConsumeError() {
  errorOfThread = kErrNone;
  return pendingError.exchange(kErrNone, std::memory_order_relaxed);
}

}  // namespace zon
