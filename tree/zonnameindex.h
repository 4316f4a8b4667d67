// The children of one kind, by number and by name.
//
// NameIndex maps a name, in lower case, to the queue of the nodes of that name. It is a plain array
// of up to 8 queues, which is searched linearly, or a hash table with linear probing that is at most
// half full. In the hash table a free place has an empty queue.
// NameList is an index and the list of its nodes in the order of the file. The instance number of a
// node is its place in its queue, counted from 1.
//
// Invariants: every queue in use has a node; the key of a queue is that of its first node, or
// `name` if a node was filed by the GetName of a host's class. Operations that may fail for lack of
// memory throw std::bad_alloc and change nothing. The arena is that of the owner of the children.
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
  std::uint32_t hasRepeats : 1;      // set when a node is filed twice; its number is its last place
  std::uint32_t hasLostNumbers : 1;  // set by LoseNumber, cleared when the queue is numbered
  std::uint32_t lossesSeen : 30;     // GetLostNumbers() when the queue was last numbered
  NodeList nodes;
  std::string* name;  // owned; null while every node of the queue was filed by its stored name
};

// The queue of the name; null if there is none.
NameQueue* FindQueue(const NameIndex& index, std::string_view name);
NameQueue* FindQueue(const NameIndex& index, const CzonNamedNode& node);

// Files the node at the end of its queue, and returns that. Numbers no node.
NameQueue* AppendToQueue(NameIndex& index, CzonNamedNode& node, Arena* arena);

void Release(NameIndex& index, Arena* arena);

inline std::uint32_t Count(const NameList& list) {
  return list.ordered.size;
}

// The n-th node, the n-th node of a name, counted from 1; null if there is none.
CzonNamedNode* FindByNumber(const NameList& list, unsigned int n);
CzonNamedNode* FindByName(const NameList& list, std::string_view name, unsigned int n);

// The number of nodes with the name of this one, and whether this one is among them.
std::uint32_t CountNamesakes(const NameList& list, const CzonNamedNode& namesake);
bool IsIndexed(const NameList& list, const CzonNamedNode& node);

// The place of the node in the order of the file, from 1; 0 if it is not in the list.
std::uint32_t PlaceOf(const NameList& list, const CzonNamedNode& node);

// Change the index alone. InsertIntoIndex files a node that is to get the place `place`, from 1, of
// the ordered list. EraseFromIndex returns false if the index does not hold the node, whose number
// was `number` when it was filed.
void AddToIndex(NameList& list, CzonNamedNode& node, Arena* arena);
void InsertIntoIndex(NameList& list, CzonNamedNode& node, std::uint32_t place, Arena* arena);
bool EraseFromIndex(NameList& list, CzonNamedNode& node, int number, Arena* arena);

// Change the index and the ordered list. Remove returns as EraseFromIndex.
void Append(NameList& list, CzonNamedNode& node, Arena* arena);
void Insert(NameList& list, CzonNamedNode& node, std::uint32_t place, Arena* arena);
bool Remove(NameList& list, CzonNamedNode& node, Arena* arena);
void Release(NameList& list, Arena* arena);

// A Copy has reset the number of the node: the next change of its queue numbers the queue anew.
void LoseNumber(NameList& list, const CzonNamedNode& node);

// Numbers the queue of the node now.
void RestoreNumbers(NameList& list, const CzonNamedNode& node);

}  // namespace zon

#endif
