// Why a call cannot read or set what a path leads to. Tested by tests/reports_test.cpp and
// tests/zonxset_test.cpp.
#ifndef ZON_ZONX_ZONPATHREPORT_H
#define ZON_ZONX_ZONPATHREPORT_H

#include "reader/zonfinding.h"
#include "zonx/zonnodepath.h"

namespace zon {

// `found`: where the search for the path ended. `status`: of the call that failed.
Finding DescribePath(void* fileOrNode, const char* path, const FoundNode& found, int status);

// The node that a report shows: the deepest of the path that exists. A value that cannot be read is
// shown itself. `start` if the path could not be followed.
CzonNode* NodeToShow(const FoundNode& found, int status, CzonNode* start);

}  // namespace zon

#endif
