#include "base/zonapart.h"

#include <pthread.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <memory>

namespace zon {
namespace {

// No other tool's code: one that watches the process may put its own in the place of success.
constexpr int kFailure = 77;

constexpr std::size_t kStack = 65536;  // most of it never touched, so it costs nothing

struct Order {
  bool (*work)(void*);
  void* argument;
  bool isDone;
};

int Run(void* argument) {
  setpgid(0, 0);  // who kills the group of the host does not mean this process
  auto& order = *static_cast<Order*>(argument);
  order.isDone = order.work(order.argument);
  return order.isDone ? 0 : kFailure;
}

bool IsPending(int signal) {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal) == 1;
}

}  // namespace

Undisturbed::Undisturbed() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before_);
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelling_);
  hadLimit_ = IsPending(SIGXFSZ);
}

Undisturbed::~Undisturbed() {
  if (!hadLimit_ && IsPending(SIGXFSZ)) {
    sigset_t limit;
    sigemptyset(&limit);
    sigaddset(&limit, SIGXFSZ);
    const timespec now{};
    sigtimedwait(&limit, nullptr, &now);
  }
  pthread_setcancelstate(cancelling_, nullptr);
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

Outcome DoApart(bool (*work)(void*), void* argument) {
  const std::unique_ptr<char[]> stack(new char[kStack]);
  Order order{work, argument, false};
  const pid_t process = clone(Run, stack.get() + kStack, CLONE_VM | CLONE_VFORK, &order);
  if (process < 0) return work(argument) ? Outcome::kDone : Outcome::kFailed;
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(process, &status, static_cast<int>(__WCLONE));
  } while (ended < 0 && errno == EINTR);
  if (ended != process) return order.isDone ? Outcome::kDone : Outcome::kFailed;
  if (!WIFEXITED(status)) return Outcome::kStopped;
  return WEXITSTATUS(status) == kFailure ? Outcome::kFailed : Outcome::kDone;
}

}  // namespace zon
