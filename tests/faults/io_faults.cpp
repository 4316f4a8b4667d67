#include "io_faults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>

namespace faults {

std::string target;

namespace {

Call faulty = kCalls;
int fault = 0;
int until = 0;  // 0: no call
bool allAfter = false;
bool hasFailed = false;
int inherited = 0;

bool HasFault(Call call) {
  if (call != faulty || until == 0 || (until > 1 && --until > 0)) return false;
  if (!allAfter) until = 0;
  hasFailed = true;
  if (fault > 0) errno = fault;
  return true;
}

ssize_t Write(int file, const iovec* pieces, int count) {
  if (!HasFault(kWrite)) return syscall(SYS_writev, file, pieces, count);
  if (fault > 0) return -1;
  if (fault == kOtherWriterThenNoRoom) {
    const long other = syscall(SYS_open, target.c_str(), O_WRONLY | O_APPEND);
    if (syscall(SYS_write, other, "; other", 7) == 7) errno = ENOSPC;
    syscall(SYS_close, other);
    return -1;
  }
  if (fault == kNoRoomAfterSome) fault = ENOSPC, until = 1;
  if (fault == kSomeThenOtherWriter) fault = kOtherWriterThenNoRoom, until = 1;
  return syscall(SYS_write, file, pieces->iov_base, 1);
}

}  // namespace

void Inject(Call call, int which, int n, bool andAllAfter) {
  faulty = call;
  fault = which;
  until = n;
  allAfter = andAllAfter;
  hasFailed = false;
}
bool Stop() {
  until = 0;
  return hasFailed;
}
int CountInherited() {
  return inherited;
}

extern "C" {
int open(const char* name, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if ((flags & O_CLOEXEC) == 0) ++inherited;
  return HasFault(kOpen) ? -1 : static_cast<int>(syscall(SYS_open, name, flags, mode));
}
int fstat(int file, struct stat* facts) noexcept {
  return HasFault(kStat) ? -1 : static_cast<int>(syscall(SYS_fstat, file, facts));
}
ssize_t read(int file, void* room, std::size_t size) {
  if (!HasFault(kRead)) return syscall(SYS_read, file, room, size);
  return fault > 0 ? -1 : syscall(SYS_read, file, room, std::min<std::size_t>(size, 1));
}
ssize_t write(int file, const void* text, std::size_t size) {
  const iovec piece{const_cast<void*>(text), size};
  return Write(file, &piece, 1);
}
ssize_t writev(int file, const iovec* pieces, int count) {
  return Write(file, pieces, count);
}
int ftruncate(int file, off_t size) noexcept {
  return HasFault(kTruncate) ? -1 : static_cast<int>(syscall(SYS_ftruncate, file, size));
}
int close(int file) {
  const int result = static_cast<int>(syscall(SYS_close, file));
  return HasFault(kClose) ? -1 : result;
}
}

}  // namespace faults
