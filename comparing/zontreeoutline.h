// The sections of a tree in the order of a walk, parents before children, with keys of their
// content. The sections in a section follow it, each directly after the ones in the section before
// it. So what belongs to a section is one range of numbers, and keys need no recursion. A section's
// keys are made at most once.
// Tested by tests/zonxdiff_test.cpp and fuzz/diff_fuzz.cpp.
#ifndef ZON_COMPARING_ZONTREEOUTLINE_H
#define ZON_COMPARING_ZONTREEOUTLINE_H

#include <cstddef>
#include <vector>

#include "comparing/zonsiblingpairs.h"
#include "comparing/zonvaluecomparison.h"

class CzonNamedNode;

namespace zon {

class TreeOutline {
 public:
  // `top` has the number 0.
  TreeOutline(const CzonNamedNode& top, Side side);

  const CzonNamedNode& Section(std::size_t number) const { return *sections_[number].node; }

  // The sections in a section: from First to before End, each to the next by End of it.
  static std::size_t First(std::size_t number) { return number + 1; }
  std::size_t End(std::size_t number) const { return sections_[number].end; }

  // Keys of everything in a section, without its own name.
  const SiblingKeys& KeysOf(std::size_t number, ValueComparison& values);

 private:
  struct Entry {
    const CzonNamedNode* node;
    std::size_t end;
    std::size_t keys;  // where in keys_; 0 if they are not made
  };

  SiblingKeys MakeKeys(std::size_t number, ValueComparison& values) const;

  Side side_;
  std::vector<Entry> sections_;
  std::vector<SiblingKeys> keys_;
};

}  // namespace zon

#endif
