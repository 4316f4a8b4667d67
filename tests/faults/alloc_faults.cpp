#include "alloc_faults.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

#include "../hooks.h"

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* piece, std::size_t size);
void __libc_free(void* piece);
}

namespace faults {
namespace {

long untilRefused = 0;
Refusal mode = Refusal::kOne;
bool hasRefused = false;
long refused = 0;
Allocated allocated{};

bool Refuses() {
  if (untilRefused == 0 || host::OwnMemory::count != 0) return false;
  if (untilRefused > 1 && --untilRefused > 0) return false;
  if (mode == Refusal::kOne) untilRefused = 0;
  if (!hasRefused) ++refused;
  hasRefused = true;
  errno = ENOMEM;
  return true;
}

void* Counted(void* piece) {
  if (piece != nullptr) ++allocated.pieces;
  return piece;
}

}  // namespace

void RefuseRequest(long n, Refusal refusal) {
  mode = refusal;
  hasRefused = false;
  untilRefused = n;
}
bool StopRefusing() {
  untilRefused = 0;
  return hasRefused;
}
long CountRefused() {
  return refused;
}
Allocated AllocatedNow() {
  return allocated;
}

extern "C" {
void* malloc(std::size_t size) {
  return Refuses() ? nullptr : Counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size) {
  return Refuses() ? nullptr : Counted(__libc_calloc(count, size));
}
void* realloc(void* piece, std::size_t size) {
  if (Refuses()) return nullptr;
  void* moved = __libc_realloc(piece, size);
  if (piece == nullptr) return Counted(moved);
  if (size == 0) --allocated.pieces;
  return moved;
}
void free(void* piece) {
  if (piece != nullptr) --allocated.pieces;
  __libc_free(piece);
}
void* mmap(void* at, std::size_t size, int use, int flags, int file, off_t offset) {
  if (Refuses()) return MAP_FAILED;
  allocated.mappedBytes += static_cast<long>(size);
  return reinterpret_cast<void*>(syscall(SYS_mmap, at, size, use, flags, file, offset));
}
int munmap(void* at, std::size_t size) {
  allocated.mappedBytes -= static_cast<long>(size);
  return static_cast<int>(syscall(SYS_munmap, at, size));
}
}

}  // namespace faults
