#include "saving/zonproof.h"

#include <algorithm>
#include <utility>

#include "api/zonx.h"
#include "reader/zonitemreader.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

std::size_t LeadOf(const CzonParam& value) {
  return KindOf(value) == ZONX_CLOB ? kClobLead : 0;
}

}  // namespace

Proof::Proof(const CzonTargetList& root, std::shared_ptr<FileText> former, const TextEdits* edits,
             std::shared_ptr<FileText> text)
    : root_(root), former_(std::move(former)), edits_(edits), text_(std::move(text)) {
  newView_ = text_->View();
  if (former_ != nullptr) oldView_ = former_->View();
}

// ---- Comparing ----------------------------------------------------------------------------------

bool Proof::Run(const LoadedFile* file) {
  if (file != nullptr) retired_ = file->retired;
  levels_.push_back({SectionParts(root_)});
  hasRepeated_ = NodeAccess::HasRepeatedSections(root_);
  const bool isSound = ReadItems(text_, *this);
  const Level& top = levels_.front();
  isSame_ = isSame_ && isSound && levels_.size() == 1 && !top.parts.hasOthers &&
            top.section == top.parts.sections.size() && top.parts.lines.empty();
  levels_.clear();
  path_.reserve(deepest_ + 1);
  if (isInUse_) retired_.push_back(former_);
  return isSame_ && !(hasRepeated_ && hasDeclared_);
}

void Proof::OpenSection(const CzonNamedNode& header) {
  if (!isSame_) return;
  Level& level = levels_.back();
  isSame_ = level.section < level.parts.sections.size() &&
            IsSameHead(*level.parts.sections[level.section], header);
  if (!isSame_) return;
  const CzonNamedNode& node = *level.parts.sections[level.section++];
  NoteNames(node, header);
  const auto& section = static_cast<const CzonSection&>(node);
  hasRepeated_ = hasRepeated_ || NodeAccess::HasRepeatedSections(section) ||
                 NodeAccess::HasRepeatedKeywords(section);
  levels_.push_back({SectionParts(node)});
  deepest_ = std::max(deepest_, levels_.size());
  isSame_ = !levels_.back().parts.hasOthers;
}

void Proof::VisitLine(const CzonNamedNode& line, const char*) {
  if (!isSame_) return;
  Level& level = levels_.back();
  isSame_ =
      level.line < level.parts.lines.size() && IsSameHead(*level.parts.lines[level.line], line);
  if (!isSame_) return;
  const CzonNamedNode& node = *level.parts.lines[level.line++];
  NoteNames(node, line);
  if (NotePlainList(node, line)) return;
  isSame_ = HasSameValues(node, line);
  if (isSame_) NoteValues(node, line);
}

void Proof::CloseSection(const char*, const char*) {
  if (!isSame_) return;
  const Level& level = levels_.back();
  isSame_ = level.line == level.parts.lines.size() && level.section == level.parts.sections.size();
  levels_.pop_back();
}

// ---- Noting places ------------------------------------------------------------------------------

// Only places are changed in the tree, which are no data of it.
void Proof::NoteNames(const CzonNamedNode& node, const CzonNamedNode& loaded) {
  const bool isMulti = (loaded.GetFlags() & CzonNamedNode::kMulti) != 0;
  hasDeclared_ = hasDeclared_ || (isMulti && loaded.IsDefaultDef() == 0);
  NotePlace(NodeAccess::NameText(const_cast<CzonNamedNode&>(node)),
            NodeAccess::FindNameOrigin(loaded, newView_), 0, NodeAccess::GetArena(node));
}

void Proof::NoteValues(const CzonNamedNode& keyword, const CzonNamedNode& loaded) {
  if (NoteDeferred(keyword, loaded)) return;
  const NodeSpan values = NodeAccess::Children(keyword);
  const NodeSpan others = NodeAccess::Children(loaded);
  for (std::uint32_t n = 0; n < values.Size() && n < others.Size(); ++n) {
    auto* value = const_cast<CzonParam*>(AsParam(values[n]));
    const CzonParam* other = AsParam(others[n]);
    if (value == nullptr || other == nullptr) continue;
    const std::size_t lead = LeadOf(*other);
    NotePlace(NodeAccess::ValueText(*value), NodeAccess::FindTextOrigin(*other, newView_, lead),
              lead, NodeAccess::GetArena(*value));
  }
}

// The values of a line that is still text, compared and noted in one pass.
bool Proof::NotePlainList(const CzonNamedNode& keyword, const CzonNamedNode& loaded) {
  const std::string_view list = NodeAccess::DeferredText(loaded);
  if (list.empty() || !NodeAccess::DeferredText(keyword).empty()) return false;
  MatchPlainList(keyword, list, &listMatch_);
  if (!listMatch_.isSame) return false;
  const NodeSpan values = NodeAccess::Children(keyword);
  for (std::uint32_t n = 0; n < values.Size(); ++n) {
    NotePlace(NodeAccess::ValueText(static_cast<CzonParam&>(*values[n])), listMatch_.places[n], 0,
              NodeAccess::GetArena(*values[n]));
  }
  return true;
}

bool Proof::NoteDeferred(const CzonNamedNode& keyword, const CzonNamedNode& loaded) {
  const std::string_view text = NodeAccess::DeferredText(keyword);
  const std::string_view other = NodeAccess::DeferredText(loaded);
  if (text.empty() || text != other) return false;
  const auto begin = static_cast<std::size_t>(other.data() - newView_.data());
  if (begin > UINT32_MAX) return false;
  make_ = NodeAccess::GetDeferred(keyword).source->make;
  if (MovedPlace(text.data()) != other.data()) {
    deferrals_.push_back({const_cast<CzonNamedNode*>(&keyword), static_cast<std::uint32_t>(begin)});
  }
  return true;
}

void Proof::NotePlace(Text& text, const char* origin, std::size_t lead, Arena* arena) {
  if (origin == nullptr) return;
  const char* const oldBegin = oldView_.data();
  const char* const oldEnd = oldBegin + oldView_.size();
  const bool endsAtZero = EndsAtZero(text, oldBegin, oldEnd);
  const bool canMove = CanMoveTo(text, origin + lead, oldBegin, oldEnd);
  const char* const old = FindOrigin(text, oldBegin, oldEnd, lead);
  if (old != nullptr && canMove && !endsAtZero && MovedPlace(old) == origin) return;
  isInUse_ = isInUse_ || endsAtZero;
  if (endsAtZero || !canMove) MakeString(text, arena);
  places_.push_back({&text, origin, lead});
}

// Where a character of the former text is in the new one; null if it was replaced.
const char* Proof::MovedPlace(const char* place) const {
  if (edits_ == nullptr) return nullptr;
  const char* const moved = edits_->Moved(place);
  return moved != nullptr ? newView_.data() + (moved - oldView_.data()) : nullptr;
}

// ---- Moving -------------------------------------------------------------------------------------

void Proof::Move(LoadedFile& file) {
  deferral_ = &file.deferral;
  file.deferral = {make_, newView_.data()};
  MoveAll();
  const char* const oldBegin = oldView_.data();
  for (const NewPlace& place : places_) {
    SetOrigin(*place.text, place.origin, oldBegin, oldBegin + oldView_.size(), place.lead);
  }
  for (const NewDeferral& deferral : deferrals_) {
    const std::uint32_t size = NodeAccess::GetDeferred(*deferral.keyword).size;
    NodeAccess::MoveDeferred(*deferral.keyword, {deferral_, deferral.begin, size});
  }
  file.text = std::move(text_);
  file.retired.swap(retired_);
}

// Every node of the tree, without recursion and without a request for memory.
void Proof::MoveAll() {
  path_.push_back({&root_, 0});
  while (!path_.empty()) {
    Position& position = path_.back();
    const NodeSpan children = NodeAccess::Children(*position.node);
    if (position.next >= children.Size()) {
      path_.pop_back();
      continue;
    }
    auto& node = static_cast<CzonNamedNode&>(*children[position.next++]);
    MoveNode(node);
    if (NodeAccess::IsSection(node)) path_.push_back({&node, 0});
  }
}

void Proof::MoveNode(CzonNamedNode& node) {
  MoveText(NodeAccess::NameText(node), 0);
  if (NodeAccess::IsSection(node)) return;
  const std::string_view deferred = NodeAccess::DeferredText(node);
  if (!deferred.empty()) {
    const char* const moved = MovedPlace(deferred.data());
    if (moved == nullptr) return;
    const auto begin = static_cast<std::uint32_t>(moved - newView_.data());
    return NodeAccess::MoveDeferred(
        node, {deferral_, begin, static_cast<std::uint32_t>(deferred.size())});
  }
  for (CzonNode* child : NodeAccess::Children(node)) {
    auto* value = const_cast<CzonParam*>(AsParam(child));
    if (value != nullptr) MoveText(NodeAccess::ValueText(*value), LeadOf(*value));
  }
}

void Proof::MoveText(Text& text, std::size_t lead) {
  const char* const oldBegin = oldView_.data();
  const char* const oldEnd = oldBegin + oldView_.size();
  const char* const old = FindOrigin(text, oldBegin, oldEnd, lead);
  const char* const moved = old != nullptr ? MovedPlace(old) : nullptr;
  if (moved != nullptr) SetOrigin(text, moved, oldBegin, oldEnd, lead);
}

}  // namespace zon
