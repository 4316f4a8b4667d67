#include "base/zonfile.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace zon {
namespace {

int OpenForWriting(const char* name, int flags) {
  for (;;) {
    const int file = open(name, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | flags, 0666);
    if (file >= 0 || errno != EINTR) return file;
  }
}

bool WriteAll(int file, const std::vector<std::string_view>& pieces) {
  std::vector<iovec> left;
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) left.push_back({const_cast<char*>(piece.data()), piece.size()});
  }
  auto next = left.begin();
  while (next != left.end()) {
    const auto count = std::min<std::ptrdiff_t>(left.end() - next, IOV_MAX);
    const ssize_t result = writev(file, &*next, static_cast<int>(count));
    if (result < 0 && errno == EINTR) continue;
    if (result <= 0) return false;
    auto written = static_cast<std::size_t>(result);
    for (; next != left.end() && written >= next->iov_len; ++next) written -= next->iov_len;
    if (written == 0) continue;
    next->iov_base = static_cast<char*>(next->iov_base) + written;
    next->iov_len -= written;
  }
  return true;
}

// Some file systems tell only at a close that there was no room. A second descriptor is closed for
// that, while the first can still cut back.
bool HasArrived(int file) {
  const int second = fcntl(file, F_DUPFD_CLOEXEC, 0);
  return second < 0 || close(second) == 0 || errno == EINTR;
}

// Should even this fail, there is nothing left to try.
void CutBack(int file, off_t size) {
  int result;
  do {
    result = ftruncate(file, size);
  } while (result != 0 && errno == EINTR);
}

}  // namespace

OutputFile::OutputFile(const char* name, Mode mode)
    : file_(OpenForWriting(name, mode == kAppend ? O_APPEND : O_TRUNC)) {}

OutputFile::~OutputFile() {
  if (IsOpen()) close(file_);
}

bool OutputFile::Write(const std::vector<std::string_view>& pieces) {
  if (!IsOpen()) return false;
  struct stat before {};
  const bool regular = fstat(file_, &before) == 0 && S_ISREG(before.st_mode);
  if (WriteAll(file_, pieces) && HasArrived(file_)) return true;
  if (regular) CutBack(file_, before.st_size);
  return false;
}

}  // namespace zon
