// A vector of pointers with room for one in the object itself.
//
// power == 0: at most one node, in list.single. power > 0: the nodes are in a block of 1 << power
// places. Lists of one node are frequent and allocate nothing. A block doubles when it is full, so
// Append has amortised constant time. It does not shrink: Erase cannot fail, and an empty list keeps
// its block until Release. A block that is left goes to the free list of the arena, for the next list
// of its size.
//
// Insert and Erase move the nodes after the place. Tested by tests/tree_test.cpp and
// tests/edit_test.cpp; long lists by tests/size_test.cpp.
#include "tree/zonnodelist.h"

#include <algorithm>
#include <new>

namespace zon {
namespace {

constexpr std::uint32_t kLargestPower = 31;

}  // namespace

// The guess is the place at which the node was seen last. Edits move nodes by a few places, so
// searching from it in both directions usually ends at once; the worst case is the whole list.
std::uint32_t NodeSpan::Find(const CzonNode* node, std::uint32_t guess) const {
  std::uint32_t after = std::min(guess, size_);
  std::uint32_t before = after;
  while (after < size_ || before > 0) {
    if (after < size_ && first_[after++] == node) return after - 1;
    if (before > 0 && first_[--before] == node) return before;
  }
  return size_;
}

void Grow(NodeList& list, std::uint32_t more, Arena* arena) {
  const std::uint64_t wanted = std::uint64_t{list.size} + more;  // at least 2
  // The least power of two that is not below `wanted`.
  const auto power = static_cast<std::uint32_t>(64 - __builtin_clzll(wanted - 1));
  if (power > kLargestPower) throw std::bad_alloc();
  auto* block = static_cast<CzonNode**>(AllocateBlock(arena, power));
  std::copy_n(Places(list), list.size, block);  // before list.single is overwritten below
  if (list.power != 0) ReleaseBlock(arena, list.block, list.power);
  list.block = block;
  list.power = power;
}

void Append(NodeList& list, CzonNode* const* nodes, std::uint32_t count, Arena* arena) {
  if (count > Capacity(list) - list.size) Grow(list, count, arena);
  std::copy_n(nodes, count, Places(list) + list.size);
  list.size += count;
}

void Insert(NodeList& list, std::uint32_t index, CzonNode* node, Arena* arena) {
  Reserve(list, arena);
  CzonNode** const places = Places(list);
  std::copy_backward(places + index, places + list.size, places + list.size + 1);
  places[index] = node;
  ++list.size;
}

void Erase(NodeList& list, std::uint32_t index) {
  CzonNode** const places = Places(list);
  --list.size;
  std::copy(places + index + 1, places + list.size + 1, places + index);
}

void Release(NodeList& list, Arena* arena) {
  if (list.power != 0) ReleaseBlock(arena, list.block, list.power);
  list = {};
}

}  // namespace zon
