// Which nodes of a tree the format cannot express.
//
// A node can be expressed if a text with it alone loads and gives the node: no rule of the format
// is stated twice. Nesting and the rule on templates concern several nodes and are looked at apart.
// Tested by tests/zonsave_test.cpp.
#ifndef ZON_SAVING_ZONUNWRITABLE_H
#define ZON_SAVING_ZONUNWRITABLE_H

#include "zonx/zonreporter.h"

class CzonTargetList;

namespace zon {

// Reports each such node of a tree that does not load from its own text. At least one report is
// made.
void ReportUnwritable(const CzonTargetList& root, Reporter& reporter);

}  // namespace zon

#endif
