// The memory of one tree: nodes, their small arrays and their texts.
//
// A bump allocator over a list of growing chunks. Arrays, and what editing deletes, are released
// singly, to a free list for their size; Clear releases all the rest. So making a node costs a few
// nanoseconds and closing a file a few calls. The arena runs no destructors but those of the
// strings it keeps: an owner that puts another object with a destructor into it must run that
// (CzonNode::Free).
// Tested by tests/tree_test.cpp and by the tests that refuse memory.
#ifndef ZON_BASE_ZONARENA_H
#define ZON_BASE_ZONARENA_H

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace zon {

// A string, and where its characters were before; null if they are new.
struct KeptString : std::string {
  const char* origin;
};

// The origin of a text that CopyText has made.
inline const char* OriginOfCopy(const char* copy) {
  const char* origin;
  std::memcpy(&origin, copy - sizeof origin, sizeof origin);
  return origin;
}

inline void SetOriginOfCopy(const char* copy, const char* origin) {
  std::memcpy(const_cast<char*>(copy) - sizeof origin, &origin, sizeof origin);
}

class Arena {
 public:
  Arena() = default;
  ~Arena() { Clear(); }
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  // Frees everything.
  void Clear();

  // Allocates `size` bytes, aligned for pointers and doubles. Throws std::bad_alloc.
  void* Allocate(std::size_t size) {
    size = (size + 7) & ~std::size_t{7};
    if (size > static_cast<std::size_t>(end_ - next_)) return AllocateFromNewChunk(size);
    return std::exchange(next_, next_ + size);
  }

  // The same as Allocate, from what was released if there is a piece of this size.
  void* AllocatePiece(std::size_t size) { return hasPieces_ ? ReusePiece(size) : Allocate(size); }
  void ReleasePiece(void* piece, std::size_t size);

  // Allocates 8 << power bytes for a growing array. A released block serves the next array of its
  // size, so arrays that grow and shrink again and again do not fill the arena.
  void* AllocateBlock(unsigned power);
  void ReleaseBlock(void* block, unsigned power);

  // Copies the text and appends a zero. `origin` says where the characters come from, null for
  // nowhere; it is in the eight bytes before the copy, see OriginOfCopy.
  const char* CopyText(std::string_view text, const char* origin = nullptr);
  void ReleaseText(std::string_view copy);

  // Keeps a string for as long as the arena lives.
  KeptString* KeepString(std::string text, const char* origin = nullptr);

 private:
  struct Chunk;
  struct Kept;

  static constexpr std::size_t kLargestPiece = 256;

  void* AllocateFromNewChunk(std::size_t size);
  void* ReusePiece(std::size_t size);

  char* next_ = nullptr;
  char* end_ = nullptr;
  Chunk* chunks_ = nullptr;
  Kept* kept_ = nullptr;
  void* freeBlocks_[40] = {};  // by power; each block begins with a pointer to the next
  void* freePieces_[kLargestPiece / 8 + 1] = {};  // by size / 8
  bool hasPieces_ = false;
  std::size_t grown_ = 0;  // how many chunks were allocated for more than one piece
};

// The same for owners that may have no arena: then malloc allocates the block.
void* AllocateBlock(Arena* arena, unsigned power);
void ReleaseBlock(Arena* arena, void* block, unsigned power);

}  // namespace zon

#endif
