// Visits a section and everything below it without recursion: trees can be deep.
#ifndef ZON_TREE_ZONTREEWALK_H
#define ZON_TREE_ZONTREEWALK_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tree/zonnodeaccess.h"

namespace zon {

// Calls `enter(section, level)` before the children of a section and `leave(section, level)` after
// them, and `line(node, level)` for each named child that is no section, in the order of the tree.
// `top` has level 0. The functions may change values, and nothing else of the tree.
template <class Enter, class Line, class Leave>
void WalkTree(const CzonNamedNode& top, Enter&& enter, Line&& line, Leave&& leave) {
  struct Position {
    const CzonNamedNode* section;
    std::uint32_t next;
  };
  std::vector<Position> path;
  const auto open = [&](const CzonNamedNode& section) {
    enter(section, path.size());
    path.push_back({&section, 0});
  };
  open(top);
  while (!path.empty()) {
    Position& position = path.back();
    const NodeSpan children = NodeAccess::Children(*position.section);
    if (position.next >= children.Size()) {
      const CzonNamedNode& section = *position.section;
      path.pop_back();
      leave(section, path.size());
      continue;
    }
    CzonNode* const child = children[position.next++];
    if (!NodeAccess::IsNamed(*child)) continue;
    auto& named = static_cast<CzonNamedNode&>(*child);
    if (NodeAccess::IsSection(named)) {
      open(named);
    } else {
      line(named, path.size());
    }
  }
}

// Calls `visit` for each keyword and default line below a section, in the order of the tree.
template <class F>
void WalkKeywords(const CzonNamedNode& top, F&& visit) {
  const auto ignore = [](const CzonNamedNode&, std::size_t) {};
  const auto line = [&](CzonNamedNode& node, std::size_t) {
    if (NodeAccess::IsKeyword(node)) visit(node);
  };
  WalkTree(top, ignore, line, ignore);
}

}  // namespace zon

#endif
