// The text of a node: a name or a value as it was written. While nobody asks for a std::string, a
// text of a loaded node is no more than a place where the file was read to; the string is made at
// the first question and is then the text itself.
//
// Twelve bytes, so that a value's number stands directly behind its text.
#ifndef ZON_TREE_ZONNODETEXT_H
#define ZON_TREE_ZONNODETEXT_H

#include <cstdint>
#include <string>
#include <string_view>

#include "base/zonarena.h"

namespace zon {

class __attribute__((packed, aligned(4))) Text {
 public:
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  std::string_view View() const {
    if (size_ < kKept) return {static_cast<const char*>(where_), size_};
    return *static_cast<const std::string*>(where_);
  }

  // The text terminated by a zero. In the buffer of a file the closing quote follows it, which stays:
  // the first call makes a copy, which is then the text.
  const char* Terminated(Arena& arena) const {
    if (size_ >= kKept) return static_cast<const std::string*>(where_)->c_str();
    const auto* chars = static_cast<const char*>(where_);
    if (chars[size_] == '\0') return chars;
    const char* copy = arena.CopyText({chars, size_});
    where_ = copy;
    return copy;
  }

  // The text as a string that lives until the text changes or is released. With a store the string
  // is the store's, without one the text's own.
  const std::string& AsString(Arena* arena) const {
    if (size_ == 0) return EmptyString();  // so that no store fills up with empty strings
    if (size_ < kKept) MakeString(arena);
    return *static_cast<const std::string*>(where_);
  }

  // `chars` live as long as the tree.
  void ReferTo(std::string_view chars) {
    if (chars.size() < kKept) {
      where_ = chars.data();
      size_ = static_cast<std::uint32_t>(chars.size());
    } else {
      Assign(chars, nullptr);
    }
  }

  // Takes a copy; `text` may be a part of this text.
  void Assign(std::string_view text, Arena* arena);

  // Appends a text that is no part of this one; many appends cost no more than their characters.
  void Append(std::string_view text, Arena* arena);

  void Swap(Text& other) {
    const void* where = where_;
    const std::uint32_t size = size_;
    where_ = other.where_;
    size_ = other.size_;
    other.where_ = where;
    other.size_ = size;
  }

  // Whether the text holds a string of its own, which only Release frees.
  bool IsOwner() const { return size_ == kOwned; }
  void Release();

 private:
  static constexpr std::uint32_t kKept = 0xFFFFFFFEU;   // where_ is a string of the store
  static constexpr std::uint32_t kOwned = 0xFFFFFFFFU;  // where_ is a string of ours

  void MakeString(Arena* arena) const;
  static const std::string& EmptyString();

  mutable const void* where_ = "";
  mutable std::uint32_t size_ = 0;
};

static_assert(sizeof(Text) == 12, "values are laid out around a text of twelve bytes");

}  // namespace zon

#endif
