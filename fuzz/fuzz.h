// What the harnesses share: files in memory, numbers made of bytes, hooks that count, and the
// comparison of two trees by every question that a node answers.
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

// Ends the process unless the condition holds.
void Check(bool holds, const char* what, std::string_view detail = {});

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// The name of a file in memory that now holds this text, and what such a file holds.
const char* FileOf(std::string_view text, unsigned number = 0);
std::string ContentOf(unsigned number);

// Numbers made of the bytes of an input, 0 behind its end.
struct Bytes {
  bool IsAtEnd() const { return next == end; }
  unsigned Byte() { return IsAtEnd() ? 0U : *next++; }
  unsigned Number(unsigned from, unsigned to) { return from + Byte() % (to - from + 1); }

  const std::uint8_t* next;
  const std::uint8_t* end;
};

// While it is not 0, each read of the library returns 1 to this many bytes, as a pipe may.
extern std::size_t largestRead;

inline CzonNode* RootOf(void* file) {
  return static_cast<CzonNode*>(static_cast<CzonBase*>(zonGetRoot(file)));
}

// How many messages and reports were heard; each also calls `onMessage` while that is set.
extern unsigned long heard;
extern void (*onMessage)();

// What a tree loses when it is written and loaded again.
enum Loss { kNothing, kByWriting };

// Two trees have to be the same; the first `asked` nodes are asked everything there is to ask.
void ExpectSame(CzonNode* a, CzonNode* b, Loss loss, unsigned asked);

}  // namespace fuzz

#endif
