// Copies of nodes for another tree, of the classes of which a loader makes nodes: a value that
// refers to a variable of the host, or is of its class, becomes a plain one. Tested by
// tests/zonxmerge_test.cpp.
#ifndef ZON_COMPARING_ZONOVERLAYNODES_H
#define ZON_COMPARING_ZONOVERLAYNODES_H

#include <memory>
#include <string>
#include <utility>

#include "tree/zonkeyword.h"
#include "tree/zonsection.h"
#include "zonx/zonnewvalue.h"

namespace zon {

// Whether the value refers to a variable of the host.
bool IsReference(const CzonNode& value);

class NodeCopier {
 public:
  // File names in the copies are relative to the folder of `to` instead of that of `from`, if these
  // are in two folders. Both are absolute; one without a name has no folder.
  NodeCopier(std::string from, std::string to);

  bool MovesNames() const { return movesNames_; }

  // The value with its remark. Null is an empty place.
  NewValue CopyValue(const CzonNode* value, bool isInDefinition) const;

  // A keyword or definition, and a section with all that is in it, with flags and remarks.
  // Iterative.
  std::unique_ptr<CzonKeyword> CopyLine(const CzonNamedNode& line) const;
  std::unique_ptr<CzonSection> CopySection(const CzonNamedNode& section) const;

 private:
  NewValue CopyData(const CzonNode& value, bool isInDefinition) const;

  std::string from_;
  std::string to_;
  bool movesNames_;
};

}  // namespace zon

#endif
