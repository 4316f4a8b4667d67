// The children of one kind, by number and by name.
//
// NameList is the list of its nodes in the order of the file, and an index of their names, which
// ignores ASCII case. The index is made when a name or an instance number is first asked for: most
// sections of most files never are. Until then the nodes have no instance numbers (kUnnumbered).
// Lists without an owner, which a host fills (CzonNameList), are indexed at once.
//
// NameIndex maps a name to its node, or to the queue of the nodes of that name if there are
// several. It is a plain array of up to 8 entries, which is searched linearly, or a hash table with
// linear probing that is at most half full. The instance number of a node is its place in its
// queue, counted from 1. It is stored in the node unless the queue is a long list.
//
// If out of memory the operations throw std::bad_alloc; no node is then filed, removed or
// renumbered. The owner is the node whose children the list has; null for a list of a host.
// Tested by tests/tree_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#ifndef ZON_TREE_ZONNAMEINDEX_H
#define ZON_TREE_ZONNAMEINDEX_H

#include <cstdint>
#include <string_view>

#include "base/zonarena.h"
#include "tree/zonnodelist.h"

class CzonNamedNode;

namespace zon {

// The nodes of the name in an index. Valid until the index changes.
NodeSpan FindNamesakes(const NameIndex& index, std::string_view name);

// Adds the node to those of its name. Sets no instance number.
void AddToIndex(NameIndex& index, CzonNamedNode& node, Arena* arena);

void Release(NameIndex& index, Arena* arena);

inline std::uint32_t Count(const NameList& list) {
  return list.ordered.size;
}

// The n-th node, the n-th node of a name, counted from 1; null if there is none.
CzonNamedNode* FindByNumber(const NameList& list, unsigned int n);
CzonNamedNode* FindByName(NameList& list, std::string_view name, unsigned int n,
                          CzonNamedNode* owner);

// The number of nodes with the name of `namesake`.
std::uint32_t CountNamesakes(NameList& list, const CzonNamedNode& namesake, CzonNamedNode* owner);

// The number of different names.
std::uint32_t CountNames(NameList& list, CzonNamedNode* owner);

// Whether the index holds `node`.
bool IsIndexed(NameList& list, const CzonNamedNode& node, CzonNamedNode* owner);

// The place of the node in the order of the file, from 1; 0 if it is not in the list.
std::uint32_t PlaceOf(const NameList& list, const CzonNamedNode& node, const CzonNamedNode* owner);

// How many nodes of the list are before a place of the children, which are a long list.
std::uint32_t CountBefore(const NameList& list, const CzonNamedNode& owner, std::uint32_t place);

// The place of a node in its queue, from 1, where numbers are not stored.
std::uint32_t CountNumber(NameList& list, const CzonNamedNode& node, CzonNamedNode* owner);

// Makes the index and the numbers of all nodes that have none yet.
void CompleteIndex(NameList& list, CzonNamedNode* owner);

// Change the index alone. InsertIntoIndex files a node that is to get the place `place` of the
// ordered list. `place` counts from 1; 0 means 1, a larger one means the end. EraseFromIndex
// returns false if the index does not hold the node. `number`, normally its instance number, is
// only a hint where to search.
void AddToIndex(NameList& list, CzonNamedNode& node, CzonNamedNode* owner);
void InsertIntoIndex(NameList& list, CzonNamedNode& node, std::uint32_t place,
                     CzonNamedNode* owner);
bool EraseFromIndex(NameList& list, CzonNamedNode& node, int number, CzonNamedNode* owner);

// Change the index and the ordered list. `place` is as above; Remove returns as EraseFromIndex.
void Append(NameList& list, CzonNamedNode& node, CzonNamedNode* owner);
void Insert(NameList& list, CzonNamedNode& node, std::uint32_t place, CzonNamedNode* owner);
bool Remove(NameList& list, CzonNamedNode& node, CzonNamedNode* owner);
void Release(NameList& list, Arena* arena);

// Call after a Copy has reset the number of the node: marks its queue to be numbered anew at its
// next change. The index must be complete.
void LoseNumber(NameList& list, const CzonNamedNode& node);

// Numbers the queue of the node now.
void RestoreNumbers(NameList& list, const CzonNamedNode& node, CzonNamedNode* owner);

}  // namespace zon

#endif
