#include "base/zonfile.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include "base/zonapart.h"

namespace zon {
namespace {

int OpenForWriting(const char* name, int flags) {
  for (;;) {
    const int file = open(name, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | flags, 0666);
    if (file >= 0 || errno != EINTR) return file;
  }
}

// A text on its way into a file.
struct Delivery {
  int file;
  off_t before;  // the length of a regular file, -1 for others
  iovec* next;
  iovec* end;
};

bool WriteAll(Delivery& text) {
  while (text.next != text.end) {
    const auto count = std::min<std::ptrdiff_t>(text.end - text.next, IOV_MAX);
    const ssize_t result = writev(text.file, text.next, static_cast<int>(count));
    if (result < 0 && errno == EINTR) continue;
    if (result <= 0) return false;
    auto written = static_cast<std::size_t>(result);
    for (; text.next != text.end && written >= text.next->iov_len; ++text.next) {
      written -= text.next->iov_len;
    }
    if (written == 0) continue;
    text.next->iov_base = static_cast<char*>(text.next->iov_base) + written;
    text.next->iov_len -= written;
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

bool Deliver(void* delivery) {
  auto& text = *static_cast<Delivery*>(delivery);
  if (WriteAll(text) && HasArrived(text.file)) return true;
  if (text.before >= 0) CutBack(text.file, text.before);
  return false;
}

// The kernel takes a text page by page, and a killed process may stop between two of them.
bool IsTakenAtOnce(off_t before, std::size_t size) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return static_cast<std::size_t>(before) % page + size <= page;
}

}  // namespace

OutputFile::OutputFile(const char* name, Mode mode)
    : file_(OpenForWriting(name, mode == kAppend ? O_APPEND : O_TRUNC)) {}

OutputFile::~OutputFile() {
  if (IsOpen()) close(file_);
}

bool OutputFile::Write(const std::vector<std::string_view>& pieces) {
  if (!IsOpen()) return false;
  std::vector<iovec> list;
  std::size_t size = 0;
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) list.push_back({const_cast<char*>(piece.data()), piece.size()});
    size += piece.size();
  }
  struct stat facts {};
  const bool regular = fstat(file_, &facts) == 0 && S_ISREG(facts.st_mode);
  Delivery text{file_, regular ? facts.st_size : -1, list.data(), list.data() + list.size()};
  if (!regular || IsTakenAtOnce(text.before, size)) return Deliver(&text);
  if (DoApart(Deliver, &text)) return true;
  CutBack(file_, text.before);  // once more: whoever delivered it may have been stopped
  return false;
}

}  // namespace zon
