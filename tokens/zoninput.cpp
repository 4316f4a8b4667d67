// Reading and push-back; the counting is in the header. The file is closed when its end is reached:
// a reader that is kept uses no descriptor, and the end of a growing file is final.
#include "tokens/zoninput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr std::size_t kFront = 16;  // free bytes before a block, for push-back right after a read

int OpenForReading(const char* name) {
  int file;
  do {
    file = ::open(name, O_RDONLY | O_CLOEXEC | O_NOCTTY);
  } while (file < 0 && errno == EINTR);
  if (file < 0) return -1;
  struct stat status;
  if (::fstat(file, &status) == 0 && !S_ISDIR(status.st_mode)) return file;
  ::close(file);
  return -1;
}

}  // namespace

int CzonInput::open(const char* name) {
  if (!name) return 2;
  std::unique_ptr<unsigned char[]> buffer(new unsigned char[kFront + kBlock + 1]);
  const int file = OpenForReading(name);
  if (file < 0) return 2;
  CloseFile();
  file_ = file;
  failed_ = false;
  Use(std::move(buffer), kFront, 0);
  charactersBefore_ = 0U - static_cast<std::uint32_t>(kFront);
  lines_ = 1;
  lineOrigin_ = 0;
  previousPosition_ = 0;
  return 0;
}

int CzonInput::GetSpecial() {
  const int c = peek();
  if (c < 0) return c;
  ++cursor_;
  if (c == '\n') {
    ++lines_;
    previousPosition_ = Position() - 1;
    lineOrigin_ = Characters();
  }
  return c;
}

void CzonInput::putback(char c) {
  if (cursor_ == begin_) MakeRoom();
  *--cursor_ = static_cast<unsigned char>(c);
  if (c != '\n') return;
  --lines_;
  lineOrigin_ = Characters() - previousPosition_;
}

/** Reads the next block. Call only when every character is consumed. Returns false at the end of the
 *  file and after a failure, from then on always. */
bool CzonInput::Fill() {
  if (file_ < 0) return false;
  unsigned char* const block = begin_ + kFront;
  ssize_t got;
  do {
    got = ::read(file_, block, kBlock);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) {
    failed_ = got < 0;
    CloseFile();
    return false;
  }
  charactersBefore_ = Characters() - static_cast<std::uint32_t>(kFront);
  cursor_ = block;
  end_ = block + got;
  *end_ = 0;
  return true;
}

/** Moves the unread characters to the end of a larger buffer. Call only when the cursor is at the
 *  start of the buffer. The free part before them is at least as large as they are, so that n
 *  characters are put back in O(n) steps. */
void CzonInput::MakeRoom() {
  const auto unread = static_cast<std::size_t>(end_ - cursor_);
  const std::size_t room = unread + kFront + kBlock;
  std::unique_ptr<unsigned char[]> buffer(new unsigned char[room + unread + 1]);
  std::copy(cursor_, end_, buffer.get() + room);
  Use(std::move(buffer), room, unread);
  charactersBefore_ -= static_cast<std::uint32_t>(room);
}

/** Makes the buffer the current one; `size` characters from `start` on are unread. */
void CzonInput::Use(std::unique_ptr<unsigned char[]> buffer, std::size_t start, std::size_t size) {
  buffer_ = std::move(buffer);
  begin_ = buffer_.get();
  cursor_ = begin_ + start;
  end_ = cursor_ + size;
  *end_ = 0;
}

void CzonInput::CloseFile() {
  if (file_ >= 0) ::close(file_);
  file_ = -1;
}
