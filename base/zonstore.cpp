#include "base/zonstore.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include "base/zonchunk.h"

namespace zon {

struct Store::Chunk {
  Chunk* older;
  std::size_t size;
};

struct Store::Kept {
  Kept* older;
  std::string text;
};

void Store::Clear() {
  for (Kept* kept = kept_; kept != nullptr;) {
    Kept* older = kept->older;
    kept->~Kept();
    kept = older;
  }
  for (Chunk* chunk = chunks_; chunk != nullptr;) {
    Chunk* older = chunk->older;
    GiveChunk(chunk, chunk->size);
    chunk = older;
  }
  next_ = end_ = nullptr;
  chunks_ = nullptr;
  kept_ = nullptr;
  grown_ = 0;
  std::fill(std::begin(freeBlocks_), std::end(freeBlocks_), nullptr);
}

char* Store::TakeFromNewChunk(std::size_t size) {
  // What is larger than a quarter of a chunk gets one to itself and the current chunk stays in use,
  // so no more than a quarter of any chunk is left empty.
  std::size_t whole = kChunkSizes[std::min(grown_, std::size(kChunkSizes) - 1)];
  const bool alone = size > whole / 4;
  if (alone) {
    if (size > SIZE_MAX / 4) throw std::bad_alloc();
    whole = (sizeof(Chunk) + size + 7) & ~std::size_t{7};
  }
  void* memory = TakeChunk(whole);
  if (memory == nullptr) throw std::bad_alloc();
  chunks_ = new (memory) Chunk{chunks_, whole};
  char* taken = reinterpret_cast<char*>(chunks_ + 1);
  if (!alone) {
    ++grown_;
    next_ = taken + size;
    end_ = reinterpret_cast<char*>(memory) + whole;
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
