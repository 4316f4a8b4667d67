// The index of names: open addressing with linear probing, deletion by shifting back, no tombstones.
//
// A queue stores the hash of its name, and a node the hash of its own. So a search compares characters
// only after 32 equal bits, and a growing table computes no hash again. A queue does not store its
// name: it is the name of its first node (NameOf). So renaming a node must change the index while the
// queue can still be found by the former name (RenameInIndex in zontreeedit.cpp).
//
// Up to kLargestLinear queues the table is an array without gaps, of which the first `used` places are
// initialized. A larger one is hashed: a free place is an empty queue, and at most half are used, so
// every probe ends.
//
// Instance numbers are places in a queue. They are stored in the nodes; a change renumbers the queue
// from the changed place on. Costs: a look-up is constant on average; an edit is linear in the number
// of namesakes after it. Tested by tests/tree_test.cpp, tests/edit_test.cpp, and for large indexes by
// tests/size_test.cpp.
#include "tree/zonnameindex.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "base/zonchars.h"
#include "tree/zonnamekey.h"
#include "tree/zonnodeaccess.h"

namespace zon {
namespace {

constexpr std::uint32_t kFirstRoom = 4;
constexpr std::uint32_t kLargestLinear = 8;  // a larger table is hashed
constexpr std::uint32_t kFirstHashed = 32;   // at most half full with one more than kLargestLinear
// The counter of lost numbers is stored in 30 bits and compared modulo 2^30.
constexpr std::uint32_t kLossesMask = (std::uint32_t{1} << 30) - 1;

// Every node of an index is a named one.
CzonNamedNode& Named(CzonNode* node) {
  return *static_cast<CzonNamedNode*>(node);
}

std::string_view NameOf(const NameQueue& queue) {
  return queue.name != nullptr ? std::string_view(*queue.name)
                               : NodeAccess::GetNameView(Named(NodeSpan(queue.nodes)[0]));
}

bool IsFree(const NameQueue& queue) {
  return queue.nodes.size == 0;
}

bool HasName(const NameQueue& queue, std::string_view name, std::uint32_t hash) {
  return queue.hash == hash && EqualNoCase(FiledName(NameOf(queue)), FiledName(name));
}

bool IsHashed(const NameIndex& index) {
  return index.room > kLargestLinear;
}

// The end of the places that are initialized.
NameQueue* EndOfPlaces(const NameIndex& index) {
  return index.queues + (IsHashed(index) ? index.room : index.used);
}

// Tables are blocks of 8 << power bytes, with 32 bytes for each queue.
unsigned TablePower(std::uint32_t room) {
  static_assert(sizeof(NameQueue) <= 32);
  unsigned power = 2;
  for (; room > 1; room /= 2) ++power;
  return power;
}

NameQueue* FindQueue(const NameIndex& index, std::string_view name, std::uint32_t hash) {
  NameQueue* const queues = index.queues;
  if (!IsHashed(index)) {
    for (NameQueue* queue = queues; queue != queues + index.used; ++queue) {
      if (HasName(*queue, name, hash)) return queue;
    }
    return nullptr;
  }
  const std::uint32_t mask = index.room - 1;  // room is a power of two: `& mask` is the remainder
  for (std::uint32_t at = hash & mask; !IsFree(queues[at]); at = (at + 1) & mask) {
    if (HasName(queues[at], name, hash)) return &queues[at];
  }
  return nullptr;
}

NameQueue* FindFreePlace(const NameIndex& index, std::uint32_t hash) {
  if (!IsHashed(index)) return index.queues + index.used;
  const std::uint32_t mask = index.room - 1;
  std::uint32_t at = hash & mask;
  while (!IsFree(index.queues[at])) at = (at + 1) & mask;
  return &index.queues[at];
}

void GrowTable(NameIndex& index, Arena* arena) {
  NameIndex grown = {};
  grown.room = index.room == 0 ? kFirstRoom : index.room * 2;
  if (IsHashed(grown)) grown.room = std::max(grown.room, kFirstHashed);
  grown.queues = static_cast<NameQueue*>(AllocateBlock(arena, TablePower(grown.room)));
  // Every place is initialized: a search reads places that were never used.
  if (IsHashed(grown)) std::uninitialized_fill_n(grown.queues, grown.room, NameQueue{});
  for (NameQueue* queue = index.queues; queue != EndOfPlaces(index); ++queue) {
    if (IsFree(*queue)) continue;
    *FindFreePlace(grown, queue->hash) = *queue;
    ++grown.used;
  }
  if (index.queues != nullptr) ReleaseBlock(arena, index.queues, TablePower(index.room));
  index = grown;
}

NameQueue* AppendToQueue(NameIndex& index, CzonNamedNode& node, std::string_view name,
                         std::uint32_t hash, Arena* arena) {
  NameQueue* queue = FindQueue(index, name, hash);
  if (queue == nullptr) {
    if (index.used == index.room || (IsHashed(index) && index.used >= index.room / 2)) {
      GrowTable(index, arena);
    }
    queue = FindFreePlace(index, hash);
    new (queue) NameQueue{};
    queue->hash = hash;
    ++index.used;
  }
  Append(queue->nodes, &node, arena);  // cannot fail for the first node of a queue
  return queue;
}

// Copies the name if a host's GetName returned it: it may change later. Call before inserting, as it
// may throw.
void EnsureName(NameQueue& queue, const NameKey& key) {
  if (!key.isStored && queue.name == nullptr) queue.name = new std::string(key.name);
}

// Removes an empty queue.
void DropQueue(NameIndex& index, NameQueue* queue, Arena* arena) {
  NameQueue* const queues = index.queues;
  Release(queue->nodes, arena);
  delete queue->name;
  --index.used;
  if (!IsHashed(index)) {
    *queue = queues[index.used];
    return;
  }
  // Linear probing: shift later entries of the run back into the gap.
  const std::uint32_t mask = index.room - 1;
  auto gap = static_cast<std::uint32_t>(queue - queues);
  for (std::uint32_t at = (gap + 1) & mask; !IsFree(queues[at]); at = (at + 1) & mask) {
    // An entry whose home is after the gap stays: moved before its home it could not be found. All
    // distances are taken modulo the size of the table.
    const std::uint32_t home = queues[at].hash & mask;
    if (((at - home) & mask) < ((at - gap) & mask)) continue;
    queues[gap] = queues[at];
    gap = at;
  }
  queues[gap] = {};
}

bool IsNumbered(const NameQueue& queue) {
  return queue.hasLostNumbers == 0 && queue.lossesSeen == (GetLostNumbers() & kLossesMask);
}

// Numbers the nodes of the queue from the place `from` on, or all if a number was lost.
void NumberQueue(NameQueue& queue, std::uint32_t from) {
  if (!IsNumbered(queue)) from = 0;
  queue.hasLostNumbers = 0;
  queue.lossesSeen = GetLostNumbers() & kLossesMask;
  const NodeSpan nodes(queue.nodes);
  for (std::uint32_t at = from; at < nodes.Size(); ++at) {
    NodeAccess::SetNumber(*nodes[at], static_cast<std::int32_t>(at + 1));
  }
}

// The place of the node in the queue, the first one if it is filed twice; the length of the queue if
// the node is not in it. Searches outward from place number - 1; from the start if the queue has
// repeats.
std::uint32_t FindInQueue(const NameQueue& queue, const CzonNode& node, int number) {
  const auto guess = static_cast<std::uint32_t>(number - 1);
  return NodeSpan(queue.nodes).Find(&node, queue.hasRepeats ? 0 : guess);
}

// Sets hasRepeats if a node that is being filed is among the first `count` of the queue already. In a
// numbered queue the number of the node shows it without a search.
void CheckRepeat(NameQueue& queue, const CzonNode& node, std::uint32_t count) {
  const NodeSpan nodes(queue.nodes);
  const auto place = static_cast<std::uint32_t>(NodeAccess::GetNumber(node) - 1);
  const bool repeats =
      IsNumbered(queue) ? place < count && nodes[place] == &node : nodes.Find(&node, 0) < count;
  if (repeats) queue.hasRepeats = 1;
}

// The place in its queue of a node that is to get the place `at`, from 0, of the ordered list. The
// nearest namesake in the ordered list, before or after it, decides.
std::uint32_t PlaceInQueue(const NameList& list, const NameQueue& queue, const CzonNamedNode& node,
                           std::uint32_t at) {
  const NodeSpan ordered(list.ordered);
  const NodeSpan nodes(queue.nodes);
  const auto placeOf = [&](std::uint32_t index) {
    const CzonNamedNode& other = Named(ordered[index]);
    if (NodeAccess::GetKey(other).hash != queue.hash || &other == &node) return nodes.Size();
    // Only a hint: a Copy may have reset the number.
    return nodes.Find(&other, static_cast<std::uint32_t>(NodeAccess::GetNumber(other) - 1));
  };
  std::uint32_t after = std::min(at, ordered.Size());
  std::uint32_t before = after;
  while (before > 0) {
    const std::uint32_t placeBefore = placeOf(--before);
    if (placeBefore < nodes.Size()) return placeBefore + 1;
    if (after == ordered.Size()) continue;
    const std::uint32_t placeAfter = placeOf(after++);
    if (placeAfter < nodes.Size()) return placeAfter;
  }
  return 0;
}

}  // namespace

NameQueue* FindQueue(const NameIndex& index, std::string_view name) {
  return FindQueue(index, name, HashNoCase(name));
}

NameQueue* FindQueue(const NameIndex& index, const CzonNamedNode& node) {
  const NameKey key = NodeAccess::GetKey(node);
  return FindQueue(index, key.name, key.hash);
}

NameQueue* AppendToQueue(NameIndex& index, CzonNamedNode& node, Arena* arena) {
  const NameKey key = NodeAccess::GetKey(node);
  if (key.isStored) return AppendToQueue(index, node, key.name, key.hash, arena);
  // GetName of a host's class may return another name later, so the queue stores this one.
  auto name = std::make_unique<std::string>(key.name);
  NameQueue* queue = AppendToQueue(index, node, *name, key.hash, arena);
  if (queue->name == nullptr) queue->name = name.release();
  return queue;
}

void Release(NameIndex& index, Arena* arena) {
  if (index.queues == nullptr) return;
  for (NameQueue* queue = index.queues; queue != EndOfPlaces(index); ++queue) {
    Release(queue->nodes, arena);
    delete queue->name;
  }
  ReleaseBlock(arena, index.queues, TablePower(index.room));
  index = {};
}

CzonNamedNode* FindByNumber(const NameList& list, unsigned int n) {
  const NodeSpan ordered(list.ordered);
  return n - 1 < ordered.Size() ? &Named(ordered[n - 1]) : nullptr;
}

CzonNamedNode* FindByName(const NameList& list, std::string_view name, unsigned int n) {
  const NameQueue* queue = FindQueue(list.index, name);
  if (queue == nullptr || n - 1 >= queue->nodes.size) return nullptr;
  return &Named(NodeSpan(queue->nodes)[n - 1]);
}

std::uint32_t CountNamesakes(const NameList& list, const CzonNamedNode& namesake) {
  const NameQueue* queue = FindQueue(list.index, namesake);
  return queue != nullptr ? queue->nodes.size : 0;
}

bool IsIndexed(const NameList& list, const CzonNamedNode& node) {
  const NameQueue* queue = FindQueue(list.index, node);
  return queue != nullptr &&
         FindInQueue(*queue, node, NodeAccess::GetNumber(node)) < queue->nodes.size;
}

std::uint32_t PlaceOf(const NameList& list, const CzonNamedNode& node) {
  // In most lists the place among the nodes of a kind is near the place among all children.
  const std::uint32_t place = NodeSpan(list.ordered).Find(&node, NodeAccess::GetPlaceHint(node));
  return place < list.ordered.size ? place + 1 : 0;
}

void AddToIndex(NameList& list, CzonNamedNode& node, Arena* arena) {
  NameQueue* queue = AppendToQueue(list.index, node, arena);
  const std::uint32_t last = queue->nodes.size - 1;
  if (last == 0) return NodeAccess::SetNumber(node, 1);  // most names are unique
  CheckRepeat(*queue, node, last);
  NumberQueue(*queue, last);
}

void InsertIntoIndex(NameList& list, CzonNamedNode& node, std::uint32_t place, Arena* arena) {
  NameQueue* queue = FindQueue(list.index, node);
  if (queue == nullptr) return AddToIndex(list, node, arena);
  EnsureName(*queue, NodeAccess::GetKey(node));
  const std::uint32_t at = PlaceInQueue(list, *queue, node, std::max(place, 1U) - 1);
  CheckRepeat(*queue, node, queue->nodes.size);
  Insert(queue->nodes, at, &node, arena);
  NumberQueue(*queue, at);
}

bool EraseFromIndex(NameList& list, CzonNamedNode& node, int number, Arena* arena) {
  NameQueue* queue = FindQueue(list.index, node);
  if (queue == nullptr) return false;
  const std::uint32_t place = FindInQueue(*queue, node, number);
  if (place == queue->nodes.size) return false;
  Erase(queue->nodes, place);
  NumberQueue(*queue, place);
  if (queue->nodes.size == 0) DropQueue(list.index, queue, arena);
  return true;
}

void Append(NameList& list, CzonNamedNode& node, Arena* arena) {
  Reserve(list.ordered, arena);  // so that nothing can fail after the index has changed
  AddToIndex(list, node, arena);
  Append(list.ordered, &node, arena);
}

void Insert(NameList& list, CzonNamedNode& node, std::uint32_t place, Arena* arena) {
  place = std::clamp(place, 1U, Count(list) + 1);
  Reserve(list.ordered, arena);
  InsertIntoIndex(list, node, place, arena);
  Insert(list.ordered, place - 1, &node, arena);
}

bool Remove(NameList& list, CzonNamedNode& node, Arena* arena) {
  const bool isErased = EraseFromIndex(list, node, NodeAccess::GetNumber(node), arena);
  const std::uint32_t place = PlaceOf(list, node);
  if (place != 0) Erase(list.ordered, place - 1);
  return isErased;
}

void Release(NameList& list, Arena* arena) {
  Release(list.index, arena);
  Release(list.ordered, arena);
}

void LoseNumber(NameList& list, const CzonNamedNode& node) {
  NameQueue* queue = FindQueue(list.index, node);
  if (queue != nullptr) queue->hasLostNumbers = 1;
}

void RestoreNumbers(NameList& list, const CzonNamedNode& node) {
  NameQueue* queue = FindQueue(list.index, node);
  if (queue != nullptr) NumberQueue(*queue, 0);
}

}  // namespace zon
