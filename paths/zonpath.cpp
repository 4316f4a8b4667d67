// Tested by tests/paths_test.cpp.
#include "paths/zonpath.h"

#include <algorithm>
#include <vector>

#include "base/zonenvironment.h"

// One pass. What is kept is written at or before the place that is read, so the path never grows.
void _normalizePath(std::string& path) {
  constexpr std::size_t kUnset = std::string::npos;
  std::vector<std::size_t> starts;  // of the components that a ".." may still take back
  std::size_t start = kUnset;       // of the current component
  std::size_t write = 0;
  std::size_t dots = 0;
  char previous = '\0';
  for (const char c : path) {
    if (c != '/') {
      if (start == kUnset) start = write;
      if (c != '.') {
        dots = 0;
      } else if (write == start || previous == '.') {
        // Kept: a dot behind another character neither counts nor ends the count.
        ++dots;
      }
      path[write++] = c;
    } else if (previous != '/') {
      if (dots == 1) {
        write = start;
      } else if (dots == 2 && !starts.empty()) {
        write = start = starts.back();
        starts.pop_back();
      } else {
        path[write++] = '/';
        // A leading '/' is no component; nor is a ".." that found nothing to take back.
        if (dots != 2 && start != kUnset) starts.push_back(start);
        start = write;
      }
      dots = 0;
    } else {
      dots = 0;
    }
    previous = c;
  }
  if (dots == 1) write = start;
  if (dots == 2 && !starts.empty()) write = starts.back();
  path.resize(write);
}

namespace zon {
namespace {

// The directory of a normalised name; of a name that ends in '/', the directory above.
std::string_view BaseDirectory(std::string_view name) {
  if (name == "/") return name;
  if (!name.empty() && name.back() == '/') name.remove_suffix(1);
  return name.substr(0, name.rfind('/') + 1);
}

}  // namespace

std::string AbsolutePath(std::string_view text, std::string_view base) {
  std::string path;
  if (!IsAbsolutePath(text)) {
    path = base == "$PWD" || base == "$CDD" ? CurrentDirectory() : std::string(base);
    if (!path.empty() && path.back() != '/') path += '/';
  }
  path.append(text);
  _normalizePath(path);
  return path;
}

std::string AbsoluteAnchor(std::string_view fileName) {
  if (IsAbsolutePath(fileName)) return AbsolutePath(fileName, "$CDD");
  return AbsolutePath(AbsolutePath(fileName, "$PWD"), "$CDD");
}

std::string ResolveFilename(std::string_view text, std::string_view fileName) {
  std::string path(text);
  std::replace(path.begin(), path.end(), '\\', '/');
  if (path.empty() || IsAbsolutePath(path)) return path;
  std::string anchor = AbsoluteAnchor(fileName);
  _normalizePath(anchor);
  return AbsolutePath(path, BaseDirectory(anchor));
}

std::string WrittenFilename(std::string_view text, std::string_view fileName) {
  std::string output(text);
  if (IsAbsolutePath(text)) {
    std::string anchor = AbsoluteAnchor(fileName);
    // Without a readable working directory the name may still be relative.
    if (IsAbsolutePath(anchor)) {
      _normalizePath(anchor);
    } else {
      anchor = AbsolutePath(anchor, "$CDD");
    }
    _normalizePath(output);
    if (IsAbsolutePath(anchor)) output = RelativeForm(output, anchor);
  }
  std::replace(output.begin(), output.end(), '/', '\\');
  return output;
}

std::string RelativeForm(std::string_view text, std::string_view fileName) {
  std::size_t at = 0;
  std::size_t textSplit = 0;
  std::size_t fileSplit = 0;
  for (; at < text.size() && at < fileName.size() && text[at] == fileName[at]; ++at) {
    if (text[at] == '/') textSplit = fileSplit = at + 1;
  }
  if (at == fileName.size() && at < text.size() && text[at] == '/') {
    fileSplit = at;
    textSplit = at + 1;
  }
  // Kept: the parameter file's own name counts as a component to climb out of, so reading the form
  // back does not lead to the same file.
  std::string path;
  bool inComponent = false;
  for (const char c : fileName.substr(fileSplit)) {
    if (c != '/' && !inComponent) path += "../";
    inComponent = c != '/';
  }
  path.append(text.substr(textSplit));
  return path;
}

}  // namespace zon
