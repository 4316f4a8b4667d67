// Memory that lives and dies with one tree. Nodes, their small arrays and their texts are cut one
// behind the other from a few growing chunks, and given back all at once: making a node costs a few
// nanoseconds, closing a file a few calls.
//
// The store runs no destructors, except those of the strings it keeps. Who puts anything else with
// a destructor into it sees to it (CzonNode::Free).
#ifndef ZON_BASE_ZONARENA_H
#define ZON_BASE_ZONARENA_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zon {

class Arena {
 public:
  Arena() = default;
  ~Arena() { Clear(); }
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  // Gives everything back.
  void Clear();

  // Room for `size` bytes, aligned for pointers and doubles. Throws std::bad_alloc.
  void* Allocate(std::size_t size) {
    size = (size + 7) & ~std::size_t{7};
    next_ += -reinterpret_cast<std::uintptr_t>(next_) & 7;
    return AllocateBytes(size);
  }

  // Room for characters, not aligned.
  char* AllocateBytes(std::size_t size) {
    if (size > static_cast<std::size_t>(end_ - next_)) return AllocateFromNewChunk(size);
    char* allocated = next_;
    next_ += size;
    return allocated;
  }

  // Room for 8 << power bytes for a growing array, and its return: given back, it serves the next
  // array of its size, so that lists that grow and shrink for ever do not fill the arena.
  void* AllocateBlock(unsigned power);
  void ReleaseBlock(void* block, unsigned power);

  // A copy of the text with a terminating zero. `before` more bytes stand free in front of it.
  const char* CopyText(std::string_view text, std::size_t before = 0);

  // Makes a string that lives as long as the arena.
  std::string* KeepString(std::string text);

 private:
  struct Chunk;
  struct Kept;

  char* AllocateFromNewChunk(std::size_t size);

  char* next_ = nullptr;
  char* end_ = nullptr;
  Chunk* chunks_ = nullptr;
  Kept* kept_ = nullptr;
  void* freeBlocks_[40] = {};  // by power; each block begins with a pointer to the next
  std::size_t grown_ = 0;      // chunks allocated that were not for one block alone
};

// The same for owners that may stand outside any store: then the block is allocated by itself.
void* AllocateBlock(Arena* arena, unsigned power);
void ReleaseBlock(Arena* arena, void* block, unsigned power);

}  // namespace zon

#endif
