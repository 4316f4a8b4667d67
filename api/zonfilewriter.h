// Writes a tree as a parameter file.
#ifndef ZON_API_ZONFILEWRITER_H
#define ZON_API_ZONFILEWRITER_H

#include "api/zonfilehandle.h"

namespace zon {

// Adds a section with the result settings to the tree, if there are any, sets the name of the
// parameter file and appends the tree to the file. Returns false, and leaves the file as it was, if
// it cannot be opened or written.
bool WriteTree(CzonData& data, const char* fileName);

}  // namespace zon

#endif
