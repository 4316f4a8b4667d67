// Changes of a text: ranges of it that are replaced. Everything else stays byte for byte.
// Tested by tests/zonsave_test.cpp.
#ifndef ZON_SAVING_ZONTEXTEDITS_H
#define ZON_SAVING_ZONTEXTEDITS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zon {

class TextEdits {
 public:
  // Replaces the characters from `begin` to `end`. What is inserted at one place comes in the order
  // of the calls.
  void Replace(const char* begin, const char* end, std::string by) {
    edits_.push_back({begin, end, std::move(by), 0});
  }

  bool IsEmpty() const { return edits_.empty(); }

  // The changed text, in pieces that live as long as the text and this object. Empty if two edits
  // overlap.
  std::vector<std::string_view> Apply(std::string_view text);

  // After Apply: where a character would be if the changed text began where the text did; null if
  // it was replaced.
  const char* Moved(const char* place) const;

 private:
  struct Edit {
    const char* begin;
    const char* end;
    std::string by;
    std::ptrdiff_t shift = 0;  // of what follows; set by Apply
  };

  // What is between two edits. All of it moves by one distance.
  struct Gap {
    const char* begin = nullptr;
    const char* end = nullptr;
    std::ptrdiff_t shift = 0;
    std::size_t next = 0;  // the edit after it
  };
  Gap GapBefore(std::size_t edit) const;

  std::vector<Edit> edits_;
  std::string_view text_;  // that Apply was called for
  mutable Gap
      gap_;  // the one of the last place that was looked up; neighbours are mostly in it too
};

}  // namespace zon

#endif
