// The differences of two trees, found in one walk over both. Tested by tests/zonxdiff_test.cpp and
// fuzz/diff_fuzz.cpp.
#ifndef ZON_COMPARING_ZONTREEDIFFERENCE_H
#define ZON_COMPARING_ZONTREEDIFFERENCE_H

#include <cstddef>

#include "api/zonx.h"
#include "comparing/zonvaluecomparison.h"

class CzonNamedNode;

namespace zon {

// The host's function; null for none.
struct DifferenceVisitor {
  void (*function)(const zonxDifference* difference, void* context) = nullptr;
  void* context = nullptr;
};

// Two roots, or two sections, whose own names are not compared.
struct ComparedTrees {
  const CzonNamedNode* before;
  const CzonNamedNode* after;
};

// Passes each difference to the visitor and returns their number. `key` is the name of the keyword
// by whose values sections of one name are paired; null for none. Throws std::bad_alloc.
std::size_t VisitDifferences(const ComparedTrees& trees, const ComparisonRules& rules,
                             const char* key, const DifferenceVisitor& visitor);

}  // namespace zon

#endif
