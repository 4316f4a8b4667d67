// Tested by tests/tree_test.cpp and tests/values_test.cpp.
#include "tree/zonnamno.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <typeinfo>
#include <utility>
#include <vector>

#include "base/zonassert.h"
#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

CzonNamedNode::CzonNamedNode(const std::string& name, int multi, int mandat) {
  Set(kNamed);
  SetName(name);
  SetMultiMandat(multi, mandat);
}

CzonNamedNode::~CzonNamedNode() {
  FreeChildren();
  children_.Release(arena_);
  if (arena_ == nullptr) delete nameGlb_;
  name_.Release();
}

CzonNode* CzonNamedNode::CreateObj() {
  return new CzonNamedNode;
}

const std::string& CzonNamedNode::GetName() const {
  return name_.AsString(arena_);
}

bool CzonNamedNode::IsOfLibrary() const {
  if (IsInStore()) return true;
  const std::type_info& type = typeid(*this);
  return type == typeid(CzonKeyword) || type == typeid(CzonSection) ||
         type == typeid(CzonTargetList) || type == typeid(CzonDefaultDef) ||
         type == typeid(CzonNamedNode);
}

// A host's class may answer GetName as it likes.
zon::NameKey CzonNamedNode::GetKey() const {
  if (IsInStore()) return {GetNameView(), nameHash_, true};
  const std::string& name = GetName();
  const std::string_view stored = GetNameView();
  if (name.size() == stored.size() && (name.empty() || name.data() == stored.data())) {
    return {stored, nameHash_, true};
  }
  return {name, zon::HashNoCase(name), false};
}

void CzonNamedNode::SetName(std::string_view name) {
  nameHash_ = zon::HashNoCase(name);
  name_.Assign(name, arena_);
}

void CzonNamedNode::ReferToName(std::string_view name) {
  nameHash_ = zon::HashNoCase(name);
  name_.ReferTo(name);
}

// A name is made of the owner's, and stays as it was first made. Owners of the library's classes that
// have not been asked yet are asked first, from the top down and without recursion.
const std::string& CzonNamedNode::GetNameGlb() const {
  if (nameGlb_ != nullptr) return *nameGlb_;
  std::vector<const CzonNamedNode*> unasked;
  const std::string* prefix = nullptr;
  for (const CzonNamedNode *node = this, *owner; prefix == nullptr; node = owner) {
    unasked.push_back(node);
    owner = node->GetOwner();
    if (owner == nullptr || owner->GetOwner() == nullptr) break;
    prefix = owner->IsOfLibrary() ? owner->nameGlb_ : &owner->GetNameGlb();
  }
  for (; !unasked.empty(); unasked.pop_back()) {
    const CzonNamedNode* node = unasked.back();
    std::string name;
    if (node->GetOwner() != nullptr) {
      const std::string_view own = node->GetKey().name;
      if (prefix != nullptr) {
        name.reserve(prefix->size() + 1 + own.size());
        name.append(*prefix).append(1, '.');
      }
      name.append(own);
    }
    node->nameGlb_ = node->arena_ != nullptr ? node->arena_->KeepString(std::move(name))
                                             : new std::string(std::move(name));
    prefix = node->nameGlb_;
  }
  return *nameGlb_;
}

unsigned int CzonNamedNode::GetNoNodes() const {
  return Children().Size();
}

CzonNode* CzonNamedNode::NodeByNum(unsigned int n) const {
  return n - 1 < Children().Size() ? Children()[n - 1] : nullptr;
}

// All of them or, for want of memory, none: then the text goes on standing for them.
void CzonNamedNode::MakeDeferred() {
  const std::string_view text = children_.TakeDeferred();
  Set(kDeferred, false);
  try {
    static_cast<CzonKeyword*>(this)->MakeValues(text);
  } catch (...) {
    children_.Release(arena_);
    children_.Defer(text);
    Set(kDeferred);
    throw;
  }
}

void CzonNamedNode::AddNode(CzonNode* node) {
  if (node == nullptr) return;
  Children().Append(node, arena_);
  node->owner_ = this;
  if (node->Has(kNamed)) static_cast<CzonNamedNode*>(node)->place_ = Children().Size() - 1;
  if (node->WantsDestructor()) MarkDeep();
}

void CzonNamedNode::SetMultiMandat(int multi, int mandat) {
  flags_ &= ~(kMulti | kMandat);
  if (multi != 0) flags_ |= kMulti;
  if (mandat != 0) flags_ |= kMandat;
}

void CzonNamedNode::Clear() {
  if (auto* list = dynamic_cast<CzonTargetList*>(this)) list->ForgetNames();
  FreeChildren();
  children_.Release(arena_);
  Set(kDeferred, false);
  if (arena_ == nullptr) {
    delete nameGlb_;
  } else if (nameGlb_ != nullptr) {
    std::string().swap(*nameGlb_);  // the store keeps the string itself
  }
  nameGlb_ = nullptr;
  flags_ = 0;
}

// Frees the subtree iteratively. Pending nodes are linked through owner_, so neither stack nor heap
// is needed.
void CzonNamedNode::FreeChildren() {
  if (!Has(kDeep)) return;  // nothing below but store memory
  CzonNode* waiting = nullptr;
  const auto enlist = [&waiting](const CzonNamedNode& owner) {
    if (owner.Has(kDeferred)) return;
    for (CzonNode* child : owner.children_) {
      if (!child->WantsDestructor()) continue;
      child->owner_ = waiting;
      waiting = child;
    }
  };
  enlist(*this);
  while (waiting != nullptr) {
    CzonNode* node = waiting;
    waiting = node->owner_;
    node->owner_ = nullptr;
    // The destructor of a host's class may use the children, which it then frees itself.
    auto* named = node->Has(kNamed) ? static_cast<CzonNamedNode*>(node) : nullptr;
    if (named != nullptr && named->IsOfLibrary()) {
      enlist(*named);
      named->children_.Release(named->arena_);
    }
    Free(node);
  }
}

// Without recursion, so that the depth of a tree costs no stack. The list of children may grow
// behind the current one while the visitor is at work, so places are counted, not pointed at.
void CzonNamedNode::Explore(void (*visit)(CzonNode*)) {
  struct Position {
    CzonNamedNode* node;
    std::uint32_t next;
  };
  std::vector<Position> path{{this, 0}};
  while (!path.empty()) {
    Position& position = path.back();
    const zon::NodeList& children = position.node->Children();
    CzonNode* inner = nullptr;
    while (inner == nullptr && position.next < children.Size()) {
      CzonNode* child = children[position.next++];
      if (child->Has(kExploresItself) && static_cast<CzonNamedNode*>(child)->IsOfLibrary()) {
        inner = child;
      } else if (child->Has(kInArena)) {
        visit(child);  // a value of ours, which is visited, no more
      } else {
        child->Explore(visit);
      }
    }
    if (inner == nullptr) {
      path.pop_back();
      continue;
    }
    visit(inner);
    path.push_back({static_cast<CzonNamedNode*>(inner), 0});
  }
}

std::uint32_t CzonNamedNode::PlaceOf(const CzonNode* child) const {
  const std::uint32_t guess = child->Has(kNamed) ? static_cast<const CzonNamedNode*>(child)->place_
                                                 : static_cast<std::uint32_t>(child->instance_ - 1);
  if (guess < Children().Size() && Children()[guess] == child) return guess;
  // Children have moved since the places were noted, mostly not far.
  constexpr std::uint32_t kNear = 256;
  const std::uint32_t near = std::min(guess, Children().Size());
  const std::uint32_t end = near + std::min(kNear, Children().Size() - near);
  for (std::uint32_t at = near - std::min(kNear, near); at < end; ++at) {
    if (Children()[at] != child) continue;
    if (child->Has(kNamed)) static_cast<const CzonNamedNode*>(child)->place_ = at;
    return at;
  }
  // Note them all anew, so that asking for one after the other stays linear.
  std::uint32_t found = Children().Size();
  for (std::uint32_t at = 0; at < Children().Size(); ++at) {
    if (Children()[at] == child) found = at;
    if (Children()[at]->Has(kNamed)) static_cast<CzonNamedNode*>(Children()[at])->place_ = at;
  }
  return found;
}

// Goes outward from section to section; never at the level of the root. Owners of a host's class are
// asked by their own operation.
CzonParam* CzonNamedNode::FindDefault(CzonNode* start, const std::string& name,
                                      unsigned int n) const {
  const CzonNamedNode* node = this;
  const CzonNode* from = start;
  for (bool isOutward = node->IsKeyword() != 0;; isOutward = true) {
    if (isOutward) {
      from = node;
      node = node->GetOwner();
      if (node == nullptr || node->GetOwner() == nullptr) return nullptr;
      if (!node->IsOfLibrary()) return node->FindDefault(const_cast<CzonNode*>(from), name, n);
    }
    const std::uint32_t place = from != nullptr ? node->PlaceOf(from) : node->Children().Size();
    const bool Ok = place < node->Children().Size();
    ZON_ASSERT_TEXT(Ok, "zonnamno", "Ok");
    // Compatibility: of several definitions the first one of the section decides, even if it has no
    // such value.
    const CzonNamedNode* definition = node->FirstDefinition(name);
    if (definition != nullptr && node->PlaceOf(definition) <= place) {
      CzonParam* value = definition->ParamByNum(n);
      if (value != nullptr && !value->IsDefaultPar()) return value;
    }
  }
}

const CzonNamedNode* CzonNamedNode::FirstDefinition(std::string_view name) const {
  if (const auto* section = dynamic_cast<const CzonSection*>(this)) {
    return section->FirstIndexedDefinition(name);
  }
  for (const CzonNode* child : Children()) {
    if (!child->IsDefaultDef()) continue;
    const auto* definition = static_cast<const CzonNamedNode*>(child);
    if (zon::EqualNoCase(definition->GetKey().name, name)) return definition;
  }
  return nullptr;
}

void CzonNamedNode::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* Src = dynamic_cast<const CzonNamedNode*>(source);
  ZON_ASSERT_TEXT(Src != nullptr, "zonnamno", "Src");
  // The source may be above or below this node, so the copy is made aside. The old content, which
  // may hold the source, is deleted last.
  const std::unique_ptr<CzonNamedNode> aside = CopyAside(*Src);
  Rename(Src->GetNameView());
  SwapContent(*aside);
  ResetNumber();
  aside->Clear();
}

std::unique_ptr<CzonNamedNode> CzonNamedNode::CopyAside(const CzonNamedNode& source) const {
  std::unique_ptr<CzonNamedNode> aside = NewAside();
  aside->CopyContent(source);
  return aside;
}

std::unique_ptr<CzonNamedNode> CzonNamedNode::NewAside() const {
  return NewInStore<CzonNamedNode>();
}

// Fills an empty node with copies of everything but the name, without recursion.
void CzonNamedNode::CopyContent(const CzonNamedNode& source) {
  CopyOwn(source);
  std::vector<std::pair<CzonNamedNode*, const CzonNamedNode*>> open{{this, &source}};
  while (!open.empty()) {
    const auto [to, from] = open.back();
    open.pop_back();
    for (CzonNode* child : from->Children()) {
      std::unique_ptr<CzonNode> NewCopy(child->CreateObj());
      const CzonNode& made = *NewCopy;
      ZON_ASSERT_TEXT(typeid(made) == typeid(*child), "zonnamno",
                      "typeid(*NewCopy) == typeid(*Src)");
      if (child->Has(kNamed) && static_cast<CzonNamedNode*>(child)->IsOfLibrary()) {
        auto* named = static_cast<CzonNamedNode*>(NewCopy.get());
        const auto& original = static_cast<const CzonNamedNode&>(*child);
        named->SetName(original.GetNameView());
        named->CopyOwn(original);
        open.emplace_back(named, &original);
      } else {
        NewCopy->Copy(child);
      }
      to->FileCopied(NewCopy);
    }
  }
}

// Everything of a node but its name and its children.
void CzonNamedNode::CopyOwn(const CzonNamedNode& source) {
  SetRemark(source.GetRemark(), nullptr);
  flags_ = source.flags_;
  if (auto* list = dynamic_cast<CzonTargetList*>(this)) {
    if (const auto* from = dynamic_cast<const CzonTargetList*>(&source)) list->CopyFacts(*from);
  }
}

void CzonNamedNode::FileCopied(std::unique_ptr<CzonNode>& child) {
  auto* list = dynamic_cast<CzonTargetList*>(this);
  auto* section = dynamic_cast<CzonSection*>(child.get());
  auto* keyword = dynamic_cast<CzonKeyword*>(child.get());
  if (list != nullptr && section != nullptr) {
    list->AddSection(section);
  } else if (auto* self = dynamic_cast<CzonSection*>(this);
             self != nullptr && keyword != nullptr && !keyword->IsDefaultDef()) {
    self->AddKeyword(keyword);
  } else {
    AddNode(child.get());
    if (child->IsParam()) child->instance_ = static_cast<std::int32_t>(child->GetNoInstances());
  }
  static_cast<void>(child.release());  // owned by this node now
}
