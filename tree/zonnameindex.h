// The children of one kind: in the order of the file, and by name.
//
// The index files a node under its name in lower case, the empty name under one blank, in a queue
// with its namesakes; a node's instance number is its place in that queue. Up to eight names are
// looked through one by one, more are hashed. The hash of a name is made once, by its node.
#ifndef ZON_TREE_ZONNAMEINDEX_H
#define ZON_TREE_ZONNAMEINDEX_H

#include <cstdint>
#include <string>
#include <string_view>

#include "base/zonarena.h"
#include "base/zonexport.h"
#include "tree/zonnodelist.h"

class CzonNamedNode;

namespace zon {

// The name by which a node is filed, and its hash.
struct NameKey {
  std::string_view name;
  std::uint32_t hash;
  bool isStored;  // false for what a host's GetName returns; it may return something else later
};

// Names and their queues; knows nothing of instance numbers.
class NameIndex {
 public:
  // The nodes of one name. A queue of one has no block.
  struct Queue {
    std::uint32_t hash;
    std::uint32_t hasRepeats : 1;  // set when a node is filed twice; its number is its last place
    std::uint32_t hasLostNumbers : 1;  // set by LoseNumber, cleared when the queue is numbered
    std::uint32_t lossesSeen : 30;     // the count of LoseOutside when the queue was numbered
    NodeList nodes;
    std::string* name;  // owned; null while every node of the queue was filed by its stored name
  };

  NameIndex() = default;
  NameIndex(const NameIndex&) = delete;
  NameIndex& operator=(const NameIndex&) = delete;

  Queue* Find(std::string_view name) const;
  Queue* Find(const CzonNamedNode& node) const;

  // Files the node at the end of its queue, which is given back. Throws std::bad_alloc, the index
  // unchanged.
  Queue* Append(CzonNamedNode& node, Arena* arena);

  // Call before a node is put into a queue. Throws std::bad_alloc, the queue unchanged.
  static void KeepName(Queue& queue, const NameKey& key);

  // Takes an empty queue out.
  void Drop(Queue* queue, Arena* arena);

  void Release(Arena* arena);
  void Swap(NameIndex& other);

  // A Copy resets the number of its target to 0; the next change of a queue restores the numbers of
  // the queue. Numbers are correct, and appending is cheap, unless one was lost. Of a node without
  // an owner the queue is unknown: all queues then count as changed.
  static void LoseOutside();
  static bool IsNumbered(const Queue& queue);
  static void NoteNumbered(Queue& queue);

 private:
  static constexpr std::uint32_t kFirst = 4;    // queues that the first table holds
  static constexpr std::uint32_t kScanned = 8;  // as many queues are not hashed

  Queue* Find(std::string_view name, std::uint32_t hash) const;
  Queue* Append(CzonNamedNode& node, std::string_view name, std::uint32_t hash, Arena* arena);
  Queue* FreePlace(std::uint32_t hash) const;
  void Grow(Arena* arena);
  bool IsHashed() const { return room_ > kScanned; }

  Queue* queues_ = nullptr;
  std::uint32_t used_ = 0;
  std::uint32_t room_ = 0;  // a power of two
};

}  // namespace zon

/** The list of the sections or of the keywords of an owner, which alone owns the nodes. T is
 *  CzonSection or CzonKeyword. */
template <class T>
class ZON_API CzonNameList {
 public:
  CzonNameList() = default;
  CzonNameList(const CzonNameList&) = delete;
  CzonNameList& operator=(const CzonNameList&) = delete;
  ~CzonNameList();

  /** Files the node by its name and numbers it. Gives 1; 0 for null. The ordered list stays. */
  int AddToIndex(T* node);

  /** Files a node that is about to stand at place `pos` (from 1) of the ordered list, and renumbers
   *  its namesakes behind it. Gives 0; 1 for null. The ordered list stays. */
  int InsertIntoHashtable(T* node, unsigned int pos);

  /** Takes the node out of the index and renumbers its namesakes. Gives 0, or 1006 when the index
   *  does not hold it. The ordered list stays and the node lives on. */
  int EraseFromHashtable(T* node);

  unsigned int Count() const { return ordered_.Size(); }      ///< of all nodes
  bool Holds(const T* node) const;                            ///< whether the index does
  T* ByNum(unsigned int n) const;                             ///< null for a number out of range
  T* ByNameNum(std::string_view name, unsigned int n) const;  ///< null for a miss
  unsigned int CountOf(const CzonNamedNode& namesake) const;  ///< of the nodes of its name

  // For the owners of lists.
  void EnterArena(zon::Arena& arena) { arena_ = &arena; }
  void Append(T* node);                       // index and end of the ordered list: all or nothing
  void Insert(T* node, unsigned int pos);     // the same at a place
  int Remove(T* node);                        // from both
  unsigned int PlaceOf(const T* node) const;  // from 1; 0 when it is not in the list
  void LoseNumber(const T* node);             // a Copy has reset the number of the node
  void RestoreNumbers(const T* node);         // of its queue
  int EraseNumber(T* node, int number);       // from the index; it had the number when filed
  void Forget();                              // empties both
  void Swap(CzonNameList& other);             // of the same store

 private:
  static int NumberOf(const CzonNode& node);
  static void NoteRepeat(zon::NameIndex::Queue& queue, const CzonNode& node, std::uint32_t count);
  static void Renumber(zon::NameIndex::Queue& queue, std::uint32_t from);
  static std::uint32_t Find(const zon::NameIndex::Queue& queue, const CzonNode& node, int number);
  std::uint32_t PlaceInQueue(const zon::NameIndex::Queue& queue, const CzonNamedNode& node,
                             std::uint32_t at) const;

  zon::NameIndex index_;
  zon::NodeList ordered_;
  zon::Arena* arena_ = nullptr;
};

#endif
