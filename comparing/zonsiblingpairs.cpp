#include "comparing/zonsiblingpairs.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "base/zonchars.h"
#include "saving/zonsavedtree.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

using Keys = std::vector<AlignmentKey>;
using Numbers = std::vector<std::size_t>;

// The numbers of elements with a key, by key and then by number.
Numbers SortByKey(const Keys& keys) {
  Numbers numbers;
  numbers.reserve(keys.size());
  for (std::size_t n = 0; n < keys.size(); ++n) {
    if (keys[n] != 0) numbers.push_back(n);
  }
  std::stable_sort(numbers.begin(), numbers.end(),
                   [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  return numbers;
}

// The elements of one key on both sides.
struct Group {
  Numbers before;
  Numbers after;
};

// Calls `visit` for each group.
template <class F>
void ForEachGroup(const Keys& before, const Keys& after, F&& visit) {
  const Numbers numbers = SortByKey(before);
  const Numbers others = SortByKey(after);
  std::size_t b = 0;
  std::size_t a = 0;
  Group group;
  while (b < numbers.size() || a < others.size()) {
    const AlignmentKey left = b < numbers.size() ? before[numbers[b]] : AlignmentKey{0} - 1;
    const AlignmentKey right = a < others.size() ? after[others[a]] : AlignmentKey{0} - 1;
    const AlignmentKey key = std::min(left, right);
    group.before.clear();
    group.after.clear();
    for (; b < numbers.size() && before[numbers[b]] == key; ++b) group.before.push_back(numbers[b]);
    for (; a < others.size() && after[others[a]] == key; ++a) group.after.push_back(others[a]);
    visit(group);
  }
}

Keys HeadsOf(const Siblings& siblings) {
  Keys heads;
  heads.reserve(siblings.size());
  for (const Sibling& sibling : siblings) heads.push_back(sibling.head);
  return heads;
}

// A name that is not repeated needs no content.
AlignmentKey KeyWith(const Sibling& sibling, AlignmentKey content) {
  return sibling.isRepeated ? MixKeys(sibling.head, content) | 1 : sibling.head;
}

// Of an element that has a partner, the number of the pair.
AlignmentKey KeyOfPair(std::size_t partner, std::size_t number) {
  return partner == kNone ? 0 : static_cast<AlignmentKey>(number) + 1;
}

Numbers AllNumbers(std::size_t count) {
  Numbers numbers(count);
  std::iota(numbers.begin(), numbers.end(), std::size_t{0});
  return numbers;
}

AlignmentKey KeyOfContent(const Sibling& sibling) {
  return KeyWith(sibling, sibling.keys.content);
}

bool HaveSameName(const CzonNamedNode& a, const CzonNamedNode& b) {
  return KindOf(a) == KindOf(b) &&
         EqualNoCase(NodeAccess::GetNameView(a), NodeAccess::GetNameView(b));
}

// One run over two lists. A node is free until it has a partner, or is known to have none.
class Pairing {
 public:
  Pairing(const Siblings& before, const Siblings& after)
      : before_(before),
        after_(after),
        partners_(before.size(), kNone),
        partnersOfAfter_(after.size(), kNone),
        isFree_(before.size(), true),
        isFreeAfter_(after.size(), true) {}

  std::vector<std::size_t> Run() {
    PairByIdentity();
    PairByKey(KeyOfContent);
    PairByKey([](const Sibling& sibling) { return KeyWith(sibling, sibling.keys.unordered); });
    PairNamesakes();
    for (std::size_t n = 0; n < before_.size(); ++n) {
      const std::size_t partner = partners_[n];
      if (partner == kNone) continue;
      if (!HaveSameName(*before_[n].node, *after_[partner].node)) partners_[n] = kNone;
    }
    return std::move(partners_);
  }

 private:
  void Pair(std::size_t before, std::size_t after) {
    partners_[before] = after;
    partnersOfAfter_[after] = before;
    isFree_[before] = false;
    isFreeAfter_[after] = false;
  }

  bool HasFree() const {
    return std::find(isFree_.begin(), isFree_.end(), true) != isFree_.end() &&
           std::find(isFreeAfter_.begin(), isFreeAfter_.end(), true) != isFreeAfter_.end();
  }

  void PairByIdentity();
  void PairIdentities(const Group& namesakes);
  template <class KeyOf>
  void PairByKey(KeyOf&& keyOf);
  void PairNamesakes();

  // Aligns what is paired as far as the pairs increase, and then what is free by the keys.
  template <class KeyOf>
  void Align(const Group& elements, KeyOf&& keyOf);

  const Siblings& before_;
  const Siblings& after_;
  std::vector<std::size_t> partners_;
  std::vector<std::size_t> partnersOfAfter_;
  std::vector<bool> isFree_;
  std::vector<bool> isFreeAfter_;
};

void Pairing::PairByIdentity() {
  const auto hasIdentity = [](const Sibling& sibling) { return sibling.keys.identity != 0; };
  if (std::none_of(before_.begin(), before_.end(), hasIdentity)) return;
  ForEachGroup(HeadsOf(before_), HeadsOf(after_),
               [this](const Group& namesakes) { PairIdentities(namesakes); });
}

// An identity that a side has twice is none.
void Pairing::PairIdentities(const Group& namesakes) {
  if (namesakes.before.empty() || namesakes.after.empty()) return;
  if (!before_[namesakes.before[0]].isRepeated) return;
  Keys before;
  Keys after;
  for (const std::size_t n : namesakes.before) before.push_back(before_[n].keys.identity);
  for (const std::size_t n : namesakes.after) after.push_back(after_[n].keys.identity);
  ForEachGroup(before, after, [&](const Group& same) {
    if (same.before.size() > 1 || same.after.size() > 1) return;
    if (same.before.size() == same.after.size()) {
      Pair(namesakes.before[same.before[0]], namesakes.after[same.after[0]]);
    } else if (same.after.empty()) {
      isFree_[namesakes.before[same.before[0]]] = false;
    } else {
      isFreeAfter_[namesakes.after[same.after[0]]] = false;
    }
  });
}

template <class KeyOf>
void Pairing::Align(const Group& elements, KeyOf&& keyOf) {
  const Numbers& before = elements.before;
  const Numbers& after = elements.after;
  Alignment alignment(before.size(), after.size());
  alignment.Refine([&](std::size_t n) { return KeyOfPair(partners_[before[n]], before[n]); },
                   [&](std::size_t n) {
                     const std::size_t partner = partnersOfAfter_[after[n]];
                     return KeyOfPair(partner, partner);
                   });
  // The second time finds those of several equal ones that the first has left between others.
  for (int round = 0; round < 2; ++round) {
    alignment.Refine(
        [&](std::size_t n) { return isFree_[before[n]] ? keyOf(before_[before[n]]) : 0; },
        [&](std::size_t n) { return isFreeAfter_[after[n]] ? keyOf(after_[after[n]]) : 0; });
  }
  for (const AlignedPair& pair : alignment.Pairs()) {
    if (isFree_[before[pair.before]]) Pair(before[pair.before], after[pair.after]);
  }
}

template <class KeyOf>
void Pairing::PairByKey(KeyOf&& keyOf) {
  if (!HasFree()) return;
  Align({AllNumbers(before_.size()), AllNumbers(after_.size())}, keyOf);
  if (!HasFree()) return;
  Keys before(before_.size(), 0);
  Keys after(after_.size(), 0);
  for (std::size_t n = 0; n < before.size(); ++n) {
    if (isFree_[n]) before[n] = keyOf(before_[n]);
  }
  for (std::size_t n = 0; n < after.size(); ++n) {
    if (isFreeAfter_[n]) after[n] = keyOf(after_[n]);
  }
  ForEachGroup(before, after, [this](const Group& equal) {
    const std::size_t count = std::min(equal.before.size(), equal.after.size());
    for (std::size_t n = 0; n < count; ++n) Pair(equal.before[n], equal.after[n]);
  });
}

void Pairing::PairNamesakes() {
  if (!HasFree()) return;
  const auto isFree = [this](std::size_t n) { return isFree_[n]; };
  const auto isFreeAfter = [this](std::size_t n) { return isFreeAfter_[n]; };
  ForEachGroup(HeadsOf(before_), HeadsOf(after_), [&](const Group& namesakes) {
    const auto& [before, after] = namesakes;
    if (std::none_of(before.begin(), before.end(), isFree)) return;
    if (std::none_of(after.begin(), after.end(), isFreeAfter)) return;
    Align(namesakes, [](const Sibling& sibling) { return sibling.keys.similarity | 1; });
    Align(namesakes, [](const Sibling&) { return AlignmentKey{1}; });
  });
}

Keys KeysOf(const Siblings& siblings) {
  Keys keys;
  keys.reserve(siblings.size());
  for (const Sibling& sibling : siblings) keys.push_back(KeyOfContent(sibling));
  return keys;
}

// Where a pass has a choice it depends on the order of the sides. So the order is taken from the keys: the
// result for (b, a) is that for (a, b) mirrored.
std::vector<std::size_t> FindPartners(const Siblings& before, const Siblings& after) {
  if (KeysOf(before) <= KeysOf(after)) return Pairing(before, after).Run();
  const std::vector<std::size_t> mirrored = Pairing(after, before).Run();
  std::vector<std::size_t> partners(before.size(), kNone);
  for (std::size_t n = 0; n < mirrored.size(); ++n) {
    if (mirrored[n] != kNone) partners[mirrored[n]] = n;
  }
  return partners;
}

// For each of `before` whether its pair is in the longest row of pairs that increase on both sides.
std::vector<bool> FindUnmoved(const std::vector<std::size_t>& partners, std::size_t countAfter) {
  Keys after(countAfter, 0);
  for (std::size_t n = 0; n < partners.size(); ++n) {
    if (partners[n] != kNone) after[partners[n]] = n + 1;
  }
  Alignment alignment(partners.size(), countAfter);
  alignment.Refine([&](std::size_t n) { return KeyOfPair(partners[n], n); },
                   [&](std::size_t n) { return after[n]; });
  std::vector<bool> isUnmoved(partners.size());
  for (const AlignedPair& pair : alignment.Pairs()) isUnmoved[pair.before] = true;
  return isUnmoved;
}

}  // namespace

void FindRepeated(Siblings* before, Siblings* after) {
  ForEachGroup(HeadsOf(*before), HeadsOf(*after), [&](const Group& namesakes) {
    if (namesakes.before.size() < 2 && namesakes.after.size() < 2) return;
    for (const std::size_t n : namesakes.before) (*before)[n].isRepeated = true;
    for (const std::size_t n : namesakes.after) (*after)[n].isRepeated = true;
  });
}

std::vector<SiblingStep> AlignSiblings(const Siblings& before, const Siblings& after) {
  const std::vector<std::size_t> partners = FindPartners(before, after);
  const std::vector<bool> isUnmoved = FindUnmoved(partners, after.size());
  std::vector<std::size_t> partnersOfAfter(after.size(), kNone);
  for (std::size_t n = 0; n < partners.size(); ++n) {
    if (partners[n] != kNone) partnersOfAfter[partners[n]] = n;
  }
  std::vector<SiblingStep> steps;
  std::size_t next = 0;
  const auto removeUpTo = [&](std::size_t end) {
    for (; next < end; ++next) {
      if (partners[next] == kNone) steps.push_back({next, kNone, false});
    }
  };
  for (std::size_t n = 0; n < after.size(); ++n) {
    const std::size_t partner = partnersOfAfter[n];
    const bool isMoved = partner != kNone && !isUnmoved[partner];
    if (partner != kNone && !isMoved) removeUpTo(partner);
    steps.push_back({partner, n, isMoved});
  }
  removeUpTo(before.size());
  return steps;
}

}  // namespace zon
