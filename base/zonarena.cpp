// A bump allocator. Each chunk begins with a header, Chunk; the bytes after it are allocated in
// sequence, from next_ to end_.
//
// Invariants:
// - next_ and end_ are multiples of 8 in the current chunk, or both null. A chunk of one large
//   piece is never current.
// - chunks_ and kept_ are lists, the newest first. Only Clear walks them.
// - freeBlocks_[n] is a stack of released blocks of 8 << n bytes, freePieces_[n] one of 8 * n
//   bytes. What is released holds the pointer to the next one in its first bytes.
//
// The sizes of chunks grow by kChunkSizes, so a small tree needs little memory and a large one few
// chunks. Tested by tests/tree_test.cpp and tests/size_test.cpp; fuzz/memory_fuzz.cpp and
// tests/faults/alloc_faults_test.cpp let each allocation fail.
#include "base/zonarena.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include "base/zonchunk.h"

namespace zon {

struct Arena::Chunk {
  Chunk* older;
  std::size_t size;
};

struct Arena::Kept {
  Kept* older;
  KeptString text;
};

void Arena::Clear() {
  // The strings are in the chunks, so they are destroyed first.
  for (Kept* kept = kept_; kept != nullptr;) {
    Kept* older = kept->older;
    kept->~Kept();
    kept = older;
  }
  for (Chunk* chunk = chunks_; chunk != nullptr;) {
    Chunk* older = chunk->older;
    ReleaseChunk(chunk, chunk->size);
    chunk = older;
  }
  next_ = end_ = nullptr;
  chunks_ = nullptr;
  kept_ = nullptr;
  grown_ = 0;
  std::fill(std::begin(freeBlocks_), std::end(freeBlocks_), nullptr);
  std::fill(std::begin(freePieces_), std::end(freePieces_), nullptr);
  hasPieces_ = false;
}

void* Arena::AllocateFromNewChunk(std::size_t size) {
  // A piece larger than a quarter of the next chunk gets a chunk of its own and the current one
  // stays in use. So what is left empty in a chunk is less than a quarter of its successor.
  std::size_t whole = kChunkSizes[std::min(grown_, std::size(kChunkSizes) - 1)];
  const bool alone = size > whole / 4;
  if (alone) {
    if (size > SIZE_MAX / 4) throw std::bad_alloc();
    whole = sizeof(Chunk) + size;
  }
  void* memory = AllocateChunk(whole);
  if (memory == nullptr) throw std::bad_alloc();
  chunks_ = new (memory) Chunk{chunks_, whole};
  char* allocated = reinterpret_cast<char*>(chunks_ + 1);
  if (!alone) {
    ++grown_;  // the next chunk has the next size
    next_ = allocated + size;
    end_ = reinterpret_cast<char*>(memory) + whole;
  }
  return allocated;
}

namespace {

// Stacks of released memory. memcpy: it has no type, so the pointer in it cannot be read as one.
void Push(void*& stack, void* memory) {
  std::memcpy(memory, &stack, sizeof stack);
  stack = memory;
}

void* Pop(void*& stack) {
  void* const memory = stack;
  std::memcpy(&stack, memory, sizeof stack);
  return memory;
}

}  // namespace

void* Arena::ReusePiece(std::size_t size) {
  void*& pieces = freePieces_[std::min(size, kLargestPiece) / 8];
  return size <= kLargestPiece && pieces != nullptr ? Pop(pieces) : Allocate(size);
}

void Arena::ReleasePiece(void* piece, std::size_t size) {
  if (size > kLargestPiece) return;
  Push(freePieces_[size / 8], piece);
  hasPieces_ = true;
}

void* Arena::AllocateBlock(unsigned power) {
  void*& blocks = freeBlocks_[power];
  return blocks != nullptr ? Pop(blocks) : Allocate(std::size_t{8} << power);
}

void Arena::ReleaseBlock(void* block, unsigned power) {
  Push(freeBlocks_[power], block);
}

void* AllocateBlock(Arena* arena, unsigned power) {
  if (arena != nullptr) return arena->AllocateBlock(power);
  void* block = std::malloc(std::size_t{8} << power);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void ReleaseBlock(Arena* arena, void* block, unsigned power) {
  if (arena == nullptr) {
    std::free(block);
  } else {
    arena->ReleaseBlock(block, power);
  }
}

namespace {

// The origin, the text and a zero, in whole pieces.
std::size_t SizeOfCopy(std::size_t size) {
  return (sizeof(const char*) + size + 1 + 7) & ~std::size_t{7};
}

}  // namespace

const char* Arena::CopyText(std::string_view text, const char* origin) {
  char* copy = static_cast<char*>(AllocatePiece(SizeOfCopy(text.size()))) + sizeof origin;
  std::memcpy(copy - sizeof origin, &origin, sizeof origin);
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

void Arena::ReleaseText(std::string_view copy) {
  ReleasePiece(const_cast<char*>(copy.data()) - sizeof(const char*), SizeOfCopy(copy.size()));
}

KeptString* Arena::KeepString(std::string text, const char* origin) {
  auto* kept = new (Allocate(sizeof(Kept))) Kept{nullptr, {std::move(text), origin}};
  kept->older = kept_;
  kept_ = kept;
  return &kept->text;
}

}  // namespace zon
