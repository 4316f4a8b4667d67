#include "saving/zonalignment.h"

#include <algorithm>

namespace zon {
namespace {

struct Keyed {
  AlignmentKey key;
  std::size_t number;
};

// The elements from `begin` to `end` that have a key, by key and then by number.
std::vector<Keyed> SortByKey(const std::vector<AlignmentKey>& keys, std::size_t begin,
                             std::size_t end) {
  std::vector<Keyed> sorted;
  for (std::size_t n = begin; n < end; ++n) {
    if (keys[n] != 0) sorted.push_back({keys[n], n});
  }
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
  return sorted;
}

// The k-th elements of each key on both sides, in the order of `before`.
std::vector<AlignedPair> FindCandidates(const std::vector<Keyed>& before,
                                        const std::vector<Keyed>& after) {
  std::vector<AlignedPair> candidates;
  std::size_t a = 0;
  AlignmentKey last = 0;
  for (const Keyed& element : before) {
    if (element.key != last) {
      while (a < after.size() && after[a].key < element.key) ++a;
    }
    last = element.key;
    if (a == after.size() || after[a].key != element.key) continue;
    candidates.push_back({element.number, after[a++].number});
  }
  std::sort(candidates.begin(), candidates.end(),
            [](const AlignedPair& x, const AlignedPair& y) { return x.before < y.before; });
  return candidates;
}

// Patience sorting: `ends[n]` is the candidate with the least `after` that ends a row of n + 1.
std::vector<AlignedPair> LongestIncreasing(const std::vector<AlignedPair>& candidates) {
  constexpr std::size_t kNone = SIZE_MAX;
  std::vector<std::size_t> ends;
  std::vector<std::size_t> previous(candidates.size(), kNone);
  for (std::size_t n = 0; n < candidates.size(); ++n) {
    const auto place = std::lower_bound(
        ends.begin(), ends.end(), candidates[n].after,
        [&](std::size_t end, std::size_t after) { return candidates[end].after < after; });
    if (place != ends.begin()) previous[n] = *(place - 1);
    if (place == ends.end()) {
      ends.push_back(n);
    } else {
      *place = n;
    }
  }
  std::vector<AlignedPair> row;
  for (std::size_t n = ends.empty() ? kNone : ends.back(); n != kNone; n = previous[n]) {
    row.push_back(candidates[n]);
  }
  std::reverse(row.begin(), row.end());
  return row;
}

}  // namespace

void Alignment::AlignGap(const Keys& before, const Keys& after, AlignedPair offset,
                         std::vector<AlignedPair>* pairs) {
  const auto areEqual = [&](std::size_t b, std::size_t a) {
    return before[b] != 0 && before[b] == after[a];
  };
  const auto add = [&](AlignedPair pair) {
    pairs->push_back({offset.before + pair.before, offset.after + pair.after});
  };
  std::size_t begin = 0;
  AlignedPair end{before.size(), after.size()};
  for (; begin < end.before && begin < end.after && areEqual(begin, begin); ++begin) {
    add({begin, begin});
  }
  while (end.before > begin && end.after > begin && areEqual(end.before - 1, end.after - 1)) {
    --end.before;
    --end.after;
  }
  const std::vector<AlignedPair> candidates =
      FindCandidates(SortByKey(before, begin, end.before), SortByKey(after, begin, end.after));
  for (const AlignedPair& pair : LongestIncreasing(candidates)) add(pair);
  for (; end.before < before.size(); ++end.before, ++end.after) add(end);
}

}  // namespace zon
