// Changes of a tree for the time of a save: taken back unless they are kept.
// Tested by tests/zonsave_test.cpp.
#ifndef ZON_SAVING_ZONTREECHANGES_H
#define ZON_SAVING_ZONTREECHANGES_H

#include <memory>
#include <string_view>
#include <vector>

#include "tree/zonnodetext.h"
#include "tree/zonparam.h"

class CzonKeyword;
class CzonNamedNode;

namespace zon {

class TreeChanges {
 public:
  TreeChanges() = default;
  TreeChanges(const TreeChanges&) = delete;
  TreeChanges& operator=(const TreeChanges&) = delete;
  ~TreeChanges();

  // All throw std::bad_alloc and then have changed nothing.

  // Gives a value another text.
  void SetText(CzonParam& value, std::string_view text);

  // Puts another value in the place of a value.
  void Replace(CzonParam& value, std::unique_ptr<CzonParam> by);

  // Appends a node to the children of another.
  void Append(CzonNamedNode& owner, std::unique_ptr<CzonNode> node);

  // The changes stay.
  void Keep();

 private:
  enum class Kind { kText, kReplaced, kAppended };

  struct Change {
    Kind kind;
    CzonNode* node;    // that is in the tree now
    CzonNode* former;  // that was replaced
    Text text;         // that the node had
  };

  Change& Add(Kind kind, CzonNode* node, CzonNode* former);
  static void Undo(Change& change);

  std::vector<Change> changes_;
};

}  // namespace zon

#endif
