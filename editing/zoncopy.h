// Copies of sections and keywords, onto another node or beside it.
#ifndef ZON_EDITING_ZONCOPY_H
#define ZON_EDITING_ZONCOPY_H

#include "tree/zonnamno.h"

namespace zon {

// True for two sections, two keywords and two default definitions.
bool CanCopy(const CzonNode& source, const CzonNode& target);

// Makes `target` a copy of `source`, or leaves it as it is and throws. Requires CanCopy.
void CopyNode(const CzonNode& source, CzonNode& target);

// True if a copy of `source` can be a sibling of `reference`.
bool CanInsertCopy(const CzonNode& source, const CzonNode& reference);

// Inserts a copy of `source` directly before or after `reference`. Requires CanInsertCopy. Returns
// the copy, which is owned by its new parent.
CzonNode* InsertCopy(CzonNode& source, const CzonNode& reference, bool after);

}  // namespace zon

#endif
