#include "base/zonfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace zon {
namespace {

int OpenForWriting(const char* name, int flags) {
  for (;;) {
    const int file = open(name, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | flags, 0666);
    if (file >= 0 || errno != EINTR) return file;
  }
}

bool WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace

OutputFile::OutputFile(const char* name, Mode mode)
    : file_(OpenForWriting(name, mode == kAppend ? O_APPEND : O_TRUNC)) {}

OutputFile::~OutputFile() {
  if (IsOpen()) close(file_);
}

bool OutputFile::Write(std::string_view text) {
  if (!IsOpen()) return false;
  struct stat before {};
  const bool regular = fstat(file_, &before) == 0 && S_ISREG(before.st_mode);
  if (WriteAll(file_, text)) return true;
  // Should even this fail, there is nothing left to try.
  if (regular && ftruncate(file_, before.st_size) != 0) return false;
  return false;
}

}  // namespace zon
