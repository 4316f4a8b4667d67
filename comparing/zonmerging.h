// Merging a tree into another one: every keyword of the overlay is given to the target.
//
// A merge is planned first: the values that change, and copies of what is missing, are made aside.
// Then the copies are filed, which is taken back if out of memory. The rest cannot fail. So a merge
// completes or changes nothing. Tested by tests/zonxmerge_test.cpp and fuzz/diff_fuzz.cpp.
#ifndef ZON_COMPARING_ZONMERGING_H
#define ZON_COMPARING_ZONMERGING_H

#include "comparing/zonoverlaynodes.h"

class CzonData;

namespace zon {

// The handle has a tree, and another one than `overlay`. Throws std::bad_alloc.
void MergeTree(CzonData& target, const CzonTargetList& overlay, const NodeCopier& copier);

}  // namespace zon

#endif
