#include "tree/zonlist.h"

#include <cstring>
#include <new>

namespace zon {

void NodeList::Grow(Store* store) {
  const std::uint32_t power = power_ + 1;
  if (power > 31) throw std::bad_alloc();
  auto* block = static_cast<CzonNode**>(TakeBlock(store, power));
  std::memcpy(block, Items(), size_ * sizeof(CzonNode*));
  if (power_ != kNoBlock) GiveBlock(store, many_, power_);
  many_ = block;
  power_ = power;
}

void NodeList::Insert(std::uint32_t index, CzonNode* node, Store* store) {
  Reserve(store);
  CzonNode** items = Items();
  std::memmove(items + index + 1, items + index, (size_ - index) * sizeof(CzonNode*));
  items[index] = node;
  ++size_;
}

void NodeList::Erase(std::uint32_t index) {
  CzonNode** items = Items();
  --size_;
  std::memmove(items + index, items + index + 1, (size_ - index) * sizeof(CzonNode*));
}

std::uint32_t NodeList::Find(const CzonNode* node, std::uint32_t guess) const {
  CzonNode* const* items = Items();
  if (guess < size_ && items[guess] == node) return guess;
  std::uint32_t index = 0;
  while (index < size_ && items[index] != node) ++index;
  return index;
}

void NodeList::Release(Store* store) {
  if (power_ != kNoBlock) GiveBlock(store, many_, power_);
  one_ = nullptr;
  size_ = 0;
  power_ = kNoBlock;
}

}  // namespace zon
