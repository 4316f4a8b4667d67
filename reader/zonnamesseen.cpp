#include "reader/zonnamesseen.h"

#include "base/zonchars.h"

namespace zon {
namespace {

constexpr std::size_t kFirstRoom = 128;
constexpr std::size_t kLongestSearch = 64;

// Setting the bit by which cases differ makes names equal that are not: that is only a suspicion.
constexpr std::uint64_t kCase = kEachByte * 0x20;

std::uint32_t Hash(const void* owner, bool isSection, std::string_view name) {
  const std::size_t size = name.size();
  std::uint64_t head = 0;
  std::uint64_t tail = 0;
  std::uint64_t middle = 0;  // of names that are longer than head and tail
  if (size >= 8) {
    head = LoadEight(name.data());
    tail = LoadEight(name.data() + size - 8);
    if (size > 16) middle = LoadEight(name.data() + (size - 8) / 2);
  } else if (size > 0) {
    head = LoadShort(name);
  }
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  std::uint64_t hash = ((head | kCase) ^ (middle | kCase) << 8 ^ size) * kOdd;
  hash = ((hash ^ (hash >> 32)) + (tail | kCase)) * kOdd;
  const std::uintptr_t list = reinterpret_cast<std::uintptr_t>(owner) + (isSection ? 1 : 0);
  hash = ((hash ^ (hash >> 32)) + list) * kOdd;
  return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace

bool NamesSeen::MayRepeat(const void* owner, bool isSection, std::string_view name) {
  // Files treat the empty name and one blank as one name.
  if (isOverrun_ || FiledName(name) == " ") return true;
  if (2 * used_ >= entries_.size()) Grow();
  const Search found = Add(Hash(owner, isSection, name));
  isOverrun_ = isOverrun_ || found == Search::kTooLong;
  return found != Search::kNew;
}

void NamesSeen::Clear() {
  used_ = 0;
  isOverrun_ = false;
  if (++generation_ != 0) return;
  entries_.clear();  // numbers of old generations return
  generation_ = 1;
}

NamesSeen::Search NamesSeen::Add(std::uint32_t name) {
  const std::size_t mask = entries_.size() - 1;
  for (std::size_t step = 0; step < kLongestSearch; ++step) {
    Entry& entry = entries_[(name + step) & mask];
    if (entry.generation != generation_) {
      entry = {name, generation_};
      ++used_;
      return Search::kNew;
    }
    if (entry.name == name) return Search::kFound;
  }
  return Search::kTooLong;
}

void NamesSeen::Grow() {
  std::vector<Entry> former(entries_.empty() ? kFirstRoom : 2 * entries_.size());
  former.swap(entries_);
  used_ = 0;
  for (const Entry& entry : former) {
    if (entry.generation == generation_ && Add(entry.name) == Search::kTooLong) isOverrun_ = true;
  }
}

}  // namespace zon
