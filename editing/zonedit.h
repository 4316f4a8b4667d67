// Changing a tree: inserting, deleting and renaming nodes, and giving a value another value.
//
// An operation either completes or changes nothing. If an argument is wrong it throws a Refusal,
// which the exported functions turn into a code and a message. Before a node is deleted, the cursor
// of its handle is moved out of it.
#ifndef ZON_EDITING_ZONEDIT_H
#define ZON_EDITING_ZONEDIT_H

#include <memory>
#include <string_view>

#include "base/zonerror.h"
#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

class CzonData;

namespace zon {

// Why an edit is refused: one of the codes kErrTargetList, kErrSection, kErrNamedNode (of
// keywords), kErrParameter, and kErrNode of a node that the index of its owner does not hold.
struct Refusal {
  ErrorCode code;
};

// Return the node as the class that is required; throw a Refusal if it is of another class.
CzonTargetList& RequireList(CzonNode& node);                   // the root or a section
CzonSection& RequireSection(CzonNode& node);                   // not the root
CzonKeyword& RequireKeyword(CzonNode& node);                   // or a default definition
CzonNode& RequireParam(CzonKeyword& keyword, unsigned int n);  // as stored

// Positions count from 1 among the siblings of the same kind. The new node is inserted directly
// before the sibling at the position; 0, or one past the last sibling, appends it to all children.
void InsertSection(CzonTargetList& parent, CzonSection* section, unsigned int position);
void InsertKeyword(CzonSection& section, CzonKeyword* keyword, unsigned int position);
void InsertParam(CzonKeyword& keyword, CzonParam* param, unsigned int position);

// Removes the node from its tree and deletes it.
void DeleteNode(CzonNode& node);

// Renames a section or keyword.
void RenameNode(CzonNamedNode& node, std::string_view name);

// Replaces a value and deletes the old one. The handle is that of its tree; without it, it is
// searched.
void ReplaceParam(CzonNode& old, CzonParam* by);
void ReplaceParam(CzonNode& old, CzonParam* by, CzonData& handle);

}  // namespace zon

#endif
