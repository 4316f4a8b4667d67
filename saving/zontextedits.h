// Changes of a text: ranges of it that are replaced. Everything else stays byte for byte.
// Tested by tests/zonsave_test.cpp.
#ifndef ZON_SAVING_ZONTEXTEDITS_H
#define ZON_SAVING_ZONTEXTEDITS_H

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace zon {

class TextEdits {
 public:
  // Replaces the characters from `begin` to `end`. What is inserted at one place comes in the order of
  // the calls.
  void Replace(const char* begin, const char* end, std::string by) {
    edits_.push_back({begin, end, std::move(by)});
  }
  void Insert(const char* at, std::string text) { Replace(at, at, std::move(text)); }
  void Erase(const char* begin, const char* end) { Replace(begin, end, std::string()); }

  bool IsEmpty() const { return edits_.empty(); }

  // The changed text, in pieces that live as long as the text and this object. Empty if two edits
  // overlap.
  std::vector<std::string_view> Apply(std::string_view text);

 private:
  struct Edit {
    const char* begin;
    const char* end;
    std::string by;
  };

  std::deque<Edit> edits_;
};

}  // namespace zon

#endif
