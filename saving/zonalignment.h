// Which elements of two lists belong together, where some were inserted, removed or changed.
//
// The pairs increase in both lists. They are found in several passes, from the surest criterion to
// the weakest: each pass has a key for every element and looks only into the gaps that the passes
// before have left. In a gap, the common beginning and the common end are paired first. Of the
// rest, the k-th elements of a key on both sides are candidates, and the longest increasing row of
// candidates is taken. So a pass takes n log n steps, however often a key occurs. A key that two
// different elements share makes the pairs less apt, never wrong: the caller compares what is
// paired.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONALIGNMENT_H
#define ZON_SAVING_ZONALIGNMENT_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zon {

// A key of 0 aligns with nothing.
using AlignmentKey = std::uint64_t;

struct AlignedPair {
  std::size_t before;
  std::size_t after;
};

// An element of a list, by its key.
struct KeyedElement {
  AlignmentKey key;
  std::size_t number;
};

// The elements from `begin` to `end` that have a key, by key and then by number.
std::vector<KeyedElement> SortByKey(const std::vector<AlignmentKey>& keys, std::size_t begin,
                                    std::size_t end);

// The longest row of pairs that increase on both sides. The candidates increase in `before`.
std::vector<AlignedPair> LongestIncreasing(const std::vector<AlignedPair>& candidates);

class Alignment {
 public:
  Alignment(std::size_t before, std::size_t after) : before_(before), after_(after) {}

  // Begins with the longest row of pairs that are known.
  Alignment(std::size_t before, std::size_t after, const std::vector<AlignedPair>& known)
      : before_(before), after_(after), pairs_(LongestIncreasing(known)) {}

  // Pairs elements in the gaps. `beforeKey` and `afterKey` return the key of an element by its
  // number.
  template <class BeforeKey, class AfterKey>
  void Refine(BeforeKey&& beforeKey, AfterKey&& afterKey) {
    std::vector<AlignedPair> refined;
    refined.reserve(pairs_.size());
    AlignedPair from{0, 0};
    for (std::size_t at = 0; at <= pairs_.size(); ++at) {
      const bool isLast = at == pairs_.size();
      const AlignedPair to = isLast ? AlignedPair{before_, after_} : pairs_[at];
      if (from.before < to.before && from.after < to.after) {
        Keys before;
        Keys after;
        for (std::size_t n = from.before; n < to.before; ++n) before.push_back(beforeKey(n));
        for (std::size_t n = from.after; n < to.after; ++n) after.push_back(afterKey(n));
        AlignGap(before, after, from, &refined);
      }
      if (isLast) break;
      refined.push_back(to);
      from = {to.before + 1, to.after + 1};
    }
    pairs_.swap(refined);
  }

  const std::vector<AlignedPair>& Pairs() const { return pairs_; }

 private:
  using Keys = std::vector<AlignmentKey>;

  static void AlignGap(const Keys& before, const Keys& after, AlignedPair offset,
                       std::vector<AlignedPair>* pairs);

  std::size_t before_;
  std::size_t after_;
  std::vector<AlignedPair> pairs_;
};

}  // namespace zon

#endif
