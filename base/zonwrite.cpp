// Tested by tests/faults/io_faults_test.cpp and tests/replace/replace_test.cpp.
#include "base/zonwrite.h"

#include <fcntl.h>
#include <limits.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <ctime>

namespace zon {
namespace {

bool IsPending(int signal) {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal) == 1;
}

}  // namespace

HeldSignal::HeldSignal(int signal) : signal_(signal) {
  sigset_t held;
  sigemptyset(&held);
  sigaddset(&held, signal_);
  pthread_sigmask(SIG_BLOCK, &held, &before_);
  wasPending_ = IsPending(signal_);
}

HeldSignal::~HeldSignal() {
  if (!wasPending_ && IsPending(signal_)) {
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, signal_);
    const timespec now{};
    sigtimedwait(&held, nullptr, &now);
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

HeldCancellation::HeldCancellation() {
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state_);
}

HeldCancellation::~HeldCancellation() {
  pthread_setcancelstate(state_, nullptr);
}

bool WriteAll(int file, iovec* next, const iovec* end, off_t* size) {
  while (next != end) {
    const auto count = std::min<std::ptrdiff_t>(end - next, IOV_MAX);
    const ssize_t result = writev(file, next, static_cast<int>(count));
    if (result < 0 && errno == EINTR) continue;
    if (result <= 0) return false;
    *size += result;
    auto written = static_cast<std::size_t>(result);
    // A short write: skip the pieces that are complete and shorten the next one.
    for (; next != end && written >= next->iov_len; ++next) written -= next->iov_len;
    if (written == 0) continue;
    next->iov_base = static_cast<char*>(next->iov_base) + written;
    next->iov_len -= written;
  }
  return true;
}

bool HasArrived(int file) {
  const int second = fcntl(file, F_DUPFD_CLOEXEC, 0);
  return second < 0 || close(second) == 0 || errno == EINTR;
}

}  // namespace zon
