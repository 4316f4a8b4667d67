// Two kinds of memory. A file of known size is read into one chunk of that size. For a source of
// unknown size, such as a pipe, addresses are reserved, and the system provides a page when it is
// first written.
//
// Layout: kLead bytes, the last kFront of them zeros, the text from begin_ to end_, a zero, free
// room. ReadMore appends at most kPiece bytes and writes the zero after them; the room always
// includes a byte for it. Memory is allocated by the first ReadMore, so a parser that reads nothing
// needs none.
#include "base/zonfiletext.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "base/zonchunk.h"

namespace zon {
namespace {

constexpr std::size_t kPage = 4096;
// Before the text. The system copies from the beginning of a page. To a place 1 to 31 bytes into
// its page that takes ten times as long on some processors.
constexpr std::size_t kLead = 64;
static_assert(kLead >= FileText::kFront, "a look at the bytes before the text is allowed");

constexpr std::size_t kPiece = std::size_t{64} << 10;     // stays in the cache while it is scanned
constexpr std::size_t kLeastRoom = std::size_t{1} << 20;  // for a file of unknown size
constexpr std::size_t kMostRoom = std::size_t{1} << 38;
constexpr std::size_t kMostOfPipe = std::size_t{1} << 30;
constexpr std::size_t kMostOfDevice = std::size_t{1} << 24;

}  // namespace

// Allocates the memory for a text of `size` bytes.
void FileText::Reserve(std::size_t size) {
  if (size > SIZE_MAX / 4) throw std::bad_alloc();
  size_ = kLead + size + 1;
  if (size > kPiece) {
    const auto* chunk =
        std::lower_bound(std::begin(kTextChunkSizes), std::end(kTextChunkSizes), size_);
    if (chunk != std::end(kTextChunkSizes)) size_ = *chunk;
  }
  memory_ = static_cast<char*>(AllocateChunk(size_));
  if (memory_ == nullptr) throw std::bad_alloc();
}

void FileText::Assign(const std::vector<std::string_view>& pieces) {
  Release();
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  Reserve(size);
  SetBegin(memory_);
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) std::memcpy(end_, piece.data(), piece.size());
    end_ += piece.size();
  }
  *end_ = '\0';
}

void FileText::SetBegin(char* memory) {
  begin_ = end_ = memory + kLead;
  std::memset(begin_ - kFront, 0, kFront);
}

// A pipe can hold any amount, and the text must not move: addresses are reserved for far more than
// will be used, as many as the system grants. Only the pages that are written take memory.
void FileText::ReserveAddresses() {
  for (std::size_t size = kMostRoom; size >= kLeastRoom; size /= 2) {
    void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED) continue;
    memory_ = static_cast<char*>(mapped);
    size_ = size;
    isMapped_ = true;
    return;
  }
  throw std::bad_alloc();
}

bool FileText::ReadMore() {
  if (!file_.IsOpen()) return false;
  if (memory_ == nullptr) {
    // Some room for what is appended to the file while it is read.
    const std::size_t size = file_.Size();
    if (size == 0) {
      ReserveAddresses();
    } else {
      Reserve(size + std::min(size, kPiece));
    }
    SetBegin(memory_);
  }
  const auto room = static_cast<std::size_t>(memory_ + size_ - 1 - end_);
  if (room == 0) {
    // Full. One more byte decides whether that was the end of the file.
    char more;
    isTooLong_ = file_.Read(&more, 1) != 0;
    Close();
    return false;
  }
  end_ += file_.Read(end_, std::min(room, kPiece));
  *end_ = '\0';
  if (file_.IsOpen()) return true;
  Trim();
  return false;
}

void FileText::ReadAll() {
  const std::size_t most = file_.IsDevice() ? kMostOfDevice : kMostOfPipe;
  while (ReadMore()) {
    if (!isMapped_ || static_cast<std::size_t>(end_ - begin_) < most) continue;
    isTooLong_ = true;
    Close();
  }
}

// Unmaps the addresses that were not needed.
void FileText::Trim() {
  if (!isMapped_) return;
  const auto used = static_cast<std::size_t>(end_ + 1 - memory_);
  const std::size_t kept = (used + kPage - 1) / kPage * kPage;
  munmap(memory_ + kept, size_ - kept);
  size_ = kept;
}

const LineIndex& FileText::Lines() {
  if (lines_ == nullptr) {
    lines_ = std::make_unique<LineIndex>(View());
  }
  return *lines_;
}

void FileText::Release() {
  if (memory_ == nullptr) return;
  if (isMapped_) {
    munmap(memory_, size_);
  } else {
    ReleaseChunk(memory_, size_);
  }
  memory_ = begin_ = end_ = nullptr;
  lines_ = nullptr;
}

}  // namespace zon
