#include "base/zonchars.h"

namespace zon {
namespace {

constexpr std::uint64_t MixInto(std::uint64_t hash, std::uint64_t word) {
  hash = (hash ^ word) * 0x9FB21C651E98DF25U;
  return hash ^ (hash >> 32);
}

// Where the library lies in memory is different each time.
std::uint64_t Seed() {
  static const char anchor = 0;
  return reinterpret_cast<std::uintptr_t>(&anchor);
}

}  // namespace

std::uint32_t HashNoCase(std::string_view name) {
  if (name.empty() || name == " ") return kHashOfNoName;
  std::uint64_t hash = MixInto(Seed(), name.size());
  std::size_t at = 0;
  for (; at + 8 <= name.size(); at += 8) hash = MixInto(hash, LowerEach(LoadEight(&name[at])));
  if (at == name.size()) return static_cast<std::uint32_t>(hash);
  std::uint64_t rest = 0;
  if (name.size() >= 8) {
    rest = LoadEight(name.data() + name.size() - 8);  // some of it for the second time
  } else {
    for (; at < name.size(); ++at) rest = rest << 8 | static_cast<unsigned char>(name[at]);
  }
  return static_cast<std::uint32_t>(MixInto(hash, LowerEach(rest)));
}

}  // namespace zon
