// Resolving file names to paths, and the form in which they are written. Paths are texts: of the
// file system only the name of the working directory is read. Tested by tests/paths_test.cpp.
#ifndef ZON_PATHS_ZONFILEPATH_H
#define ZON_PATHS_ZONFILEPATH_H

#include <string>
#include <string_view>

class CzonFilename;

namespace zon {

inline bool IsAbsolutePath(std::string_view path) {
  return !path.empty() && path.front() == '/';
}

// Returns the name, after the working directory unless it is absolute; not normalised.
std::string AbsoluteName(const std::string& name);

// Returns the path `text`, resolved against the directory `base` unless it is absolute; normalised.
std::string AbsolutePath(std::string_view text, std::string_view base);

// Returns the name of a parameter file, resolved against the working directory.
std::string AbsoluteAnchor(std::string_view fileName);

// Returns the path of the file that is called `text` in the parameter file `fileName`.
std::string ResolveFilename(std::string_view text, std::string_view fileName);

// Returns how the name `text` is written in the parameter file `fileName`: an absolute name in its
// relative form, with backslashes.
std::string WrittenFilename(std::string_view text, std::string_view fileName);

// The path of a file name in a tree.
std::string PathOf(const CzonFilename& name);

// Returns the path `text` relative to the parameter file. Both are absolute and normalised.
std::string RelativeForm(std::string_view text, std::string_view fileName);

// Whether relative names mean the same in two parameter files. One without a name has no folder,
// and names in it keep their text.
bool AreInOneFolder(std::string_view a, std::string_view b);

// Returns how the file that is called `text` in the parameter file `from` is called in `to`. An
// absolute name stays.
std::string MovedFilename(std::string_view text, std::string_view from, std::string_view to);

}  // namespace zon

#endif
