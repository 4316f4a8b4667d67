// Work that nothing interrupts halfway: no signal, no cancelled thread, and no kill of the host.
#ifndef ZON_BASE_ZONAPART_H
#define ZON_BASE_ZONAPART_H

#include <csignal>

namespace zon {

// While there is one, signals wait and the thread is not cancelled. A write beyond the limit on the
// size of files just fails: the signal for that is taken away.
class Undisturbed {
 public:
  Undisturbed();
  Undisturbed(const Undisturbed&) = delete;
  Undisturbed& operator=(const Undisturbed&) = delete;
  ~Undisturbed();

 private:
  sigset_t before_;
  int cancelling_;
  bool hadLimit_;
};

enum class Outcome { kDone, kFailed, kStopped };

// Does the work in a process of its own, which shares the memory of this one, and waits for it. Where
// the system grants no process the work is done here. Wants to be undisturbed, for the host's
// handlers must not run twice on the same memory. The host hears nothing of the process: its SIGCHLD
// and wait() are for its own children.
//
// The work may call the system and nothing else: a lock that another thread of the host holds at the
// moment of the kill, that of malloc for example, is never given back. Throws std::bad_alloc before
// anything is done.
Outcome DoApart(bool (*work)(void*), void* argument);

}  // namespace zon

#endif
