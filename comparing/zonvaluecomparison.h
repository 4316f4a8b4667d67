// Whether values of two trees are the same data, and keys of values for finding what belongs
// together.
//
// Unlike for a save (saving/zonsavedvalue.h), remarks are no data, -0.0 is 0.0, and a real may
// differ by a tolerance. Keys know no tolerance: reals that differ within it have different keys.
// Tested by tests/zonxdiff_test.cpp and fuzz/diff_fuzz.cpp.
#ifndef ZON_COMPARING_ZONVALUECOMPARISON_H
#define ZON_COMPARING_ZONVALUECOMPARISON_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/zonvaluelist.h"
#include "saving/zonalignment.h"
#include "tree/zonnodeaccess.h"

namespace zon {

// The two trees of a comparison, as indexes.
enum Side : int { kBefore = 0, kAfter = 1 };

struct ComparisonRules {
  double relative = 0.0;  // tolerances of reals
  double absolute = 0.0;
  bool resolvesNames = false;  // file names are compared as resolved: the files are in two folders
  std::string fileNames[2];    // of each side, absolute
};

struct ValueKeys {
  AlignmentKey content;     // of all data
  AlignmentKey similarity;  // of all but the numbers of reals
};

// The values of a keyword. One without values has an empty place, which is null here.
class ValueSpan {
 public:
  explicit ValueSpan(const CzonNamedNode& keyword) : values_(NodeAccess::Children(keyword)) {}
  std::uint32_t Size() const { return values_.Size() > 0 ? values_.Size() : 1; }
  const CzonNode* operator[](std::uint32_t n) const {
    return values_.Size() > 0 ? values_[n] : nullptr;
  }

 private:
  NodeSpan values_;
};

// Whether a value is an empty place, with or without a remark.
bool IsEmptyPlace(const CzonNode& value);

class ValueComparison {
 public:
  explicit ValueComparison(ComparisonRules rules) : rules_(std::move(rules)) {}

  // Null is an empty place.
  bool AreSame(const CzonNode* before, const CzonNode* after) const;
  bool HaveSameValues(const CzonNamedNode& before, const CzonNamedNode& after) const;

  // Whether the values are the same because both are still the same text.
  bool HaveSameText(const CzonNamedNode& before, const CzonNamedNode& after) const;

  // Keys of the values of a keyword or definition, without its name. Makes no nodes.
  ValueKeys KeysOf(const CzonNamedNode& keyword, Side side);

  // Whether the keyword has a value other than an empty place.
  static bool HasValue(const CzonNamedNode& keyword);

 private:
  bool AreSameReals(const CzonNode& before, const CzonNode& after) const;
  bool AreSameNames(const CzonNode& before, const CzonNode& after) const;
  std::string NameOf(std::string_view text, Side side) const;
  void AddPlain(const PlainValue& value, Side side, ValueKeys* keys) const;
  void AddNode(const CzonNode& value, Side side, ValueKeys* keys) const;

  ComparisonRules rules_;
  std::vector<PlainValue> plain_;  // of one list, kept for its memory
};

}  // namespace zon

#endif
