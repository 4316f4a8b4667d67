#include "base/zonapart.h"

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace zon {
namespace {

struct Order {
  bool (*work)(void*);
  void* argument;
  bool done;
};

int Run(void* argument) {
  setpgid(0, 0);  // who kills the group of the host does not mean this process
  auto& order = *static_cast<Order*>(argument);
  order.done = order.work(order.argument);
  return order.done ? 0 : 1;
}

}  // namespace

// The host's handlers must not run twice on the same memory, so signals wait. The process tells
// nobody of its end: the host's SIGCHLD and wait() are for the host's own children.
bool DoApart(bool (*work)(void*), void* argument) {
  alignas(16) char stack[16384];
  Order order{work, argument, false};
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const pid_t process = clone(Run, stack + sizeof stack, CLONE_VM | CLONE_VFORK, &order);
  int status = 0;
  pid_t ended = 0;
  while (process > 0 && (ended = waitpid(process, &status, __WCLONE)) < 0 && errno == EINTR) {
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (process < 0) return work(argument);
  return ended == process ? status == 0 : order.done;
}

}  // namespace zon
