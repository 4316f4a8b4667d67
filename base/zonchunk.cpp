#include "base/zonchunk.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace zon {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kHugePage = std::size_t{2} << 20;

// The sanitizers watch malloc alone: with them every piece comes from there.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZON_MALLOC_ALONE
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(ZON_MALLOC_ALONE)
constexpr std::size_t kLargestOfMalloc = SIZE_MAX;
#else
constexpr std::size_t kLargestOfMalloc = kChunkSizes[4];
#endif

// Pieces of one size that wait to be used again, at most eight. Hosts load one file after the other,
// and so pay for the first touch but once.
class Waiting {
 public:
  constexpr explicit Waiting(std::size_t size) : size_(size) {}

  std::size_t Size() const { return size_; }

  void* Take() {
    for (std::atomic<void*>& place : places_) {
      if (void* chunk = place.exchange(nullptr)) return chunk;
    }
    return nullptr;
  }

  bool Keep(void* chunk) {
    for (std::atomic<void*>& place : places_) {
      void* none = nullptr;
      if (place.compare_exchange_strong(none, chunk)) return true;
    }
    return false;
  }

 private:
  const std::size_t size_;
  std::atomic<void*> places_[8] = {};
};

// The sizes that malloc does not serve.
Waiting waiting[] = {Waiting(kChunkSizes[5]), Waiting(kChunkSizes[6]), Waiting(kChunkSizes[7])};
static_assert(std::size(kChunkSizes) == 8, "each larger size has its place here");

Waiting* WaitingFor(std::size_t size) {
  for (Waiting& each : waiting) {
    if (size <= each.Size()) return &each;
  }
  return nullptr;
}

void* Map(std::size_t size) {
  void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return mapped != MAP_FAILED ? mapped : nullptr;
}

// Begins at a large page and asks for more of them, which is no more than a wish.
void* MapInLargePages(std::size_t size) {
  auto* const start = static_cast<char*>(Map(size + kHugePage));
  if (start == nullptr) return nullptr;
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(start) % kHugePage;
  if (before != 0) munmap(start, before);
  munmap(start + before + size, kHugePage - before);
  madvise(start + before, size, MADV_HUGEPAGE);
  return start + before;
}

}  // namespace

void* AllocateChunk(std::size_t& size) {
  if (size <= kLargestOfMalloc) return std::malloc(size);
  if (size > SIZE_MAX / 2) return nullptr;
  if (Waiting* waiters = WaitingFor(size)) {
    size = waiters->Size();
    if (void* chunk = waiters->Take()) return chunk;
  } else {
    size = (size + kPage - 1) / kPage * kPage;
  }
  return size < kHugePage ? Map(size) : MapInLargePages(size);
}

void ReleaseChunk(void* chunk, std::size_t size) {
  if (size <= kLargestOfMalloc) return std::free(chunk);
  Waiting* waiters = WaitingFor(size);
  if (waiters == nullptr || waiters->Size() != size || !waiters->Keep(chunk)) munmap(chunk, size);
}

}  // namespace zon
