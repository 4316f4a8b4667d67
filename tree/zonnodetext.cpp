// The states of a Text are described in the header.
#include "tree/zonnodetext.h"

namespace zon {
namespace {

// The strings are made here and not const, so they may be changed through `where`.
std::string& StringOf(Text& text) {
  return *static_cast<std::string*>(const_cast<void*>(text.where));
}

void SetToString(Text& text, std::string_view value, Arena* arena) {
  text.where = arena != nullptr ? arena->KeepString(std::string(value)) : new std::string(value);
  text.size = arena != nullptr ? kKeptString : kOwnString;
}

}  // namespace

void MakeString(Text& text, Arena* arena) {
  SetToString(text, View(text), arena);
}

// Never destroyed: a host may request texts while the process ends.
const std::string& EmptyString() {
  static const std::string& empty = *new std::string;
  return empty;
}

// A first text is stored in the arena as characters. A text that changes becomes a string.
void Assign(Text& text, std::string_view value, Arena* arena) {
  if (text.size >= kKeptString) {
    StringOf(text).assign(value);  // correct also for a part of itself
  } else if (text.size == 0 && value.empty()) {
    return;
  } else if (text.size == 0 && arena != nullptr && value.size() < kKeptString) {
    text.where = arena->CopyText(value);
    text.size = static_cast<std::uint32_t>(value.size());
  } else {
    SetToString(text, value, arena);
  }
}

void Append(Text& text, std::string_view addition, Arena* arena) {
  if (text.size < kKeptString) MakeString(text, arena);
  StringOf(text).append(addition);
}

void Release(Text& text) {
  if (OwnsString(text)) delete &StringOf(text);
  text = Text();
}

}  // namespace zon
