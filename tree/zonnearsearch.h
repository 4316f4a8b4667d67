// Finding a node in a row of them from the place where it was seen last.
//
// Edits move nodes by a few places, so a search in both directions usually ends at once; the worst
// case is the whole row.
// Tested by tests/edit_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#ifndef ZON_TREE_ZONNEARSEARCH_H
#define ZON_TREE_ZONNEARSEARCH_H

#include <algorithm>
#include <cstdint>

class CzonNode;

namespace zon {

// The place of the node in `row`, which has `size` nodes; `size` if it is none of them.
template <class Row>
std::uint32_t FindNear(const Row& row, std::uint32_t size, const CzonNode* node,
                       std::uint32_t guess) {
  std::uint32_t after = std::min(guess, size);
  std::uint32_t before = after;
  while (after < size || before > 0) {
    if (after < size && row[after++] == node) return after - 1;
    if (before > 0 && row[--before] == node) return before;
  }
  return size;
}

}  // namespace zon

#endif
