// The listing of a tree for debugging.
#ifndef ZON_API_ZONTREEDUMP_H
#define ZON_API_ZONTREEDUMP_H

#include "tree/zonnode.h"

namespace zon {

// Replaces the file by a listing of the node and everything below it, one line a node; the root of
// a file has no line. A file that cannot be written is not reported. Throws, and leaves the file as
// it is, if out of memory.
void DumpTree(CzonNode& start, const char* fileName);

}  // namespace zon

#endif
