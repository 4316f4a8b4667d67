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
  bool isRegular;
  iovec* next;
  iovec* end;
  off_t written;
};

bool WriteAll(Delivery& text) {
  while (text.next != text.end) {
    const auto count = std::min<std::ptrdiff_t>(text.end - text.next, IOV_MAX);
    const ssize_t result = writev(text.file, text.next, static_cast<int>(count));
    if (result < 0 && errno == EINTR) continue;
    if (result <= 0) return false;
    text.written += result;
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

// What was written goes again, unless somebody else has written behind it.
void TakeBack(const Delivery& text) {
  struct stat facts {};
  const off_t end = lseek(text.file, 0, SEEK_CUR);
  if (text.written > 0 && fstat(text.file, &facts) == 0 && facts.st_size == end) {
    CutBack(text.file, end - text.written);
  }
}

bool Deliver(void* delivery) {
  auto& text = *static_cast<Delivery*>(delivery);
  if (WriteAll(text) && HasArrived(text.file)) return true;
  if (text.isRegular) TakeBack(text);
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
  const bool isRegular = fstat(file_, &facts) == 0 && S_ISREG(facts.st_mode);
  Delivery text{file_, isRegular, list.data(), list.data() + list.size(), 0};
  if (!isRegular) return Deliver(&text);
  const Undisturbed undisturbed;
  if (IsTakenAtOnce(facts.st_size, size)) return Deliver(&text);
  const Outcome outcome = DoApart(Deliver, &text);
  if (outcome == Outcome::kStopped) CutBack(file_, facts.st_size);
  return outcome == Outcome::kDone;
}

}  // namespace zon
