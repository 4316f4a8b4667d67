#include "comparing/zonsiblingpairs.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "saving/zonsavedtree.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

using Keys = std::vector<AlignmentKey>;
using Numbers = std::vector<std::size_t>;

// The elements of one key on both sides, or all, by their numbers.
struct Group {
  Numbers before;
  Numbers after;
};

// Calls `visit` for each key.
template <class F>
void ForEachGroup(const Keys& before, const Keys& after, F&& visit) {
  const std::vector<KeyedElement> elements = SortByKey(before, 0, before.size());
  const std::vector<KeyedElement> others = SortByKey(after, 0, after.size());
  auto b = elements.begin();
  auto a = others.begin();
  Group group;
  while (b != elements.end() || a != others.end()) {
    const bool isFirst = a == others.end() || (b != elements.end() && b->key < a->key);
    const AlignmentKey key = isFirst ? b->key : a->key;
    group.before.clear();
    group.after.clear();
    for (; b != elements.end() && b->key == key; ++b) group.before.push_back(b->number);
    for (; a != others.end() && a->key == key; ++a) group.after.push_back(a->number);
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

AlignmentKey KeyOfContent(const Sibling& sibling) {
  return KeyWith(sibling, sibling.keys.content);
}

Numbers AllNumbers(std::size_t count) {
  Numbers numbers(count);
  std::iota(numbers.begin(), numbers.end(), std::size_t{0});
  return numbers;
}

// One run over two lists. A node is free until it has a partner, or is known to have none.
class Pairing {
 public:
  Pairing(const Siblings& before, const Siblings& after)
      : before_(before),
        after_(after),
        partners_(before.size(), kNone),
        isFree_(before.size(), true),
        isFreeAfter_(after.size(), true),
        placesAfter_(after.size()) {}

  std::vector<std::size_t> Run() {
    PairByIdentity();
    PairByKey(KeyOfContent);
    if (std::any_of(before_.begin(), before_.end(), HasOrder)) {
      PairByKey([](const Sibling& sibling) { return KeyWith(sibling, sibling.keys.unordered); });
    }
    PairNamesakes();
    for (std::size_t n = 0; n < before_.size(); ++n) {
      const std::size_t partner = partners_[n];
      if (partner == kNone) continue;
      if (!AreNamesakes(*before_[n].node, *after_[partner].node)) partners_[n] = kNone;
    }
    return std::move(partners_);
  }

 private:
  void Pair(std::size_t before, std::size_t after) {
    partners_[before] = after;
    isFree_[before] = false;
    isFreeAfter_[after] = false;
  }

  bool HasFree() const {
    return std::find(isFree_.begin(), isFree_.end(), true) != isFree_.end() &&
           std::find(isFreeAfter_.begin(), isFreeAfter_.end(), true) != isFreeAfter_.end();
  }

  static bool HasOrder(const Sibling& sibling) {
    return sibling.keys.unordered != sibling.keys.content;
  }

  template <class KeyOf>
  Keys FreeKeys(const Siblings& siblings, const std::vector<bool>& isFree, KeyOf&& keyOf) const {
    Keys keys(siblings.size(), 0);
    for (std::size_t n = 0; n < keys.size(); ++n) {
      if (isFree[n]) keys[n] = keyOf(siblings[n]);
    }
    return keys;
  }

  void PairByIdentity();
  void PairIdentities(const Group& namesakes);
  template <class KeyOf>
  void PairByKey(KeyOf&& keyOf);
  void PairNamesakes();
  std::vector<AlignedPair> FindPairs(const Group& elements);
  template <class KeyOf>
  void Align(const Group& elements, KeyOf&& keyOf);

  const Siblings& before_;
  const Siblings& after_;
  std::vector<std::size_t> partners_;
  std::vector<bool> isFree_;
  std::vector<bool> isFreeAfter_;
  std::vector<std::size_t> placesAfter_;  // in the group that is being aligned
};

void Pairing::PairByIdentity() {
  const auto hasIdentity = [](const Sibling& sibling) { return sibling.keys.identity != 0; };
  if (std::none_of(before_.begin(), before_.end(), hasIdentity)) return;
  ForEachGroup(HeadsOf(before_), HeadsOf(after_), [this](const Group& namesakes) {
    const bool isPaired = !namesakes.before.empty() && !namesakes.after.empty();
    if (isPaired && before_[namesakes.before[0]].isRepeated) PairIdentities(namesakes);
  });
}

// An identity that a side has twice is none.
void Pairing::PairIdentities(const Group& namesakes) {
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

// First what each side has once, wherever it is. Then the others are aligned between these pairs,
// and what is left is paired in its order.
template <class KeyOf>
void Pairing::PairByKey(KeyOf&& keyOf) {
  if (!HasFree()) return;
  bool hasSeveral = false;
  const auto visit = [&](auto&& pair) {
    ForEachGroup(FreeKeys(before_, isFree_, keyOf), FreeKeys(after_, isFreeAfter_, keyOf), pair);
  };
  visit([&](const Group& equal) {
    if (equal.before.size() == 1 && equal.after.size() == 1) {
      Pair(equal.before[0], equal.after[0]);
    } else if (!equal.before.empty() && !equal.after.empty()) {
      hasSeveral = true;
    }
  });
  if (!hasSeveral) return;
  Align({AllNumbers(before_.size()), AllNumbers(after_.size())}, keyOf);
  if (!HasFree()) return;
  visit([&](const Group& equal) {
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

// The pairs in a group, by their places in it.
std::vector<AlignedPair> Pairing::FindPairs(const Group& elements) {
  for (std::size_t n = 0; n < elements.after.size(); ++n) placesAfter_[elements.after[n]] = n;
  std::vector<AlignedPair> pairs;
  for (std::size_t n = 0; n < elements.before.size(); ++n) {
    const std::size_t partner = partners_[elements.before[n]];
    if (partner != kNone) pairs.push_back({n, placesAfter_[partner]});
  }
  return pairs;
}

// Aligns what is free between the pairs that increase.
template <class KeyOf>
void Pairing::Align(const Group& elements, KeyOf&& keyOf) {
  const auto& [before, after] = elements;
  Alignment alignment(before.size(), after.size(), FindPairs(elements));
  // The second time finds those of several equal ones that the first has left between others.
  for (int round = 0; round < 2; ++round) {
    alignment.Refine(
        [&](std::size_t n) {
          return isFree_[elements.before[n]] ? keyOf(before_[elements.before[n]]) : 0;
        },
        [&](std::size_t n) {
          return isFreeAfter_[elements.after[n]] ? keyOf(after_[elements.after[n]]) : 0;
        });
  }
  for (const AlignedPair& pair : alignment.Pairs()) {
    if (isFree_[before[pair.before]]) Pair(before[pair.before], after[pair.after]);
  }
}

Keys ContentsOf(const Siblings& siblings) {
  Keys keys;
  keys.reserve(siblings.size());
  for (const Sibling& sibling : siblings) keys.push_back(KeyOfContent(sibling));
  return keys;
}

// Where a pass has a choice it depends on the order of the sides. So the order is taken from the
// keys: the result for (b, a) is that for (a, b) mirrored.
std::vector<std::size_t> FindPartners(const Siblings& before, const Siblings& after) {
  if (ContentsOf(before) <= ContentsOf(after)) return Pairing(before, after).Run();
  const std::vector<std::size_t> mirrored = Pairing(after, before).Run();
  std::vector<std::size_t> partners(before.size(), kNone);
  for (std::size_t n = 0; n < mirrored.size(); ++n) {
    if (mirrored[n] != kNone) partners[mirrored[n]] = n;
  }
  return partners;
}

// The pairs in the longest row that increases on both sides.
std::vector<AlignedPair> FindUnmoved(const std::vector<std::size_t>& partners) {
  std::vector<AlignedPair> pairs;
  for (std::size_t n = 0; n < partners.size(); ++n) {
    if (partners[n] != kNone) pairs.push_back({n, partners[n]});
  }
  return LongestIncreasing(pairs);
}

}  // namespace

bool AreNamesakes(const CzonNamedNode& a, const CzonNamedNode& b) {
  return KindOf(a) == KindOf(b) && NodeAccess::HaveSameName(a, b);
}

void FindRepeated(Siblings* before, Siblings* after) {
  ForEachGroup(HeadsOf(*before), HeadsOf(*after), [&](const Group& namesakes) {
    if (namesakes.before.size() < 2 && namesakes.after.size() < 2) return;
    for (const std::size_t n : namesakes.before) (*before)[n].isRepeated = true;
    for (const std::size_t n : namesakes.after) (*after)[n].isRepeated = true;
  });
}

std::vector<SiblingStep> AlignSiblings(const Siblings& before, const Siblings& after) {
  const std::vector<std::size_t> partners = FindPartners(before, after);
  std::vector<SiblingStep> steps;
  steps.reserve(after.size());
  for (std::size_t n = 0; n < after.size(); ++n) steps.push_back({kNone, n, false});
  for (std::size_t n = 0; n < before.size(); ++n) {
    if (partners[n] != kNone) steps[partners[n]] = {n, partners[n], true};
  }
  for (const AlignedPair& pair : FindUnmoved(partners)) steps[pair.after].isMoved = false;
  if (std::find(partners.begin(), partners.end(), kNone) == partners.end()) return steps;

  std::vector<SiblingStep> all;
  std::size_t next = 0;
  const auto removeUpTo = [&](std::size_t end) {
    for (; next < end; ++next) {
      if (partners[next] == kNone) all.push_back({next, kNone, false});
    }
  };
  for (const SiblingStep& step : steps) {
    if (step.before != kNone && !step.isMoved) removeUpTo(step.before);
    all.push_back(step);
  }
  removeUpTo(before.size());
  return all;
}

}  // namespace zon
