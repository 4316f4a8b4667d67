// A whole tree as a parameter file.
#ifndef ZON_API_ZONFILEWRITER_H
#define ZON_API_ZONFILEWRITER_H

#include "api/zonfilehandle.h"

namespace zon {

// Adds the section of the result settings to the tree if there are any, makes fileName the name of
// the parameter file, and writes the tree behind whatever the file holds. False when the file could
// not be opened or written; then it is as it was.
bool WriteTree(CzonData& data, const char* fileName);

}  // namespace zon

#endif
