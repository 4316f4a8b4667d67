#include "base/zonstore.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

namespace zon {

struct Store::Chunk {
  Chunk* older;
  std::size_t size;  // all of it, for the large ones; 0 for those of malloc
};

struct Store::Kept {
  Kept* older;
  std::string text;
};

namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kFirstChunk = 4096;
constexpr std::size_t kLargestOfMalloc = std::size_t{1} << 20;
constexpr std::size_t kHugePage = std::size_t{1} << 21;
constexpr std::size_t kLargestChunk = 2 * kHugePage;
constexpr std::size_t kAllocatorHead = 16;  // so that a chunk fills whole pages

// The first touch of a page costs more than whatever is put into it. So large chunks begin at a
// large page and ask for more of them.
void* MapChunk(std::size_t size) {
  void* mapped =
      mmap(nullptr, size + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  auto* start = static_cast<char*>(mapped);
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(start) % kHugePage;
  if (before != 0) munmap(start, before);
  munmap(start + before + size, kHugePage - before);
  madvise(start + before, size, MADV_HUGEPAGE);  // a wish: refused is as good
  return start + before;
}

// The large chunks that were given back last wait for the next store: a host that loads one file
// after the other does not pay again for the first touch. The system may take the memory of those
// that wait whenever it wants some.
constexpr std::size_t kSpares = 16;
std::atomic<void*> spares[kSpares];

void* TakeSpare() {
  for (std::atomic<void*>& spare : spares) {
    if (void* chunk = spare.exchange(nullptr)) return chunk;
  }
  return nullptr;
}

bool KeepSpare(void* chunk) {
  madvise(chunk, kLargestChunk, MADV_FREE);
  for (std::atomic<void*>& spare : spares) {
    void* none = nullptr;
    if (spare.compare_exchange_strong(none, chunk)) return true;
  }
  return false;
}

}  // namespace

Store::Chunk* Store::AllocateChunk(std::size_t size) {
  void* chunk = nullptr;
  if (size <= kLargestOfMalloc) {
    chunk = std::malloc(size);
    size = 0;
  } else {
    if (size == kLargestChunk) chunk = TakeSpare();
    if (chunk == nullptr) chunk = MapChunk(size);
  }
  if (chunk == nullptr) throw std::bad_alloc();
  return new (chunk) Chunk{nullptr, size};
}

void Store::FreeChunk(Chunk* chunk) {
  if (chunk->size == 0) {
    std::free(chunk);
  } else if (chunk->size != kLargestChunk || !KeepSpare(chunk)) {
    munmap(chunk, chunk->size);
  }
}

void Store::Clear() {
  for (Kept* kept = kept_; kept != nullptr;) {
    Kept* older = kept->older;
    kept->~Kept();
    kept = older;
  }
  for (Chunk* chunk = chunks_; chunk != nullptr;) {
    Chunk* older = chunk->older;
    FreeChunk(chunk);
    chunk = older;
  }
  next_ = end_ = nullptr;
  chunks_ = nullptr;
  kept_ = nullptr;
  chunkSize_ = 0;
  std::fill(std::begin(freeBlocks_), std::end(freeBlocks_), nullptr);
}

char* Store::TakeFromNewChunk(std::size_t size) {
  std::size_t common = std::max(chunkSize_ * 2, kFirstChunk);
  if (common > kLargestOfMalloc) common = kLargestChunk;
  // What is larger than a quarter of a chunk gets one to itself and the current chunk stays in use,
  // so no more than a quarter of any chunk is left empty.
  const bool alone = size > common / 4;
  if (size > SIZE_MAX / 4) throw std::bad_alloc();
  std::size_t whole = common;
  if (alone) {
    whole = (sizeof(Chunk) + size + 7) & ~std::size_t{7};
    if (whole > kLargestOfMalloc) whole = (whole + kPage - 1) / kPage * kPage;
  } else if (common <= kLargestOfMalloc) {
    whole -= kAllocatorHead;
  }
  Chunk* chunk = AllocateChunk(whole);
  chunk->older = chunks_;
  chunks_ = chunk;
  char* taken = reinterpret_cast<char*>(chunk + 1);
  if (!alone) {
    chunkSize_ = common;
    next_ = taken + size;
    end_ = reinterpret_cast<char*>(chunk) + whole;
  }
  return taken;
}

void* Store::TakeBlock(unsigned power) {
  void* block = freeBlocks_[power];
  if (block == nullptr) return Take(std::size_t{8} << power);
  std::memcpy(&freeBlocks_[power], block, sizeof(void*));
  return block;
}

void Store::GiveBlock(void* block, unsigned power) {
  std::memcpy(block, &freeBlocks_[power], sizeof(void*));
  freeBlocks_[power] = block;
}

void* TakeBlock(Store* store, unsigned power) {
  if (store != nullptr) return store->TakeBlock(power);
  void* block = std::malloc(std::size_t{8} << power);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void GiveBlock(Store* store, void* block, unsigned power) {
  if (store == nullptr) {
    std::free(block);
  } else {
    store->GiveBlock(block, power);
  }
}

const char* Store::CopyText(std::string_view text, std::size_t before) {
  char* copy = TakeRaw(before + text.size() + 1) + before;
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

std::string* Store::Keep(std::string text) {
  auto* kept = new (Take(sizeof(Kept))) Kept{nullptr, std::move(text)};
  kept->older = kept_;
  kept_ = kept;
  return &kept->text;
}

}  // namespace zon
