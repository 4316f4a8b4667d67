#include "tree/zonnodetext.h"

namespace zon {

void Text::MakeString(Arena* arena) const {
  const std::string_view text = View();
  where_ = arena != nullptr ? arena->KeepString(std::string(text)) : new std::string(text);
  size_ = arena != nullptr ? kKept : kOwned;
}

// Never destroyed: a host may still ask for texts while the process ends.
const std::string& Text::EmptyString() {
  static const std::string& empty = *new std::string;
  return empty;
}

// A first text goes into the store as characters. A text that changes becomes a string, which takes
// every further one: no store fills up however often a value is set.
void Text::Assign(std::string_view text, Arena* arena) {
  if (size_ >= kKept) {
    // std::string::assign copes with a part of itself. The string was made here, so it may change.
    static_cast<std::string*>(const_cast<void*>(where_))->assign(text);
  } else if (size_ == 0 && text.empty()) {
    return;
  } else if (size_ == 0 && arena != nullptr && text.size() < kKept) {
    where_ = arena->CopyText(text);
    size_ = static_cast<std::uint32_t>(text.size());
  } else {
    where_ = arena != nullptr ? arena->KeepString(std::string(text)) : new std::string(text);
    size_ = arena != nullptr ? kKept : kOwned;
  }
}

void Text::Append(std::string_view text, Arena* arena) {
  if (size_ < kKept) MakeString(arena);
  static_cast<std::string*>(const_cast<void*>(where_))->append(text);
}

void Text::Release() {
  if (IsOwner()) delete static_cast<const std::string*>(where_);
  where_ = "";
  size_ = 0;
}

}  // namespace zon
