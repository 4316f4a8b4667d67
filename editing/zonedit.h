// Changing a tree: inserting, deleting and renaming nodes, and giving a value another value.
//
// Every operation does the whole of its work or nothing. What was wrong is thrown as a Refusal,
// which the exported functions turn into code and text. Before a node goes, the handle's cursor
// leaves it.
#ifndef ZON_EDITING_ZONEDIT_H
#define ZON_EDITING_ZONEDIT_H

#include <memory>
#include <string_view>

#include "base/zonerror.h"
#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

namespace zon {

// Why an edit is refused: one of the codes kErrTargetList, kErrSection, kErrNamedNode (of
// keywords), kErrParameter, and kErrNode of a node that the index of its owner does not hold.
struct Refusal {
  ErrorCode code;
};

// The node as what is needed here; a Refusal otherwise.
CzonTargetList& RequireList(CzonNode& node);                   // the root or a section
CzonSection& RequireSection(CzonNode& node);                   // not the root
CzonKeyword& RequireKeyword(CzonNode& node);                   // or a default definition
CzonNode& RequireParam(CzonKeyword& keyword, unsigned int n);  // as stored

// Positions count from 1 among the siblings of the kind; 0, or one past the last, is the very end
// of the children. The new node stands directly before the sibling whose place it takes.
void InsertSection(CzonTargetList& parent, CzonSection* section, unsigned int position);
void InsertKeyword(CzonSection& section, CzonKeyword* keyword, unsigned int position);
void InsertParam(CzonKeyword& keyword, CzonParam* param, unsigned int position);

// Takes the node out of its tree and deletes it.
void DeleteNode(CzonNode& node);

// Gives a section or keyword another name.
void RenameNode(CzonNamedNode& node, std::string_view name);

// Puts the new value in the place of an old one, which is deleted.
void ReplaceParam(CzonNode& old, CzonParam* by);

}  // namespace zon

#endif
