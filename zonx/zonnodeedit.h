// Changes of a tree by path. A change completes, or fails and leaves the tree as it was.
// Tested by tests/zonxset_test.cpp.
#ifndef ZON_ZONX_ZONNODEEDIT_H
#define ZON_ZONX_ZONNODEEDIT_H

#include <cstdint>

#include "zonx/zonnewvalue.h"
#include "zonx/zonnodepath.h"

class CzonNamedNode;
class CzonTargetList;

namespace zon {

// Where values are to be put: a keyword or default definition, or one that is to be made.
struct SetPlace {
  int status = 1;                       // ZONX_OK, ZONX_MISSING or ZONX_BAD_ARGUMENT
  CzonNamedNode* keyword = nullptr;     // null if it is to be made
  CzonTargetList* section = nullptr;    // if it is: the deepest section of the path that exists
  PathReader missing = PathReader("");  // the rest of the path: sections, and then the keyword
  unsigned int count = 0;               // of the names in it
  unsigned int valueNumber = 0;  // of "[n]" or of the value that the path begins at; 0 for none
};

// Follows a path from a file handle or node. Checks the names of what is to be made, and numbers.
SetPlace FindSetPlace(void* fileOrNode, const char* path);

// Put the value at its number, 1 if there is none, or replace all values. The status of the place
// is ZONX_OK; there is at least one value. May throw std::bad_alloc.
void SetValue(const SetPlace& place, NewValue value);
void SetAllValues(const SetPlace& place, NewValues values);

// The place among the children for new nodes: after the last of their kind. A first keyword
// precedes all sections.
std::uint32_t PlaceForNew(const CzonTargetList& section, bool isKeyword);

// Removes a node. ZONX_OK; ZONX_BAD_ARGUMENT if it is in no list.
int RemoveNode(CzonNode& node);

}  // namespace zon

#endif
