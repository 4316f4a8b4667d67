#include "saving/zontextedits.h"

#include <algorithm>

namespace zon {

std::vector<std::string_view> TextEdits::Apply(std::string_view text) {
  const auto isBefore = [](const Edit& a, const Edit& b) { return a.begin < b.begin; };
  if (!std::is_sorted(edits_.begin(), edits_.end(), isBefore)) {
    std::stable_sort(edits_.begin(), edits_.end(), isBefore);
  }
  std::vector<std::string_view> pieces;
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  const auto add = [&](const char* begin, const char* limit) {
    if (begin < limit) pieces.emplace_back(begin, static_cast<std::size_t>(limit - begin));
  };
  std::ptrdiff_t shift = 0;
  for (Edit& edit : edits_) {
    if (edit.begin < at) return {};
    add(at, edit.begin);
    if (!edit.by.empty()) pieces.emplace_back(edit.by);
    at = edit.end;
    shift += static_cast<std::ptrdiff_t>(edit.by.size()) - (edit.end - edit.begin);
    edit.shift = shift;
  }
  add(at, end);
  return pieces;
}

// Places are mostly looked up in their order, so the answer is often the edit of the last one or the next.
const char* TextEdits::Moved(const char* place) const {
  const auto isBefore = [&](std::size_t n) {
    return n == edits_.size() || place < edits_[n].begin;
  };
  const auto isNext = [&](std::size_t n) { return isBefore(n) && (n == 0 || !isBefore(n - 1)); };
  if (hint_ > edits_.size() || !isNext(hint_)) {
    if (hint_ < edits_.size() && isNext(hint_ + 1)) {
      ++hint_;
    } else {
      const auto next = std::upper_bound(
          edits_.begin(), edits_.end(), place,
          [](const char* wanted, const Edit& edit) { return wanted < edit.begin; });
      hint_ = static_cast<std::size_t>(next - edits_.begin());
    }
  }
  if (hint_ == 0) return place;
  const Edit& last = edits_[hint_ - 1];
  return place < last.end ? nullptr : place + last.shift;
}

}  // namespace zon
