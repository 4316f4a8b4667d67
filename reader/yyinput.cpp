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
constexpr std::size_t kLargestBlock =
    std::size_t{64} * 1024;  // stays in the cache while it is scanned

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
  size_ = size == 0 ? kLargestBlock : std::clamp(size + 1, kSmallestBlock, kLargestBlock);
  block_.reset(new (std::nothrow) unsigned char[kPutBackRoom + size_]);
  if (block_ == nullptr) {
    CloseFile();
    throw std::bad_alloc();
  }
  next_ = end_ = block_.get() + kPutBackRoom;
  status_ = 0;
}

CyyStream::~CyyStream() {
  Close();
}

void CyyStream::Close() {
  CloseFile();
  block_.reset();
  next_ = end_ = nullptr;
}

void CyyStream::CloseFile() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

bool CyyStream::Fill() {
  if (file_ < 0) return false;
  next_ = end_ = block_.get() + kPutBackRoom;
  ssize_t got;
  do {
    got = read(file_, next_, size_);
  } while (got < 0 && errno == EINTR);
  if (got > 0) {
    end_ = next_ + got;
    return true;
  }
  failed_ = got < 0;
  CloseFile();
  return false;
}

int CyyStream::Get() {
  if (next_ == end_ && !Fill()) return -1;
  return *next_++;
}

int CyyStream::Peek() {
  if (next_ == end_ && !Fill()) return -1;
  return *next_;
}

void CyyStream::Put(int c) {
  if (c < 0 || block_ == nullptr || next_ == block_.get()) return;
  *--next_ = static_cast<unsigned char>(c);
}
