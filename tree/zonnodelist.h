// A growing array of node pointers with a head of 16 bytes. The first entry is stored in the head;
// the second moves the list to a block of 2^power pointers, which is never given up before Release.
// The caller passes the arena of the blocks, null for the free store; it is the same one in every
// call for a list. A list that MakeLong was called for is a LongList in the free store instead. A
// list owns no node.
// Tested by tests/tree_test.cpp.
#ifndef ZON_TREE_ZONNODELIST_H
#define ZON_TREE_ZONNODELIST_H

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "base/zonarena.h"
#include "tree/zonlonglist.h"
#include "tree/zonnodefields.h"

namespace zon {

// The value of NodeList::power that marks a LongList.
constexpr std::uint32_t kLong = 0xFFFFFFFFU;

// An edit that would move more nodes makes its list long.
constexpr std::uint32_t kLongestMove = 256;

inline bool IsLong(const NodeList& list) {
  return list.power == kLong;
}

// The nodes of a list, for reading. Valid until the list changes or moves.
class NodeSpan {
 public:
  // Walks over an array, or from block to block.
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = CzonNode*;
    using difference_type = std::ptrdiff_t;
    using pointer = CzonNode* const*;
    using reference = CzonNode* const&;

    Iterator(CzonNode* const* at, CzonNode* const* end, const LongList* list)
        : at_(at), end_(end), list_(list) {}

    reference operator*() const { return *at_; }
    Iterator& operator++() {
      if (++at_ == end_ && list_ != nullptr) EnterNextBlock();
      return *this;
    }
    Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }
    bool operator!=(const Iterator& other) const { return at_ != other.at_; }

   private:
    void EnterNextBlock();

    CzonNode* const* at_;
    CzonNode* const* end_;  // of the array or the block
    const LongList* list_;
    std::uint32_t block_ = 0;
  };

  explicit NodeSpan(const NodeList& list)
      : first_(list.power == 0 ? &list.single : list.block), size_(list.size) {
    if (IsLong(list)) list_ = list.longList;
  }
  NodeSpan(CzonNode* const* first, std::uint32_t size) : first_(first), size_(size) {}

  std::uint32_t Size() const { return size_; }
  const LongList* GetLong() const { return list_; }  // null if it is not long
  CzonNode* operator[](std::uint32_t index) const {
    return list_ == nullptr ? first_[index] : list_->At(index);
  }
  Iterator begin() const;
  Iterator end() const;

  // The index of the node; Size() if it is not in the list. Searches outward from `guess`.
  std::uint32_t Find(const CzonNode* node, std::uint32_t guess) const;

 private:
  CzonNode* const* first_;
  std::uint32_t size_;
  const LongList* list_ = nullptr;
};

inline NodeSpan::Iterator NodeSpan::begin() const {
  if (list_ == nullptr) return {first_, first_ + size_, nullptr};
  if (size_ == 0) return {nullptr, nullptr, nullptr};
  const LongList::Block& block = list_->Blocks().front();
  return {block.begin(), block.end(), list_};
}

inline NodeSpan::Iterator NodeSpan::end() const {
  if (list_ == nullptr) return {first_ + size_, nullptr, nullptr};
  return {nullptr, nullptr, nullptr};
}

// Makes room for `more` nodes, which do not fit, in a list that is not long. Throws std::bad_alloc,
// the list unchanged; so do the operations that append or insert.
void Grow(NodeList& list, std::uint32_t more, Arena* arena);

inline bool IsFull(const NodeList& list) {
  return list.size == std::uint32_t{1} << list.power;
}

// After it one Append or Insert cannot fail.
inline void Reserve(NodeList& list, Arena* arena) {
  if (IsLong(list)) {
    list.longList->Reserve();
  } else if (IsFull(list)) {
    Grow(list, 1, arena);
  }
}

// The same for `more` nodes that are appended.
void Reserve(NodeList& list, std::uint32_t more, Arena* arena);

void Insert(NodeList& list, std::uint32_t index, CzonNode* node, Arena* arena);
void Erase(NodeList& list, std::uint32_t index);
void Set(NodeList& list, std::uint32_t index, CzonNode* node);

inline void Append(NodeList& list, CzonNode* node, Arena* arena) {
  if (IsLong(list)) return Insert(list, list.size, node, arena);
  if (IsFull(list)) Grow(list, 1, arena);
  (list.power == 0 ? &list.single : list.block)[list.size++] = node;
}

void Append(NodeList& list, CzonNode* const* nodes, std::uint32_t count, Arena* arena);

// Moves `count` nodes from one place to one before it. Cannot fail.
void Move(NodeList& list, std::uint32_t from, std::uint32_t count, std::uint32_t to);

// Makes a list that is none yet a LongList, labelled unless `labels` is null. Throws
// std::bad_alloc, the list unchanged.
void MakeLong(NodeList& list, const NodeLabels* labels, Arena* arena);

// Empties the list and releases its memory.
void Release(NodeList& list, Arena* arena);

}  // namespace zon

#endif
