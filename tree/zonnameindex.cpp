// The index of names: open addressing with linear probing, deletion by shifting back, no
// tombstones.
//
// An entry has the hash, the size and the ends of its name in lower case (FoldedName). So a search
// touches no node but the one that it finds, unless a name has more than 16 characters: these are
// compared in full. An entry does not store the rest of such a name: it is that of its first node
// (NameOf). So renaming a node must change the index while the entry can still be found by the
// former name (RenameInIndex in zontreeedit.cpp).
//
// Up to kLargestLinear entries the table is an array without gaps, of which the first `used` places
// are initialized. A larger one is hashed: a free place has no node, and at most half are used, so
// every probe ends.
//
// Invariants: every queue in use has a node; a name of two nodes, or of one whose name is that of a
// host's GetName, has a queue; if a list of nodes is long, the children of the owner are it too.
// Instance numbers are places in a queue. They are stored in the nodes, and a change renumbers the
// queue from the changed place on; those of long queues are counted when they are asked for. Costs:
// a look-up is constant on average, an edit logarithmic; in a list of a host it is linear in the
// number of namesakes after it. Tested by tests/tree_test.cpp, tests/edit_test.cpp, and for large
// indexes by tests/size_test.cpp.
#include "tree/zonnameindex.h"

#include <algorithm>
#include <memory>
#include <new>

#include "base/zonchars.h"
#include "tree/zonnamekey.h"
#include "tree/zonnodeaccess.h"

namespace zon {

// The nodes of one name.
struct NameQueue {
  NodeList nodes;
  std::string* name;  // owned; null while every node of the queue was filed by its stored name
  // Set when a node is filed twice, never cleared. Such a node's number is its last place, so
  // FindInQueue searches from the start.
  std::uint32_t hasRepeats : 1;
  // A number is not the place; cleared when the queue is numbered.
  std::uint32_t hasLostNumbers : 1;
  // The low 30 bits of GetLostNumbers() at the last numbering. If they differ, numbers may be lost.
  std::uint32_t lossesSeen : 30;
};

struct IndexedName {
  union {
    CzonNode* node;    // null: a free place of a hash table
    NameQueue* queue;  // if hasQueue
  };
  std::uint64_t head;
  std::uint64_t tail;
  std::uint32_t hash;
  std::uint32_t size : 31;
  std::uint32_t hasQueue : 1;
};

namespace {

constexpr std::uint32_t kFirstRoom = 4;
constexpr std::uint32_t kLargestLinear = 8;  // a larger table is hashed
constexpr std::uint32_t kFirstHashed = 32;   // at most half full with one more than kLargestLinear
constexpr std::uint32_t kLargestReserve = 1024;
constexpr std::uint32_t kLargestSize = (std::uint32_t{1} << 31) - 1;
// The counter of lost numbers is stored in 30 bits and compared modulo 2^30.
constexpr std::uint32_t kLossesMask = (std::uint32_t{1} << 30) - 1;

// Every node of an index is a named one.
CzonNamedNode& Named(CzonNode* node) {
  return *static_cast<CzonNamedNode*>(node);
}

Arena* ArenaOf(const CzonNamedNode* owner) {
  return owner != nullptr ? NodeAccess::GetArena(*owner) : nullptr;
}

FoldedName FoldedNameOf(const CzonNamedNode& node) {
  return Fold(NodeAccess::GetKey(node).name);
}

// ---- Entries ------------------------------------------------------------------------------------

bool IsFree(const IndexedName& entry) {
  return entry.node == nullptr;
}

NodeSpan NodesOf(const IndexedName& entry) {
  return entry.hasQueue != 0 ? NodeSpan(entry.queue->nodes) : NodeSpan(&entry.node, 1);
}

std::string_view NameOf(const IndexedName& entry) {
  if (entry.hasQueue != 0 && entry.queue->name != nullptr) return *entry.queue->name;
  return NodeAccess::GetNameView(Named(NodesOf(entry)[0]));
}

std::uint32_t SizeOf(const FoldedName& name) {
  return static_cast<std::uint32_t>(std::min<std::size_t>(name.name.size(), kLargestSize));
}

bool HasName(const IndexedName& entry, const FoldedName& name) {
  if (entry.hash != name.hash || entry.head != name.head || entry.tail != name.tail) return false;
  return entry.size == SizeOf(name) &&
         (name.name.size() <= kFoldedSize || EqualNoCase(NameOf(entry), name.name));
}

constexpr unsigned kQueuePower = 3;  // a queue is a block of 64 bytes
static_assert(sizeof(NameQueue) <= std::size_t{8} << kQueuePower);

// A queue of one node, which nobody has numbered in it.
NameQueue* NewQueue(CzonNode* node, Arena* arena) {
  auto* queue = new (AllocateBlock(arena, kQueuePower)) NameQueue{};
  queue->hasLostNumbers = 1;
  Append(queue->nodes, node, arena);  // cannot fail for the first node
  return queue;
}

void ReleaseQueue(NameQueue* queue, Arena* arena) {
  Release(queue->nodes, arena);
  delete queue->name;
  ReleaseBlock(arena, queue, kQueuePower);
}

// Copies the name if a host's GetName returned it: it may change later. Call before inserting, as
// it may throw.
void EnsureName(NameQueue& queue, const NameKey& key) {
  if (!key.isStored && queue.name == nullptr) queue.name = new std::string(key.name);
}

NameQueue& EnsureQueue(IndexedName& entry, Arena* arena) {
  if (entry.hasQueue == 0) {
    CzonNode& first = *entry.node;
    entry.queue = NewQueue(&first, arena);
    NodeAccess::SetAlone(first, false);
    entry.hasQueue = 1;
  }
  return *entry.queue;
}

// ---- The table ----------------------------------------------------------------------------------

bool IsHashed(const NameIndex& index) {
  return index.room > kLargestLinear;
}

// The end of the places that are initialized.
IndexedName* EndOfPlaces(const NameIndex& index) {
  return index.entries + (IsHashed(index) ? index.room : index.used);
}

// Tables are blocks of 8 << power bytes, with 32 bytes for each entry.
unsigned TablePower(std::uint32_t room) {
  static_assert(sizeof(IndexedName) == 32);
  unsigned power = 2;
  for (; room > 1; room /= 2) ++power;
  return power;
}

IndexedName* FindEntry(const NameIndex& index, const FoldedName& name) {
  IndexedName* const entries = index.entries;
  if (!IsHashed(index)) {
    for (IndexedName* entry = entries; entry != entries + index.used; ++entry) {
      if (HasName(*entry, name)) return entry;
    }
    return nullptr;
  }
  const std::uint32_t mask = index.room - 1;  // room is a power of two: `& mask` is the remainder
  for (std::uint32_t at = name.hash & mask; !IsFree(entries[at]); at = (at + 1) & mask) {
    if (HasName(entries[at], name)) return &entries[at];
  }
  return nullptr;
}

IndexedName* FindFreePlace(const NameIndex& index, std::uint32_t hash) {
  if (!IsHashed(index)) return index.entries + index.used;
  const std::uint32_t mask = index.room - 1;
  std::uint32_t at = hash & mask;
  while (!IsFree(index.entries[at])) at = (at + 1) & mask;
  return &index.entries[at];
}

// Makes room for `names` names.
void GrowTable(NameIndex& index, std::uint32_t names, Arena* arena) {
  NameIndex grown = {};
  grown.room = kFirstRoom;
  while (grown.room < names) grown.room *= 2;
  if (IsHashed(grown)) grown.room = std::max(2 * grown.room, kFirstHashed);
  grown.entries = static_cast<IndexedName*>(AllocateBlock(arena, TablePower(grown.room)));
  // Every place is initialized: a search reads places that were never used.
  if (IsHashed(grown)) std::uninitialized_fill_n(grown.entries, grown.room, IndexedName{});
  for (IndexedName* entry = index.entries; entry != EndOfPlaces(index); ++entry) {
    if (IsFree(*entry)) continue;
    *FindFreePlace(grown, entry->hash) = *entry;
    ++grown.used;
  }
  if (index.entries != nullptr) ReleaseBlock(arena, index.entries, TablePower(index.room));
  index = grown;
}

bool IsFull(const NameIndex& index) {
  return index.used == (IsHashed(index) ? index.room / 2 : index.room);
}

// Removes an entry whose queue, if it has one, is released.
void DropEntry(NameIndex& index, IndexedName* entry) {
  IndexedName* const entries = index.entries;
  --index.used;
  if (!IsHashed(index)) {
    *entry = entries[index.used];
    return;
  }
  // Linear probing: shift later entries of the run back into the gap.
  const std::uint32_t mask = index.room - 1;
  auto gap = static_cast<std::uint32_t>(entry - entries);
  for (std::uint32_t at = (gap + 1) & mask; !IsFree(entries[at]); at = (at + 1) & mask) {
    // An entry whose home is after the gap stays: moved before its home it could not be found. All
    // distances are taken modulo the size of the table.
    const std::uint32_t home = entries[at].hash & mask;
    if (((at - home) & mask) < ((at - gap) & mask)) continue;
    entries[gap] = entries[at];
    gap = at;
  }
  entries[gap] = {};
}

// Adds an entry for the node, whose name has none.
IndexedName& AddEntry(NameIndex& index, CzonNamedNode& node, const NameKey& key,
                      const FoldedName& name, Arena* arena) {
  if (IsFull(index)) GrowTable(index, index.used + 1, arena);
  IndexedName added = {{&node}, name.head, name.tail, name.hash, SizeOf(name) & kLargestSize, 0};
  if (!key.isStored) {
    auto copy = std::make_unique<std::string>(key.name);
    EnsureQueue(added, arena).name = copy.release();
  }
  IndexedName* const place = FindFreePlace(index, name.hash);
  new (place) IndexedName(added);
  ++index.used;
  return *place;
}

IndexedName& FileNode(NameIndex& index, CzonNamedNode& node, Arena* arena) {
  const NameKey key = NodeAccess::GetKey(node);
  const FoldedName name = Fold(key.name);
  IndexedName* entry = FindEntry(index, name);
  if (entry == nullptr) return AddEntry(index, node, key, name, arena);
  NameQueue& queue = EnsureQueue(*entry, arena);
  EnsureName(queue, key);
  Append(queue.nodes, &node, arena);
  return *entry;
}

// ---- Instance numbers ---------------------------------------------------------------------------

bool IsNumbered(const NameQueue& queue) {
  return queue.hasLostNumbers == 0 && queue.lossesSeen == (GetLostNumbers() & kLossesMask);
}

// Numbers the nodes of the queue from the place `from` on, or all if a number was lost.
void NumberQueue(NameQueue& queue, std::uint32_t from) {
  const bool hasLost = !IsNumbered(queue);
  if (hasLost) from = 0;
  queue.hasLostNumbers = 0;
  queue.lossesSeen = GetLostNumbers() & kLossesMask;
  const NodeSpan nodes(queue.nodes);
  if (IsLong(queue.nodes)) {
    if (!hasLost) return;
    for (CzonNode* node : nodes) NodeAccess::RestoreNumber(*node);
    return;
  }
  for (std::uint32_t at = from; at < nodes.Size(); ++at) {
    NodeAccess::SetNumber(*nodes[at], static_cast<std::int32_t>(at + 1));
  }
}

// How many of the nodes, which are in the order of the children, are before the spot. Most edits
// are near the last one, so the places near its result are tried first.
std::uint32_t CountBefore(const NodeSpan& nodes, const LongList& children, LongList::Spot spot) {
  std::uint32_t from = 0;
  std::uint32_t to = nodes.Size();
  const LongList* const list = nodes.GetLong();
  if (list != nullptr) {
    constexpr std::uint32_t kNear = 2;
    const std::uint32_t recent = std::min(list->GetRecent(), to);
    const std::uint32_t low = recent - std::min(recent, kNear);
    const std::uint32_t high = std::min(recent + kNear, to);
    if (low == 0 || children.IsBefore(*nodes[low - 1], spot)) from = low;
    if (high == to || !children.IsBefore(*nodes[high], spot)) to = high;
  }
  while (from < to) {
    const std::uint32_t middle = from + (to - from) / 2;
    if (children.IsBefore(*nodes[middle], spot)) {
      from = middle + 1;
    } else {
      to = middle;
    }
  }
  if (list != nullptr) list->SetRecent(from);
  return from;
}

// The place of the node; the size if it is none of the nodes. `guess` is where to begin a search.
std::uint32_t Find(const NodeSpan& nodes, const CzonNode& node, std::uint32_t guess,
                   const CzonNamedNode* owner) {
  const LongList* children = owner != nullptr ? NodeAccess::GetLongChildren(*owner) : nullptr;
  LongList::Spot spot;
  if (children != nullptr && children->Find(node, spot)) {
    const std::uint32_t place = CountBefore(nodes, *children, spot);
    if (place < nodes.Size() && nodes[place] == &node) return place;
  }
  return nodes.Find(&node, guess);
}

// The place of the node in the queue, the first one if it is filed twice; the length of the queue
// if the node is not in it. Without long lists searches outward from place number - 1; from the
// start if the queue has repeats.
std::uint32_t FindInQueue(const NameQueue& queue, const CzonNode& node, int number,
                          const CzonNamedNode* owner) {
  if (queue.hasRepeats != 0) return NodeSpan(queue.nodes).Find(&node, 0);
  return Find(NodeSpan(queue.nodes), node, static_cast<std::uint32_t>(number - 1), owner);
}

// Call before an edit that moves so many nodes of a list. Makes the list long if they are too many;
// false if it is not long.
bool PrepareMove(NodeList& nodes, std::uint32_t moved, CzonNamedNode* owner) {
  if (IsLong(nodes)) return true;
  if (moved <= kLongestMove || owner == nullptr) return false;
  if (!NodeAccess::EnsureLongChildren(*owner)) return false;
  try {
    MakeLong(nodes, nullptr, ArenaOf(owner));
  } catch (const std::bad_alloc&) {
    return false;  // it only takes longer
  }
  return true;
}

// The same for a queue, whose numbers are counted from then on. `at` is the place of the edit.
void PrepareQueue(NameQueue& queue, std::uint32_t at, CzonNamedNode* owner) {
  if (IsLong(queue.nodes) || queue.hasRepeats != 0) return;
  const bool wasNumbered = IsNumbered(queue);
  if (!PrepareMove(queue.nodes, queue.nodes.size - at, owner)) return;
  for (CzonNode* node : NodeSpan(queue.nodes)) {
    if (!wasNumbered) NodeAccess::RestoreNumber(*node);
    NodeAccess::SetUnnumbered(*node);
  }
}

// Sets hasRepeats if a node that is being filed is among the first `count` of the queue already. In
// a numbered queue the number of the node shows it without a search.
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
                           std::uint32_t at, const CzonNamedNode* owner) {
  const NodeSpan ordered(list.ordered);
  const NodeSpan nodes(queue.nodes);
  if (at >= ordered.Size() && owner != nullptr) return nodes.Size();
  const LongList* children = owner != nullptr ? NodeAccess::GetLongChildren(*owner) : nullptr;
  LongList::Spot spot;
  if (children != nullptr && children->Find(*ordered[at], spot)) {
    return CountBefore(nodes, *children, spot);
  }
  const std::string_view name = FiledName(NodeAccess::GetKey(node).name);
  const auto placeOf = [&](std::uint32_t index) {
    const CzonNamedNode& other = Named(ordered[index]);
    if (&other == &node || !EqualNoCase(FiledName(NodeAccess::GetKey(other).name), name)) {
      return nodes.Size();
    }
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

// ---- NameIndex ----------------------------------------------------------------------------------

NodeSpan FindNamesakes(const NameIndex& index, std::string_view name) {
  const IndexedName* entry = FindEntry(index, Fold(name));
  return entry != nullptr ? NodesOf(*entry) : NodeSpan(nullptr, 0);
}

void AddToIndex(NameIndex& index, CzonNamedNode& node, Arena* arena) {
  FileNode(index, node, arena);
}

void Release(NameIndex& index, Arena* arena) {
  if (index.entries == nullptr) return;
  for (IndexedName* entry = index.entries; entry != EndOfPlaces(index); ++entry) {
    if (entry->hasQueue != 0) ReleaseQueue(entry->queue, arena);
  }
  ReleaseBlock(arena, index.entries, TablePower(index.room));
  index = {};
}

// ---- NameList -----------------------------------------------------------------------------------

CzonNamedNode* FindByNumber(const NameList& list, unsigned int n) {
  const NodeSpan ordered(list.ordered);
  return n - 1 < ordered.Size() ? &Named(ordered[n - 1]) : nullptr;
}

CzonNamedNode* FindByName(NameList& list, std::string_view name, unsigned int n,
                          CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  const NodeSpan nodes = FindNamesakes(list.index, name);
  return n - 1 < nodes.Size() ? &Named(nodes[n - 1]) : nullptr;
}

std::uint32_t CountNamesakes(NameList& list, const CzonNamedNode& namesake, CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  if (NodeAccess::IsAlone(namesake)) return 1;
  return FindNamesakes(list.index, NodeAccess::GetKey(namesake).name).Size();
}

std::uint32_t CountNames(NameList& list, CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  return list.index.used;
}

bool IsIndexed(NameList& list, const CzonNamedNode& node, CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  const IndexedName* entry = FindEntry(list.index, FoldedNameOf(node));
  if (entry == nullptr) return false;
  if (entry->hasQueue == 0) return entry->node == &node;
  const NameQueue& queue = *entry->queue;
  return FindInQueue(queue, node, NodeAccess::GetNumber(node), owner) < queue.nodes.size;
}

std::uint32_t PlaceOf(const NameList& list, const CzonNamedNode& node, const CzonNamedNode* owner) {
  // In most lists the place among the nodes of a kind is near the place among all children.
  const std::uint32_t place =
      Find(NodeSpan(list.ordered), node, NodeAccess::GetPlaceHint(node), owner);
  return place < list.ordered.size ? place + 1 : 0;
}

std::uint32_t CountBefore(const NameList& list, const CzonNamedNode& owner, std::uint32_t place) {
  const LongList& children = *NodeAccess::GetLongChildren(owner);
  return CountBefore(NodeSpan(list.ordered), children, children.SpotOf(place));
}

std::uint32_t CountNumber(NameList& list, const CzonNamedNode& node, CzonNamedNode* owner) {
  const NodeSpan nodes = FindNamesakes(list.index, NodeAccess::GetKey(node).name);
  const std::uint32_t place = Find(nodes, node, 0, owner);
  return place < nodes.Size() ? place + 1 : 0;
}

void CompleteIndex(NameList& list, CzonNamedNode* owner) {
  if (owner == nullptr || list.indexed == list.ordered.size) return;
  if (list.index.entries == nullptr) {
    GrowTable(list.index, std::min(list.ordered.size, kLargestReserve), ArenaOf(owner));
  }
  for (; list.indexed < list.ordered.size; ++list.indexed) {
    AddToIndex(list, Named(NodeSpan(list.ordered)[list.indexed]), owner);
  }
}

void AddToIndex(NameList& list, CzonNamedNode& node, CzonNamedNode* owner) {
  IndexedName& entry = FileNode(list.index, node, ArenaOf(owner));
  if (entry.hasQueue == 0) {  // most names are unique
    NodeAccess::SetAlone(node, owner != nullptr);
    return NodeAccess::SetNumber(node, 1);
  }
  NameQueue& queue = *entry.queue;
  const std::uint32_t last = queue.nodes.size - 1;
  if (IsLong(queue.nodes)) {
    NodeAccess::SetUnnumbered(node);
  } else {
    CheckRepeat(queue, node, last);
  }
  NumberQueue(queue, last);
}

void InsertIntoIndex(NameList& list, CzonNamedNode& node, std::uint32_t place,
                     CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  IndexedName* entry = FindEntry(list.index, FoldedNameOf(node));
  if (entry == nullptr) return AddToIndex(list, node, owner);
  NameQueue& queue = EnsureQueue(*entry, ArenaOf(owner));
  EnsureName(queue, NodeAccess::GetKey(node));
  const std::uint32_t at = PlaceInQueue(list, queue, node, std::max(place, 1U) - 1, owner);
  PrepareQueue(queue, at, owner);
  if (!IsLong(queue.nodes)) CheckRepeat(queue, node, queue.nodes.size);
  Insert(queue.nodes, at, &node, ArenaOf(owner));
  if (IsLong(queue.nodes)) NodeAccess::SetUnnumbered(node);
  NumberQueue(queue, at);
}

bool EraseFromIndex(NameList& list, CzonNamedNode& node, int number, CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  IndexedName* entry = FindEntry(list.index, FoldedNameOf(node));
  if (entry == nullptr) return false;
  if (entry->hasQueue != 0) {
    NameQueue& queue = *entry->queue;
    const std::uint32_t place = FindInQueue(queue, node, number, owner);
    if (place == queue.nodes.size) return false;
    PrepareQueue(queue, place, owner);
    Erase(queue.nodes, place);
    NumberQueue(queue, place);
    if (queue.nodes.size > 0) return true;
    ReleaseQueue(&queue, ArenaOf(owner));
  } else if (entry->node != &node) {
    return false;
  }
  NodeAccess::SetAlone(node, false);
  DropEntry(list.index, entry);
  return true;
}

void Append(NameList& list, CzonNamedNode& node, CzonNamedNode* owner) {
  Reserve(list.ordered, ArenaOf(owner));  // so that nothing can fail after the index has changed
  CompleteIndex(list, owner);
  AddToIndex(list, node, owner);
  Append(list.ordered, &node, ArenaOf(owner));
  ++list.indexed;
}

void Insert(NameList& list, CzonNamedNode& node, std::uint32_t place, CzonNamedNode* owner) {
  place = std::clamp(place, 1U, Count(list) + 1);
  PrepareMove(list.ordered, Count(list) + 1 - place, owner);
  Reserve(list.ordered, ArenaOf(owner));
  InsertIntoIndex(list, node, place, owner);
  Insert(list.ordered, place - 1, &node, ArenaOf(owner));
  ++list.indexed;
}

bool Remove(NameList& list, CzonNamedNode& node, CzonNamedNode* owner) {
  const bool isErased = EraseFromIndex(list, node, NodeAccess::GetNumber(node), owner);
  const std::uint32_t place = PlaceOf(list, node, owner);
  if (place != 0) {
    PrepareMove(list.ordered, Count(list) - place, owner);
    Erase(list.ordered, place - 1);
    --list.indexed;
  }
  return isErased;
}

void Release(NameList& list, Arena* arena) {
  Release(list.index, arena);
  Release(list.ordered, arena);
  list.indexed = 0;
}

// The number of a single node is made anew with the queue of its name.
void LoseNumber(NameList& list, const CzonNamedNode& node) {
  const IndexedName* entry = FindEntry(list.index, FoldedNameOf(node));
  if (entry != nullptr && entry->hasQueue != 0) entry->queue->hasLostNumbers = 1;
}

void RestoreNumbers(NameList& list, const CzonNamedNode& node, CzonNamedNode* owner) {
  CompleteIndex(list, owner);
  const IndexedName* entry = FindEntry(list.index, FoldedNameOf(node));
  if (entry == nullptr) return;
  if (entry->hasQueue != 0) {
    NumberQueue(*entry->queue, 0);
  } else {
    NodeAccess::SetNumber(*entry->node, 1);
  }
}

}  // namespace zon
