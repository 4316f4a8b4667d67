// Tested by tests/scanner_test.cpp.
#include "reader/yyinput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

namespace {

constexpr std::size_t kSmallestBlock = 512;
constexpr std::size_t kLargestBlock = std::size_t{256} << 10;
constexpr std::size_t kUnknownSize = std::size_t{64} << 10;
constexpr std::size_t kPiece = std::size_t{64} << 10;  // stays in the cache while it is scanned

// What a stream without a block reads: nothing, followed by the zero that ends every block.
unsigned char nothing[1] = {};

int OpenForReading(const char* name) {
  for (;;) {
    const int file = open(name, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (file >= 0 || errno != EINTR) return file;
  }
}

}  // namespace

CyyInput::~CyyInput() = default;

void CyyInput::PutBack(int c) {
  if (c < 0) return;
  if (c == '\n') {
    --lines_;
    position_ = previousPosition_;
  } else {
    --position_;
  }
  --characters_;
  Put(c);
}

CyyStream::CyyStream(const char* name) {
  ReleaseBlock();
  status_ = 2;
  file_ = OpenForReading(name != nullptr ? name : "");
  if (file_ < 0) return;
  struct stat facts {};
  if (fstat(file_, &facts) != 0 || S_ISDIR(facts.st_mode)) {
    Close();
    return;
  }
  // A small file gets a small block. The size is a hint alone: pipes and the files of /proc have
  // none, and a file may grow.
  const auto size = static_cast<std::size_t>(std::max<off_t>(facts.st_size, 0));
  size_ = size == 0 ? kUnknownSize : std::clamp(size + 1, kSmallestBlock, kLargestBlock);
  try {
    StartBlock(ownBlock_);
  } catch (...) {
    CloseFile();
    throw;
  }
  status_ = 0;
}

CyyStream::~CyyStream() {
  Close();
}

void CyyStream::Close() {
  CloseFile();
  if (keeper_ == nullptr) ownBlock_.Clear();
  Count();
  ReleaseBlock();
}

void CyyStream::ReleaseBlock() {
  block_ = nullptr;
  counted_ = next_ = end_ = nothing;
}

void CyyStream::CloseFile() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

void CyyStream::StartBlock(zon::Store& store) {
  char* room = store.TakeRaw(kPutBackRoom + size_ + 1);
  counted_ = next_ = end_ = block_ = reinterpret_cast<unsigned char*>(room) + kPutBackRoom;
  *end_ = '\0';
}

bool CyyStream::Fill() {
  if (file_ < 0) return false;
  Count();
  if (keeper_ == nullptr) {
    counted_ = next_ = end_ = block_;
  } else if (end_ == block_ + size_) {
    StartBlock(*keeper_);
  }
  const std::size_t room = std::min(static_cast<std::size_t>(block_ + size_ - end_), kPiece);
  ssize_t got;
  do {
    got = read(file_, end_, room);
  } while (got < 0 && errno == EINTR);
  if (got > 0) end_ += got;
  *end_ = '\0';
  if (got > 0) return true;
  failed_ = got < 0;
  CloseFile();
  return false;
}

// What is taken one by one is counted by who takes it.
int CyyStream::Get() {
  if (next_ == end_ && !Fill()) return -1;
  ++counted_;
  return *next_++;
}

int CyyStream::Peek() {
  if (next_ == end_ && !Fill()) return -1;
  return *next_;
}

void CyyStream::Put(int c) {
  if (c < 0 || block_ == nullptr || next_ == block_ - kPutBackRoom) return;
  --counted_;
  *--next_ = static_cast<unsigned char>(c);
}
