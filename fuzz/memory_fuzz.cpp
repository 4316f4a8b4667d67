// Loads and queries a file while the n-th allocation fails. The failed call returns its failure
// value and stores its code, nothing leaks, and the next call succeeds. In a build for the fuzzer
// malloc, realloc and mmap fail as well, otherwise only operator new.
#include <sys/mman.h>

#include <cstdlib>
#include <new>

#include "fuzz.h"

namespace {

unsigned long untilRefused = 0;  // counts down; the allocation that makes it 0 fails; 0: none fails

bool IsRefused() {
  return untilRefused > 0 && --untilRefused == 0;
}

}  // namespace

#ifdef ZON_FUZZ_WRAPS
extern "C" {
// The fuzzer itself allocates by other operators.
const char* __asan_default_options() {
  return "alloc_dealloc_mismatch=0";
}

void* __real_malloc(std::size_t size);
void* __real_realloc(void* piece, std::size_t size);
void* __real_mmap(void* at, std::size_t size, int use, int flags, int file, off_t offset);

void* __wrap_malloc(std::size_t size) {
  return IsRefused() ? nullptr : __real_malloc(size);
}
void* __wrap_realloc(void* piece, std::size_t size) {
  return IsRefused() ? nullptr : __real_realloc(piece, size);
}
void* __wrap_mmap(void* at, std::size_t size, int use, int flags, int file, off_t offset) {
  return IsRefused() ? MAP_FAILED : __real_mmap(at, size, use, flags, file, offset);
}
}
#else
#define __real_malloc std::malloc
#endif

void* operator new(std::size_t size) {
  if (void* piece = IsRefused() ? nullptr : __real_malloc(size)) return piece;
  throw std::bad_alloc();
}
void operator delete(void* piece) noexcept {
  std::free(piece);
}
void operator delete(void* piece, std::size_t) noexcept {
  std::free(piece);
}

namespace {

using fuzz::Check;

// Runs the queries that make values, names and texts.
void QueryAll(void* node) {
  zonGetNameGlb(node);
  zonGetString(node);
  zonGetFilename(node);
  zonGetClobString(node);
  const int count = zonGetNoNodes(node);
  for (int n = 1; n <= count; ++n) QueryAll(zonNodeByNum(node, static_cast<unsigned>(n)));
}

}  // namespace

// Byte 1: which allocation fails while the file is loaded; byte 2: which one after that.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes{data, data + size};
  const unsigned loading = bytes.Byte();
  const unsigned querying = bytes.Byte();
  const char* name = fuzz::FileOf(fuzz::TextOf(data, size).substr(std::min<std::size_t>(size, 2)));

  untilRefused = loading;
  void* file = zonLoadFile(name, 0);
  const bool refused = loading != 0 && untilRefused == 0;
  untilRefused = 0;
  const int code = zonGetErrorGlb();
  void* again = zonLoadFile(name, 0);
  const int codeAgain = zonGetErrorGlb();
  if (!refused) Check(file != nullptr && code == codeAgain, "two loads with different codes");
  Check(file != nullptr || code == 1002, "no handle, but no code 1002");
  Check(code != 0 || zonGetRoot(file) != nullptr, "no tree and no code");

  if (zonGetRoot(file) != nullptr) {
    const bool isSame = codeAgain == 0 && *zonGetSyntaxErr(file, nullptr, nullptr, nullptr) ==
                                              *zonGetSyntaxErr(again, nullptr, nullptr, nullptr);
    untilRefused = querying;
    QueryAll(zonGetRoot(file));
    zonWrite(file, fuzz::FileOf({}, 1));
    untilRefused = 0;
    zonGetErrorGlb();
    // A tree with result settings gains a section when it is written.
    int use = 0;
    char folder[1] = "";
    const bool isPlain = *zonGetProjectResultRoot(zonGetRoot(file)) == '\0' &&
                         zonGetCustomResultFolder2(zonGetRoot(file), &use, folder, 1) == 0 &&
                         use == 0;
    if (isSame && isPlain) {
      zonSetAnchorFilename(zonGetRoot(file), name);
      fuzz::ExpectSame(fuzz::RootOf(file), fuzz::RootOf(again), fuzz::kNothing, 0);
    }
  }
  if (file != nullptr) zonClose(&file);
  zonClose(&again);
  zonGetErrorGlb();
  return 0;
}
