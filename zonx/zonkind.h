// The kind of a node.
#ifndef ZON_ZONX_ZONKIND_H
#define ZON_ZONX_ZONKIND_H

#include "api/zonx.h"

class CzonNode;

namespace zon {

// A zonxKind; 0 for a node of a host's class that is none.
int KindOf(const CzonNode& node);

// "a string", for messages.
const char* KindText(int kind);

}  // namespace zon

#endif
