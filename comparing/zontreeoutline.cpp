#include "comparing/zontreeoutline.h"

#include "saving/zonsavedtree.h"
#include "tree/zonnodeaccess.h"
#include "tree/zontreewalk.h"

namespace zon {
namespace {

// Adds the keys of the lines or sections in a section.
struct KeySum {
  void Add(AlignmentKey head, const SiblingKeys& keys) {
    content = MixKeys(content, MixKeys(head, keys.content));
    similarity = MixKeys(similarity, MixKeys(head, keys.similarity));
    unordered += MixKeys(MixKeys(head, keys.unordered), head);
    hasOrder = hasOrder || count > 0 || keys.unordered != keys.content;
    ++count;
  }
  AlignmentKey content = 1;
  AlignmentKey similarity = 1;
  AlignmentKey unordered = 1;
  std::size_t count = 0;
  bool hasOrder = false;  // there is another order
};

}  // namespace

TreeOutline::TreeOutline(const CzonNamedNode& top, Side side) : side_(side) {
  keys_.emplace_back();           // 0 is none
  std::vector<std::size_t> path;  // the numbers of the sections that are open
  const auto enter = [&](const CzonNamedNode& section, std::size_t) {
    path.push_back(sections_.size());
    sections_.push_back({&section, 0, 0});
  };
  const auto leave = [&](const CzonNamedNode&, std::size_t) {
    sections_[path.back()].end = sections_.size();
    path.pop_back();
  };
  WalkTree(
      top, enter, [](const CzonNamedNode&, std::size_t) {}, leave);
}

// From the last section of the range to the first: what is in a section is made before it.
const SiblingKeys& TreeOutline::KeysOf(std::size_t number, ValueComparison& values) {
  if (sections_[number].keys == 0) {
    for (std::size_t at = End(number); at-- > number;) {
      keys_.push_back(MakeKeys(at, values));
      sections_[at].keys = keys_.size() - 1;
    }
  }
  return keys_[sections_[number].keys];
}

SiblingKeys TreeOutline::MakeKeys(std::size_t number, ValueComparison& values) const {
  KeySum lines;
  for (const CzonNode* child : NodeAccess::Children(Section(number))) {
    if (!NodeAccess::IsKeyword(*child)) continue;
    const auto& line = static_cast<const CzonNamedNode&>(*child);
    const ValueKeys keys = values.KeysOf(line, side_);
    lines.Add(KeyOfHead(line), {keys.content, keys.content, keys.similarity, 0});
  }
  KeySum sections;
  for (std::size_t at = First(number); at < End(number); at = End(at)) {
    sections.Add(KeyOfHead(Section(at)), keys_[sections_[at].keys]);
  }
  // The order between a line and a section is no data.
  SiblingKeys keys;
  keys.content = MixKeys(lines.content, sections.content);
  keys.similarity = MixKeys(lines.similarity, sections.similarity);
  const bool hasOrder = lines.hasOrder || sections.hasOrder;
  keys.unordered = hasOrder ? MixKeys(lines.unordered, sections.unordered) : keys.content;
  return keys;
}

}  // namespace zon
