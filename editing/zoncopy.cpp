// zonCopy and zonInsert: copies of sections and keywords at a place of their own. Tested by
// tests/edit_test.cpp.
#include <memory>
#include <typeinfo>

#include "api/zon.h"
#include "api/zoncheck.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"

using zon::NodeAccess;

namespace {

// What can be copied onto what.
bool IsPair(const CzonNode& source, const CzonNode& target) {
  const int kind = source.GetSyntaxClass();
  return kind == target.GetSyntaxClass() &&
         (kind == kZonSection || kind == kZonKeyword || kind == kZonDefaultDef);
}

// The cursor leaves everything below the node.
void LeaveChildren(const CzonNamedNode& node) {
  const auto* root = dynamic_cast<CzonTargetList*>(node.GetTopNode());
  auto* handle = root != nullptr ? dynamic_cast<CzonData*>(root->GetHandle()) : nullptr;
  if (handle == nullptr) return;
  for (CzonNode* child : NodeAccess::Children(node)) handle->UpdateCurrentNode(child);
}

// All or nothing: what may fail comes first. A host's class has its own Copy.
void CopyOnto(const CzonNamedNode& source, CzonNamedNode& target) {
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

CzonNode* NewCopy(CzonNode& source) {
  std::unique_ptr<CzonNode> copy(source.CreateObj());
  copy->Copy(&source);
  return copy.release();
}

bool IsSectionOrKeyword(const CzonNode& node) {
  return node.GetSyntaxClass() != kZonTargetList && (node.IsSection() || node.IsKeyword());
}

}  // namespace

extern "C" {

int zonCopy(void* source, void* target) {
  return zon::Query<CzonNode>(source, 0, [&](CzonNode& from) {
    return zon::Query<CzonNode>(target, 0, [&](CzonNode& to) {
      if (!IsPair(from, to)) {
        MessageHook("zonCopy:\n\tsection/section or\n\tkeyword/keyword required");
        return 0;
      }
      if (&from == &to) return 1;
      CopyOnto(static_cast<const CzonNamedNode&>(from), static_cast<CzonNamedNode&>(to));
      return 1;
    });
  });
}

void* zonInsert(void* source, void* reference, int after) {
  return zon::Query<CzonNode, void*>(source, nullptr, [&](CzonNode& from) {
    return zon::Query<CzonNode, void*>(reference, nullptr, [&](CzonNode& beside) -> void* {
      CzonNamedNode* owner = beside.GetOwner();
      const bool fits = IsSectionOrKeyword(from) && IsSectionOrKeyword(beside) &&
                        owner != nullptr &&
                        (from.IsSection() || owner->GetSyntaxClass() == kZonSection);
      if (!fits) {
        zon::RaiseError(zon::kErrSection);
        MessageHook("Invalid zonNode (CzonSection)");
        return nullptr;
      }
      std::unique_ptr<CzonNode> copy(NewCopy(from));
      const std::uint32_t place = NodeAccess::PlaceOf(*owner, beside);
      NodeAccess::FileAt(*owner, copy.get(), place + (after != 0 ? 1 : 0));
      return static_cast<CzonBase*>(copy.release());
    });
  });
}

}  // extern "C"
