// A list of nodes that is too long to move half of them at every edit.
//
// The nodes are in blocks, each of at most kBlock of them. A tree of sums finds the block of a
// place, so an edit takes the logarithm of the number of blocks and moves the nodes of one block.
//
// A labelled list writes the number of its block into each node, and so also finds the place of a
// node. Other lists of the same nodes in the same order find theirs by bisection with IsBefore.
//
// Invariants: no block is empty; places_[order_[n].number] == n; sums_ is a Fenwick tree over the
// sizes of the blocks in order, counted from 1; a node of a labelled list has the number of its
// block.
// Tested by tests/edit_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#ifndef ZON_TREE_ZONLONGLIST_H
#define ZON_TREE_ZONLONGLIST_H

#include <cstdint>
#include <memory>
#include <vector>

class CzonNode;

namespace zon {

// How nodes keep a label.
struct NodeLabels {
  std::uint32_t (*get)(const CzonNode& node);
  void (*set)(CzonNode& node, std::uint32_t label);
};

class LongList {
 public:
  static constexpr std::uint32_t kBlock = 512;

  struct Block {
    CzonNode* const* begin() const { return nodes.get(); }
    CzonNode* const* end() const { return nodes.get() + size; }

    std::unique_ptr<CzonNode*[]> nodes;
    std::uint32_t size;
    std::uint32_t number;  // the label of its nodes
  };

  // A place, as that of a block and one in the block.
  struct Spot {
    std::uint32_t block;
    std::uint32_t at;
  };

  // A list of these nodes, labelled unless `labels` is null. Throws std::bad_alloc.
  LongList(CzonNode* const* nodes, std::uint32_t size, const NodeLabels* labels);

  CzonNode* At(std::uint32_t place) const;
  void Set(std::uint32_t place, CzonNode* node);

  // After it so many appending calls of Insert, or one at any place, cannot fail. Throws
  // std::bad_alloc.
  void Reserve(std::uint32_t count = 1);
  void Insert(std::uint32_t place, CzonNode* node);
  void Erase(std::uint32_t place);

  // Whether the node is in a labelled list, and where.
  bool Find(const CzonNode& node, Spot& spot) const;
  // Whether a node of a labelled list is before the spot.
  bool IsBefore(const CzonNode& node, Spot spot) const;

  Spot SpotOf(std::uint32_t place) const;
  std::uint32_t PlaceOf(Spot spot) const;

  // A place that a user of the list notes for its next search.
  std::uint32_t GetRecent() const { return recent_; }
  void SetRecent(std::uint32_t place) const { recent_ = place; }

  // The blocks in order, for walks.
  const std::vector<Block>& Blocks() const { return order_; }

 private:
  // The block that SpotOf has found last.
  struct FoundBlock {
    std::uint32_t block;
    std::uint32_t firstPlace;
  };

  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

  const Block* BlockOf(const CzonNode& node) const;
  void AddBlock(std::uint32_t place);
  void DropBlock(std::uint32_t place);
  void Split(std::uint32_t place);
  void MergeWithNext(std::uint32_t place);
  void MakeSums();
  void AddToSums(std::uint32_t block, std::int32_t difference);
  void Label(const Block& block, std::uint32_t from) const;

  std::vector<Block> order_;
  std::vector<std::uint32_t> places_;  // of the blocks by number; kNone for a number that is free
  std::vector<std::uint32_t> freeNumbers_;
  std::vector<std::uint32_t> sums_;
  std::vector<std::unique_ptr<CzonNode*[]>> spares_;  // what Reserve has prepared
  std::uint32_t size_ = 0;
  mutable std::uint32_t recent_ = 0;
  mutable FoundBlock found_ = {0, 0};
  const NodeLabels* labels_;
};

}  // namespace zon

#endif
