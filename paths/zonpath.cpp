// One pass that rewrites the path in place. It writes each kept character at or before the position
// it reads, so the path never grows. A stack holds the starts of the components that a ".." can
// still remove. Linear time. Tested by tests/paths_test.cpp, and against a model by
// fuzz/paths_fuzz.cpp.
#include "paths/zonpath.h"

#include <vector>

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
