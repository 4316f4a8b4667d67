// Chunks of memory: up to 64 KiB from malloc, larger ones from mmap, from 2 MiB on aligned to large
// pages. One freed chunk of each common size from 256 KiB on is cached, because first use of a page
// costs more than filling it.
#ifndef ZON_BASE_ZONCHUNK_H
#define ZON_BASE_ZONCHUNK_H

#include <cstddef>

namespace zon {

// The sizes that a growing user asks for in turn, the last one again and again.
constexpr std::size_t kChunkSizes[] = {
    std::size_t{4} << 10,  std::size_t{8} << 10,   std::size_t{16} << 10, std::size_t{32} << 10,
    std::size_t{64} << 10, std::size_t{256} << 10, std::size_t{1} << 20,  std::size_t{4} << 20,
    std::size_t{8} << 20,  std::size_t{16} << 20};

// The sizes for the text of a file. They differ from those above, so that the nodes made of a text
// do not take the memory that the next text could use again.
constexpr std::size_t kTextChunkSizes[] = {std::size_t{512} << 10, std::size_t{2} << 20,
                                           std::size_t{6} << 20, std::size_t{20} << 20};

// Allocates at least `size` bytes, aligned for every type, and stores in `size` how many. Returns
// null if out of memory.
void* AllocateChunk(std::size_t& size);

// `size` is the one that AllocateChunk stored.
void ReleaseChunk(void* chunk, std::size_t size);

}  // namespace zon

#endif
