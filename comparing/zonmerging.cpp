#include "comparing/zonmerging.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "api/zonfilehandle.h"
#include "api/zonx.h"
#include "comparing/zonvaluecomparison.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodeedit.h"
#include "zonx/zonnodepath.h"

namespace zon {
namespace {

// New children of one kind, and the place that they go to.
struct NewChildren {
  std::vector<std::unique_ptr<CzonNamedNode>> nodes;
  std::uint32_t place = 0;
};

// What is added to a section. New nodes are filed at its end and then moved to their places.
struct Addition {
  CzonTargetList* section;
  std::uint32_t size;  // of its children, before these are filed
  NewChildren definitions;
  NewChildren keywords;
  NewChildren sections;

  std::array<NewChildren*, 3> Kinds() { return {&definitions, &keywords, &sections}; }
};

struct FlagChange {
  CzonNamedNode* node;
  unsigned int flags;  // that it gets in addition
};

// A keyword that gets another number of values.
struct ListChange {
  CzonNamedNode* keyword;
  std::uint32_t kept;
  NewValues more;
};

// Default definitions are found by no path, so they are numbered here.
class Definitions {
 public:
  explicit Definitions(const CzonNamedNode& section) {
    for (CzonNode* child : NodeAccess::Children(section)) {
      if (child->IsDefaultDef() == 0) continue;
      auto* definition = static_cast<CzonNamedNode*>(child);
      byName_[UpperName(*definition)].nodes.push_back(definition);
    }
  }

  // The next one of that name, each only once; null if there is none.
  CzonNamedNode* FindNext(const CzonNamedNode& definition) {
    const auto found = byName_.find(UpperName(definition));
    if (found == byName_.end()) return nullptr;
    Queue& queue = found->second;
    return queue.next < queue.nodes.size() ? queue.nodes[queue.next++] : nullptr;
  }

 private:
  struct Queue {
    std::vector<CzonNamedNode*> nodes;
    std::size_t next = 0;
  };
  static std::string UpperName(const CzonNamedNode& node) {
    std::string name(NodeAccess::GetNameView(node));
    for (char& c : name) c = static_cast<char>(Upper(c));
    return name;
  }
  std::map<std::string, Queue> byName_;
};

class Merge {
 public:
  Merge(CzonData& target, const NodeCopier& copier) : target_(target), copier_(copier) {}

  void Run(const CzonTargetList& overlay) {
    open_.emplace_back(target_.GetRoot(), &overlay);
    while (!open_.empty()) {
      const auto [section, from] = open_.back();
      open_.pop_back();
      PlanSection(*section, *from);
    }
    FileAdditions();
    Commit();
  }

 private:
  void PlanSection(CzonTargetList& section, const CzonNamedNode& overlay);
  CzonNamedNode* FindLine(const CzonTargetList& section, const CzonNamedNode& line,
                          std::unique_ptr<Definitions>* definitions) const;
  void PlanFlags(CzonNamedNode& node, const CzonNamedNode& overlay);
  void PlanLine(CzonNamedNode& line, const CzonNamedNode& overlay);
  void PlanValue(CzonNode& value, const CzonNode* overlay, bool isInDefinition);
  bool IsKept(const CzonNode& value, const CzonNode& overlay) const;
  void FileAdditions();
  void Undo();
  static void MoveToPlaces(Addition& addition);
  void Commit();
  void CommitList(ListChange& change);

  CzonData& target_;
  const NodeCopier& copier_;
  std::vector<std::pair<CzonTargetList*, const CzonNamedNode*>> open_;  // pairs to be planned
  std::vector<Addition> additions_;
  std::vector<FlagChange> flags_;
  std::vector<ValueChange> values_;
  std::vector<ListChange> lists_;
  std::vector<CzonNode*> filed_;
};

// ---- Planning -----------------------------------------------------------------------------------

PathStep StepOf(const CzonNamedNode& node) {
  PathStep step;
  step.name = NodeAccess::GetNameView(node);
  step.instance = InstanceOf(node);
  return step;
}

// The place after the last definition: the first one precedes all.
std::uint32_t EndOfDefinitions(const CzonNamedNode& section) {
  const NodeSpan children = NodeAccess::Children(section);
  std::uint32_t end = children.Size();
  while (end > 0 && children[end - 1]->IsDefaultDef() == 0) --end;
  return end;
}

// The child of a section at the place of a node in its own section. Two files mostly have the same
// nodes in the same order, and then no name is looked up. Null if it is not what would be found by
// name and number.
CzonNamedNode* ChildAt(const CzonTargetList& section, std::uint32_t place,
                       const CzonNamedNode& node) {
  const NodeSpan children = NodeAccess::Children(section);
  if (place >= children.Size() || !NodeAccess::IsNamed(*children[place])) return nullptr;
  auto& child = static_cast<CzonNamedNode&>(*children[place]);
  const bool isAlike = NodeAccess::IsOfLibrary(section) && NodeAccess::IsOfLibrary(child) &&
                       child.GetSyntaxClass() == node.GetSyntaxClass() &&
                       child.IsDefaultDef() == 0 && !NodeAccess::GetNameView(node).empty() &&
                       NodeAccess::HaveSameName(child, node);
  return isAlike && InstanceOf(child) == InstanceOf(node) ? &child : nullptr;
}

CzonNamedNode* Merge::FindLine(const CzonTargetList& section, const CzonNamedNode& line,
                               std::unique_ptr<Definitions>* definitions) const {
  if (line.IsDefaultDef() == 0) {
    return static_cast<CzonNamedNode*>(FindKeyword(section, StepOf(line)));
  }
  if (*definitions == nullptr) *definitions = std::make_unique<Definitions>(section);
  return (*definitions)->FindNext(line);
}

void Merge::PlanSection(CzonTargetList& section, const CzonNamedNode& overlay) {
  Addition addition{&section, 0, {}, {}, {}};
  std::unique_ptr<Definitions> definitions;
  std::uint32_t place = 0;
  for (const CzonNode* child : NodeAccess::Children(overlay)) {
    const std::uint32_t here = place++;
    if (!NodeAccess::IsNamed(*child)) continue;
    const auto& node = static_cast<const CzonNamedNode&>(*child);
    CzonNode* found = ChildAt(section, here, node);
    if (NodeAccess::IsSection(node)) {
      if (found == nullptr) found = FindSection(section, StepOf(node));
      if (found == nullptr) {
        addition.sections.nodes.push_back(copier_.CopySection(node));
      } else {
        auto& inner = static_cast<CzonTargetList&>(*found);
        PlanFlags(inner, node);
        open_.emplace_back(&inner, &node);
      }
    } else if (NodeAccess::IsKeyword(node) && NodeAccess::IsSection(section)) {
      if (found == nullptr) found = FindLine(section, node, &definitions);
      if (found == nullptr) {
        NewChildren& lines = node.IsDefaultDef() != 0 ? addition.definitions : addition.keywords;
        lines.nodes.push_back(copier_.CopyLine(node));
      } else {
        PlanLine(static_cast<CzonNamedNode&>(*found), node);
      }
    }
  }
  const auto isEmpty = [](const NewChildren* kind) { return kind->nodes.empty(); };
  const auto kinds = addition.Kinds();
  if (std::all_of(kinds.begin(), kinds.end(), isEmpty)) return;
  if (!addition.definitions.nodes.empty()) addition.definitions.place = EndOfDefinitions(section);
  if (!addition.keywords.nodes.empty()) addition.keywords.place = PlaceForNew(section, true);
  addition.sections.place = PlaceForNew(section, false);
  additions_.push_back(std::move(addition));
}

void Merge::PlanFlags(CzonNamedNode& node, const CzonNamedNode& overlay) {
  const unsigned int flags = overlay.GetFlags() & ~node.GetFlags();
  if (flags != 0) flags_.push_back({&node, flags});
}

void Merge::PlanLine(CzonNamedNode& line, const CzonNamedNode& overlay) {
  PlanFlags(line, overlay);
  const std::string_view text = NodeAccess::DeferredText(overlay);
  const bool mayMove = copier_.MovesNames() && text.find('|') != std::string_view::npos;
  if (!text.empty() && !mayMove && text == NodeAccess::DeferredText(line)) return;
  const bool isInDefinition = line.IsDefaultDef() != 0;
  const ValueSpan wanted(overlay);
  const NodeSpan present = NodeAccess::Children(line);
  std::uint32_t n = 0;
  for (; n < wanted.Size() && n < present.Size(); ++n) {
    PlanValue(*present[n], wanted[n], isInDefinition);
  }
  NewValues more;
  const bool isEmpty = wanted.Size() == 1 && (wanted[0] == nullptr || IsEmptyPlace(*wanted[0]));
  if (n > 0 || !isEmpty) {
    for (; n < wanted.Size(); ++n) more.push_back(copier_.CopyValue(wanted[n], isInDefinition));
  }
  if (more.empty() && present.Size() <= wanted.Size()) return;
  NodeAccess::ReserveChildren(line, static_cast<std::uint32_t>(more.size()));
  lists_.push_back({&line, wanted.Size(), std::move(more)});
}

// Whether a value has the data of another one already, so that it keeps its node and its spelling.
bool Merge::IsKept(const CzonNode& value, const CzonNode& overlay) const {
  if (typeid(value) != typeid(overlay) || IsReference(value)) return false;
  if (copier_.MovesNames() && KindOf(value) == ZONX_FILENAME) return false;
  return IsSameValue(value, overlay);
}

// The remark of the value stays.
void Merge::PlanValue(CzonNode& value, const CzonNode* overlay, bool isInDefinition) {
  if (overlay != nullptr && IsKept(value, *overlay)) return;
  const bool isEmpty = overlay == nullptr || IsEmptyPlace(*overlay);
  NewValue by = copier_.CopyValue(isEmpty ? nullptr : overlay, isInDefinition);
  NodeAccess::SetRemark(*by, {}, nullptr);
  ValueChange change(value, std::move(by));
  if (!change.IsNone()) values_.push_back(std::move(change));
}

// ---- Changing the tree --------------------------------------------------------------------------

void Merge::FileAdditions() {
  std::size_t count = 0;
  for (Addition& addition : additions_) {
    for (const NewChildren* kind : addition.Kinds()) count += kind->nodes.size();
  }
  filed_.reserve(count);
  try {
    for (Addition& addition : additions_) {
      addition.size = NodeAccess::Children(*addition.section).Size();
      for (NewChildren* kind : addition.Kinds()) {
        for (std::unique_ptr<CzonNamedNode>& node : kind->nodes) {
          const std::uint32_t end = NodeAccess::Children(*addition.section).Size();
          NodeAccess::FileAt(*addition.section, node.get(), end);
          filed_.push_back(node.release());
        }
      }
    }
  } catch (...) {
    Undo();
    throw;
  }
}

void Merge::Undo() {
  for (; !filed_.empty(); filed_.pop_back()) {
    NodeAccess::Unfile(filed_.back());
    NodeAccess::Free(filed_.back());
  }
}

// A kind that goes to a place before that of another one, or to the same place, moves that.
void Merge::MoveToPlaces(Addition& addition) {
  const auto kinds = addition.Kinds();
  std::uint32_t from = addition.size;
  for (std::size_t n = 0; n < kinds.size(); ++n) {
    std::uint32_t place = kinds[n]->place;
    for (std::size_t before = 0; before < n; ++before) {
      if (kinds[before]->place > kinds[n]->place) continue;
      place += static_cast<std::uint32_t>(kinds[before]->nodes.size());
    }
    const auto count = static_cast<std::uint32_t>(kinds[n]->nodes.size());
    NodeAccess::MoveChildren(*addition.section, from, count, place);
    from += count;
  }
}

// Nothing here can fail.
void Merge::Commit() {
  for (Addition& addition : additions_) MoveToPlaces(addition);
  for (const FlagChange& change : flags_) {
    NodeAccess::SetFlags(*change.node, change.node->GetFlags() | change.flags);
  }
  for (ValueChange& change : values_) change.Apply(&target_);
  for (ListChange& change : lists_) CommitList(change);
}

void Merge::CommitList(ListChange& change) {
  CzonNamedNode& keyword = *change.keyword;
  while (NodeAccess::Children(keyword).Size() > change.kept) {
    const NodeSpan values = NodeAccess::Children(keyword);
    CzonNode* last = values[values.Size() - 1];
    target_.UpdateCurrentNode(last);
    NodeAccess::Unfile(last);
    NodeAccess::Free(last);
  }
  for (NewValue& value : change.more) {
    NodeAccess::FileAt(keyword, value.release(), NodeAccess::Children(keyword).Size());
  }
}

}  // namespace

void MergeTree(CzonData& target, const CzonTargetList& overlay, const NodeCopier& copier) {
  Merge(target, copier).Run(overlay);
}

}  // namespace zon
