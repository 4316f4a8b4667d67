// Pairs of sections are walked from the top down, without recursion. Of each pair the lines are
// compared first, which are the keywords and default definitions, then its sections are paired and
// pushed.
//
// Lists that are equal in order, and lists of sections without a repeated name, need no keys. Paths
// are built along the walk, one for each side, and only if there is a visitor.
#include "comparing/zontreedifference.h"

#include <algorithm>
#include <string>
#include <utility>

#include "comparing/zonsiblingpairs.h"
#include "comparing/zontreeoutline.h"
#include "saving/zonsavedtree.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

bool HasRepeatedSections(const CzonNamedNode& owner) {
  return !NodeAccess::IsOfLibrary(owner) ||
         NodeAccess::HasRepeatedSections(static_cast<const CzonTargetList&>(owner));
}

// Whether a section may have several lines of one name. Only keywords are counted by name.
bool MayRepeatLines(const CzonNamedNode& section) {
  if (!NodeAccess::IsSection(section) || !NodeAccess::IsOfLibrary(section)) return true;
  if (NodeAccess::HasRepeatedKeywords(static_cast<const CzonSection&>(section))) return true;
  const NodeSpan children = NodeAccess::Children(section);
  return std::any_of(children.begin(), children.end(),
                     [](const CzonNode* child) { return child->IsDefaultDef() != 0; });
}

// Walks along the lines of a section.
class LineCursor {
 public:
  explicit LineCursor(const CzonNamedNode& section) : children_(NodeAccess::Children(section)) {
    SkipOthers();
  }
  bool IsAtEnd() const { return at_ == children_.Size(); }
  const CzonNamedNode& operator*() const {
    return static_cast<const CzonNamedNode&>(*children_[at_]);
  }
  void Advance() {
    ++at_;
    SkipOthers();
  }

 private:
  void SkipOthers() {
    while (at_ < children_.Size() && !NodeAccess::IsKeyword(*children_[at_])) ++at_;
  }

  NodeSpan children_;
  std::uint32_t at_ = 0;
};

void AppendStep(std::string* path, const CzonNamedNode& node) {
  if (!path->empty()) *path += '/';
  const std::string_view name = NodeAccess::GetNameView(node);
  *path += name.empty() ? "()" : name;
  const unsigned int instance = InstanceOf(node);
  if (instance > 1) path->append(1, ':').append(std::to_string(instance));
}

// A path finds a keyword before a section, unless "/" follows.
bool NeedsSlash(const CzonNamedNode& section) {
  const CzonNamedNode* owner = section.GetOwner();
  if (owner == nullptr || !NodeAccess::IsSection(*owner)) return false;
  PathStep step;
  step.name = NodeAccess::GetNameView(section);
  step.instance = InstanceOf(section);
  return FindKeyword(*owner, step) != nullptr;
}

// A path that is longer for a scope.
class LongerPath {
 public:
  explicit LongerPath(std::string* path) : path_(path), size_(path->size()) {}
  LongerPath(const LongerPath&) = delete;
  LongerPath& operator=(const LongerPath&) = delete;
  ~LongerPath() { path_->resize(size_); }

  void AddSection(const CzonNamedNode& section) {
    AppendStep(path_, section);
    if (NeedsSlash(section)) *path_ += '/';
  }

  // A default definition has the path of its section.
  void AddLine(const CzonNamedNode& line) {
    if (line.IsDefaultDef() == 0) return AppendStep(path_, line);
    if (!path_->empty() && NeedsSlash(*line.GetOwner())) *path_ += '/';
  }

  void AddValue(const CzonNamedNode& line, std::size_t number) {
    AddLine(line);
    if (line.IsDefaultDef() == 0) path_->append(1, '[').append(std::to_string(number)) += ']';
  }

 private:
  std::string* path_;
  std::size_t size_;
};

// What appends the path of a node for a report.
struct SectionPath {
  void operator()(LongerPath& path) const { path.AddSection(section); }
  const CzonNamedNode& section;
};
struct LinePath {
  void operator()(LongerPath& path) const { path.AddLine(line); }
  const CzonNamedNode& line;
};

class DifferenceWalk {
 public:
  DifferenceWalk(const ComparedTrees& trees, const ComparisonRules& rules, const char* key,
                 const DifferenceVisitor& visitor)
      : values_(rules),
        key_(key != nullptr ? key : ""),
        visitor_(visitor),
        outlines_{TreeOutline(*trees.before, kBefore), TreeOutline(*trees.after, kAfter)} {}

  std::size_t Run() {
    CompareFlags(outlines_[kBefore].Section(0), outlines_[kAfter].Section(0), [](LongerPath&) {});
    Enter(0, 0);
    while (!frames_.empty()) {
      Frame& frame = frames_.back();
      for (const Side side : {kBefore, kAfter}) paths_[side].resize(frame.paths[side]);
      if (frame.next == frame.steps.size()) {
        frames_.pop_back();
      } else {
        CompareStep(frame.steps[frame.next++]);
      }
    }
    return count_;
  }

 private:
  // The sections of a pair. The numbers of the steps are those of the outlines.
  struct Frame {
    std::vector<SiblingStep> steps;
    std::size_t next;
    std::size_t paths[2];
  };

  void Enter(std::size_t before, std::size_t after);
  void CompareStep(SiblingStep step);
  bool IsSameLine(const CzonNamedNode& before, const CzonNamedNode& after) const;
  bool ComparePlainLines(const CzonNamedNode& before, const CzonNamedNode& after);
  void CompareLines(const CzonNamedNode& before, const CzonNamedNode& after);
  void CompareLine(const CzonNamedNode& before, const CzonNamedNode& after, bool isMoved);
  void CompareValues(const CzonNamedNode& before, const CzonNamedNode& after);
  template <class AddPath>
  void CompareFlags(const CzonNamedNode& before, const CzonNamedNode& after, AddPath&& addPath);
  Siblings MakeLines(const CzonNamedNode& section) const;
  Siblings MakeSections(std::size_t section, Side side) const;
  AlignmentKey IdentityOf(const CzonNamedNode& section, Side side);
  bool FindPlainSteps(std::size_t before, std::size_t after, std::vector<SiblingStep>* steps) const;
  std::vector<SiblingStep> FindSteps(std::size_t before, std::size_t after);
  template <class AddPath>
  void Report(zonxChange change, const CzonNode* before, const CzonNode* after, AddPath&& addPath);

  ValueComparison values_;
  const std::string key_;
  const DifferenceVisitor visitor_;
  TreeOutline outlines_[2];
  std::vector<Frame> frames_;
  std::string paths_[2];  // of the section that the walk is in
  std::size_t count_ = 0;
};

// ---- Sections -----------------------------------------------------------------------------------

void DifferenceWalk::Enter(std::size_t before, std::size_t after) {
  const CzonNamedNode& section = outlines_[kBefore].Section(before);
  const CzonNamedNode& other = outlines_[kAfter].Section(after);
  if (!ComparePlainLines(section, other)) CompareLines(section, other);
  std::vector<SiblingStep> steps;
  if (!FindPlainSteps(before, after, &steps)) steps = FindSteps(before, after);
  if (steps.empty()) return;
  frames_.push_back({std::move(steps), 0, {paths_[kBefore].size(), paths_[kAfter].size()}});
}

void DifferenceWalk::CompareStep(SiblingStep step) {
  if (step.before == kNone) {
    const CzonNamedNode& added = outlines_[kAfter].Section(step.after);
    return Report(ZONX_ADDED, nullptr, &added, SectionPath{added});
  }
  const CzonNamedNode& section = outlines_[kBefore].Section(step.before);
  if (step.after == kNone) return Report(ZONX_REMOVED, &section, nullptr, SectionPath{section});
  const CzonNamedNode& other = outlines_[kAfter].Section(step.after);
  if (step.isMoved) Report(ZONX_MOVED, &section, &other, SectionPath{other});
  CompareFlags(section, other, SectionPath{other});
  if (visitor_.function != nullptr) {
    AppendStep(&paths_[kBefore], section);
    AppendStep(&paths_[kAfter], other);
  }
  Enter(step.before, step.after);
}

// The pairs of lists of which each has every name once, and which have the same names in the same
// order.
bool DifferenceWalk::FindPlainSteps(std::size_t before, std::size_t after,
                                    std::vector<SiblingStep>* steps) const {
  const auto& [from, to] = outlines_;
  if (HasRepeatedSections(from.Section(before)) || HasRepeatedSections(to.Section(after))) {
    return false;
  }
  std::size_t b = TreeOutline::First(before);
  std::size_t a = TreeOutline::First(after);
  while (b < from.End(before) && a < to.End(after)) {
    if (!NodeAccess::HaveSameName(from.Section(b), to.Section(a))) return false;
    steps->push_back({b, a, false});
    b = from.End(b);
    a = to.End(a);
  }
  return b == from.End(before) && a == to.End(after);
}

std::vector<SiblingStep> DifferenceWalk::FindSteps(std::size_t before, std::size_t after) {
  Siblings siblings[2] = {MakeSections(before, kBefore), MakeSections(after, kAfter)};
  FindRepeated(&siblings[kBefore], &siblings[kAfter]);
  for (const Side side : {kBefore, kAfter}) {
    for (Sibling& sibling : siblings[side]) {
      if (!sibling.isRepeated) continue;
      sibling.keys = outlines_[side].KeysOf(sibling.number, values_);
      sibling.keys.identity = IdentityOf(*sibling.node, side);
    }
  }
  std::vector<SiblingStep> steps = AlignSiblings(siblings[kBefore], siblings[kAfter]);
  for (SiblingStep& step : steps) {
    if (step.before != kNone) step.before = siblings[kBefore][step.before].number;
    if (step.after != kNone) step.after = siblings[kAfter][step.after].number;
  }
  return steps;
}

Siblings DifferenceWalk::MakeSections(std::size_t section, Side side) const {
  const TreeOutline& outline = outlines_[side];
  Siblings siblings;
  for (std::size_t at = TreeOutline::First(section); at < outline.End(section);
       at = outline.End(at)) {
    const CzonNamedNode& node = outline.Section(at);
    siblings.push_back({&node, at, KeyOfHead(node)});
  }
  return siblings;
}

// The values of the one keyword of that name.
AlignmentKey DifferenceWalk::IdentityOf(const CzonNamedNode& section, Side side) {
  if (key_.empty()) return 0;
  PathStep step;
  step.name = key_;
  const CzonNode* keyword = FindKeyword(section, step);
  step.instance = 2;
  if (keyword == nullptr || FindKeyword(section, step) != nullptr) return 0;
  const auto& named = static_cast<const CzonNamedNode&>(*keyword);
  if (!ValueComparison::HasValue(named)) return 0;
  return values_.KeysOf(named, side).content | 1;
}

// ---- Lines --------------------------------------------------------------------------------------

bool DifferenceWalk::IsSameLine(const CzonNamedNode& before, const CzonNamedNode& after) const {
  return before.GetFlags() == after.GetFlags() && values_.HaveSameValues(before, after);
}

// Compares the lines of two sections if they have the same names in the same order, and each name
// once or everything else the same too. Returns whether they were compared.
bool DifferenceWalk::ComparePlainLines(const CzonNamedNode& before, const CzonNamedNode& after) {
  LineCursor line(before);
  LineCursor other(after);
  bool isSame = true;
  for (; !line.IsAtEnd() && !other.IsAtEnd(); line.Advance(), other.Advance()) {
    if (!AreNamesakes(*line, *other)) return false;
    isSame = isSame && IsSameLine(*line, *other);
  }
  if (!line.IsAtEnd() || !other.IsAtEnd()) return false;
  if (isSame) return true;
  if (MayRepeatLines(before) || MayRepeatLines(after)) return false;
  line = LineCursor(before);
  for (other = LineCursor(after); !line.IsAtEnd(); line.Advance(), other.Advance()) {
    CompareLine(*line, *other, false);
  }
  return true;
}

Siblings DifferenceWalk::MakeLines(const CzonNamedNode& section) const {
  Siblings siblings;
  siblings.reserve(NodeAccess::Children(section).Size());
  for (LineCursor line(section); !line.IsAtEnd(); line.Advance()) {
    siblings.push_back({&*line, siblings.size(), KeyOfHead(*line)});
  }
  return siblings;
}

void DifferenceWalk::CompareLines(const CzonNamedNode& before, const CzonNamedNode& after) {
  Siblings lines[2] = {MakeLines(before), MakeLines(after)};
  FindRepeated(&lines[kBefore], &lines[kAfter]);
  for (const Side side : {kBefore, kAfter}) {
    for (Sibling& line : lines[side]) {
      if (!line.isRepeated) continue;
      const ValueKeys keys = values_.KeysOf(*line.node, side);
      line.keys = {keys.content, keys.content, keys.similarity, 0};
    }
  }
  for (const SiblingStep& step : AlignSiblings(lines[kBefore], lines[kAfter])) {
    if (step.before == kNone) {
      const CzonNamedNode& added = *lines[kAfter][step.after].node;
      Report(ZONX_ADDED, nullptr, &added, LinePath{added});
    } else if (step.after == kNone) {
      const CzonNamedNode& removed = *lines[kBefore][step.before].node;
      Report(ZONX_REMOVED, &removed, nullptr, LinePath{removed});
    } else {
      CompareLine(*lines[kBefore][step.before].node, *lines[kAfter][step.after].node, step.isMoved);
    }
  }
}

void DifferenceWalk::CompareLine(const CzonNamedNode& before, const CzonNamedNode& after,
                                 bool isMoved) {
  if (isMoved) Report(ZONX_MOVED, &before, &after, LinePath{after});
  CompareFlags(before, after, LinePath{after});
  if (!values_.HaveSameText(before, after)) CompareValues(before, after);
}

void DifferenceWalk::CompareValues(const CzonNamedNode& before, const CzonNamedNode& after) {
  const ValueSpan values(before);
  const ValueSpan others(after);
  for (std::uint32_t n = 0; n < std::max(values.Size(), others.Size()); ++n) {
    const bool isPair = n < values.Size() && n < others.Size();
    const CzonNode* value = n < values.Size() ? values[n] : nullptr;
    const CzonNode* other = n < others.Size() ? others[n] : nullptr;
    if (isPair && values_.AreSame(value, other)) continue;
    const zonxChange change = value == nullptr   ? ZONX_ADDED
                              : other == nullptr ? ZONX_REMOVED
                                                 : ZONX_DIFFERENT;
    Report(change, value, other,
           [&](LongerPath& path) { path.AddValue(other != nullptr ? after : before, n + 1); });
  }
}

// ---- Reports ------------------------------------------------------------------------------------

template <class AddPath>
void DifferenceWalk::CompareFlags(const CzonNamedNode& before, const CzonNamedNode& after,
                                  AddPath&& addPath) {
  if (before.GetFlags() == after.GetFlags()) return;
  Report(ZONX_DIFFERENT, &before, &after, addPath);
}

// `addPath` appends the path from the present section. What the host's function throws is caught.
template <class AddPath>
void DifferenceWalk::Report(zonxChange change, const CzonNode* before, const CzonNode* after,
                            AddPath&& addPath) {
  ++count_;
  if (visitor_.function == nullptr) return;
  std::string& text = paths_[change == ZONX_REMOVED ? kBefore : kAfter];
  LongerPath path(&text);
  addPath(path);
  const auto handleOf = [](const CzonNode* node) -> void* {
    return static_cast<CzonBase*>(const_cast<CzonNode*>(node));
  };
  const zonxDifference difference{change, text.c_str(), handleOf(before), handleOf(after)};
  CallHost([&] { visitor_.function(&difference, visitor_.context); });
}

}  // namespace

std::size_t VisitDifferences(const ComparedTrees& trees, const ComparisonRules& rules,
                             const char* key, const DifferenceVisitor& visitor) {
  return DifferenceWalk(trees, rules, key, visitor).Run();
}

}  // namespace zon
