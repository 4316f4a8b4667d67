#include "tree/zonnameindex.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "base/zonchars.h"
#include "base/zonerror.h"
#include "tree/zonkeyword.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

std::string_view NameOf(const NameIndex::Queue& queue) {
  return queue.name != nullptr ? std::string_view(*queue.name)
                               : static_cast<const CzonNamedNode*>(queue.nodes[0])->GetNameView();
}

bool IsNamed(const NameIndex::Queue& queue, std::string_view name, std::uint32_t hash) {
  return queue.hash == hash && queue.nodes.Size() != 0 &&
         EqualNoCase(FiledName(NameOf(queue)), FiledName(name));
}

// The block of a table: 8 << power bytes for `room` queues of up to 32 bytes.
unsigned TablePower(std::uint32_t room) {
  static_assert(sizeof(NameIndex::Queue) <= 32);
  unsigned power = 2;
  for (; room > 1; room /= 2) ++power;
  return power;
}

// Queues may lie anywhere in memory; they are moved as bytes, without a copy of their lists.
void MoveQueue(NameIndex::Queue* to, const NameIndex::Queue* from) {
  std::memcpy(static_cast<void*>(to), static_cast<const void*>(from), sizeof *to);
}

std::atomic<std::uint32_t> losses{0};  // of numbers outside any tree
constexpr std::uint32_t kLossesMask = (std::uint32_t{1} << 30) - 1;

}  // namespace

void NameIndex::LoseOutside() {
  losses.fetch_add(1, std::memory_order_relaxed);
}

bool NameIndex::IsNumbered(const Queue& queue) {
  return queue.hasLostNumbers == 0 &&
         queue.lossesSeen == (losses.load(std::memory_order_relaxed) & kLossesMask);
}

void NameIndex::NoteNumbered(Queue& queue) {
  queue.hasLostNumbers = 0;
  queue.lossesSeen = losses.load(std::memory_order_relaxed) & kLossesMask;
}

NameIndex::Queue* NameIndex::Find(std::string_view name) const {
  return Find(name, HashNoCase(name));
}

NameIndex::Queue* NameIndex::Find(const CzonNamedNode& node) const {
  const NameKey key = node.GetKey();
  return Find(key.name, key.hash);
}

NameIndex::Queue* NameIndex::Find(std::string_view name, std::uint32_t hash) const {
  if (!IsHashed()) {
    for (Queue* queue = queues_; queue != queues_ + used_; ++queue) {
      if (IsNamed(*queue, name, hash)) return queue;
    }
    return nullptr;
  }
  for (std::uint32_t at = hash & (room_ - 1); queues_[at].nodes.Size() != 0;
       at = (at + 1) & (room_ - 1)) {
    if (IsNamed(queues_[at], name, hash)) return &queues_[at];
  }
  return nullptr;
}

NameIndex::Queue* NameIndex::FreePlace(std::uint32_t hash) const {
  if (!IsHashed()) return queues_ + used_;
  std::uint32_t at = hash & (room_ - 1);
  while (queues_[at].nodes.Size() != 0) at = (at + 1) & (room_ - 1);
  return &queues_[at];
}

void NameIndex::Grow(Arena* arena) {
  Queue* const old = queues_;
  const std::uint32_t oldRoom = room_;
  const std::uint32_t room = oldRoom == 0 ? kFirst : oldRoom * 2;
  auto* fresh = static_cast<Queue*>(AllocateBlock(arena, TablePower(room)));
  for (std::uint32_t at = 0; at < room; ++at) new (&fresh[at]) Queue{};
  queues_ = fresh;
  room_ = room;
  used_ = 0;
  for (std::uint32_t at = 0; at < oldRoom; ++at) {
    if (old[at].nodes.Size() == 0) continue;
    MoveQueue(FreePlace(old[at].hash), &old[at]);
    ++used_;
  }
  if (old != nullptr) ReleaseBlock(arena, old, TablePower(oldRoom));
}

NameIndex::Queue* NameIndex::Append(CzonNamedNode& node, Arena* arena) {
  if (node.IsInStore()) return Append(node, node.GetNameView(), node.GetNameHash(), arena);
  const NameKey key = node.GetKey();
  if (key.isStored) return Append(node, key.name, key.hash, arena);
  auto kept = std::make_unique<std::string>(key.name);
  Queue* queue = Append(node, *kept, key.hash, arena);
  if (queue->name == nullptr) queue->name = kept.release();
  return queue;
}

NameIndex::Queue* NameIndex::Append(CzonNamedNode& node, std::string_view name, std::uint32_t hash,
                                    Arena* arena) {
  Queue* queue = Find(name, hash);
  if (queue == nullptr) {
    // Half of a hashed table stays free, so that a search soon ends.
    if (used_ == room_ || (IsHashed() && used_ >= room_ / 2)) Grow(arena);
    queue = FreePlace(hash);
    queue->hash = hash;
    ++used_;
  }
  queue->nodes.Append(&node, arena);  // the first one of a queue cannot fail
  return queue;
}

void NameIndex::KeepName(Queue& queue, const NameKey& key) {
  if (!key.isStored && queue.name == nullptr) queue.name = new std::string(key.name);
}

void NameIndex::Drop(Queue* queue, Arena* arena) {
  queue->nodes.Release(arena);
  delete queue->name;
  --used_;
  if (!IsHashed()) {
    if (queue != queues_ + used_) MoveQueue(queue, queues_ + used_);
    new (queues_ + used_) Queue{};
    return;
  }
  // Whatever stands behind the gap and could stand in it moves up, so that no search ends early.
  const std::uint32_t mask = room_ - 1;
  auto gap = static_cast<std::uint32_t>(queue - queues_);
  for (std::uint32_t at = (gap + 1) & mask; queues_[at].nodes.Size() != 0; at = (at + 1) & mask) {
    const std::uint32_t home = queues_[at].hash & mask;
    if (((at - home) & mask) < ((at - gap) & mask)) continue;
    MoveQueue(&queues_[gap], &queues_[at]);
    gap = at;
  }
  new (&queues_[gap]) Queue{};
}

void NameIndex::Release(Arena* arena) {
  if (queues_ == nullptr) return;
  for (Queue* queue = queues_; queue != queues_ + room_; ++queue) {
    queue->nodes.Release(arena);
    delete queue->name;
  }
  ReleaseBlock(arena, queues_, TablePower(room_));
  queues_ = nullptr;
  used_ = 0;
  room_ = 0;
}

void NameIndex::Swap(NameIndex& other) {
  std::swap(queues_, other.queues_);
  std::swap(used_, other.used_);
  std::swap(room_, other.room_);
}

}  // namespace zon

template <class T>
CzonNameList<T>::~CzonNameList() {
  Forget();
}

template <class T>
void CzonNameList<T>::Forget() {
  index_.Release(arena_);
  ordered_.Release(arena_);
}

template <class T>
void CzonNameList<T>::Swap(CzonNameList& other) {
  index_.Swap(other.index_);
  ordered_.Swap(other.ordered_);
}

template <class T>
int CzonNameList<T>::NumberOf(const CzonNode& node) {
  return node.instance_;
}

template <class T>
int CzonNameList<T>::AddToIndex(T* node) {
  if (node == nullptr) return 0;
  zon::NameIndex::Queue& queue = *index_.Append(*node, arena_);
  const std::uint32_t place = queue.nodes.Size() - 1;
  if (place == 0) {  // most names are those of one node
    static_cast<CzonNode*>(node)->instance_ = 1;
    return 1;
  }
  NoteRepeat(queue, *node, place);
  Renumber(queue, place);
  return 1;
}

template <class T>
int CzonNameList<T>::InsertIntoHashtable(T* node, unsigned int pos) {
  if (node == nullptr) return 1;
  zon::NameIndex::Queue* queue = index_.Find(*node);
  if (queue == nullptr) {
    AddToIndex(node);
    return 0;
  }
  zon::NameIndex::KeepName(*queue, node->GetKey());
  const std::uint32_t place = PlaceInQueue(*queue, *node, std::max(pos, 1U) - 1);
  NoteRepeat(*queue, *node, queue->nodes.Size());
  queue->nodes.Insert(place, node, arena_);
  Renumber(*queue, place);
  return 0;
}

// Where a node that is about to stand at place `at` of the ordered list comes among its namesakes:
// the nearest one of them, on either side, tells.
template <class T>
std::uint32_t CzonNameList<T>::PlaceInQueue(const zon::NameIndex::Queue& queue,
                                            const CzonNamedNode& node, std::uint32_t at) const {
  std::uint32_t behind = std::min(at, ordered_.Size());
  std::uint32_t before = behind;
  const auto numberOf = [&](std::uint32_t index) {
    const auto* other = static_cast<const CzonNamedNode*>(ordered_[index]);
    if (other->GetKey().hash != queue.hash || other == &node) return queue.nodes.Size();
    // A node that has been copied over has lost its number; Find looks further.
    const auto guess =
        static_cast<std::uint32_t>(static_cast<const CzonNode*>(other)->instance_ - 1);
    return queue.nodes.Find(other, guess);
  };
  while (before > 0) {
    const std::uint32_t numberBefore = numberOf(--before);
    if (numberBefore < queue.nodes.Size()) return numberBefore + 1;
    if (behind == ordered_.Size()) continue;
    const std::uint32_t numberBehind = numberOf(behind++);
    if (numberBehind < queue.nodes.Size()) return numberBehind;
  }
  return 0;
}

template <class T>
int CzonNameList<T>::EraseFromHashtable(T* node) {
  return node != nullptr ? EraseNumber(node, NumberOf(*node)) : zon::kErrNode;
}

template <class T>
int CzonNameList<T>::EraseNumber(T* node, int number) {
  zon::NameIndex::Queue* queue = index_.Find(*node);
  if (queue == nullptr) return zon::kErrNode;
  const std::uint32_t place = Find(*queue, *node, number);
  if (place == queue->nodes.Size()) return zon::kErrNode;
  queue->nodes.Erase(place);
  Renumber(*queue, place);
  if (queue->nodes.Size() == 0) index_.Drop(queue, arena_);
  return 0;
}

// The place of the node in the queue, the first one if it is filed twice; the length of the queue if
// it is not there.
template <class T>
std::uint32_t CzonNameList<T>::Find(const zon::NameIndex::Queue& queue, const CzonNode& node,
                                    int number) {
  return queue.nodes.Find(&node, queue.hasRepeats ? 0 : static_cast<std::uint32_t>(number - 1));
}

// Notes whether a node that is being filed is among the first `count` of the queue already. The
// number of the node shows it without a search.
template <class T>
void CzonNameList<T>::NoteRepeat(zon::NameIndex::Queue& queue, const CzonNode& node,
                                 std::uint32_t count) {
  const auto place = static_cast<std::uint32_t>(node.instance_ - 1);
  const bool repeats = zon::NameIndex::IsNumbered(queue)
                           ? place < count && queue.nodes[place] == &node
                           : queue.nodes.Find(&node, 0) < count;
  if (repeats) queue.hasRepeats = 1;
}

template <class T>
void CzonNameList<T>::LoseNumber(const T* node) {
  zon::NameIndex::Queue* queue = index_.Find(*node);
  if (queue != nullptr) queue->hasLostNumbers = 1;
}

template <class T>
void CzonNameList<T>::RestoreNumbers(const T* node) {
  zon::NameIndex::Queue* queue = index_.Find(*node);
  if (queue != nullptr) Renumber(*queue, 0);
}

// Numbers the queue behind a change at the place `from`.
template <class T>
void CzonNameList<T>::Renumber(zon::NameIndex::Queue& queue, std::uint32_t from) {
  if (!zon::NameIndex::IsNumbered(queue)) from = 0;
  zon::NameIndex::NoteNumbered(queue);
  for (std::uint32_t at = from; at < queue.nodes.Size(); ++at) {
    queue.nodes[at]->instance_ = static_cast<std::int32_t>(at + 1);
  }
}

template <class T>
bool CzonNameList<T>::Holds(const T* node) const {
  const zon::NameIndex::Queue* queue = index_.Find(*node);
  return queue != nullptr && Find(*queue, *node, NumberOf(*node)) < queue->nodes.Size();
}

template <class T>
T* CzonNameList<T>::ByNum(unsigned int n) const {
  return n - 1 < ordered_.Size() ? static_cast<T*>(ordered_[n - 1]) : nullptr;
}

template <class T>
T* CzonNameList<T>::ByNameNum(std::string_view name, unsigned int n) const {
  const zon::NameIndex::Queue* queue = index_.Find(name);
  if (queue == nullptr || n - 1 >= queue->nodes.Size()) return nullptr;
  return static_cast<T*>(queue->nodes[n - 1]);
}

template <class T>
unsigned int CzonNameList<T>::CountOf(const CzonNamedNode& namesake) const {
  const zon::NameIndex::Queue* queue = index_.Find(namesake);
  return queue != nullptr ? queue->nodes.Size() : 0;
}

template <class T>
void CzonNameList<T>::Append(T* node) {
  ordered_.Reserve(arena_);
  AddToIndex(node);
  ordered_.Append(node, arena_);
}

template <class T>
void CzonNameList<T>::Insert(T* node, unsigned int pos) {
  ordered_.Reserve(arena_);
  InsertIntoHashtable(node, pos);
  ordered_.Insert(pos - 1, node, arena_);
}

template <class T>
int CzonNameList<T>::Remove(T* node) {
  const int code = EraseFromHashtable(node);
  const unsigned int place = PlaceOf(node);
  if (place != 0) ordered_.Erase(place - 1);
  return code;
}

template <class T>
unsigned int CzonNameList<T>::PlaceOf(const T* node) const {
  // Mostly an owner has children of one kind, or has the other kind behind.
  const std::uint32_t place = ordered_.Find(node, node->PlaceSeen());
  return place < ordered_.Size() ? place + 1 : 0;
}

template class CzonNameList<CzonSection>;
template class CzonNameList<CzonKeyword>;
