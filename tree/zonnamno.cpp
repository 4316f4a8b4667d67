// Nodes with a name and children. Changes of children at a place, renaming and copying are in
// zontreeedit.cpp, writing in zontreewriter.cpp, default values in zondefaults.cpp.
//
// All walks over a tree are loops. Where a node is of a host's class (IsOfLibrary is false), its
// virtual operations are called instead, because they may be overridden.
//
// Memory: a node in an arena is not deleted. Its destructor runs only if kDeep is set, which means
// that it, or a node below it, owns memory outside the arena. So closing most files visits no node.
// Tested by tests/tree_test.cpp and tests/values_test.cpp; deep trees by tests/size_test.cpp.
#include "tree/zonnamno.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/zonassert.h"
#include "tree/zondeferredvalues.h"
#include "tree/zonnamno_inline.h"

// ---- The operations of CzonNode that depend on the class of the owner ---------------------------

CzonNamedNode* CzonNode::GetOwner() const {
  return static_cast<CzonNamedNode*>(Owner());
}

const std::string& CzonNode::GetZonFilename() const {
  const CzonNode* top = this;
  // The compiler may assume that `this` is not null. The empty asm hides where the value comes
  // from.
  asm("" : "+r"(top));
  ZON_ASSERT_TEXT(top != nullptr, "zonnode", "pOwner != 0");
  top = top->GetTopNode();
  const bool isRoot = top->Has(kNamed) && static_cast<const CzonNamedNode*>(top)->HoldsFilename();
  ZON_ASSERT_TEXT(isRoot, "zonnode", "dynamic_cast<const CzonTargetList*>(pOwner) != 0");
  return top->GetZonFilename();
}

// Numbers that a Copy has reset return when the next node of the name enters the index.
int CzonNode::FindNumber() const {
  if (Owner() == nullptr) return instance_;
  if (Has(kUnnumbered) && Owner()->Has(kNamesDiffer)) return 1;
  if (Has(kNamed)) GetOwner()->NumberChildren(static_cast<const CzonNamedNode&>(*this));
  if (!Has(kUnnumbered)) return instance_;
  return Has(kNumberLost) ? 0 : GetOwner()->CountNumber(*this);
}

void CzonNode::ResetNumber() {
  if (Owner() != nullptr) {
    GetOwner()->ChildLostNumber(*this);
  } else if (instance_ != 0 && Has(kNamed)) {
    zon::CountLostNumber();
  }
  if (Has(kUnnumbered)) {
    Set(kNumberLost);
  } else {
    instance_ = 0;
  }
}

zon::Arena* CzonNode::GetArena() const {
  if (!Has(kInArena)) return nullptr;
  const CzonNode* named = Has(kNamed) ? this : Owner();
  return named != nullptr ? static_cast<const CzonNamedNode*>(named)->arena_ : nullptr;
}

// ---- CzonNamedNode ------------------------------------------------------------------------------

CzonNamedNode::CzonNamedNode(const std::string& name, int multi, int mandat) {
  Set(kNamed);
  SetName(name);
  SetMultiMandat(multi, mandat);
}

CzonNamedNode::~CzonNamedNode() {
  FreeChildren();
  if (!Has(kDeferred)) zon::Release(children_.nodes, arena_);
  if (arena_ == nullptr) ForgetGlobalName();
  zon::Release(name_);
}

CzonNode* CzonNamedNode::CreateObj() {
  return new CzonNamedNode;
}

const std::string& CzonNamedNode::GetName() const {
  return zon::AsString(name_, arena_);
}

const std::type_info& CzonNamedNode::LibraryClass() const {
  return typeid(CzonNamedNode);
}

bool CzonNamedNode::IsOfLibrary() const {
  return Has(kInArena) || typeid(*this) == LibraryClass();
}

// The GetName of a host's class may return any name. The stored name is used if it returns
// the stored string itself.
zon::NameKey CzonNamedNode::MakeKey() const {
  const std::string& name = GetName();
  const std::string_view stored = GetNameView();
  if (name.size() == stored.size() && (name.empty() || name.data() == stored.data())) {
    return {stored, true};
  }
  return {name, false};
}

void CzonNamedNode::SetName(std::string_view name) {
  const void* const former = name_.where;
  zon::Assign(name_, name, arena_);
  if (arena_ != nullptr && name_.where != former) Set(kOwnText);
}

// The global name of a node as it was when the name of the node, or of one below it, was first
// asked for: a later renaming does not change it. Only a name that was asked for itself is
// composed, so the names of deep nests do not fill the memory.
struct zon::GlobalName {
  std::string* text;  // the whole name, or the part of this node; as the node in the arena or owned
  const GlobalName* outer;  // null if the text is the whole name
};

// Fixes the parts of this node and of all owners that have none, from the top down.
const zon::GlobalName* CzonNamedNode::BeginGlobalName() const {
  std::vector<const CzonNamedNode*> nodes;
  const zon::GlobalName* outer = nullptr;
  for (const CzonNamedNode* node = this; outer == nullptr; node = node->GetOwner()) {
    outer = node->FindGlobalName();
    if (outer != nullptr) break;
    nodes.push_back(node);
    const CzonNamedNode* owner = node->GetOwner();
    if (owner == nullptr || owner->GetOwner() == nullptr || !owner->IsOfLibrary()) break;
  }
  for (; !nodes.empty(); nodes.pop_back()) {
    const CzonNamedNode& node = *nodes.back();
    const CzonNamedNode* owner = node.GetOwner();
    std::string name(owner != nullptr ? node.GetKey().name : std::string_view());
    if (owner != nullptr && owner->GetOwner() != nullptr && !owner->IsOfLibrary()) {
      name.insert(0, 1, '.').insert(0, owner->GetNameGlb());
    }
    zon::Arena* const arena = node.arena_;
    zon::GlobalName*& global = const_cast<CzonNamedNode&>(node).EnsureExtras(arena).globalName;
    if (arena != nullptr) {
      std::string* text = arena->KeepString(std::move(name));
      global = new (arena->Allocate(sizeof *outer)) zon::GlobalName{text, outer};
    } else {
      auto text = std::make_unique<std::string>(std::move(name));
      global = new zon::GlobalName{text.get(), outer};
      static_cast<void>(text.release());
    }
    outer = global;
  }
  return outer;
}

const std::string& CzonNamedNode::GetNameGlb() const {
  const zon::GlobalName* const begun = BeginGlobalName();
  if (begun->outer == nullptr) return *begun->text;
  std::vector<const zon::GlobalName*> parts;
  std::size_t size = 0;
  for (const zon::GlobalName* part = begun; part != nullptr; part = part->outer) {
    parts.push_back(part);
    size += part->text->size() + 1;
  }
  std::string name;
  name.reserve(size);
  for (; !parts.empty(); parts.pop_back()) {
    if (!name.empty() || parts.back()->outer != nullptr) name.append(1, '.');
    name.append(*parts.back()->text);
  }
  zon::GlobalName& global = *FindGlobalName();
  global.text->swap(name);
  global.outer = nullptr;
  return *global.text;
}

void CzonNamedNode::ForgetGlobalName() {
  zon::GlobalName* const global = FindGlobalName();
  if (global == nullptr) return;
  if (arena_ == nullptr) {
    delete global->text;
    delete global;
  } else {
    std::string().swap(*global->text);  // the string itself stays in the arena
  }
  link_.extras->globalName = nullptr;
}

unsigned int CzonNamedNode::GetNoNodes() const {
  return Children().Size();
}

CzonNode* CzonNamedNode::NodeByNum(unsigned int n) const {
  const zon::NodeSpan children = Children();
  return n - 1 < children.Size() ? children[n - 1] : nullptr;
}

// If out of memory the values stay deferred.
void CzonNamedNode::MakeDeferredChildren() {
  const zon::DeferredValues values = children_.deferred;
  children_.nodes = {};
  Set(kDeferred, false);
  try {
    MakeValues(values);
  } catch (...) {
    zon::Release(children_.nodes, arena_);
    children_.deferred = values;
    Set(kDeferred);
    throw;
  }
}

// For values that were just made in the arena of this node: kDeep and the queues need no update.
void CzonNamedNode::AppendNew(CzonNode* const* values, std::uint32_t count) {
  zon::NodeList& children = EnsureChildren();
  if (zon::IsLong(children)) {
    for (std::uint32_t n = 0; n < count; ++n) {
      AppendChild(values[n]);
      ChildInserted(*values[n], children.size - 1);
    }
    return;
  }
  auto number = static_cast<std::int32_t>(children.size);
  zon::Append(children, values, count, arena_);
  for (CzonNode* const* value = values; value != values + count; ++value) {
    (*value)->SetOwner(this);
    (*value)->instance_ = ++number;
  }
}

void CzonNamedNode::AddNode(CzonNode* node) {
  if (node != nullptr) AppendChild(node);
}

void CzonNamedNode::AppendChild(CzonNode* node) {
  zon::NodeList& children = EnsureChildren();
  zon::Append(children, node, arena_);
  node->SetOwner(this);
  if (node->Has(kNamed) && !zon::IsLong(children)) {
    static_cast<CzonNamedNode*>(node)->place_ = children.size - 1;
  }
  if (node->NeedsDestructor()) MarkDeep();
}

void CzonNamedNode::SetMultiMandat(int multi, int mandat) {
  SetFlags((GetFlags() & kOpenList) | (multi != 0 ? kMulti : 0U) | (mandat != 0 ? kMandat : 0U));
}

void CzonNamedNode::Clear() {
  ForgetChildren();
  FreeChildren();
  if (!Has(kDeferred)) zon::Release(children_.nodes, arena_);
  children_.nodes = {};
  Set(kDeferred, false);
  ForgetGlobalName();
  SetFlags(0);
}

void CzonNamedNode::FreeChildren() {
  if (!Has(kDeep)) return;  // everything below is in the arena
  CzonNode* pending = nullptr;
  LinkChildren(pending, false);
  TakeApart(pending, false, Free);
}

void CzonNamedNode::LinkChildren(CzonNode*& pending, bool all) const {
  if (Has(kDeferred)) return;
  for (CzonNode* child : zon::NodeSpan(children_.nodes)) {
    if (!all && !child->NeedsDestructor()) continue;
    child->SetOwner(pending);
    pending = child;
  }
}

// Iterative: the depth of a tree costs no stack. The visitor may add children after the current
// one, so the position is an index, and the span is taken anew for each child.
void CzonNamedNode::Explore(void (*visit)(CzonNode*)) {
  struct Position {
    CzonNamedNode* node;
    std::uint32_t next;
  };
  std::vector<Position> path{{this, 0}};
  while (!path.empty()) {
    Position& position = path.back();
    const zon::NodeList& children = position.node->EnsureChildren();
    CzonNode* inner = nullptr;
    while (inner == nullptr && position.next < children.size) {
      CzonNode* child = zon::NodeSpan(children)[position.next++];
      const bool isBranch = child->Has(kSection) || child->Has(kKeyword);
      if (isBranch && static_cast<CzonNamedNode*>(child)->IsOfLibrary()) {
        inner = child;
      } else if (child->Has(kInArena)) {
        visit(child);  // a value of the library
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

// Of a long list the child knows its block. Else tries three searches, from cheap to complete: the
// place noted in the child, or the instance number of a value; the places near it; all places.
std::uint32_t CzonNamedNode::PlaceOf(const CzonNode* child) const {
  const zon::NodeSpan children = Children();
  if (zon::IsLong(children_.nodes)) {
    const zon::LongList& list = *children_.nodes.longList;
    zon::LongList::Spot spot;
    return list.Find(*child, spot) ? list.PlaceOf(spot) : children.Find(child, 0);
  }
  const auto* named = child->Has(kNamed) ? static_cast<const CzonNamedNode*>(child) : nullptr;
  const std::uint32_t guess =
      named != nullptr ? named->place_ : static_cast<std::uint32_t>(child->instance_ - 1);
  if (guess < children.Size() && children[guess] == child) return guess;
  // Children have moved since the places were noted, mostly not far.
  constexpr std::uint32_t kNear = 256;
  const std::uint32_t near = std::min(guess, children.Size());
  const std::uint32_t end = near + std::min(kNear, children.Size() - near);
  for (std::uint32_t at = near - std::min(kNear, near); at < end; ++at) {
    if (children[at] != child) continue;
    if (named != nullptr) named->place_ = at;
    return at;
  }
  // Note all places, so that asking for one child after the other stays linear.
  std::uint32_t found = children.Size();
  for (std::uint32_t at = 0; at < children.Size(); ++at) {
    if (children[at] == child) found = at;
    if (children[at]->Has(kNamed)) static_cast<CzonNamedNode*>(children[at])->place_ = at;
  }
  return found;
}

// ---- What the classes below override ------------------------------------------------------------

std::unique_ptr<CzonNamedNode> CzonNamedNode::MakeAside() const {
  return MakeInArena<CzonNamedNode>();
}
zon::NameList* CzonNamedNode::ListOf(const CzonNode&) {
  return nullptr;
}
void CzonNamedNode::ListChildren() {}
unsigned int CzonNamedNode::CountNamesakes(const CzonNamedNode&) const {
  return 0;
}
void CzonNamedNode::ChildInserted(const CzonNode&, std::uint32_t) {}
void CzonNamedNode::ChildErased(const CzonNode&, std::uint32_t) {}
void CzonNamedNode::ChildRenamed(const CzonNode&) {}
void CzonNamedNode::ChildLostNumber(const CzonNode&) {}
void CzonNamedNode::ForgetChildren() {}
void CzonNamedNode::MakeValues(const zon::DeferredValues& values) {
  values.source->make(*this, zon::TextOf(values));
}
void CzonNamedNode::SwapOwn(CzonNamedNode&) {}
void CzonNamedNode::CopyOwn(const CzonNamedNode&) {}
bool CzonNamedNode::HoldsFilename() const {
  return false;
}
