// The kind of a node.
#ifndef ZON_ZONX_ZONKIND_H
#define ZON_ZONX_ZONKIND_H

#include <typeinfo>

#include "api/zonx.h"
#include "tree/zonnode.h"

namespace zon {

// Whether a node is of the class itself. Compares addresses: a comparison of different type_infos
// compares their names. A second copy of a type_info takes the general way.
template <class T>
bool IsExactly(const CzonNode& node) {
  return &typeid(node) == &typeid(T);
}

// A zonxKind; 0 for a node of a host's class that is none.
int KindOf(const CzonNode& node);

// "a string", for messages.
const char* KindText(int kind);

}  // namespace zon

#endif
