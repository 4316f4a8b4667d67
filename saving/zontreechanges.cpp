#include "saving/zontreechanges.h"

#include "tree/zonnodeaccess.h"

namespace zon {

TreeChanges::~TreeChanges() {
  for (; !changes_.empty(); changes_.pop_back()) Undo(changes_.back());
}

// There is room for the change before the tree is touched, so that what was done can be taken back.
TreeChanges::Change& TreeChanges::Add(Kind kind, CzonNode* node, CzonNode* former) {
  changes_.push_back({kind, node, former, Text()});
  return changes_.back();
}

void TreeChanges::Undo(Change& change) {
  switch (change.kind) {
    case Kind::kText:
      Swap(NodeAccess::ValueText(static_cast<CzonParam&>(*change.node)), change.text);
      Release(change.text);
      return;
    case Kind::kReplaced:
      NodeAccess::Replace(change.node, change.former);
      NodeAccess::Free(change.node);
      return;
    case Kind::kAppended:
      NodeAccess::Unfile(change.node);
      NodeAccess::Free(change.node);
      return;
  }
}

void TreeChanges::SetText(CzonParam& value, std::string_view text) {
  Change& change = Add(Kind::kText, &value, nullptr);
  try {
    Assign(change.text, text, NodeAccess::GetArena(value));
  } catch (...) {
    changes_.pop_back();
    throw;
  }
  Swap(NodeAccess::ValueText(value), change.text);
}

void TreeChanges::Replace(CzonParam& value, std::unique_ptr<CzonParam> by) {
  Add(Kind::kReplaced, by.get(), &value);
  NodeAccess::Replace(&value, by.release());
}

void TreeChanges::Append(CzonNamedNode& owner, std::unique_ptr<CzonNode> node) {
  Add(Kind::kAppended, node.get(), nullptr);
  try {
    NodeAccess::FileAt(owner, node.get(), NodeAccess::Children(owner).Size());
  } catch (...) {
    changes_.pop_back();
    throw;
  }
  static_cast<void>(node.release());  // owned by the tree
}

void TreeChanges::Keep() {
  for (Change& change : changes_) {
    if (change.kind == Kind::kText) Release(change.text);
    if (change.kind == Kind::kReplaced) NodeAccess::Free(change.former);
  }
  changes_.clear();
}

}  // namespace zon
