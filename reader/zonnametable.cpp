#include "reader/zonnametable.h"

#include "base/zonchars.h"

namespace zon {
namespace {

constexpr std::size_t kFirstRoom = 16;

}  // namespace

NameEntry& NameTable::Count(std::string_view name) {
  if (4 * (used_ + 1) > 3 * places_.size()) Grow();
  NameEntry& entry = Find(name);
  if (entry.chars == nullptr) {
    entry.chars = name.data();
    entry.size = static_cast<std::uint32_t>(name.size());
    ++used_;
  }
  ++entry.count;
  return entry;
}

NameEntry& NameTable::Find(std::string_view name) {
  const std::size_t mask = places_.size() - 1;
  for (std::size_t at = HashNoCase(name) & mask;; at = (at + 1) & mask) {
    NameEntry& entry = places_[at];
    if (entry.chars == nullptr) return entry;
    if (EqualNoCase(entry.Name(), name)) return entry;
  }
}

void NameTable::Grow() {
  std::vector<NameEntry> before(places_.empty() ? kFirstRoom : 2 * places_.size());
  before.swap(places_);
  for (const NameEntry& entry : before) {
    if (entry.chars != nullptr) Find(entry.Name()) = entry;
  }
}

void NameTable::Clear() {
  used_ = 0;
  if (places_.size() > kFirstRoom) {
    places_ = std::vector<NameEntry>();
  } else {
    places_.assign(places_.size(), NameEntry());
  }
}

}  // namespace zon
