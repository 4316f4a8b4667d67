// A block that is full is split into halves; blocks that together are at most half full become one.
// So a block is made or dropped once in kBlock / 4 edits at least, and the sums are then made anew:
// that adds half a step to each edit of a list of 16000 nodes, and 30 for one of a million.
#include "tree/zonlonglist.h"

#include <algorithm>

#include "tree/zonnearsearch.h"

namespace zon {
namespace {

// Makes room, growing by factors.
template <class T>
void MakeRoom(std::vector<T>& items, std::size_t size) {
  if (size > items.capacity()) items.reserve(std::max(size, 2 * items.capacity()));
}

// The step from an entry of a Fenwick tree to the next one that includes it: its lowest bit.
std::size_t LowestBit(std::size_t n) {
  return n & (~n + 1);
}

}  // namespace

LongList::LongList(CzonNode* const* nodes, std::uint32_t size, const NodeLabels* labels)
    : labels_(labels) {
  constexpr std::uint32_t kFirstFill = kBlock / 2;
  for (std::uint32_t from = 0; from < size; from += kFirstFill) {
    Reserve();
    AddBlock(static_cast<std::uint32_t>(order_.size()));
    Block& block = order_.back();
    block.size = std::min(kFirstFill, size - from);
    std::copy_n(nodes + from, block.size, block.nodes.get());
  }
  Reserve();
  // From here on nothing fails: nodes must not have labels of a list that was not made.
  size_ = size;
  for (const Block& block : order_) Label(block, 0);
  MakeSums();
}

CzonNode* LongList::At(std::uint32_t place) const {
  const Spot spot = SpotOf(place);
  return order_[spot.block].nodes[spot.at];
}

void LongList::Set(std::uint32_t place, CzonNode* node) {
  const Spot spot = SpotOf(place);
  order_[spot.block].nodes[spot.at] = node;
  if (labels_ != nullptr) labels_->set(*node, order_[spot.block].number);
}

// A block that is split has room for half a block.
void LongList::Reserve(std::uint32_t count) {
  const std::size_t blocks = (std::size_t{count} + kBlock / 2 - 1) / (kBlock / 2);
  MakeRoom(spares_, std::max(blocks, std::size_t{1}));
  while (spares_.size() < blocks) spares_.emplace_back(new CzonNode*[kBlock]);
  MakeRoom(order_, order_.size() + blocks);
  MakeRoom(places_, places_.size() + blocks);
  MakeRoom(freeNumbers_, places_.size() + blocks);
  MakeRoom(sums_, order_.size() + blocks + 1);
}

void LongList::Insert(std::uint32_t place, CzonNode* node) {
  if (order_.empty()) {
    AddBlock(0);
    MakeSums();
  }
  Spot spot = SpotOf(place);
  if (order_[spot.block].size == kBlock) {
    Split(spot.block);
    spot = SpotOf(place);
  }
  Block& block = order_[spot.block];
  CzonNode** const nodes = block.nodes.get();
  std::copy_backward(nodes + spot.at, nodes + block.size, nodes + block.size + 1);
  nodes[spot.at] = node;
  ++block.size;
  ++size_;
  if (labels_ != nullptr) labels_->set(*node, block.number);
  AddToSums(spot.block, 1);
}

void LongList::Erase(std::uint32_t place) {
  const Spot spot = SpotOf(place);
  Block& block = order_[spot.block];
  CzonNode** const nodes = block.nodes.get();
  std::copy(nodes + spot.at + 1, nodes + block.size, nodes + spot.at);
  --block.size;
  --size_;
  AddToSums(spot.block, -1);
  if (block.size == 0) return DropBlock(spot.block);
  if (block.size > kBlock / 4) return;  // with a neighbour it is rarely at most half full
  MergeWithNext(spot.block);
  if (spot.block > 0) MergeWithNext(spot.block - 1);
}

// Null for a label that is not of this list.
const LongList::Block* LongList::BlockOf(const CzonNode& node) const {
  const std::uint32_t label = labels_->get(node);
  return label < places_.size() && places_[label] != kNone ? &order_[places_[label]] : nullptr;
}

bool LongList::Find(const CzonNode& node, Spot& spot) const {
  const Block* block = BlockOf(node);
  if (block == nullptr) return false;
  CzonNode* const* const found = std::find(block->begin(), block->end(), &node);
  spot = {places_[block->number], static_cast<std::uint32_t>(found - block->begin())};
  return found != block->end();
}

bool LongList::IsBefore(const CzonNode& node, Spot spot) const {
  const Block* block = BlockOf(node);
  if (block == nullptr) return false;
  const std::uint32_t place = places_[block->number];
  if (place != spot.block) return place < spot.block;
  return FindNear(block->nodes, block->size, &node, spot.at) < spot.at;
}

// The end of the list is the end of its last block. Most places are in the block of the last one;
// for others descends from the largest step.
LongList::Spot LongList::SpotOf(std::uint32_t place) const {
  const std::size_t count = order_.size();
  if (place >= size_) {
    return {static_cast<std::uint32_t>(count - 1), order_.back().size};
  }
  if (place >= found_.firstPlace && place - found_.firstPlace < order_[found_.block].size) {
    return {found_.block, place - found_.firstPlace};
  }
  const std::uint32_t wanted = place;
  std::size_t block = 0;
  std::size_t step = 1;
  while (2 * step <= count) step *= 2;
  for (; step > 0; step /= 2) {
    if (block + step > count || sums_[block + step] > place) continue;
    block += step;
    place -= sums_[block];
  }
  found_ = {static_cast<std::uint32_t>(block), wanted - place};
  return {static_cast<std::uint32_t>(block), place};
}

std::uint32_t LongList::PlaceOf(Spot spot) const {
  std::uint32_t before = 0;
  for (std::size_t n = spot.block; n > 0; n -= LowestBit(n)) before += sums_[n];
  return before + spot.at;
}

// Uses what Reserve has prepared. The sums are to be made anew.
void LongList::AddBlock(std::uint32_t place) {
  auto number = static_cast<std::uint32_t>(places_.size());
  if (freeNumbers_.empty()) {
    places_.push_back(place);
  } else {
    number = freeNumbers_.back();
    freeNumbers_.pop_back();
  }
  order_.insert(order_.begin() + place, Block{std::move(spares_.back()), 0, number});
  spares_.pop_back();
}

void LongList::DropBlock(std::uint32_t place) {
  places_[order_[place].number] = kNone;
  freeNumbers_.push_back(order_[place].number);  // there is room for all numbers
  if (spares_.empty()) spares_.push_back(std::move(order_[place].nodes));
  order_.erase(order_.begin() + place);
  MakeSums();
}

void LongList::Split(std::uint32_t place) {
  AddBlock(place + 1);
  Block& full = order_[place];
  Block& added = order_[place + 1];
  added.size = kBlock / 2;
  full.size -= added.size;
  std::copy_n(full.nodes.get() + full.size, added.size, added.nodes.get());
  Label(added, 0);
  MakeSums();
}

void LongList::MergeWithNext(std::uint32_t place) {
  if (place + 1 >= order_.size()) return;
  Block& block = order_[place];
  const Block& next = order_[place + 1];
  if (block.size + next.size > kBlock / 2) return;
  const std::uint32_t from = block.size;
  std::copy_n(next.nodes.get(), next.size, block.nodes.get() + from);
  block.size += next.size;
  Label(block, from);
  DropBlock(place + 1);
}

void LongList::MakeSums() {
  found_ = {0, 0};
  const std::size_t count = order_.size();
  sums_.assign(count + 1, 0);
  for (std::size_t n = 1; n <= count; ++n) {
    places_[order_[n - 1].number] = static_cast<std::uint32_t>(n - 1);
    sums_[n] += order_[n - 1].size;
    const std::size_t next = n + LowestBit(n);
    if (next <= count) sums_[next] += sums_[n];
  }
}

void LongList::AddToSums(std::uint32_t block, std::int32_t difference) {
  if (block < found_.block) found_ = {0, 0};
  for (std::size_t n = std::size_t{block} + 1; n <= order_.size(); n += LowestBit(n)) {
    sums_[n] += static_cast<std::uint32_t>(difference);
  }
}

// Labels the nodes of the block from the place `from` on.
void LongList::Label(const Block& block, std::uint32_t from) const {
  if (labels_ == nullptr) return;
  for (std::uint32_t at = from; at < block.size; ++at) {
    labels_->set(*block.nodes[at], block.number);
  }
}

}  // namespace zon
