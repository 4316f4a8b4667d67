// Chunks by size: up to 64 KiB from malloc, larger ones mapped, from 2 MiB on in large pages. A
// large page costs one page fault in place of 512.
//
// One freed chunk of each usual size from 256 KiB on is cached. The cache is a set of atomic
// pointers without a lock: a release stores its chunk only into an empty place, an allocation
// exchanges the pointer for null. So a chunk has one owner at any time, and at most one of each
// size is kept. Tested by tests/size_test.cpp, and for refused requests by
// tests/faults/alloc_faults_test.cpp.
#include "base/zonchunk.h"

#include <sys/mman.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace zon {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::size_t kMallocSizes = 5;  // how many of kChunkSizes are from malloc

// The sanitizers check only memory of malloc, so under them every chunk is allocated there.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZON_MALLOC_ONLY
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(ZON_MALLOC_ONLY)
constexpr std::size_t kLargestMalloc = SIZE_MAX;
#else
constexpr std::size_t kLargestMalloc = kChunkSizes[kMallocSizes - 1];
#endif

// Cache of one freed chunk of one size. Filled if empty; emptied by the next allocation of that
// size. Without it, loading one file after another takes 50 % longer, most of it in page faults.
struct Spare {
  const std::size_t size;
  std::atomic<void*> chunk{nullptr};
};

Spare spares[] = {{kChunkSizes[5]},     {kChunkSizes[6]},     {kChunkSizes[7]},
                  {kChunkSizes[8]},     {kChunkSizes[9]},     {kTextChunkSizes[0]},
                  {kTextChunkSizes[1]}, {kTextChunkSizes[2]}, {kTextChunkSizes[3]}};
static_assert(std::size(spares) ==
                  std::size(kChunkSizes) - kMallocSizes + std::size(kTextChunkSizes),
              "each size that is mapped has a spare");

// The one for chunks of exactly this size; null if there is none.
Spare* FindSpare(std::size_t size) {
  for (Spare& spare : spares) {
    if (size == spare.size) return &spare;
  }
  return nullptr;
}

void* Map(std::size_t size) {
  void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return mapped != MAP_FAILED ? mapped : nullptr;
}

// Maps memory that begins at a large page and asks for large pages, which is only a hint.
void* MapInHugePages(std::size_t size) {
  auto* const start = static_cast<char*>(Map(size + kHugePage));
  if (start == nullptr) return nullptr;
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(start) % kHugePage;
  if (before != 0) munmap(start, before);
  munmap(start + before + size, kHugePage - before);  // together one large page is unmapped
  madvise(start + before, size, MADV_HUGEPAGE);
  return start + before;
}

}  // namespace

void* AllocateChunk(std::size_t& size) {
  if (size <= kLargestMalloc) return std::malloc(size);
  if (size > SIZE_MAX / 2) return nullptr;
  if (Spare* spare = FindSpare(size)) {
    if (void* chunk = spare->chunk.exchange(nullptr)) return chunk;
  }
  // A mapping is whole pages. The caller may use the rest of the last one.
  size = (size + kPage - 1) / kPage * kPage;
  return size < kHugePage ? Map(size) : MapInHugePages(size);
}

void ReleaseChunk(void* chunk, std::size_t size) {
  if (size <= kLargestMalloc) return std::free(chunk);
  Spare* spare = FindSpare(size);
  void* none = nullptr;
  const bool isKept = spare != nullptr && spare->chunk.compare_exchange_strong(none, chunk);
  if (!isKept) munmap(chunk, size);
}

}  // namespace zon
