// The hash of names: SipHash-1-3 over the letters in lower case, with a key of the process.
// Tested by tests/size_test.cpp.
#include "base/zonchars.h"

#include <sys/auxv.h>

namespace zon {
namespace {

constexpr std::uint64_t RotateLeft(std::uint64_t word, unsigned count) {
  return word << count | word >> (64 - count);
}

struct Key {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

// The kernel gives each process 16 random bytes, also where addresses are not random.
Key KeyOfProcess() {
  Key key;
  const auto address = static_cast<std::uintptr_t>(getauxval(AT_RANDOM));
  if (address != 0) std::memcpy(&key, reinterpret_cast<const void*>(address), sizeof key);
  return key;
}

class SipHash {
 public:
  explicit SipHash(const Key& key)
      : a_(key.low ^ 0x736F6D6570736575),
        b_(key.high ^ 0x646F72616E646F6D),
        c_(key.low ^ 0x6C7967656E657261),
        d_(key.high ^ 0x7465646279746573) {}

  void Add(std::uint64_t word) {
    d_ ^= word;
    Round();
    a_ ^= word;
  }

  std::uint64_t Finish() {
    c_ ^= 0xFF;
    for (int round = 0; round < 3; ++round) Round();
    return a_ ^ b_ ^ c_ ^ d_;
  }

 private:
  void Round() {
    a_ += b_;
    b_ = RotateLeft(b_, 13) ^ a_;
    a_ = RotateLeft(a_, 32);
    c_ += d_;
    d_ = RotateLeft(d_, 16) ^ c_;
    a_ += d_;
    d_ = RotateLeft(d_, 21) ^ a_;
    c_ += b_;
    b_ = RotateLeft(b_, 17) ^ c_;
    c_ = RotateLeft(c_, 32);
  }

  std::uint64_t a_, b_, c_, d_;
};

// Up to seven bytes of the end of a name, in the low bytes of a word.
std::uint64_t LoadRest(const char* at, std::size_t size) {
  std::uint64_t word = 0;
  while (size > 0) word = word << 8 | static_cast<unsigned char>(at[--size]);
  return word;
}

}  // namespace

std::uint32_t HashNoCase(std::string_view name) {
  static const Key key = KeyOfProcess();
  if (FiledName(name) == " ") return kHashOfNoName;
  SipHash hash(key);
  std::size_t at = 0;
  for (; at + 8 <= name.size(); at += 8) hash.Add(LowerEach(LoadEight(name.data() + at)));
  const std::uint64_t rest = LowerEach(LoadRest(name.data() + at, name.size() - at));
  hash.Add(rest | static_cast<std::uint64_t>(name.size()) << 56);
  return static_cast<std::uint32_t>(hash.Finish());
}

}  // namespace zon
