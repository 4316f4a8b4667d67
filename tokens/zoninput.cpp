// Reading and push-back; the counting is in the header. The file is closed when its end is reached:
// a reader that is kept uses no descriptor, and the end of a growing file is final.
#include "tokens/zoninput.h"

#include <algorithm>
#include <utility>

#include "base/zonfile.h"

namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr std::size_t kFront = 16;  // free bytes before a block, for push-back right after a read

}  // namespace

CzonInput::CzonInput() = default;

CzonInput::~CzonInput() = default;

int CzonInput::open(const char* name) {
  if (name == nullptr) return 2;
  std::unique_ptr<unsigned char[]> buffer(new unsigned char[kFront + kBlock + 1]);
  auto file = std::make_unique<zon::InputFile>();
  if (!file->Open(name)) return 2;
  file_ = std::move(file);
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

// Reads the next block. Call only when every character is consumed. Returns false at the end of
// the file and after a failure, from then on always.
bool CzonInput::Fill() {
  if (file_ == nullptr) return false;
  unsigned char* const block = begin_ + kFront;
  const std::size_t got = file_->Read(reinterpret_cast<char*>(block), kBlock);
  if (got == 0) {
    failed_ = file_->HasFailed();
    file_.reset();
    return false;
  }
  charactersBefore_ = Characters() - static_cast<std::uint32_t>(kFront);
  cursor_ = block;
  end_ = block + got;
  *end_ = 0;
  return true;
}

// Moves the unread characters to the end of a larger buffer. Call only when the cursor is at the
// start of the buffer. The free part before them is at least as large as they are, so that n
// characters are put back in O(n) steps.
void CzonInput::MakeRoom() {
  const auto unread = static_cast<std::size_t>(end_ - cursor_);
  const std::size_t room = unread + kFront + kBlock;
  std::unique_ptr<unsigned char[]> buffer(new unsigned char[room + unread + 1]);
  std::copy(cursor_, end_, buffer.get() + room);
  Use(std::move(buffer), room, unread);
  charactersBefore_ -= static_cast<std::uint32_t>(room);
}

// Makes the buffer the current one; `size` characters from `start` on are unread.
void CzonInput::Use(std::unique_ptr<unsigned char[]> buffer, std::size_t start, std::size_t size) {
  buffer_ = std::move(buffer);
  begin_ = buffer_.get();
  cursor_ = begin_ + start;
  end_ = cursor_ + size;
  *end_ = 0;
}
