#include "saving/zontextedits.h"

#include <algorithm>

namespace zon {

std::vector<std::string_view> TextEdits::Apply(std::string_view text) {
  const auto isBefore = [](const Edit& a, const Edit& b) { return a.begin < b.begin; };
  if (!std::is_sorted(edits_.begin(), edits_.end(), isBefore)) {
    std::stable_sort(edits_.begin(), edits_.end(), isBefore);
  }
  text_ = text;
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

// Places are mostly looked up in their order: in the gap of the last one or in the next gap.
const char* TextEdits::Moved(const char* place) const {
  if (place >= gap_.end && gap_.next < edits_.size()) gap_ = GapBefore(gap_.next + 1);
  if (place < gap_.begin || place >= gap_.end) {
    const auto next =
        std::upper_bound(edits_.begin(), edits_.end(), place,
                         [](const char* wanted, const Edit& edit) { return wanted < edit.begin; });
    gap_ = GapBefore(static_cast<std::size_t>(next - edits_.begin()));
  }
  return place >= gap_.begin ? place + gap_.shift : nullptr;
}

TextEdits::Gap TextEdits::GapBefore(std::size_t edit) const {
  Gap gap{text_.data(), text_.data() + text_.size(), 0, edit};
  if (edit > 0) {
    gap.begin = edits_[edit - 1].end;
    gap.shift = edits_[edit - 1].shift;
  }
  if (edit < edits_.size()) gap.end = edits_[edit].begin;
  return gap;
}

}  // namespace zon
