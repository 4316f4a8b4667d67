// What every write of a file needs: all of a text, whatever the system writes in one call, and no
// signal or cancellation that ends the host or the thread between two parts of a text.
#ifndef ZON_BASE_ZONWRITE_H
#define ZON_BASE_ZONWRITE_H

#include <sys/types.h>
#include <sys/uio.h>

#include <csignal>

namespace zon {

// Blocks a signal in this thread. If calls of the thread raise it meanwhile, it is discarded at the
// end. One that was pending before belongs to the host.
class HeldSignal {
 public:
  explicit HeldSignal(int signal);
  HeldSignal(const HeldSignal&) = delete;
  HeldSignal& operator=(const HeldSignal&) = delete;
  ~HeldSignal();

 private:
  const int signal_;
  sigset_t before_;
  bool wasPending_ = false;
};

// The thread is cancelled, if at all, at the end.
class HeldCancellation {
 public:
  HeldCancellation();
  HeldCancellation(const HeldCancellation&) = delete;
  HeldCancellation& operator=(const HeldCancellation&) = delete;
  ~HeldCancellation();

 private:
  int state_ = 0;
};

// While one exists, a write beyond the limit on the size of files fails with EFBIG instead of
// ending the host by SIGXFSZ, and the thread is not cancelled between a part of a text and the rest
// of it.
class WholeWrite {
  HeldCancellation cancellation_;
  HeldSignal limit_{SIGXFSZ};
};

// Writes the pieces from `next` to `end`, which it changes, at most IOV_MAX in a call. Adds what
// was written to `size`. A call that a signal interrupted is repeated.
bool WriteAll(int file, iovec* next, const iovec* end, off_t* size);

// Some file systems report only at a close that there was no room. A second descriptor is closed
// for that, while the first can still undo what was written.
bool HasArrived(int file);

}  // namespace zon

#endif
