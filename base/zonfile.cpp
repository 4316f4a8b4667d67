// Calls of the system for files. Each call that a signal interrupted (EINTR) is repeated.
//
// OutputFile::Write appends all pieces or, in a regular file, none: after a failure the file is cut
// back to its length before the write. While it runs, a write beyond the limit on file sizes must fail
// with EFBIG and not end the host by SIGXFSZ, and the thread must not be cancelled: WholeWrite.
//
// O_NOCTTY: a terminal that is opened as a file does not become the controlling one. O_CLOEXEC:
// programs that the host starts do not inherit the descriptor. Tested by
// tests/faults/io_faults_test.cpp.
#include "base/zonfile.h"

#include <fcntl.h>
#include <limits.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <ctime>

namespace zon {
namespace {

int OpenFile(const char* name, int flags) {
  for (;;) {
    const int file = open(name, flags | O_CLOEXEC | O_NOCTTY, 0666);
    if (file >= 0 || errno != EINTR) return file;
  }
}

bool IsPending(int signal) {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal) == 1;
}

// While one exists, a write beyond the limit on the size of files fails instead of ending the host,
// and the thread is not cancelled between a part of a text and the rest of it.
class WholeWrite {
 public:
  WholeWrite() {
    sigemptyset(&limit_);
    sigaddset(&limit_, SIGXFSZ);
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState_);
    pthread_sigmask(SIG_BLOCK, &limit_, &before_);
    wasPending_ = IsPending(SIGXFSZ);
  }
  WholeWrite(const WholeWrite&) = delete;
  WholeWrite& operator=(const WholeWrite&) = delete;
  ~WholeWrite() {
    // Consumes the signal of this write. One that was pending before belongs to the host.
    if (!wasPending_ && IsPending(SIGXFSZ)) {
      const timespec now{};
      sigtimedwait(&limit_, nullptr, &now);
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    pthread_setcancelstate(cancelState_, nullptr);
  }

 private:
  sigset_t limit_;
  sigset_t before_;
  int cancelState_ = 0;
  bool wasPending_ = false;
};

// Appends the pieces, at most IOV_MAX in a call. Adds what was written to `size`.
bool WriteAll(int file, std::vector<iovec>& pieces, off_t* size) {
  iovec* next = pieces.data();
  iovec* const end = next + pieces.size();
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

// Some file systems report only at a close that there was no room. A second descriptor is closed
// for that, while the first can still cut the file back.
bool HasArrived(int file) {
  const int second = fcntl(file, F_DUPFD_CLOEXEC, 0);
  return second < 0 || close(second) == 0 || errno == EINTR;
}

// Cuts off the `size` bytes that were just written, unless another writer has appended to them.
void CutBack(int file, off_t size) {
  struct stat facts {};
  const off_t end = lseek(file, 0, SEEK_CUR);
  if (size == 0 || fstat(file, &facts) != 0 || facts.st_size != end) return;
  while (ftruncate(file, end - size) != 0 && errno == EINTR) {
  }
}

}  // namespace

bool InputFile::Open(const char* name) {
  Close();
  file_ = OpenFile(name != nullptr ? name : "", O_RDONLY);
  error_ = IsOpen() ? 0 : errno;
  if (!IsOpen()) return false;
  struct stat facts {};
  if (fstat(file_, &facts) != 0) error_ = errno;
  if (S_ISDIR(facts.st_mode)) error_ = EISDIR;
  if (error_ != 0) {
    Close();
    return false;
  }
  size_ = S_ISREG(facts.st_mode) ? static_cast<std::size_t>(std::max<off_t>(facts.st_size, 0)) : 0;
  isDevice_ = S_ISCHR(facts.st_mode);
  failed_ = false;
  return true;
}

std::size_t InputFile::Read(char* room, std::size_t size) {
  if (!IsOpen()) return 0;
  ssize_t got;
  do {
    got = read(file_, room, size);
  } while (got < 0 && errno == EINTR);
  if (got > 0) return static_cast<std::size_t>(got);
  failed_ = got < 0;
  if (failed_) error_ = errno;
  Close();
  return 0;
}

void InputFile::Close() {
  if (IsOpen()) close(file_);
  file_ = -1;
}

OutputFile::OutputFile(const char* name, Mode mode)
    : file_(OpenFile(name, O_WRONLY | O_CREAT | (mode == kAppend ? O_APPEND : O_TRUNC))) {}

OutputFile::~OutputFile() {
  if (IsOpen()) close(file_);
}

bool OutputFile::Write(const std::vector<std::string_view>& pieces) {
  if (!IsOpen()) return false;
  std::vector<iovec> list;
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) list.push_back({const_cast<char*>(piece.data()), piece.size()});
  }
  off_t written = 0;
  struct stat facts {};
  const bool isRegular = fstat(file_, &facts) == 0 && S_ISREG(facts.st_mode);
  if (!isRegular) return WriteAll(file_, list, &written) && HasArrived(file_);
  const WholeWrite wholeWrite;
  if (WriteAll(file_, list, &written) && HasArrived(file_)) return true;
  CutBack(file_, written);
  return false;
}

}  // namespace zon
