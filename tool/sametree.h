// The comparison of two loaded files.
#ifndef ZON_TOOL_SAMETREE_H
#define ZON_TOOL_SAMETREE_H

namespace tool {

// Whether two nodes and all that is below them are the same: kinds, names, flags, remarks, and
// values with their text, but for the letter case of booleans. Throws if out of memory.
bool IsSameTree(void* first, void* second);

}  // namespace tool

#endif
