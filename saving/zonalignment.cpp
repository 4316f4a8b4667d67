#include "saving/zonalignment.h"

#include <algorithm>
#include <numeric>

namespace zon {
namespace {

constexpr std::size_t kNone = SIZE_MAX;

// The k-th elements of each key on both sides, in the order of `before`, of which there are
// `count`.
std::vector<AlignedPair> FindCandidates(const std::vector<KeyedElement>& before,
                                        const std::vector<KeyedElement>& after, std::size_t count) {
  std::vector<std::size_t> partners(count, kNone);
  std::size_t a = 0;
  AlignmentKey last = 0;
  for (const KeyedElement& element : before) {
    if (element.key != last) {
      while (a < after.size() && after[a].key < element.key) ++a;
    }
    last = element.key;
    if (a == after.size() || after[a].key != element.key) continue;
    partners[element.number] = after[a++].number;
  }
  std::vector<AlignedPair> candidates;
  for (std::size_t n = 0; n < count; ++n) {
    if (partners[n] != kNone) candidates.push_back({n, partners[n]});
  }
  return candidates;
}

}  // namespace

// Keys are hashes, so their first bits share them out evenly: the buckets are small. Keys that are
// not cost what a comparison sort costs.
std::vector<KeyedElement> SortByKey(const std::vector<AlignmentKey>& keys, std::size_t begin,
                                    std::size_t end) {
  int bits = 0;
  while (bits < 16 && (end - begin) >> (bits + 2) != 0) ++bits;
  const auto bucketOf = [&](AlignmentKey key) { return bits > 0 ? key >> (64 - bits) : 0; };
  std::vector<std::size_t> ends((std::size_t{1} << bits) + 1);
  for (std::size_t n = begin; n < end; ++n) {
    if (keys[n] != 0) ++ends[bucketOf(keys[n]) + 1];
  }
  std::partial_sum(ends.begin(), ends.end(), ends.begin());
  std::vector<KeyedElement> sorted(ends.back());
  for (std::size_t n = begin; n < end; ++n) {
    if (keys[n] != 0) sorted[ends[bucketOf(keys[n])]++] = {keys[n], n};
  }
  const auto isLess = [](const KeyedElement& a, const KeyedElement& b) {
    return a.key != b.key ? a.key < b.key : a.number < b.number;
  };
  auto from = sorted.begin();
  for (std::size_t bucket = 0; bucket + 1 < ends.size(); ++bucket) {
    const auto to = sorted.begin() + static_cast<std::ptrdiff_t>(ends[bucket]);
    if (!std::is_sorted(from, to, isLess)) std::sort(from, to, isLess);
    from = to;
  }
  return sorted;
}

// Patience sorting: `ends[n]` is the candidate with the least `after` that ends a row of n + 1.
std::vector<AlignedPair> LongestIncreasing(const std::vector<AlignedPair>& candidates) {
  std::vector<std::size_t> ends;
  std::vector<std::size_t> previous(candidates.size(), kNone);
  for (std::size_t n = 0; n < candidates.size(); ++n) {
    const bool isLast = ends.empty() || candidates[ends.back()].after < candidates[n].after;
    const auto place = isLast ? ends.end()
                              : std::lower_bound(ends.begin(), ends.end(), candidates[n].after,
                                                 [&](std::size_t end, std::size_t after) {
                                                   return candidates[end].after < after;
                                                 });
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
  const std::vector<AlignedPair> candidates = FindCandidates(
      SortByKey(before, begin, end.before), SortByKey(after, begin, end.after), end.before);
  for (const AlignedPair& pair : LongestIncreasing(candidates)) add(pair);
  for (; end.before < before.size(); ++end.before, ++end.after) add(end);
}

}  // namespace zon
