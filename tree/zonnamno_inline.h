// The inline operations of CzonNamedNode that are internal to the library: children that may be
// made on demand, and the key of the name.
#ifndef ZON_TREE_ZONNAMNO_INLINE_H
#define ZON_TREE_ZONNAMNO_INLINE_H

#include "base/zonchars.h"
#include "tree/zonnamekey.h"
#include "tree/zonnamno.h"
#include "tree/zonnodelist.h"
#include "tree/zonnodetext.h"

inline zon::NodeList& CzonNamedNode::EnsureChildren() {
  if (Has(kDeferred)) MakeDeferredChildren();
  return children_.nodes;
}

inline void CzonNamedNode::DeferValues(const zon::DeferredValues& values) {
  if (Has(kDeferred) || children_.nodes.size != 0) {
    EnsureChildren();
    return MakeValues(values);
  }
  // One by one: as a whole they would be loaded before their stores are complete, which makes a
  // load of a file five percent slower.
  children_.deferred.source = values.source;
  children_.deferred.begin = values.begin;
  children_.deferred.size = values.size;
  Set(kDeferred);
}

inline std::string_view CzonNamedNode::GetNameView() const {
  return zon::View(name_);
}

// A node in an arena is of the library's classes: its GetName returns the stored name.
inline zon::NameKey CzonNamedNode::GetKey() const {
  return Has(kInArena) ? zon::NameKey{GetNameView(), true} : MakeKey();
}

inline void CzonNamedNode::AppendNew(CzonNamedNode& child) {
  zon::NodeList& children = children_.nodes;  // those of a section are never deferred
  zon::Append(children, &child, arena_);
  child.SetOwner(this);
  child.place_ = children.size - 1;
  child.Set(kUnnumbered);
  if (child.NeedsDestructor()) MarkDeep();
}

inline zon::NodeSpan CzonNamedNode::Children() const {
  return zon::NodeSpan(const_cast<CzonNamedNode*>(this)->EnsureChildren());
}

inline void CzonNamedNode::EnterArena(zon::Arena& arena) {
  Set(kInArena);
  arena_ = &arena;
}

inline void CzonNamedNode::ReferToName(std::string_view name) {
  zon::ReferTo(name_, name);
}

// Destroys the pending nodes and what is below them: all of it, or only what owns memory outside
// the arena. Needs neither stack nor heap: pending nodes are linked as owners, the last one has
// none.
template <class Destroy>
void CzonNamedNode::TakeApart(CzonNode* pending, bool all, Destroy&& destroy) {
  while (pending != nullptr) {
    CzonNode* node = pending;
    pending = node->Owner();
    node->SetOwner(nullptr);
    // The destructor of a host's class may use the children, and then frees them.
    auto* named = node->Has(kNamed) ? static_cast<CzonNamedNode*>(node) : nullptr;
    if (named != nullptr && named->IsOfLibrary() && !named->Has(kDeferred)) {
      named->LinkChildren(pending, all);
      zon::Release(named->children_.nodes, named->arena_);
    }
    destroy(node);
  }
}

#endif
