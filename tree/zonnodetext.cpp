// The states of a Text are described in the header.
#include "tree/zonnodetext.h"

#include <cstring>

namespace zon {
namespace {

// The strings are made here and not const, so they may be changed through `where`. A changed string
// has no origin.
KeptString& StringOf(const Text& text) {
  auto* string = static_cast<std::string*>(const_cast<void*>(text.where));
  return static_cast<KeptString&>(*string);
}

std::string& StringToChange(Text& text) {
  KeptString& string = StringOf(text);
  string.origin = nullptr;
  return string;
}

// Where the characters may come from: a place in the file, or a copy that has an origin.
const char* RawOrigin(const Text& text) {
  return text.size >= kKeptString ? StringOf(text).origin : static_cast<const char*>(text.where);
}

bool IsWithin(const char* at, const char* begin, const char* end) {
  return begin <= at && at <= end;
}

void SetToString(Text& text, std::string_view value, const char* origin, Arena* arena) {
  const std::string* const made = arena != nullptr ? arena->KeepString(std::string(value), origin)
                                                   : new KeptString{std::string(value), origin};
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
  const bool hasCharacters = !View(text).empty();
  for (const char* at = RawOrigin(text); at != nullptr; at = OriginOfCopy(at)) {
    if (IsWithin(at - lead, begin, end)) return at - lead;
    if (!hasCharacters) return nullptr;
  }
  return nullptr;
}

bool CanMoveTo(const Text& text, const char* origin, const char* oldBegin, const char* oldEnd) {
  if (text.size >= kKeptString) return true;
  const auto* chars = static_cast<const char*>(text.where);
  return !IsWithin(chars, oldBegin, oldEnd) || std::memcmp(chars, origin, text.size) == 0;
}

bool EndsAtZero(const Text& text, const char* begin, const char* end) {
  if (text.size == 0 || text.size >= kKeptString) return false;
  const auto* chars = static_cast<const char*>(text.where);
  return IsWithin(chars, begin, end) && chars[text.size] == '\0';
}

void SetOrigin(Text& text, const char* origin, const char* oldBegin, const char* oldEnd,
               std::size_t lead) {
  const auto* chars = static_cast<const char*>(text.where);
  if (text.size >= kKeptString) {
    StringOf(text).origin = origin + lead;
  } else if (text.size == 0 || IsWithin(chars, oldBegin, oldEnd)) {
    text.where = origin + lead;
  } else {
    SetOriginOfCopy(chars, origin + lead);
  }
}

void InheritOrigin(Text& text, const Text& former) {
  // Only characters show whether their place is in the file or is that of a copy.
  if (text.size >= kKeptString && !View(former).empty()) StringOf(text).origin = RawOrigin(former);
}

void Release(Text& text) {
  if (OwnsString(text)) delete &StringOf(text);
  text = Text();
}

}  // namespace zon
