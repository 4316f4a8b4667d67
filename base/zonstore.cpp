#include "base/zonstore.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

namespace zon {

struct Store::Chunk {
  Chunk* older;
  void* unused;  // keeps what follows aligned to 16 bytes
};

struct Store::Kept {
  Kept* older;
  std::string text;
};

namespace {

constexpr std::size_t kFirstChunk = 4096;
constexpr std::size_t kHugePage = std::size_t{1} << 21;
constexpr std::size_t kLargestChunk = 2 * kHugePage;
constexpr std::size_t kAllocatorHead = 16;  // so that a chunk fills whole pages

// The first touch of a page costs more than whatever is put into it, so large chunks ask for large
// pages.
void* AllocateChunk(std::size_t size) {
  if (size < kHugePage) return std::malloc(size);
  void* chunk = nullptr;
  if (posix_memalign(&chunk, kHugePage, size) != 0) return nullptr;
  madvise(chunk, size / kHugePage * kHugePage, MADV_HUGEPAGE);  // a wish: refused is as good
  return chunk;
}

}  // namespace

void Store::Clear() {
  for (Kept* kept = kept_; kept != nullptr;) {
    Kept* older = kept->older;
    kept->~Kept();
    kept = older;
  }
  for (Chunk* chunk = chunks_; chunk != nullptr;) {
    Chunk* older = chunk->older;
    std::free(chunk);
    chunk = older;
  }
  next_ = end_ = nullptr;
  chunks_ = nullptr;
  kept_ = nullptr;
  chunkSize_ = 0;
  std::fill(std::begin(freeBlocks_), std::end(freeBlocks_), nullptr);
}

char* Store::TakeFromNewChunk(std::size_t size) {
  const std::size_t common = std::min(std::max(chunkSize_ * 2, kFirstChunk), kLargestChunk);
  // What is larger than a quarter of a chunk gets one to itself and the current chunk stays in use,
  // so no more than a quarter of any chunk is left empty.
  const bool alone = size > common / 4;
  const std::size_t room =
      alone ? (size + 7) & ~std::size_t{7} : common - kAllocatorHead - sizeof(Chunk);
  if (room < size || room > SIZE_MAX - sizeof(Chunk)) throw std::bad_alloc();
  auto* chunk = static_cast<Chunk*>(AllocateChunk(sizeof(Chunk) + room));
  if (chunk == nullptr) throw std::bad_alloc();
  chunk->older = chunks_;
  chunks_ = chunk;
  char* taken = reinterpret_cast<char*>(chunk + 1);
  if (!alone) {
    chunkSize_ = common;
    next_ = taken + size;
    end_ = taken + room;
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
