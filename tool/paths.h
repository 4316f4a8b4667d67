// Paths of the command line that are more than paths of the library.
#ifndef ZON_TOOL_PATHS_H
#define ZON_TOOL_PATHS_H

#include <string>
#include <vector>

namespace tool {

// zonxFind, with an exception if out of memory.
int Find(void* file, const std::string& path, void** node);

// Replaces each ":*" by the numbers of the instances that exist. If there are none it is left out,
// which selects the first.
std::vector<std::string> Expand(void* file, const std::string& path);

// The path of a section, which ends with "/", a keyword or a value; empty for the root.
std::string PathOf(void* node);

}  // namespace tool

#endif
