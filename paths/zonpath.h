// Paths as texts. Of the file system only the name of the working directory is read.
#ifndef ZON_PATHS_ZONPATH_H
#define ZON_PATHS_ZONPATH_H

#include <string>
#include <string_view>

#include "base/zonexport.h"

/** Normalises a path in place: several '/' in a row become one, "." and ".." are resolved as far as
 *  the text allows (".." at the start stays, also after the root), a '/' at the end stays.
 *
 *  Compatibility: a dot counts if it is the first character of a component or follows a dot, and any
 *  other character resets the count. So "x.." counts one dot and disappears like ".", and "x..."
 *  counts two and removes the component before it too. */
ZON_API void _normalizePath(std::string& path);

namespace zon {

inline bool IsAbsolutePath(std::string_view path) {
  return !path.empty() && path.front() == '/';
}

// Returns the path `text`, resolved against the directory `base` unless it is absolute; normalised.
// The bases "$PWD" and "$CDD" are the working directory at the time of the call.
std::string AbsolutePath(std::string_view text, std::string_view base);

// Returns the name of a parameter file, resolved against the working directory.
std::string AbsoluteAnchor(std::string_view fileName);

// Returns the path of the file that is called `text` in the parameter file `fileName`.
std::string ResolveFilename(std::string_view text, std::string_view fileName);

// Returns how the name `text` is written in the parameter file `fileName`: an absolute name in its
// relative form, with backslashes.
std::string WrittenFilename(std::string_view text, std::string_view fileName);

// Returns the path `text` relative to the parameter file. Both are absolute and normalised.
std::string RelativeForm(std::string_view text, std::string_view fileName);

}  // namespace zon

#endif
