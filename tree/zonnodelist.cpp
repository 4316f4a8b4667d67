// A vector of pointers with room for one in the object itself.
//
// power == 0: at most one node, in list.single. power > 0: the nodes are in a block of 1 << power
// places. Lists of one node are frequent and allocate nothing. A block doubles when it is full, so
// Append has amortised constant time. It does not shrink: Erase cannot fail, and an empty list
// keeps its block until Release. A block that is left goes to the free list of the arena, for the
// next list of its size.
//
// Insert and Erase move the nodes after the place. Tested by tests/tree_test.cpp and
// tests/edit_test.cpp; long lists by tests/size_test.cpp.
#include "tree/zonnodelist.h"

#include <algorithm>
#include <new>

#include "tree/zonnearsearch.h"

namespace zon {
namespace {

constexpr std::uint32_t kLargestPower = 31;

CzonNode** Places(NodeList& list) {
  return list.power == 0 ? &list.single : list.block;
}

}  // namespace

void NodeSpan::Iterator::EnterNextBlock() {
  ++block_;
  if (block_ == list_->Blocks().size()) {
    at_ = end_ = nullptr;
    return;
  }
  const LongList::Block& block = list_->Blocks()[block_];
  at_ = block.begin();
  end_ = block.end();
}

std::uint32_t NodeSpan::Find(const CzonNode* node, std::uint32_t guess) const {
  return FindNear(*this, size_, node, guess);
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

void Reserve(NodeList& list, std::uint32_t more, Arena* arena) {
  if (IsLong(list)) {
    list.longList->Reserve(more);
  } else if (more > (std::uint32_t{1} << list.power) - list.size) {
    Grow(list, more, arena);
  }
}

void Append(NodeList& list, CzonNode* const* nodes, std::uint32_t count, Arena* arena) {
  Reserve(list, count, arena);
  std::copy_n(nodes, count, Places(list) + list.size);
  list.size += count;
}

void Insert(NodeList& list, std::uint32_t index, CzonNode* node, Arena* arena) {
  Reserve(list, arena);
  if (IsLong(list)) {
    list.longList->Insert(index, node);
  } else {
    CzonNode** const places = Places(list);
    std::copy_backward(places + index, places + list.size, places + list.size + 1);
    places[index] = node;
  }
  ++list.size;
}

void Erase(NodeList& list, std::uint32_t index) {
  if (IsLong(list)) {
    list.longList->Erase(index);
  } else {
    CzonNode** const places = Places(list);
    std::copy(places + index + 1, places + list.size, places + index);
  }
  --list.size;
}

void Set(NodeList& list, std::uint32_t index, CzonNode* node) {
  if (IsLong(list)) {
    list.longList->Set(index, node);
  } else {
    Places(list)[index] = node;
  }
}

void Move(NodeList& list, std::uint32_t from, std::uint32_t count, std::uint32_t to) {
  if (!IsLong(list)) {
    CzonNode** const places = Places(list);
    std::rotate(places + to, places + from, places + from + count);
    return;
  }
  // To erase and insert could need a block. Reversing both parts and then the whole does not.
  const auto reverse = [&list](std::uint32_t begin, std::uint32_t end) {
    for (; begin + 1 < end; ++begin) {
      CzonNode* const last = list.longList->At(--end);
      list.longList->Set(end, list.longList->At(begin));
      list.longList->Set(begin, last);
    }
  };
  reverse(to, from);
  reverse(from, from + count);
  reverse(to, from + count);
}

void MakeLong(NodeList& list, const NodeLabels* labels, Arena* arena) {
  auto* longList = new LongList(Places(list), list.size, labels);
  if (list.power != 0) ReleaseBlock(arena, list.block, list.power);
  list.longList = longList;
  list.power = kLong;
}

void Release(NodeList& list, Arena* arena) {
  if (IsLong(list)) {
    delete list.longList;
  } else if (list.power != 0) {
    ReleaseBlock(arena, list.block, list.power);
  }
  list = {};
}

}  // namespace zon
