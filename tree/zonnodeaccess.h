// What the rest of the library does with nodes beyond their public operations: makes them in an
// arena, refers to texts of a file without a copy, changes trees. The one friend of the node
// classes; not installed.
//
// Functions for values are templates over the class of the value, so that this header needs none of
// these classes. Functions that change the tree throw std::bad_alloc and then leave it as it was;
// they are in zontreeedit.cpp.
#ifndef ZON_TREE_ZONNODEACCESS_H
#define ZON_TREE_ZONNODEACCESS_H

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/zonarena.h"
#include "base/zonchars.h"
#include "base/zonnumber.h"
#include "tree/zondeferredvalues.h"
#include "tree/zonnamno_inline.h"
#include "tree/zonnodetext.h"

namespace zon {

struct NodeAccess {
  // Makes a node in the arena. Free is to be called for it: it may own memory outside the arena.
  template <class T, class... Arguments>
  static T* Make(Arena& arena, Arguments... arguments) {
    void* place = arena.AllocatePiece(sizeof(T));
    T* node;
    if constexpr (sizeof...(arguments) == 0) {
      node = new (place) T;  // without parentheses: nothing is cleared first
    } else {
      node = new (place) T(arguments...);
    }
    static_assert(sizeof(T) % 8 == 0 && sizeof(T) / 8 < 256);
    node->CzonNode::bits_ |= std::uint32_t{sizeof(T) / 8} << CzonNode::kSizeShift;
    if constexpr (std::is_base_of_v<CzonNamedNode, T>) {
      node->EnterArena(arena);
    } else {
      node->CzonNode::Set(CzonNode::kInArena);
    }
    return node;
  }

  // Deletes a node. One in an arena is only destroyed, and only if it owns memory outside.
  static void Free(CzonNode* node) { CzonNode::Free(node); }

  // The same for a node that has no owner any more, while its tree lives on: what it and all below
  // it have in the arena of the tree can be used again.
  static void Discard(CzonNode* node, Arena* arena);

  static Arena* GetArena(const CzonNode& node) { return node.GetArena(); }
  static void SetRemark(CzonNode& node, std::string_view text, Arena* arena) {
    node.SetRemark(text, arena);
  }
  static void SwapRemarks(CzonNode& a, CzonNode& b);

  static bool IsNamed(const CzonNode& node) { return node.Has(CzonNode::kNamed); }
  static bool IsList(const CzonNode& node) { return node.Has(CzonNode::kList); }
  static bool IsSection(const CzonNode& node) { return node.Has(CzonNode::kSection); }
  static bool IsKeyword(const CzonNode& node) { return node.Has(CzonNode::kKeyword); }

  // Whether the node is one of the library's values. All in an arena are; the class of any other is
  // not looked at.
  static bool IsArenaValue(const CzonNode& node) {
    return node.Has(CzonNode::kInArena) && !node.Has(CzonNode::kNamed);
  }

  // The instance number, which must be made.
  static std::int32_t GetNumber(const CzonNode& node) { return node.instance_; }
  static void SetNumber(CzonNode& node, std::int32_t number) {
    node.instance_ = number;
    node.Set(CzonNode::kUnnumbered, false);
    node.Set(CzonNode::kNumberLost, false);
  }

  // Whether the number is made when it is asked for.
  static bool IsUnnumbered(const CzonNode& node) { return node.Has(CzonNode::kUnnumbered); }

  // The number of the block of a child in a long list of children. The number of a value is not
  // stored then, so the label takes its place.
  static std::uint32_t GetLabel(const CzonNode& node) {
    if (IsNamed(node)) return static_cast<const CzonNamedNode&>(node).place_;
    return static_cast<std::uint32_t>(node.instance_);
  }
  static void SetLabel(CzonNode& node, std::uint32_t label) {
    if (IsNamed(node)) {
      static_cast<CzonNamedNode&>(node).place_ = label;
    } else {
      node.instance_ = static_cast<std::int32_t>(label);
      node.Set(CzonNode::kUnnumbered);
    }
  }

  // Whether the node is the only one of its name in the index, which may not be complete.
  static bool IsAlone(const CzonNode& node) { return node.Has(CzonNode::kAlone); }
  static void SetAlone(CzonNode& node, bool on) { node.Set(CzonNode::kAlone, on); }

  // From now on the number is counted: the node is in a long queue.
  static void SetUnnumbered(CzonNode& node) { node.Set(CzonNode::kUnnumbered); }
  static void RestoreNumber(CzonNode& node) { node.Set(CzonNode::kNumberLost, false); }

  // The children if they are a long list, else null. EnsureLongChildren makes them one; false if
  // out of memory.
  static const LongList* GetLongChildren(const CzonNamedNode& owner) {
    const bool isLong = !owner.Has(CzonNode::kDeferred) && IsLong(owner.children_.nodes);
    return isLong ? owner.children_.nodes.longList : nullptr;
  }
  static bool EnsureLongChildren(CzonNamedNode& owner);

  // Whether a value of the keyword was read, see api/zonwatch.h.
  static bool WasRead(const CzonNode& keyword) { return keyword.Has(CzonNode::kRead); }
  static void SetRead(CzonNode& keyword, bool on) { keyword.Set(CzonNode::kRead, on); }

  // The n-th section or keyword of a name, as the operations of the library's classes find it.
  template <class List>
  static CzonNode* FindSection(const List& list, std::string_view name, unsigned int n) {
    return FindByName(list.Complete().sections, name, n, Mutable(list));
  }
  template <class Section>
  static CzonNode* FindKeyword(const Section& section, std::string_view name, unsigned int n) {
    return FindByName(section.Complete().keywords, name, n, Mutable(section));
  }

  // The last section or keyword; null if there is none.
  template <class List>
  static CzonNode* LastSection(const List& list) {
    const auto& sections = list.Complete().sections;
    return FindByNumber(sections, Count(sections));
  }
  template <class Section>
  static CzonNode* LastKeyword(const Section& section) {
    const auto& keywords = section.Complete().keywords;
    return FindByNumber(keywords, Count(keywords));
  }

  // Whether any name of the keywords was asked for.
  template <class Section>
  static bool HasKeywordIndex(const Section& section) {
    return section.lists_ != nullptr && section.lists_->keywords.indexed > 0;
  }

  // Whether one keyword of the section occurs twice and at least one other once.
  template <class Section>
  static bool HasOneRepeat(const Section& section) {
    auto& keywords = section.Complete().keywords;
    const std::uint32_t names = CountNames(keywords, Mutable(section));
    return names > 1 && Count(keywords) == names + 1;
  }

  // Whether the reader has found that no two sections, and no two keywords, of a section have the
  // same name. An insertion or a renaming ends it. Until then each has the number 1, and no index
  // is needed to know it.
  static bool DoNamesDiffer(const CzonNode& section) { return section.Has(CzonNode::kNamesDiffer); }
  static void SetNamesDiffer(CzonNode& section, bool on) {
    section.Set(CzonNode::kNamesDiffer, on);
  }

  // Whether any section of a list, or keyword of a section, has the name of another one.
  template <class List>
  static bool HasRepeatedSections(const List& list) {
    if (DoNamesDiffer(list)) return false;
    auto& sections = list.Complete().sections;
    return CountNames(sections, Mutable(list)) < Count(sections);
  }
  template <class Section>
  static bool HasRepeatedKeywords(const Section& section) {
    if (DoNamesDiffer(section)) return false;
    auto& keywords = section.Complete().keywords;
    return CountNames(keywords, Mutable(section)) < Count(keywords);
  }

  // Names. ReferToName and ReferToText do not copy: the text must live as long as the tree.
  static void SetFlags(CzonNamedNode& node, unsigned int flags) { node.SetFlags(flags); }
  static std::string_view GetNameView(const CzonNamedNode& node) { return node.GetNameView(); }
  static bool HaveSameName(const CzonNamedNode& a, const CzonNamedNode& b) {
    return EqualNoCase(a.GetNameView(), b.GetNameView());
  }
  static NameKey GetKey(const CzonNamedNode& node) { return node.GetKey(); }
  static void SetName(CzonNamedNode& node, std::string_view name) { node.SetName(name); }
  static void ReferToName(CzonNamedNode& node, std::string_view name) { node.ReferToName(name); }

  // Whether the dynamic class is one of the library's, so that nothing is overridden by a host.
  static bool IsOfLibrary(const CzonNamedNode& node) {
    return node.Has(CzonNode::kInArena) || node.IsOfLibrary();
  }

  // Children. The place of a child counts from 0; PlaceOf returns the number of children for a node
  // that is none. The hint is the place where the node was seen last.
  static NodeSpan Children(const CzonNamedNode& owner) { return owner.Children(); }
  static std::uint32_t PlaceOf(const CzonNamedNode& owner, const CzonNode& child) {
    return owner.PlaceOf(&child);
  }
  static std::uint32_t GetPlaceHint(const CzonNamedNode& node) { return node.place_; }
  static unsigned int CountNamesakes(const CzonNamedNode& owner, const CzonNamedNode& child) {
    return owner.CountNamesakes(child);
  }

  // Files a child at a place of the children; the number of children appends.
  static void FileAt(CzonNamedNode& owner, CzonNode* child, std::uint32_t place);

  // Makes room for `more` children: to append so many values by FileAt cannot fail after it.
  static void ReserveChildren(CzonNamedNode& owner, std::uint32_t more);

  // Moves `count` children to a place before theirs. The order in which each kind of children is
  // filed must stay the same. Cannot fail.
  static void MoveChildren(CzonNamedNode& owner, std::uint32_t from, std::uint32_t count,
                           std::uint32_t to);

  // Removes a child from its owner. The child lives on. IsFiled is false for a child that belongs
  // into an index which does not hold it; it must not be removed.
  static void Unfile(CzonNode* child);
  static bool IsFiled(const CzonNode& child);

  // Puts another value in the place of a value, which lives on.
  static void Replace(CzonNode* value, CzonNode* by);

  static void Rename(CzonNamedNode& node, std::string_view name);

  // Numbers the namesakes of a child, one of which a Copy has reset.
  static void RestoreNumbers(CzonNode& child);

  // Makes a copy of everything of `source` but the name, for SwapContent with `node`, which
  // exchanges everything but name and place.
  static std::unique_ptr<CzonNamedNode> CopyAside(const CzonNamedNode& node,
                                                  const CzonNamedNode& source);
  static void SwapContent(CzonNamedNode& node, CzonNamedNode& other);

  // The text of a value, as it is stored.
  template <class Value>
  static std::string_view GetTextView(const Value& value) {
    return View(value.text_);
  }
  // Where the text of a file has the characters of a name or value; see FindOrigin.
  static const char* FindNameOrigin(const CzonNamedNode& node, std::string_view file) {
    return FindOrigin(node.name_, file.data(), file.data() + file.size());
  }
  template <class Value>
  static const char* FindTextOrigin(const Value& value, std::string_view file, std::size_t lead) {
    return FindOrigin(value.text_, file.data(), file.data() + file.size(), lead);
  }

  // The texts themselves, for a text that moves to another file.
  static Text& NameText(CzonNamedNode& node) { return node.name_; }
  template <class Value>
  static Text& ValueText(Value& value) {
    return value.text_;
  }

  template <class Value>
  static void SetText(Value& value, std::string_view text, Arena* arena) {
    value.SetText(text, arena);
  }
  template <class Value>
  static void AppendText(Value& value, std::string_view text) {
    value.AppendText(text);
  }
  // SwapTexts exchanges the texts of two values, for both of which PrepareText was called. It
  // cannot fail, so many values can be changed together.
  template <class Value>
  static void PrepareText(Value& value) {
    if (value.text_.size < kKeptString) MakeString(value.text_, GetArena(value));
    value.NoteOwnedText();
  }
  template <class Value>
  static void SwapTexts(Value& a, Value& b) {
    const auto stringOf = [](Text& text) -> std::string& {
      return const_cast<std::string&>(AsString(text, nullptr));
    };
    stringOf(a.text_).swap(stringOf(b.text_));
    for (Value* value : {&a, &b}) Append(value->text_, {}, nullptr);  // it counts as changed
  }
  template <class Value>
  static void ReferToText(Value& value, std::string_view text) {
    ReferTo(value.text_, text);
  }
  // SetValue sets the value and the text, ReadText the value from the text, SetViews a number
  // without its text: of integers the value and the low bits of the whole number, of reals the
  // value.
  template <class Value, class Number>
  static void SetValue(Value& value, Number number, Arena* arena) {
    value.SetValue(number, arena);
  }
  template <class Real>
  static void SetReal(Real& real, double value, std::string_view text) {
    real.SetReal(value, text, GetArena(real));
  }
  template <class Numeric>
  static float GetFloatView(double value) {
    return Numeric::FloatView(value);
  }
  template <class Value>
  static void ReadText(Value& value) {
    value.ReadText();
  }
  template <class Int>
  static void SetViews(Int& number, double value, std::int64_t whole) {
    number.Double(value);
    number.integer_ = LowBits(whole);
    number.CzonNode::Set(CzonNode::kHasInt);
  }
  template <class Real>
  static void SetViews(Real& number, double value) {
    long long whole = 0;
    number.Double(value);
    number.CzonNode::Set(CzonNode::kHasInt, WholeNumber(value, &whole));
    number.integer_ = LowBits(whole);
  }

  // The characters of a string, terminated by a zero.
  template <class String>
  static const char* GetChars(const String& value) {
    return value.GetChars();
  }

  // CLOBs: the content of the text of a quoted value, if it is that of a CLOB; exchange of the
  // items and cursors, together with SwapTexts; a text that is kept until the CLOB changes.
  template <class Clob>
  static bool FindContent(std::string_view text, std::string_view* content) {
    return Clob::FindContent(text, content);
  }
  template <class Clob>
  static void SwapItems(Clob& a, Clob& b) {
    a.state_.swap(b.state_);
  }
  template <class Clob>
  static const std::string& Keep(const Clob& clob, std::string text) {
    return clob.Keep(std::move(text));
  }

  // Values that are parsed later, see zondeferredvalues.h.
  static void DeferValues(CzonNamedNode& keyword, const DeferredValues& values) {
    keyword.DeferValues(values);
  }
  // The text of values that are not parsed yet; empty if they are.
  static std::string_view DeferredText(const CzonNamedNode& keyword) {
    return keyword.Has(CzonNode::kDeferred) ? TextOf(keyword.children_.deferred)
                                            : std::string_view();
  }
  // For a keyword whose values are not parsed yet: where they are, and the same ones from another
  // place.
  static const DeferredValues& GetDeferred(const CzonNamedNode& keyword) {
    return keyword.children_.deferred;
  }
  static void MoveDeferred(CzonNamedNode& keyword, const DeferredValues& values) {
    keyword.children_.deferred = values;
  }
  // Appends values in the arena of the keyword, and numbers them.
  static void AppendNew(CzonNamedNode& keyword, CzonNode* const* values, std::uint32_t count) {
    keyword.AppendNew(values, count);
  }

  // Appends a section or keyword, which is to be in a list, to an owner in the same arena.
  static void AppendNew(CzonNamedNode& owner, CzonNamedNode& child) { owner.AppendNew(child); }

  // The file handle of a root.
  template <class Root, class Handle>
  static void SetHandle(Root& root, Handle* handle) {
    root.SetHandle(handle);
  }

 private:
  static void ReleaseText(const CzonNode& node, const Text& text, Arena& arena);

  // Lists and indexes are completed by queries.
  static CzonNamedNode* Mutable(const CzonNamedNode& owner) {
    return const_cast<CzonNamedNode*>(&owner);
  }
  static void PrepareEdit(CzonNamedNode& owner, std::uint32_t place);
  static std::uint32_t PlaceInList(CzonNamedNode& owner, const NameList& list, std::uint32_t place);
  static void SwapName(CzonNamedNode& node, Text& name);
  static void RenameInIndex(CzonNamedNode& node, Text& name, NameList& list, CzonNamedNode* owner);
};

}  // namespace zon

#endif
