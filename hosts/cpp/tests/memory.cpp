#include "memory.h"

#include <cstdlib>
#include <new>

#if ZON_COUNTS_MEMORY
void* operator new(std::size_t size) {
  if (++Memory::requests == Memory::refused) throw std::bad_alloc();
  void* const memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
#endif
