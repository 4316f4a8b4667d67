// Arithmetic on path texts. Nothing here looks at the file system, but for the working directory.
#ifndef ZON_PATHS_ZONPATH_H
#define ZON_PATHS_ZONPATH_H

#include <string>
#include <string_view>

#include "base/zonexport.h"

/** Normalises a path in place: runs of '/' become one, "." and ".." are resolved as far as the text
 *  itself allows (a leading ".." stays, also under the root), a '/' at the end stays.
 *
 *  Deliberately odd: only dots that open a component or follow a dot are counted, so "x.." counts
 *  as "." and disappears, and "x..." counts as ".." and takes the component before it along. */
ZON_API void _normalizePath(std::string& path);

namespace zon {

inline bool IsAbsolutePath(std::string_view path) {
  return !path.empty() && path.front() == '/';
}

// The text taken relative to the base unless it is absolute or there is no base; normalised. The
// bases "$PWD" and "$CDD" stand for the working directory of this moment.
std::string AbsolutePath(std::string_view text, std::string_view base);

// The name of a parameter file, taken relative to the working directory.
std::string AbsoluteAnchor(std::string_view fileName);

// The name of a file that a value of the parameter file `fileName` gives as `text`.
std::string ResolveFilename(std::string_view text, std::string_view fileName);

// The name as it is to stand in the parameter file `fileName`, with backslashes.
std::string WrittenFilename(std::string_view text, std::string_view fileName);

// The path relative to the parameter file.
std::string RelativeForm(std::string_view text, std::string_view fileName);

}  // namespace zon

#endif
