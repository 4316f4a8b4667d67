// A compact list of node pointers: 16 bytes while empty, no block of its own for a single entry.
// The owner passes the store that blocks come from, null for the free arena. The list owns no node.
#ifndef ZON_TREE_ZONNODELIST_H
#define ZON_TREE_ZONNODELIST_H

#include <cstdint>
#include <string_view>

#include "base/zonarena.h"

class CzonNode;

namespace zon {

class NodeList {
 public:
  NodeList() : one_(nullptr) {}
  NodeList(const NodeList&) = delete;
  NodeList& operator=(const NodeList&) = delete;

  std::uint32_t Size() const { return size_; }
  CzonNode* operator[](std::uint32_t index) const { return Items()[index]; }
  CzonNode* const* begin() const { return Items(); }
  CzonNode* const* end() const { return Items() + size_; }

  // Afterwards one Append or Insert cannot fail. Throws std::bad_alloc, the list unchanged.
  void Reserve(Arena* arena) {
    if (size_ == Room()) Grow(1, arena);
  }

  void Append(CzonNode* node, Arena* arena) {
    Reserve(arena);
    Items()[size_++] = node;
  }

  // All of them or, for want of memory, none.
  void Append(CzonNode* const* nodes, std::uint32_t count, Arena* arena);

  void Insert(std::uint32_t index, CzonNode* node, Arena* arena);
  void Erase(std::uint32_t index);
  void Set(std::uint32_t index, CzonNode* node) { Items()[index] = node; }
  void Swap(NodeList& other);

  // Where the node stands; Size() when it does not. The search goes outward from `guess`.
  std::uint32_t Find(const CzonNode* node, std::uint32_t guess) const;

  void Release(Arena* arena);

  // An empty list can stand for a text instead, of which somebody else will make its nodes. Until
  // it has given the text back it is to be used for nothing but Release.
  void Defer(std::string_view text) {
    text_ = text.data();
    size_ = static_cast<std::uint32_t>(text.size());
  }
  std::string_view TakeDeferred() {
    const std::string_view text(text_, size_);
    one_ = nullptr;
    size_ = 0;
    return text;
  }

 private:
  static constexpr std::uint32_t kNoBlock = 0;

  std::uint32_t Room() const { return power_ == kNoBlock ? 1 : std::uint32_t{1} << power_; }
  CzonNode** Items() { return power_ == kNoBlock ? &one_ : many_; }
  CzonNode* const* Items() const { return power_ == kNoBlock ? &one_ : many_; }
  void Grow(std::uint32_t more, Arena* arena);

  union {
    CzonNode* one_;
    CzonNode** many_;  // 1 << power_ places
    const char* text_;
  };
  std::uint32_t size_ = 0;
  std::uint32_t power_ = kNoBlock;
};

}  // namespace zon

#endif
