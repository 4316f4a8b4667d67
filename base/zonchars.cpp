// The hash of names. The author of a file must not be able to choose names that collide, so the
// hash is keyed with random bytes of the process.
//
// Names of usual length: multilinear hashing, the upper half of key0 + sum(key_i * piece_i) mod
// 2^64 over pieces of 32 bits. For secret random keys any two names share any bits of it by chance
// alone. It needs a key for each piece, so longer names are hashed by SipHash-1-3, which also makes
// the keys.
// Tested by tests/size_test.cpp.
#include "base/zonchars.h"

#include <sys/auxv.h>

namespace zon {
namespace {

constexpr std::uint64_t RotateLeft(std::uint64_t word, unsigned count) {
  return word << count | word >> (64 - count);
}

struct Secret {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

// The kernel provides each process with 16 random bytes, also where addresses are not random.
Secret SecretOfProcess() {
  Secret secret;
  const unsigned long address = getauxval(AT_RANDOM);
  if (address == 0) return secret;
  const void* bytes = nullptr;
  std::memcpy(&bytes, &address, sizeof bytes);  // the kernel passes the address as a number
  std::memcpy(&secret, bytes, sizeof secret);
  return secret;
}

class SipHash {
 public:
  explicit SipHash(const Secret& secret)
      : a_(secret.low ^ 0x736F6D6570736575),
        b_(secret.high ^ 0x646F72616E646F6D),
        c_(secret.low ^ 0x6C7967656E657261),
        d_(secret.high ^ 0x7465646279746573) {}

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

constexpr std::size_t kUsualSize = 64;  // in bytes

struct Keys {
  Keys() {
    for (std::uint64_t& key : pieces) {
      SipHash hash(secret);
      hash.Add(static_cast<std::uint64_t>(&key - pieces));
      key = hash.Finish();
    }
  }

  const Secret secret = SecretOfProcess();
  std::uint64_t pieces[2 + kUsualSize / 4];  // for the start, for the size, for each piece
};

// The multilinear sum of a piece of eight bytes.
std::uint64_t Piece(const std::uint64_t* keys, std::uint64_t word) {
  return keys[0] * static_cast<std::uint32_t>(word) + keys[1] * (word >> 32);
}

// Calls `add` with each eight bytes of a name of at least eight in lower case; the last ones may
// overlap.
template <class F>
void ForEachWord(std::string_view name, F&& add) {
  std::size_t at = 0;
  for (; at + 8 <= name.size(); at += 8) add(LowerEach(LoadEight(name.data() + at)));
  if (at < name.size()) add(LowerEach(LoadEight(name.data() + name.size() - 8)));
}

std::uint32_t HashOfLong(const Keys& keys, std::string_view name) {
  SipHash hash(keys.secret);
  ForEachWord(name, [&hash](std::uint64_t word) { hash.Add(word); });
  hash.Add(name.size());
  return static_cast<std::uint32_t>(hash.Finish());
}

}  // namespace

FoldedName Fold(std::string_view given) {
  static const Keys keys;
  FoldedName folded{FiledName(given), 0, 0, 0};
  const std::string_view name = folded.name;
  const std::size_t size = name.size();
  folded.head = LowerEach(size < 8 ? LoadShort(name) : LoadEight(name.data()));
  if (size > 8) folded.tail = LowerEach(LoadEight(name.data() + size - 8));
  if (size > kUsualSize) {
    folded.hash = HashOfLong(keys, name);
    return folded;
  }
  const std::uint64_t* key = keys.pieces + 2;
  std::uint64_t sum = keys.pieces[0] + keys.pieces[1] * size + Piece(key, folded.head);
  for (std::size_t at = 8; at + 8 < size; at += 8) {
    sum += Piece(key += 2, LowerEach(LoadEight(name.data() + at)));
  }
  folded.hash = static_cast<std::uint32_t>((sum + Piece(key + 2, folded.tail)) >> 32);
  return folded;
}

}  // namespace zon
