// The states of a Text are described in the header.
#include "tree/zonnodetext.h"

namespace zon {
namespace {

// The strings are made here and not const, so they may be changed through `where`. A changed string
// has no origin.
std::string& StringOf(Text& text) {
  return *static_cast<std::string*>(const_cast<void*>(text.where));
}

std::string& StringToChange(Text& text) {
  std::string& string = StringOf(text);
  if (text.size == kKeptString) static_cast<KeptString&>(string).origin = nullptr;
  return string;
}

void SetToString(Text& text, std::string_view value, const char* origin, Arena* arena) {
  const std::string* const made =
      arena != nullptr ? arena->KeepString(std::string(value), origin) : new std::string(value);
  text.where = made;
  text.size = arena != nullptr ? kKeptString : kOwnString;
}

}  // namespace

void MakeString(Text& text, Arena* arena) {
  SetToString(text, View(text), static_cast<const char*>(text.where), arena);
}

// Never destroyed: a host may request texts while the process ends.
const std::string& EmptyString() {
  static const std::string& empty = *new std::string;
  return empty;
}

// A first text is stored in the arena as characters. A text that changes becomes a string.
void Assign(Text& text, std::string_view value, Arena* arena) {
  if (View(text) == value) return;
  if (text.size >= kKeptString) {
    StringToChange(text).assign(value);  // correct also for a part of itself
  } else if (text.size == 0 && arena != nullptr && value.size() < kKeptString) {
    text.where = arena->CopyText(value);
    text.size = static_cast<std::uint32_t>(value.size());
  } else {
    SetToString(text, value, nullptr, arena);
  }
}

void Append(Text& text, std::string_view addition, Arena* arena) {
  if (text.size < kKeptString) MakeString(text, arena);
  StringToChange(text).append(addition);
}

// A string was made of characters, and characters outside the file are a copy.
const char* FindOrigin(const Text& text, const char* begin, const char* end, std::size_t lead) {
  if (text.size == kOwnString) return nullptr;
  const char* at =
      text.size == kKeptString
          ? static_cast<const KeptString*>(static_cast<const std::string*>(text.where))->origin
          : static_cast<const char*>(text.where);
  const bool hasCharacters = !View(text).empty();
  while (at != nullptr) {
    const char* const start = at - lead;
    if (begin <= start && start <= end) return start;
    if (!hasCharacters) return nullptr;
    at = OriginOfCopy(start);
    if (at != nullptr) at += lead;
  }
  return nullptr;
}

void Release(Text& text) {
  if (OwnsString(text)) delete &StringOf(text);
  text = Text();
}

}  // namespace zon
