// Replaces the functions of the C library by which a file is replaced.
#include "faults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>

namespace {

int fault = 0;
int until = 0;  // 0: no call
bool isActive = false;
std::string only;
std::string failed;

template <class Result, class... Arguments>
Result Call(const char* name, Arguments... arguments) {
  const bool isWrite = name == std::string("writev");
  const bool isFaulty = until > 0 && (only.empty() || only == name) &&
                        ((fault != host::kShort && fault != host::kShortThenNoRoom) || isWrite) &&
                        --until == 0;
  if (isFaulty) failed = name;
  if (isFaulty && fault == host::kKillBefore) raise(SIGKILL);
  const bool isClose = name == std::string("close");  // it closes the file also if it fails
  if (isFaulty && fault > 0 && !isClose) return errno = fault, -1;
  auto* function = reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, name));
  // No test sees what a sync does, and it is by far the slowest call.
  const bool isSkipped = isActive && name == std::string("fsync");
  const Result result = isSkipped ? 0 : function(arguments...);
  if (isFaulty && fault == host::kKillAfter) raise(SIGKILL);
  return isFaulty && isClose && fault > 0 ? errno = fault, -1 : result;
}

bool IsShort() {
  return until == 1 && (fault == host::kShort || fault == host::kShortThenNoRoom);
}

}  // namespace

namespace host {

void Inject(int which, int n, const std::string& function) {
  fault = which;
  until = n;
  only = function;
  failed.clear();
  isActive = true;
}

std::string StopFaults() {
  until = 0;
  isActive = false;
  return failed;
}

}  // namespace host

extern "C" {
int openat(int folder, const char* name, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return Call<int>("openat", folder, name, flags, mode);
}
int stat(const char* name, struct stat* facts) noexcept {
  return Call<int>("stat", name, facts);
}
int fstat(int file, struct stat* facts) noexcept {
  return Call<int>("fstat", file, facts);
}
int fstatat(int folder, const char* name, struct stat* facts, int flags) noexcept {
  return Call<int>("fstatat", folder, name, facts, flags);
}
int fstatfs(int file, struct statfs* facts) noexcept {
  return Call<int>("fstatfs", file, facts);
}
ssize_t readlinkat(int folder, const char* name, char* room, size_t size) noexcept {
  return Call<ssize_t>("readlinkat", folder, name, room, size);
}
ssize_t getrandom(void* room, size_t size, unsigned flags) {
  return Call<ssize_t>("getrandom", room, size, flags);
}
ssize_t read(int file, void* room, size_t size) {
  return Call<ssize_t>("read", file, room, size);
}
ssize_t writev(int file, const iovec* pieces, int count) {
  if (!IsShort()) return Call<ssize_t>("writev", file, pieces, count);
  const iovec one{pieces->iov_base, 1};
  const ssize_t written = Call<ssize_t>("writev", file, &one, 1);
  if (fault == host::kShortThenNoRoom) fault = ENOSPC, until = 1, only = "writev";
  return written;
}
int ftruncate(int file, off_t size) noexcept {
  return Call<int>("ftruncate", file, size);
}
off_t lseek(int file, off_t at, int from) noexcept {
  return Call<off_t>("lseek", file, at, from);
}
int fchown(int file, uid_t user, gid_t group) noexcept {
  return Call<int>("fchown", file, user, group);
}
int fchmod(int file, mode_t mode) noexcept {
  return Call<int>("fchmod", file, mode);
}
int futimens(int file, const timespec* times) noexcept {
  return Call<int>("futimens", file, times);
}
ssize_t flistxattr(int file, char* room, size_t size) noexcept {
  return Call<ssize_t>("flistxattr", file, room, size);
}
ssize_t fgetxattr(int file, const char* name, void* room, size_t size) noexcept {
  return Call<ssize_t>("fgetxattr", file, name, room, size);
}
int fsetxattr(int file, const char* name, const void* text, size_t size, int flags) noexcept {
  return Call<int>("fsetxattr", file, name, text, size, flags);
}
int fremovexattr(int file, const char* name) noexcept {
  return Call<int>("fremovexattr", file, name);
}
int fsync(int file) {
  return Call<int>("fsync", file);
}
int renameat(int from, const char* old, int to, const char* name) noexcept {
  return Call<int>("renameat", from, old, to, name);
}
int renameat2(int from, const char* old, int to, const char* name, unsigned flags) noexcept {
  return Call<int>("renameat2", from, old, to, name, flags);
}
int linkat(int from, const char* old, int to, const char* name, int flags) noexcept {
  return Call<int>("linkat", from, old, to, name, flags);
}
int unlinkat(int folder, const char* name, int flags) noexcept {
  return Call<int>("unlinkat", folder, name, flags);
}
int close(int file) {
  return Call<int>("close", file);
}
}
