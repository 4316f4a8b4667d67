// Names in a parameter file are relative to the directory of that file, whose own name is relative
// to the working directory. Tested by tests/paths_test.cpp, and against a model by
// fuzz/paths_fuzz.cpp.
#include "paths/zonfilepath.h"

#include <algorithm>

#include "base/zonenvironment.h"
#include "paths/zonpath.h"

namespace zon {
namespace {

// The directory of a normalised name, with a '/' at its end. The last component counts as a file,
// also if a '/' follows it.
std::string_view BaseDirectory(std::string_view name) {
  if (name == "/") return name;
  if (!name.empty() && name.back() == '/') name.remove_suffix(1);
  return name.substr(0, name.rfind('/') + 1);
}

// The path from one folder to a file. Both are absolute and normalised, the folder ends with "/".
std::string PathFrom(std::string_view folder, std::string_view path) {
  std::size_t common = 0;
  for (std::size_t at = 0; at < folder.size() && at < path.size() && folder[at] == path[at]; ++at) {
    if (folder[at] == '/') common = at + 1;
  }
  std::string relative;
  for (const char c : folder.substr(common)) {
    if (c == '/') relative += "../";
  }
  relative.append(path.substr(common));
  return relative;
}

}  // namespace

std::string AbsoluteName(const std::string& name) {
  return IsAbsolutePath(name) ? name : CurrentDirectory() + "/" + name;
}

std::string AbsolutePath(std::string_view text, std::string_view base) {
  std::string path;
  if (!IsAbsolutePath(text)) {
    path = base;
    if (!path.empty() && path.back() != '/') path += '/';
  }
  path.append(text);
  _normalizePath(path);
  return path;
}

std::string AbsoluteAnchor(std::string_view fileName) {
  return AbsolutePath(fileName, CurrentDirectory());
}

std::string ResolveFilename(std::string_view text, std::string_view fileName) {
  std::string path(text);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (path.empty() || IsAbsolutePath(path)) return path;
  return AbsolutePath(path, BaseDirectory(AbsoluteAnchor(fileName)));
}

std::string WrittenFilename(std::string_view text, std::string_view fileName) {
  std::string output(text);
  if (IsAbsolutePath(text)) {
    const std::string anchor = AbsoluteAnchor(fileName);
    _normalizePath(output);
    // If the working directory cannot be read, the anchor is relative.
    if (IsAbsolutePath(anchor)) output = RelativeForm(output, anchor);
  }
  std::replace(output.begin(), output.end(), '/', '\\');
  return output;
}

std::string RelativeForm(std::string_view text, std::string_view fileName) {
  std::size_t at = 0;
  std::size_t textSplit = 0;  // the first character after the common components
  std::size_t fileSplit = 0;
  for (; at < text.size() && at < fileName.size() && text[at] == fileName[at]; ++at) {
    if (text[at] == '/') textSplit = fileSplit = at + 1;
  }
  if (at == fileName.size() && at < text.size() && text[at] == '/') {
    fileSplit = at;
    textSplit = at + 1;
  }
  // Compatibility: the name of the parameter file itself counts as a component, so there is one
  // "../" too many to resolve the form to the same file.
  std::string path;
  bool inComponent = false;
  for (const char c : fileName.substr(fileSplit)) {
    if (c != '/' && !inComponent) path += "../";
    inComponent = c != '/';
  }
  path.append(text.substr(textSplit));
  return path;
}

bool AreInOneFolder(std::string_view a, std::string_view b) {
  return a.empty() || b.empty() ||
         BaseDirectory(AbsoluteAnchor(a)) == BaseDirectory(AbsoluteAnchor(b));
}

// The form that is resolved to the target is taken; if a relative one is not, the absolute one.
std::string MovedFilename(std::string_view text, std::string_view from, std::string_view to) {
  if (text.empty() || text.front() == '/' || text.front() == '\\') return std::string(text);
  std::string target = ResolveFilename(text, from);
  std::string moved = PathFrom(BaseDirectory(AbsoluteAnchor(to)), target);
  if (moved.empty()) moved = ".";  // the folder itself
  if (ResolveFilename(moved, to) != target) return target;
  if (text.find('/') == std::string_view::npos) {
    std::replace(moved.begin(), moved.end(), '/', '\\');
  }
  return moved;
}

}  // namespace zon
