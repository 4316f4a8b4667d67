// Filing nodes at a place and taking them out again: child list, ordered list, name index and
// numbers together. Every operation does the whole of its work or, for want of memory, nothing.
// Tested by tests/edit_test.cpp.
#include <string>
#include <utility>

#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

namespace {

// In which list of the owner a child is filed beside the child list, and the rest of its business
// there.
template <class SectionCase, class KeywordCase, class OtherCase>
auto WithList(CzonNamedNode& owner, CzonNode& child, SectionCase&& sectionCase,
              KeywordCase&& keywordCase, OtherCase&& otherCase) {
  if (auto* section = dynamic_cast<CzonSection*>(&child)) {
    if (auto* list = dynamic_cast<CzonTargetList*>(&owner)) return sectionCase(*list, section);
  } else if (auto* keyword = dynamic_cast<CzonKeyword*>(&child)) {
    auto* list = dynamic_cast<CzonSection*>(&owner);
    if (list != nullptr && !keyword->IsDefaultDef()) return keywordCase(*list, keyword);
  }
  return otherCase();
}

// The number that a node gets which will stand at `place` of the child list: one more than that of
// the nearest one of its kind in front.
template <class T>
unsigned int NumberAt(const zon::NodeList& children, const CzonNameList<T>& list,
                      std::uint32_t place) {
  if (place >= children.Size()) return list.Count() + 1;
  for (; place > 0; --place) {
    const auto* before = dynamic_cast<const T*>(children[place - 1]);
    if (before != nullptr && !before->IsDefaultDef()) return list.PlaceOf(before) + 1;
  }
  return 1;
}

}  // namespace

void CzonNamedNode::FileAt(CzonNode* child, std::uint32_t place) {
  Children().Reserve(arena_);
  WithList(
      *this, *child,
      [&](CzonTargetList& owner, CzonSection* section) {
        owner.sections_.Insert(section, NumberAt(Children(), owner.sections_, place));
      },
      [&](CzonSection& owner, CzonKeyword* keyword) {
        owner.keywords_.Insert(keyword, NumberAt(Children(), owner.keywords_, place));
      },
      [] {});
  Children().Insert(place, child, arena_);
  child->owner_ = this;
  if (child->Has(kNamed)) static_cast<CzonNamedNode*>(child)->place_ = place;
  if (child->WantsDestructor()) MarkDeep();
  ChildrenMoved(place, *child, 1);
}

bool CzonNamedNode::IsFiled(CzonNode& child) {
  return WithList(
      *this, child,
      [](CzonTargetList& owner, CzonSection* section) { return owner.sections_.Holds(section); },
      [](CzonSection& owner, CzonKeyword* keyword) { return owner.keywords_.Holds(keyword); },
      [] { return true; });
}

void CzonNamedNode::Unfile(CzonNode* child) {
  const std::uint32_t place = PlaceOf(child);
  WithList(
      *this, *child,
      [](CzonTargetList& owner, CzonSection* section) { owner.sections_.Remove(section); },
      [](CzonSection& owner, CzonKeyword* keyword) { owner.keywords_.Remove(keyword); }, [] {});
  Children().Erase(place);
  child->owner_ = nullptr;
  ChildrenMoved(place, *child, -1);
}

void CzonNamedNode::Replace(CzonNode* child, CzonNode* by) {
  const std::uint32_t place = PlaceOf(child);
  Children().Set(place, by);
  by->owner_ = this;
  by->instance_ = child->instance_;
  child->owner_ = nullptr;
  if (by->WantsDestructor()) MarkDeep();
}

// What depends on the places of children: the numbers of values, and what is known of definitions.
// `by` is 1 after a child has come to the place `from`, -1 after it has gone.
void CzonNamedNode::ChildrenMoved(std::uint32_t from, const CzonNode& child, int by) {
  if (auto* section = dynamic_cast<CzonSection*>(this)) section->DefinitionsMoved(from, child, by);
  if (auto* keyword = dynamic_cast<CzonKeyword*>(this)) keyword->NumberValues(from);
}

// A Copy has reset the number of the child. The next change of its queue, or of the values of the
// keyword, numbers it again.
void CzonNamedNode::LoseNumber(CzonNode& child) {
  WithList(
      *this, child,
      [](CzonTargetList& owner, CzonSection* section) { owner.sections_.LoseNumber(section); },
      [](CzonSection& owner, CzonKeyword* keyword) { owner.keywords_.LoseNumber(keyword); },
      [this] { Set(kLostNumbers); });
}

void CzonNamedNode::RestoreNumbers(CzonNode& child) {
  WithList(
      *this, child,
      [](CzonTargetList& owner, CzonSection* section) { owner.sections_.RestoreNumbers(section); },
      [](CzonSection& owner, CzonKeyword* keyword) { owner.keywords_.RestoreNumbers(keyword); },
      [] {});
}

void CzonNamedNode::Rename(std::string_view name) {
  // A text of its own, also in an arena: it is released with the next renaming.
  struct OwnedText : zon::Text {
    ~OwnedText() { Release(); }
  } fresh;
  fresh.Assign(name, nullptr);
  CzonNamedNode* owner = GetOwner();
  const auto swapNames = [&] {
    name_.Swap(fresh);
    nameHash_ = zon::HashNoCase(name_.View());
  };
  const auto refile = [&](auto& list, auto* node) {
    if (!list.Holds(node)) return swapNames();  // it was added to the children alone
    const zon::NameKey former = node->GetKey();
    // A stored name stays where it is when the names are swapped; a host's may go.
    const std::string copied(former.isStored ? std::string_view() : former.name);
    const std::string_view formerName = former.isStored ? former.name : copied;
    const int formerNumber = static_cast<CzonNode*>(node)->instance_;
    swapNames();
    if (zon::EqualNoCase(zon::FiledName(formerName), zon::FiledName(node->GetKey().name))) return;
    try {
      list.InsertIntoHashtable(node, list.PlaceOf(node));
    } catch (...) {
      swapNames();
      throw;
    }
    // The former queue is found while the node has its former name: it may be the first there.
    swapNames();
    list.EraseNumber(node, formerNumber);
    swapNames();
  };
  if (owner == nullptr || zon::EqualNoCase(GetNameView(), name)) {
    swapNames();  // the indexes know it by its name in lower case
  } else {
    WithList(
        *owner, *this,
        [&](CzonTargetList& of, CzonSection* section) { refile(of.sections_, section); },
        [&](CzonSection& of, CzonKeyword* keyword) { refile(of.keywords_, keyword); }, swapNames);
    auto* section = dynamic_cast<CzonSection*>(owner);
    if (section != nullptr && IsDefaultDef()) section->ForgetDefinitions();
  }
  if (name_.IsOwner() && Has(kInArena)) MarkDeep();
}

void CzonNamedNode::SwapContent(CzonNamedNode& other) {
  children_.Swap(other.children_);
  const bool isDeferred = Has(kDeferred);
  Set(kDeferred, other.Has(kDeferred));
  other.Set(kDeferred, isDeferred);
  std::swap(flags_, other.flags_);
  std::swap(nameGlb_, other.nameGlb_);
  CzonNode::SwapRemark(other);
  auto* list = dynamic_cast<CzonTargetList*>(this);
  auto* otherList = dynamic_cast<CzonTargetList*>(&other);
  if (list != nullptr && otherList != nullptr) list->SwapLists(*otherList);
  for (CzonNamedNode* owner : {this, &other}) {
    if (!owner->Has(kDeferred)) {
      for (CzonNode* child : owner->children_) child->owner_ = owner;
    }
    if (Has(kDeep) || other.Has(kDeep)) owner->MarkDeep();
  }
}

void CzonTargetList::SwapLists(CzonTargetList& other) {
  sections_.Swap(other.sections_);
  facts_.swap(other.facts_);
  auto* section = dynamic_cast<CzonSection*>(this);
  auto* otherSection = dynamic_cast<CzonSection*>(&other);
  if (section == nullptr || otherSection == nullptr) return;
  section->keywords_.Swap(otherSection->keywords_);
  section->ForgetDefinitions();
  otherSection->ForgetDefinitions();
}
