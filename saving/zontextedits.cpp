#include "saving/zontextedits.h"

#include <algorithm>

namespace zon {

std::vector<std::string_view> TextEdits::Apply(std::string_view text) {
  std::stable_sort(edits_.begin(), edits_.end(),
                   [](const Edit& a, const Edit& b) { return a.begin < b.begin; });
  std::vector<std::string_view> pieces;
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  const auto add = [&](const char* begin, const char* limit) {
    if (begin < limit) pieces.emplace_back(begin, static_cast<std::size_t>(limit - begin));
  };
  for (const Edit& edit : edits_) {
    if (edit.begin < at) return {};
    add(at, edit.begin);
    if (!edit.by.empty()) pieces.emplace_back(edit.by);
    at = edit.end;
  }
  add(at, end);
  return pieces;
}

}  // namespace zon
