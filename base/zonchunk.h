// Memory in large pieces. The first touch of a page costs more than whatever is put into it; so the
// largest pieces lie in large pages, and those that are given back wait for who comes next.
#ifndef ZON_BASE_ZONCHUNK_H
#define ZON_BASE_ZONCHUNK_H

#include <cstddef>

namespace zon {

// The sizes in which pieces are lent best: the least of them is for small needs, the last one for
// all that goes on growing.
constexpr std::size_t kChunkSizes[] = {
    std::size_t{4} << 10,  std::size_t{8} << 10,   std::size_t{16} << 10, std::size_t{32} << 10,
    std::size_t{64} << 10, std::size_t{256} << 10, std::size_t{1} << 20,  std::size_t{4} << 20};

// A piece of at least that size, aligned for everything; `size` tells how large it is. Null for
// want of memory.
void* AllocateChunk(std::size_t& size);

// `size` as AllocateChunk told it.
void ReleaseChunk(void* chunk, std::size_t size);

}  // namespace zon

#endif
