// Paths as texts: normalising, resolving against a directory, the form relative to a file.
//
// _normalizePath is one pass that rewrites the path in place. It writes each kept character at or
// before the position it reads, so the path never grows. A stack holds the starts of the components
// that a ".." can still remove. Linear time.
//
// Names in a parameter file are relative to the directory of that file, whose own name is relative
// to the working directory. Tested by tests/paths_test.cpp, and against a model by
// fuzz/paths_fuzz.cpp.
#include "paths/zonpath.h"

#include <algorithm>
#include <vector>

#include "base/zonenvironment.h"
#include "paths/zonfilepath.h"

namespace {

// The normalised beginning of a path, in the same buffer as the rest that is still to be read.
class Normalized {
 public:
  explicit Normalized(std::string& path) : path_(path) {}

  // A character other than '/'.
  void Append(char c) {
    if (start_ == kNone) start_ = size_;
    if (c != '.') {
      dots_ = 0;
    } else if (size_ == start_ || path_[size_ - 1] == '.') {
      // Compatibility: a dot after another character neither counts nor ends the count.
      ++dots_;
    }
    path_[size_++] = c;
  }

  // The first '/' after a component, or at the start.
  void EndComponent() {
    if (dots_ == 1) {
      size_ = start_;
    } else if (dots_ == 2 && !removable_.empty()) {
      size_ = start_ = removable_.back();
      removable_.pop_back();
    } else {
      path_[size_++] = '/';
      // Not removable: the '/' at the start, and a ".." that had nothing to remove.
      if (dots_ != 2 && start_ != kNone) removable_.push_back(start_);
      start_ = size_;
    }
    dots_ = 0;
  }

  // The end of the path. The last component has no '/' after it.
  void End() {
    if (dots_ == 1) size_ = start_;
    if (dots_ == 2 && !removable_.empty()) size_ = removable_.back();
    path_.resize(size_);
  }

 private:
  static constexpr std::size_t kNone = std::string::npos;

  std::string& path_;
  std::size_t size_ = 0;
  std::size_t start_ = kNone;           // of the current component
  std::size_t dots_ = 0;                // counted in it: 1 is ".", 2 is ".."
  std::vector<std::size_t> removable_;  // starts of the components that a ".." can remove
};

}  // namespace

void _normalizePath(std::string& path) {
  Normalized normalized(path);
  char previous = '\0';
  for (const char c : path) {
    if (c != '/') {
      normalized.Append(c);
    } else if (previous != '/') {
      normalized.EndComponent();
    }
    previous = c;
  }
  normalized.End();
}

namespace zon {
namespace {

// The directory of a normalised name, with a '/' at its end. The last component counts as a file,
// also if a '/' follows it.
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
    // If the working directory cannot be read, the anchor is still relative.
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

}  // namespace zon
