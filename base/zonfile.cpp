// Calls of the system for files. Each call that a signal interrupted (EINTR) is repeated.
//
// OutputFile::Write appends all pieces or, in a regular file, none: after a failure the file is cut
// back to its length before the write. While it runs, a write beyond the limit on file sizes must
// fail with EFBIG and not end the host by SIGXFSZ, and the thread must not be cancelled:
// WholeWrite.
//
// O_NOCTTY: a terminal that is opened as a file does not become the controlling one. O_CLOEXEC:
// programs that the host starts do not inherit the descriptor. Tested by
// tests/faults/io_faults_test.cpp.
#include "base/zonfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include "base/zondescriptor.h"
#include "base/zonwrite.h"

namespace zon {
namespace {

int OpenFile(const char* name, int flags) {
  return Repeat([&] { return open(name, flags | O_CLOEXEC | O_NOCTTY, 0666); });
}

// Cuts off the `size` bytes that were just written, unless another writer has appended to them.
void CutBack(int file, off_t size) {
  struct stat facts {};
  const off_t end = lseek(file, 0, SEEK_CUR);
  if (size == 0 || fstat(file, &facts) != 0 || facts.st_size != end) return;
  Repeat([&] { return ftruncate(file, end - size); });
}

}  // namespace

bool InputFile::Open(const char* name) {
  return Adopt(OpenFile(name != nullptr ? name : "", O_RDONLY));
}

bool InputFile::Adopt(int file) {
  const int openError = errno;
  file_ = Descriptor(file);
  error_ = IsOpen() ? 0 : openError;
  if (!IsOpen()) return false;
  struct stat facts {};
  error_ = ErrorOf([&] { return fstat(file_.Get(), &facts); });
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
  const ssize_t got = Repeat([&] { return read(file_.Get(), room, size); });
  if (got > 0) return static_cast<std::size_t>(got);
  failed_ = got < 0;
  if (failed_) error_ = errno;
  Close();
  return 0;
}

OutputFile::OutputFile(const char* name, Mode mode)
    : file_(OpenFile(name, O_WRONLY | O_CREAT | (mode == kAppend ? O_APPEND : O_TRUNC))) {}

bool OutputFile::Write(const std::vector<std::string_view>& pieces) {
  if (!IsOpen()) return false;
  std::vector<iovec> list;
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) list.push_back({const_cast<char*>(piece.data()), piece.size()});
  }
  const iovec* const end = list.data() + list.size();
  off_t written = 0;
  struct stat facts {};
  const bool isRegular = fstat(file_.Get(), &facts) == 0 && S_ISREG(facts.st_mode);
  if (!isRegular)
    return WriteAll(file_.Get(), list.data(), end, &written) && HasArrived(file_.Get());
  const WholeWrite wholeWrite;
  if (WriteAll(file_.Get(), list.data(), end, &written) && HasArrived(file_.Get())) return true;
  CutBack(file_.Get(), written);
  return false;
}

}  // namespace zon
