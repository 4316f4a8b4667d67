// Normalising a path, as hosts may use it.
#ifndef ZON_PATHS_ZONPATH_H
#define ZON_PATHS_ZONPATH_H

#include <string>

#include "base/zonexport.h"

/** Normalises a path in place: several '/' in a row become one, "." and ".." are resolved as far as
 *  the text allows (".." at the start stays, also after the root), a '/' at the end stays.
 *
 *  Compatibility: a dot counts if it is the first character of a component or follows a dot, and
 *  any other character resets the count. So "x.." counts one dot and disappears like ".", and
 *  "x..." counts two and removes the component before it too. */
ZON_API void _normalizePath(std::string& path);

#endif
