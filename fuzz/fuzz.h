// Common parts of the harnesses: files in memory, numbers from input bytes, hooks that count, and
// the comparison of two trees by every query.
#ifndef ZON_FUZZ_FUZZ_H
#define ZON_FUZZ_FUZZ_H

#include <zon.h>
#include <zonclasses.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Prints the texts and aborts unless the condition holds.
void Check(bool holds, const char* what, std::string_view detail = {});

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Replaces the content of a file in memory and returns its name; returns the content of such a
// file.
const char* FileOf(std::string_view text, unsigned number = 0);
std::string ContentOf(unsigned number);

// Numbers from the bytes of an input; 0 after its end.
struct Bytes {
  bool IsAtEnd() const { return next == end; }
  unsigned Byte() { return IsAtEnd() ? 0U : *next++; }
  unsigned Number(unsigned from, unsigned to) { return from + Byte() % (to - from + 1); }

  const std::uint8_t* next;
  const std::uint8_t* end;
};

// If not 0, each read() of the library returns 1 to this many bytes, as from a pipe.
extern std::size_t largestRead;

inline CzonNode* RootOf(void* file) {
  return static_cast<CzonNode*>(static_cast<CzonBase*>(zonGetRoot(file)));
}

// The number of messages and reports of the library. Each also calls `onMessage`, unless null.
extern unsigned long messages;
extern void (*onMessage)();

// What may differ between the trees: nothing, or what writing does not keep.
enum Loss { kNothing, kByWriting };

// Checks that two trees are equal. The first `queried` nodes are compared by every query.
void ExpectSame(CzonNode* a, CzonNode* b, Loss loss, unsigned queried);

}  // namespace fuzz

#endif
