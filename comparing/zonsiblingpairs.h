// Which keywords, or which sections, of two sections belong together.
//
// Only nodes of one name and class are paired. A name that both sides have once is paired whatever
// it holds. Namesakes are paired by passes, from the surest criterion to the weakest; each looks
// only at what the passes before have left: the identity that the host names (a key keyword), equal
// content, content without the order in it, and, between the namesakes that are paired so far,
// content without reals and then the instance number. By the first three a node is found that was
// moved among its namesakes. A pass sorts by keys and aligns (Alignment), so it takes n log n
// steps. The result for (b, a) is that for (a, b) mirrored. Keys of different contents can be the
// same: then pairs are less apt, never wrong.
// Tested by tests/zonxdiff_test.cpp and fuzz/diff_fuzz.cpp.
#ifndef ZON_COMPARING_ZONSIBLINGPAIRS_H
#define ZON_COMPARING_ZONSIBLINGPAIRS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "saving/zonalignment.h"

class CzonNamedNode;

namespace zon {

struct SiblingKeys {
  AlignmentKey content = 0;     // of all data
  AlignmentKey unordered = 0;   // the same for any order of what is in it; that of the content if
                                // there is no other order
  AlignmentKey similarity = 0;  // of all but the numbers of reals
  AlignmentKey identity = 0;    // of the values of the key keyword; 0 for none
};

struct Sibling {
  const CzonNamedNode* node = nullptr;
  std::size_t number = 0;   // for the caller
  AlignmentKey head = 0;    // of name and class
  bool isRepeated = false;  // a side has several of that name: the keys are needed
  SiblingKeys keys = {};
};
using Siblings = std::vector<Sibling>;

constexpr std::size_t kNone = SIZE_MAX;

// One element of the common order of two lists: a pair, or a sibling without a partner.
struct SiblingStep {
  std::size_t before;  // kNone for one that is added
  std::size_t after;   // kNone for one that is removed
  bool isMoved;        // a pair that is not in the longest row of pairs that increase
};

// Whether the nodes have one name and class.
bool AreNamesakes(const CzonNamedNode& a, const CzonNamedNode& b);

// Sets isRepeated of all, by their heads.
void FindRepeated(Siblings* before, Siblings* after);

// Pairs the siblings. The steps are in the order of `after`; those that are removed are before the
// next pair that was not moved.
std::vector<SiblingStep> AlignSiblings(const Siblings& before, const Siblings& after);

}  // namespace zon

#endif
