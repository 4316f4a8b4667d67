// Copies onto a node and beside it.
//
// Onto a node: the source is copied aside, the target is renamed, then both exchange their
// contents. Only the first two steps can fail, and then the target is unchanged. The copy is
// complete before the old content is deleted, so the source may be above or below the target. A
// target of a host's class is copied by its own Copy instead.
//
// Beside a node: the copy is made and then filed at the place (NodeAccess::FileAt), which either
// completes or changes nothing. Tested by tests/edit_test.cpp and fuzz/edit_fuzz.cpp.
#include "editing/zoncopy.h"

#include <memory>
#include <typeinfo>

#include "api/zonhandleaccess.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

// Moves the cursor of the builder out of everything below the node.
void LeaveChildren(const CzonNamedNode& node) {
  CzonData* const handle = HandleAccess::OfTree(node);
  if (handle == nullptr) return;
  for (CzonNode* child : NodeAccess::Children(node)) handle->UpdateCurrentNode(child);
}

// A class of the host overrides Copy, so this is called. A node of the library is copied aside
// first: all that can fail precedes the first change of the target.
void CopyNamedNode(const CzonNamedNode& source, CzonNamedNode& target) {
  if (!NodeAccess::IsOfLibrary(target) && typeid(source) == typeid(target)) {
    LeaveChildren(target);
    target.Copy(&source);
    if (target.GetOwner() != nullptr) NodeAccess::RestoreNumbers(target);
    return;
  }
  const std::unique_ptr<CzonNamedNode> copy = NodeAccess::CopyAside(target, source);
  NodeAccess::Rename(target, NodeAccess::GetNameView(source));
  LeaveChildren(target);
  NodeAccess::SwapContent(target, *copy);
}

// False for the root of a file, which IsSection counts as a section.
bool IsSectionOrKeyword(const CzonNode& node) {
  return node.GetSyntaxClass() != kZonTargetList && (node.IsSection() || node.IsKeyword());
}

}  // namespace

bool CanCopy(const CzonNode& source, const CzonNode& target) {
  const int kind = source.GetSyntaxClass();
  return kind == target.GetSyntaxClass() &&
         (kind == kZonSection || kind == kZonKeyword || kind == kZonDefaultDef);
}

void CopyNode(const CzonNode& source, CzonNode& target) {
  if (&source == &target) return;
  CopyNamedNode(static_cast<const CzonNamedNode&>(source), static_cast<CzonNamedNode&>(target));
}

bool CanInsertCopy(const CzonNode& source, const CzonNode& reference) {
  const CzonNamedNode* owner = reference.GetOwner();
  return IsSectionOrKeyword(source) && IsSectionOrKeyword(reference) && owner != nullptr &&
         (source.IsSection() || owner->GetSyntaxClass() == kZonSection);
}

CzonNode* InsertCopy(CzonNode& source, const CzonNode& reference, bool after) {
  std::unique_ptr<CzonNode> copy(source.CreateObj());
  copy->Copy(&source);
  CzonNamedNode* owner = reference.GetOwner();
  const std::uint32_t place = NodeAccess::PlaceOf(*owner, reference);
  NodeAccess::FileAt(*owner, copy.get(), place + (after ? 1 : 0));
  return copy.release();
}

}  // namespace zon
