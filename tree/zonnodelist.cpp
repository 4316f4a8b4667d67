#include "tree/zonnodelist.h"

#include <algorithm>
#include <new>
#include <utility>

namespace zon {
namespace {

constexpr std::uint32_t kLargestPower = 31;

}  // namespace

void NodeList::Grow(std::uint32_t more, Arena* arena) {
  const std::uint64_t wanted = std::uint64_t{size_} + more;
  // The least power of two that holds them; more than one, as a single entry needs no block.
  const auto power = static_cast<std::uint32_t>(64 - __builtin_clzll(wanted - 1));
  if (power > kLargestPower) throw std::bad_alloc();
  auto* block = static_cast<CzonNode**>(AllocateBlock(arena, power));
  std::copy_n(Items(), size_, block);
  if (power_ != kNoBlock) ReleaseBlock(arena, many_, power_);
  many_ = block;
  power_ = power;
}

void NodeList::Append(CzonNode* const* nodes, std::uint32_t count, Arena* arena) {
  if (count > Room() - size_) Grow(count, arena);
  std::copy_n(nodes, count, Items() + size_);
  size_ += count;
}

void NodeList::Insert(std::uint32_t index, CzonNode* node, Arena* arena) {
  Reserve(arena);
  CzonNode** items = Items();
  std::copy_backward(items + index, items + size_, items + size_ + 1);
  items[index] = node;
  ++size_;
}

void NodeList::Erase(std::uint32_t index) {
  CzonNode** items = Items();
  --size_;
  std::copy(items + index + 1, items + size_ + 1, items + index);
}

void NodeList::Swap(NodeList& other) {
  std::swap(many_, other.many_);  // the wider name of the one pointer
  std::swap(size_, other.size_);
  std::swap(power_, other.power_);
}

std::uint32_t NodeList::Find(const CzonNode* node, std::uint32_t guess) const {
  CzonNode* const* items = Items();
  std::uint32_t behind = std::min(guess, size_);
  std::uint32_t before = behind;
  while (behind < size_ || before > 0) {
    if (behind < size_ && items[behind++] == node) return behind - 1;
    if (before > 0 && items[--before] == node) return before;
  }
  return size_;
}

void NodeList::Release(Arena* arena) {
  if (power_ != kNoBlock) ReleaseBlock(arena, many_, power_);
  one_ = nullptr;
  size_ = 0;
  power_ = kNoBlock;
}

}  // namespace zon
