// A growing array of node pointers with a head of 16 bytes. The first entry is stored in the head; the
// second moves the list to a block of 2^power pointers, which is never given up before Release. The
// caller passes the arena of the blocks, null for the
// free store; it is the same one in every call for a list. A list owns no node.
// Tested by tests/tree_test.cpp.
#ifndef ZON_TREE_ZONNODELIST_H
#define ZON_TREE_ZONNODELIST_H

#include <cstdint>

#include "base/zonarena.h"
#include "tree/zonnodefields.h"

namespace zon {

// The nodes of a list, for reading. Valid until the list changes or moves.
class NodeSpan {
 public:
  explicit NodeSpan(const NodeList& list)
      : first_(list.power == 0 ? &list.single : list.block), size_(list.size) {}
  NodeSpan(CzonNode* const* first, std::uint32_t size) : first_(first), size_(size) {}

  std::uint32_t Size() const { return size_; }
  CzonNode* operator[](std::uint32_t index) const { return first_[index]; }
  CzonNode* const* begin() const { return first_; }
  CzonNode* const* end() const { return first_ + size_; }

  // The index of the node; Size() if it is not in the list. Searches outward from `guess`.
  std::uint32_t Find(const CzonNode* node, std::uint32_t guess) const;

 private:
  CzonNode* const* first_;
  std::uint32_t size_;
};

inline CzonNode** Places(NodeList& list) {
  return list.power == 0 ? &list.single : list.block;
}

inline std::uint32_t Capacity(const NodeList& list) {
  return std::uint32_t{1} << list.power;
}

// Makes room for `more` nodes. Requires size + more > Capacity(list). Throws std::bad_alloc, the list
// unchanged; so do the operations that append or insert.
void Grow(NodeList& list, std::uint32_t more, Arena* arena);

// After it one Append or Insert cannot fail.
inline void Reserve(NodeList& list, Arena* arena) {
  if (list.size == Capacity(list)) Grow(list, 1, arena);
}

inline void Append(NodeList& list, CzonNode* node, Arena* arena) {
  Reserve(list, arena);
  Places(list)[list.size++] = node;
}

void Append(NodeList& list, CzonNode* const* nodes, std::uint32_t count, Arena* arena);
void Insert(NodeList& list, std::uint32_t index, CzonNode* node, Arena* arena);
void Erase(NodeList& list, std::uint32_t index);

// Empties the list and releases its block.
void Release(NodeList& list, Arena* arena);

}  // namespace zon

#endif
