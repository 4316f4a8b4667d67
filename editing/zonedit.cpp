// Checks and positions of edits; the changes themselves are in tree/zontreeedit.cpp.
//
// The order in each operation: check the arguments, move the cursor of the builder out of what will
// be deleted, change the tree. The cursor of the handle is the only pointer to nodes outside the
// tree that the library must keep valid; node handles of the host end with their node. Tested by
// tests/edit_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#include "editing/zonedit.h"

#include "api/zonhandleaccess.h"
#include "tree/zonnodeaccess.h"

namespace zon {
namespace {

// Moves the cursor of the builder out of the node and everything below it.
void LeaveNode(CzonNode& node) {
  if (CzonData* handle = HandleAccess::OfTree(node)) handle->UpdateCurrentNode(&node);
}

// Converts a position among the siblings of a kind to a place among all children. `sibling` is the
// one at that position.
std::uint32_t PlaceFor(const CzonNamedNode& parent, const CzonNode* sibling, unsigned int position,
                       unsigned int count, ErrorCode missing) {
  if (position > count && position - count > 1) throw Refusal{missing};
  return sibling != nullptr ? NodeAccess::PlaceOf(parent, *sibling) : parent.GetNoNodes();
}

// Refuses a node that the index of its owner does not hold: after its removal the index and the
// list of children would disagree.
void RequireFiled(CzonNode& node) {
  if (node.GetOwner() != nullptr && !NodeAccess::IsFiled(node)) throw Refusal{kErrNode};
}

}  // namespace

CzonTargetList& RequireList(CzonNode& node) {
  if (auto* list = dynamic_cast<CzonTargetList*>(&node)) return *list;
  throw Refusal{kErrTargetList};
}

CzonSection& RequireSection(CzonNode& node) {
  if (auto* section = dynamic_cast<CzonSection*>(&node)) return *section;
  throw Refusal{kErrSection};
}

CzonKeyword& RequireKeyword(CzonNode& node) {
  if (auto* keyword = dynamic_cast<CzonKeyword*>(&node)) return *keyword;
  throw Refusal{kErrNamedNode};
}

CzonNode& RequireParam(CzonKeyword& keyword, unsigned int n) {
  if (CzonNode* param = keyword.NodeByNum(n)) return *param;
  throw Refusal{kErrParameter};
}

void InsertSection(CzonTargetList& parent, CzonSection* section, unsigned int position) {
  NodeAccess::FileAt(parent, section,
                     PlaceFor(parent, parent.SectionByNum(position), position,
                              parent.GetNoSections(), kErrSection));
}

void InsertKeyword(CzonSection& section, CzonKeyword* keyword, unsigned int position) {
  NodeAccess::FileAt(section, keyword,
                     PlaceFor(section, section.KeywordByNum(position), position,
                              section.GetNoKeywords(), kErrNamedNode));
}

void InsertParam(CzonKeyword& keyword, CzonParam* param, unsigned int position) {
  NodeAccess::FileAt(keyword, param,
                     PlaceFor(keyword, keyword.NodeByNum(position), position, keyword.GetNoNodes(),
                              kErrParameter));
}

void DeleteNode(CzonNode& node) {
  CzonNamedNode* owner = node.GetOwner();
  if (owner == nullptr) {
    throw Refusal{node.IsParam() ? kErrParameter : node.IsKeyword() ? kErrNamedNode : kErrSection};
  }
  RequireFiled(node);
  LeaveNode(node);
  Arena* const arena = NodeAccess::GetArena(*node.GetTopNode());
  NodeAccess::Unfile(&node);
  NodeAccess::Discard(&node, arena);
}

void RenameNode(CzonNamedNode& node, std::string_view name) {
  RequireFiled(node);
  NodeAccess::Rename(node, name);
}

namespace {

void PutInPlace(CzonNode& old, CzonParam* by) {
  Arena* const arena = NodeAccess::GetArena(*old.GetTopNode());
  NodeAccess::Replace(&old, by);
  NodeAccess::Discard(&old, arena);
}

}  // namespace

void ReplaceParam(CzonNode& old, CzonParam* by) {
  LeaveNode(old);
  PutInPlace(old, by);
}

void ReplaceParam(CzonNode& old, CzonParam* by, CzonData& handle) {
  handle.UpdateCurrentNode(&old);
  PutInPlace(old, by);
}

}  // namespace zon
