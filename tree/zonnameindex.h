// The children of one kind, by number and by name.
//
// NameIndex maps a name, ignoring ASCII case, to the queue of the nodes of that name. It is a plain
// array of up to 8 queues, which is searched linearly, or a hash table with linear probing that is at most
// half full. In the hash table a free place has an empty queue.
// NameList is an index and the list of its nodes in the order of the file. The instance number of a
// node is its place in its queue, counted from 1.
//
// Invariants: every queue in use has a node; the key of a queue is that of its first node, or
// `name` if a node was filed by the GetName of a host's class. If out of memory the operations throw
// std::bad_alloc; no node is then filed, removed or renumbered. The arena is that of the owner of the children.
// Tested by tests/tree_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#ifndef ZON_TREE_ZONNAMEINDEX_H
#define ZON_TREE_ZONNAMEINDEX_H

#include <cstdint>
#include <string>
#include <string_view>

#include "base/zonarena.h"
#include "tree/zonnodelist.h"

class CzonNamedNode;

namespace zon {

// The nodes of one name.
struct NameQueue {
  std::uint32_t hash;
  // Set when a node is filed twice, never cleared. Such a node's number is its last place, so
  // FindInQueue searches from the start.
  std::uint32_t hasRepeats : 1;
  std::uint32_t hasLostNumbers : 1;  // set by LoseNumber, cleared when the queue is numbered
  // The low 30 bits of GetLostNumbers() at the last numbering. If they differ, numbers may be lost.
  std::uint32_t lossesSeen : 30;
  NodeList nodes;
  std::string* name;  // owned; null while every node of the queue was filed by its stored name
};

// The queue of the name; null if there is none.
NameQueue* FindQueue(const NameIndex& index, std::string_view name);
NameQueue* FindQueue(const NameIndex& index, const CzonNamedNode& node);

// Files the node at the end of its queue and returns the queue. Sets no instance number.
NameQueue* AppendToQueue(NameIndex& index, CzonNamedNode& node, Arena* arena);

void Release(NameIndex& index, Arena* arena);

inline std::uint32_t Count(const NameList& list) {
  return list.ordered.size;
}

// The n-th node, the n-th node of a name, counted from 1; null if there is none.
CzonNamedNode* FindByNumber(const NameList& list, unsigned int n);
CzonNamedNode* FindByName(const NameList& list, std::string_view name, unsigned int n);

// The number of nodes with the name of `namesake`.
std::uint32_t CountNamesakes(const NameList& list, const CzonNamedNode& namesake);

// Whether the index holds `node`.
bool IsIndexed(const NameList& list, const CzonNamedNode& node);

// The place of the node in the order of the file, from 1; 0 if it is not in the list.
std::uint32_t PlaceOf(const NameList& list, const CzonNamedNode& node);

// Change the index alone. InsertIntoIndex files a node that is to get the place `place` of the ordered
// list. `place` counts from 1; 0 means 1, a larger one means the end. EraseFromIndex returns false if
// the index does not hold the node. `number`, normally its instance number, is only a hint where to
// search.
void AddToIndex(NameList& list, CzonNamedNode& node, Arena* arena);
void InsertIntoIndex(NameList& list, CzonNamedNode& node, std::uint32_t place, Arena* arena);
bool EraseFromIndex(NameList& list, CzonNamedNode& node, int number, Arena* arena);

// Change the index and the ordered list. `place` is as above; Remove returns as EraseFromIndex.
void Append(NameList& list, CzonNamedNode& node, Arena* arena);
void Insert(NameList& list, CzonNamedNode& node, std::uint32_t place, Arena* arena);
bool Remove(NameList& list, CzonNamedNode& node, Arena* arena);
void Release(NameList& list, Arena* arena);

// Call after a Copy has reset the number of the node: marks its queue to be numbered anew at its next
// change.
void LoseNumber(NameList& list, const CzonNamedNode& node);

// Numbers the queue of the node now.
void RestoreNumbers(NameList& list, const CzonNamedNode& node);

}  // namespace zon

#endif
