// Each line gets a number, equal lines the same. Pairs of equal lines, which increase in both
// texts, are found in passes: each looks into the gaps that the passes before have left, pairs the
// common beginning and the common end of a gap, and of the rest the longest increasing row of the
// lines that occur once on both sides (a patience diff). The last but one pass pairs repeated lines
// too, by their order. Every pass takes n log n steps and their number is limited. What has no pair
// is removed or added.
// Tested by tests/fmt.t, which applies the differences with patch.
#include "tool/unifieddiff.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "tool/console.h"

namespace tool {
namespace {

using Lines = std::vector<std::string_view>;
using Numbers = std::vector<std::size_t>;

struct Pair {
  std::size_t before;
  std::size_t after;
};

// Lines with their line ends. The last one may have none.
Lines SplitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return lines;
}

// The numbers of the lines of both texts. Lines are sorted, not hashed, because texts can be chosen
// so that hashes collide.
Numbers NumberLines(const Lines& before, const Lines& after) {
  const auto line = [&](std::size_t n) {
    return n < before.size() ? before[n] : after[n - before.size()];
  };
  Numbers order(before.size() + after.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return line(a) < line(b); });
  Numbers numbers(order.size());
  std::size_t number = 0;
  for (std::size_t n = 0; n < order.size(); ++n) {
    if (n > 0 && line(order[n]) != line(order[n - 1])) ++number;
    numbers[order[n]] = number;
  }
  return numbers;
}

// Patience sorting: `ends[n]` is the candidate with the least `after` that ends a row of n + 1.
std::vector<Pair> LongestIncreasing(const std::vector<Pair>& candidates) {
  constexpr std::size_t kNone = SIZE_MAX;
  Numbers ends;
  Numbers previous(candidates.size(), kNone);
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
  std::vector<Pair> row;
  for (std::size_t n = ends.empty() ? kNone : ends.back(); n != kNone; n = previous[n]) {
    row.push_back(candidates[n]);
  }
  std::reverse(row.begin(), row.end());
  return row;
}

class Matcher {
 public:
  Matcher(const Lines& before, const Lines& after)
      : numbers_(NumberLines(before, after)), middle_(before.size()) {}

  // The pairs, and at last the ends of both texts.
  std::vector<Pair> Match() {
    pairs_ = {{middle_, numbers_.size() - middle_}};
    constexpr int kMostPasses = 16;
    for (int pass = 0; pass < kMostPasses; ++pass) {
      if (!Refine(false)) break;
    }
    Refine(true);
    Refine(false);
    return pairs_;
  }

 private:
  bool AreEqual(Pair pair) const { return numbers_[pair.before] == numbers_[middle_ + pair.after]; }

  // Returns whether a pair was added.
  bool Refine(bool withRepeated) {
    std::vector<Pair> refined;
    refined.reserve(pairs_.size());
    Pair from{0, 0};
    for (const Pair& to : pairs_) {
      if (from.before < to.before && from.after < to.after) {
        AlignGap(from, to, withRepeated, refined);
      }
      refined.push_back(to);
      from = {to.before + 1, to.after + 1};
    }
    const bool isChanged = refined.size() > pairs_.size();
    pairs_.swap(refined);
    return isChanged;
  }

  void AlignGap(Pair from, Pair to, bool withRepeated, std::vector<Pair>& pairs) const {
    for (; from.before < to.before && from.after < to.after && AreEqual(from);
         ++from.before, ++from.after) {
      pairs.push_back(from);
    }
    Pair end = to;
    while (end.before > from.before && end.after > from.after &&
           AreEqual({end.before - 1, end.after - 1})) {
      --end.before;
      --end.after;
    }
    for (const Pair& pair : LongestIncreasing(FindCandidates(from, end, withRepeated))) {
      pairs.push_back(pair);
    }
    for (; end.before < to.before; ++end.before, ++end.after) pairs.push_back(end);
  }

  // The lines from `begin` to `end` of both texts, by number and then by place.
  Numbers Sort(std::size_t begin, std::size_t end) const {
    Numbers sorted(end - begin);
    std::iota(sorted.begin(), sorted.end(), begin);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](std::size_t a, std::size_t b) { return numbers_[a] < numbers_[b]; });
    return sorted;
  }

  // Equal lines by their place in the first text: those that occur once on both sides, or with
  // repeated ones the k-th of both sides.
  std::vector<Pair> FindCandidates(Pair from, Pair to, bool withRepeated) const {
    const Numbers before = Sort(from.before, to.before);
    const Numbers after = Sort(middle_ + from.after, middle_ + to.after);
    std::vector<Pair> candidates;
    for (std::size_t b = 0, a = 0; b < before.size() && a < after.size();) {
      const std::size_t number = std::max(numbers_[before[b]], numbers_[after[a]]);
      b = SkipBelow(before, b, number);
      a = SkipBelow(after, a, number);
      const std::size_t nextBefore = SkipBelow(before, b, number + 1);
      const std::size_t nextAfter = SkipBelow(after, a, number + 1);
      if (withRepeated || (nextBefore - b == 1 && nextAfter - a == 1)) {
        for (; b < nextBefore && a < nextAfter; ++b, ++a) {
          candidates.push_back({before[b], after[a] - middle_});
        }
      }
      b = nextBefore;
      a = nextAfter;
    }
    std::sort(candidates.begin(), candidates.end(),
              [](const Pair& x, const Pair& y) { return x.before < y.before; });
    return candidates;
  }

  std::size_t SkipBelow(const Numbers& sorted, std::size_t at, std::size_t number) const {
    while (at < sorted.size() && numbers_[sorted[at]] < number) ++at;
    return at;
  }

  Numbers numbers_;     // of the lines of both texts, one after the other
  std::size_t middle_;  // where those of the second text begin
  std::vector<Pair> pairs_;
};

// Lines that were replaced: `begin` to `end` of both texts.
struct Change {
  Pair begin;
  Pair end;
};

std::vector<Change> FindChanges(const std::vector<Pair>& pairs) {
  std::vector<Change> changes;
  Pair from{0, 0};
  for (const Pair& pair : pairs) {
    if (from.before < pair.before || from.after < pair.after) changes.push_back({from, pair});
    from = {pair.before + 1, pair.after + 1};
  }
  return changes;
}

class Printer {
 public:
  Printer(std::ostream& out, const Lines& before, const Lines& after)
      : out_(out), before_(before), after_(after) {}

  void Print(const std::vector<Change>& changes) {
    for (auto first = changes.begin(); first != changes.end();) {
      auto last = first + 1;
      while (last != changes.end() && last->begin.before - (last - 1)->end.before <= 2 * kContext) {
        ++last;
      }
      PrintHunk(first, last);
      first = last;
    }
  }

 private:
  using Place = std::vector<Change>::const_iterator;
  static constexpr std::size_t kContext = 3;

  void PrintHunk(Place first, Place last) {
    const std::size_t leading = std::min(first->begin.before, kContext);
    const Pair end = (last - 1)->end;
    const std::size_t trailing = std::min(before_.size() - end.before, kContext);
    out_ << "@@ -";
    PrintRange(first->begin.before - leading, end.before + trailing);
    out_ << " +";
    PrintRange(first->begin.after - leading, end.after + trailing);
    out_ << " @@\n";
    std::size_t from = first->begin.before - leading;
    for (; first != last; ++first) {
      PrintLines(' ', before_, from, first->begin.before);
      PrintLines('-', before_, first->begin.before, first->end.before);
      PrintLines('+', after_, first->begin.after, first->end.after);
      from = first->end.before;
    }
    PrintLines(' ', before_, from, from + trailing);
  }

  // Line numbers count from 1; an empty range has that of the line before it.
  void PrintRange(std::size_t begin, std::size_t end) {
    out_ << (begin < end ? begin + 1 : begin);
    if (end - begin != 1) out_ << ',' << end - begin;
  }

  void PrintLines(char mark, const Lines& lines, std::size_t begin, std::size_t end) {
    for (; begin < end; ++begin) {
      out_ << mark << lines[begin];
      if (lines[begin].back() != '\n') out_ << "\n\\ No newline at end of file\n";
    }
  }

  std::ostream& out_;
  const Lines& before_;
  const Lines& after_;
};

}  // namespace

void PrintUnifiedDiff(std::ostream& out, const std::string& name, std::string_view before,
                      std::string_view after) {
  if (before == after) return;
  const Lines linesBefore = SplitLines(before);
  const Lines linesAfter = SplitLines(after);
  const std::string shown = Printable(name);
  out << "--- " << shown << "\n+++ " << shown << '\n';
  Printer(out, linesBefore, linesAfter)
      .Print(FindChanges(Matcher(linesBefore, linesAfter).Match()));
}

}  // namespace tool
