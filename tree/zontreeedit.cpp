// Changes of a tree: filing nodes at a place and removing them, renaming, copying. The public
// operations with their checks are in editing/.
//
// A child is in the children of its owner and, if it is a section or keyword, in a NameList of the
// owner: an ordered list and an index by name. An edit changes them together. Steps that may run
// out of memory come first, so an edit either completes or changes nothing.
//
// Invariants after each edit: the ordered list has the children of its kind in the order of the
// children; each queue of the index has its nodes in the same order; their instance numbers are
// their places, unless a Copy reset them; a node whose child needs its destructor has kDeep. Tested
// by tests/edit_test.cpp, tests/tree_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"

namespace zon {
namespace {

CzonNamedNode& Named(CzonNode& node) {
  return static_cast<CzonNamedNode&>(node);
}

// A text in the free store that is released with its scope.
struct ScopedText : Text {
  explicit ScopedText(std::string_view text) { Assign(*this, text, nullptr); }
  ~ScopedText() { Release(*this); }
};

}  // namespace

// ---- Filing -------------------------------------------------------------------------------------

// The memory of a long list is not in the arena, so the owner needs its destructor.
bool NodeAccess::EnsureLongChildren(CzonNamedNode& owner) {
  if (GetLongChildren(owner) != nullptr) return true;
  static constexpr NodeLabels kLabels = {GetLabel, SetLabel};
  try {
    MakeLong(owner.EnsureChildren(), &kLabels, owner.arena_);
  } catch (const std::bad_alloc&) {
    return false;
  }
  owner.MarkDeep();
  return true;
}

// Call before an edit at a place, which moves the children after it.
void NodeAccess::PrepareEdit(CzonNamedNode& owner, std::uint32_t place) {
  const std::uint32_t count = owner.Children().Size();
  if (count - std::min(place, count) > kLongestMove) EnsureLongChildren(owner);
}

void NodeAccess::FileAt(CzonNamedNode& owner, CzonNode* child, std::uint32_t place) {
  owner.Set(CzonNode::kNamesDiffer, false);
  // These may throw. The last of them, Append or Insert, changes nothing if it does.
  PrepareEdit(owner, place);
  NodeList& children = owner.EnsureChildren();
  Reserve(children, owner.arena_);
  owner.ListChildren();
  NameList* list = owner.ListOf(*child);
  if (list != nullptr) {
    const std::uint32_t placeInList = PlaceInList(owner, *list, place);
    // At the end no search for the nearest namesake is needed.
    if (placeInList > Count(*list)) {
      Append(*list, Named(*child), &owner);
    } else {
      Insert(*list, Named(*child), placeInList, &owner);
    }
  }
  // There is room for it, so from here on nothing can fail.
  Insert(children, place, child, owner.arena_);
  child->SetOwner(&owner);
  if (IsNamed(*child) && !IsLong(children)) Named(*child).place_ = place;
  if (child->NeedsDestructor()) owner.MarkDeep();
  owner.ChildInserted(*child, place);
}

void NodeAccess::ReserveChildren(CzonNamedNode& owner, std::uint32_t more) {
  zon::Reserve(owner.EnsureChildren(), more, owner.arena_);
}

void NodeAccess::MoveChildren(CzonNamedNode& owner, std::uint32_t from, std::uint32_t count,
                              std::uint32_t to) {
  if (from == to || count == 0) return;
  NodeList& children = owner.EnsureChildren();
  const NodeSpan nodes(children);
  for (std::uint32_t n = from; n < from + count; ++n) owner.ChildErased(*nodes[n], from);
  Move(children, from, count, to);
  for (std::uint32_t n = to; n < to + count; ++n) {
    if (IsNamed(*nodes[n]) && !IsLong(children)) Named(*nodes[n]).place_ = n;
    owner.ChildInserted(*nodes[n], n);
  }
}

void NodeAccess::SwapRemarks(CzonNode& a, CzonNode& b) {
  a.SwapExtras(b);
  for (CzonNode* node : {&a, &b}) {
    const bool owns = (node->bits_ & (CzonNode::kOwnsRemark | CzonNode::kOwnsExtras)) != 0;
    if (owns && node->Has(CzonNode::kInArena)) node->MarkDeep();
  }
}

// The place in the list of a node that is to get the place `place` of the children: after that of
// the nearest child before it that is in the list.
std::uint32_t NodeAccess::PlaceInList(CzonNamedNode& owner, const NameList& list,
                                      std::uint32_t place) {
  const NodeSpan children = owner.Children();
  if (place >= children.Size()) return Count(list) + 1;
  for (std::uint32_t steps = 0; place > 0; --place, ++steps) {
    if (steps == kLongestMove || GetLongChildren(owner) != nullptr) {
      if (EnsureLongChildren(owner)) return CountBefore(list, owner, place) + 1;
    }
    CzonNode& before = *children[place - 1];
    if (owner.ListOf(before) == &list) return zon::PlaceOf(list, Named(before), &owner) + 1;
  }
  return 1;
}

bool NodeAccess::IsFiled(const CzonNode& child) {
  CzonNamedNode* owner = child.GetOwner();
  owner->ListChildren();
  NameList* list = owner->ListOf(child);
  return list == nullptr || IsIndexed(*list, static_cast<const CzonNamedNode&>(child), owner);
}

void NodeAccess::Unfile(CzonNode* child) {
  CzonNamedNode& owner = *child->GetOwner();
  const std::uint32_t place = owner.PlaceOf(child);
  PrepareEdit(owner, place);
  owner.ListChildren();
  NameList* list = owner.ListOf(*child);
  if (list != nullptr) Remove(*list, Named(*child), &owner);
  Erase(owner.EnsureChildren(), place);
  child->SetOwner(nullptr);
  if (IsUnnumbered(*child)) SetNumber(*child, 0);
  owner.ChildErased(*child, place);
}

// The text of a node that nothing else refers to.
void NodeAccess::ReleaseText(const CzonNode& node, const Text& text, Arena& arena) {
  if (node.Has(CzonNode::kOwnText) && text.size < kKeptString) arena.ReleaseText(View(text));
}

void NodeAccess::Discard(CzonNode* node, Arena* arena) {
  node->SetOwner(nullptr);
  CzonNamedNode::TakeApart(node, true, [arena](CzonNode* next) {
    const std::size_t size = std::size_t{next->bits_ >> CzonNode::kSizeShift} * 8;
    if (size == 0 || arena == nullptr) return Free(next);
    ReleaseText(*next, IsNamed(*next) ? Named(*next).name_ : static_cast<CzonParam*>(next)->text_,
                *arena);
    const bool hasPiece = next->Has(CzonNode::kHasExtras) && !next->Has(CzonNode::kOwnsExtras);
    NodeExtras* const extras = hasPiece ? next->link_.extras : nullptr;
    next->~CzonNode();
    arena->ReleasePiece(next, size);
    if (extras != nullptr) arena->ReleasePiece(extras, sizeof *extras);
  });
}

// A value is in the list of children only, and the list keeps its size: this cannot fail.
void NodeAccess::Replace(CzonNode* value, CzonNode* by) {
  CzonNamedNode& owner = *value->GetOwner();
  NodeList& children = owner.EnsureChildren();
  const std::uint32_t place = owner.PlaceOf(value);
  by->SetOwner(&owner);
  by->instance_ = value->instance_;
  zon::Set(children, place, by);
  by->Set(CzonNode::kUnnumbered, value->Has(CzonNode::kUnnumbered));
  by->Set(CzonNode::kNumberLost, value->Has(CzonNode::kNumberLost));
  if (IsUnnumbered(*value)) SetNumber(*value, 0);
  value->SetOwner(nullptr);
  if (by->NeedsDestructor()) owner.MarkDeep();
}

void NodeAccess::RestoreNumbers(CzonNode& child) {
  CzonNamedNode* owner = child.GetOwner();
  owner->ListChildren();
  NameList* list = owner->ListOf(child);
  if (list != nullptr) zon::RestoreNumbers(*list, Named(child), owner);
}

// ---- Renaming -----------------------------------------------------------------------------------

void NodeAccess::Rename(CzonNamedNode& node, std::string_view name) {
  ScopedText text(name);
  InheritOrigin(text, node.name_);
  CzonNamedNode* owner = node.GetOwner();
  // The indexes are not case-sensitive.
  const bool isRefiled = owner != nullptr && !EqualNoCase(node.GetNameView(), name);
  if (isRefiled) {
    owner->Set(CzonNode::kNamesDiffer, false);
    owner->ListChildren();
  }
  NameList* list = isRefiled ? owner->ListOf(node) : nullptr;
  if (list != nullptr && IsIndexed(*list, node, owner)) {
    RenameInIndex(node, text, *list, owner);
  } else {
    SwapName(node, text);
  }
  if (isRefiled) owner->ChildRenamed(node);
  if (OwnsString(node.name_) && node.Has(CzonNode::kInArena)) node.MarkDeep();
}

void NodeAccess::SwapName(CzonNamedNode& node, Text& name) {
  Swap(node.name_, name);
}

// Adds the node to the queue of its new name before it is removed from that of its former name.
void NodeAccess::RenameInIndex(CzonNamedNode& node, Text& name, NameList& list,
                               CzonNamedNode* owner) {
  const std::string formerName(node.GetKey().name);
  const std::int32_t formerNumber = node.instance_;
  SwapName(node, name);
  if (EqualNoCase(FiledName(formerName), FiledName(node.GetKey().name))) return;
  try {
    InsertIntoIndex(list, node, zon::PlaceOf(list, node, owner), owner);
  } catch (...) {
    SwapName(node, name);
    throw;
  }
  // The former queue is found by the name of its first node, which may be this one.
  SwapName(node, name);
  EraseFromIndex(list, node, formerNumber, owner);
  SwapName(node, name);
}

// ---- Copying ------------------------------------------------------------------------------------

std::unique_ptr<CzonNamedNode> NodeAccess::CopyAside(const CzonNamedNode& node,
                                                     const CzonNamedNode& source) {
  std::unique_ptr<CzonNamedNode> aside = node.MakeAside();
  aside->CopyContent(source);
  return aside;
}

void NodeAccess::SwapContent(CzonNamedNode& node, CzonNamedNode& other) {
  // Exchanges pointers only: no failure is possible. Both nodes use the same arena, if any.
  for (CzonNamedNode* owner : {&node, &other}) owner->Set(CzonNode::kNamesDiffer, false);
  std::swap(node.children_, other.children_);
  const bool isDeferred = node.Has(CzonNode::kDeferred);
  node.Set(CzonNode::kDeferred, other.Has(CzonNode::kDeferred));
  other.Set(CzonNode::kDeferred, isDeferred);
  const unsigned int flags = node.GetFlags();
  node.SetFlags(other.GetFlags());
  other.SetFlags(flags);
  node.SwapExtras(other);
  node.SwapOwn(other);
  const bool isDeep = node.Has(CzonNode::kDeep) || other.Has(CzonNode::kDeep);
  for (CzonNamedNode* owner : {&node, &other}) {
    if (isDeep) owner->MarkDeep();
    if (owner->Has(CzonNode::kDeferred)) continue;  // no children yet
    for (CzonNode* child : NodeSpan(owner->children_.nodes)) child->SetOwner(owner);
  }
}

}  // namespace zon

// ---- CzonNamedNode ------------------------------------------------------------------------------

// A name that a host's class returns may change, so its node is indexed at once, by the present
// one.
void CzonNamedNode::AddListed(CzonNamedNode& child) {
  Set(kNamesDiffer, false);
  if (child.IsOfLibrary()) {
    AppendChild(&child);
    child.Set(kUnnumbered);
    return;
  }
  zon::Reserve(EnsureChildren(), arena_);  // AppendChild below cannot fail then
  ListChildren();
  zon::Append(*ListOf(child), child, this);
  AppendChild(&child);
  ChildInserted(child, children_.nodes.size - 1);
}

// Numbers the children of the kind of this one.
void CzonNamedNode::NumberChildren(const CzonNamedNode& child) {
  ListChildren();
  if (zon::NameList* list = ListOf(child)) zon::CompleteIndex(*list, this);
}

// The number of a child of a long list, or of a long queue of one name.
int CzonNamedNode::CountNumber(const CzonNode& child) {
  if (!child.Has(kNamed)) return static_cast<int>(PlaceOf(&child) + 1);
  const auto& named = static_cast<const CzonNamedNode&>(child);
  return static_cast<int>(zon::CountNumber(*ListOf(child), named, this));
}

void CzonNamedNode::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonNamedNode*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonnamno", "Src");
  // The source may be above or below this node, so the copy is made aside. The old content, which
  // may hold the source, is deleted last.
  const std::unique_ptr<CzonNamedNode> aside = zon::NodeAccess::CopyAside(*this, *other);
  if (GetOwner() != nullptr) GetOwner()->NumberChildren(*this);  // ResetNumber must not fail
  zon::NodeAccess::Rename(*this, other->GetNameView());
  zon::NodeAccess::SwapContent(*this, *aside);
  ResetNumber();
  aside->Clear();
}

// Fills an empty node with copies of everything but the name. Iterative.
void CzonNamedNode::CopyContent(const CzonNamedNode& source) {
  CopyFields(source);
  std::vector<std::pair<CzonNamedNode*, const CzonNamedNode*>> open{{this, &source}};
  while (!open.empty()) {
    const auto [to, from] = open.back();
    open.pop_back();
    for (CzonNode* child : from->Children()) {
      std::unique_ptr<CzonNode> copy(child->CreateObj());
      const CzonNode& made = *copy;
      ZON_ASSERT_TEXT(typeid(made) == typeid(*child), "zonnamno",
                      "typeid(*NewCopy) == typeid(*Src)");
      if (child->Has(kNamed) && static_cast<CzonNamedNode*>(child)->IsOfLibrary()) {
        auto* named = static_cast<CzonNamedNode*>(copy.get());
        const auto& original = static_cast<const CzonNamedNode&>(*child);
        named->SetName(original.GetNameView());
        named->CopyFields(original);
        open.emplace_back(named, &original);
      } else {
        copy->Copy(child);
      }
      to->AppendCopy(copy.get());
      static_cast<void>(copy.release());  // owned by `to` now
    }
  }
}

// Copies everything but the name and the children.
void CzonNamedNode::CopyFields(const CzonNamedNode& source) {
  SetRemark(source.GetRemark(), nullptr);
  SetFlags(source.GetFlags());
  CopyOwn(source);
}

void CzonNamedNode::AppendCopy(CzonNode* child) {
  if (ListOf(*child) != nullptr) return AddListed(static_cast<CzonNamedNode&>(*child));
  AppendChild(child);
  if (Has(kKeyword) && child->IsParam()) ChildInserted(*child, children_.nodes.size - 1);
}
