#include "saving/zonrebinding.h"

#include <utility>

#include "api/zonx.h"
#include "saving/zonsavedtree.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

constexpr std::size_t kClobLead = 6;  // "<CLOB:"

}  // namespace

Rebinding::Rebinding(std::shared_ptr<FileText> former, std::shared_ptr<FileText> text)
    : former_(std::move(former)), text_(std::move(text)) {
  view_ = {text_->Begin(), static_cast<std::size_t>(text_->End() - text_->Begin())};
  if (former_ == nullptr) return;
  oldBegin_ = former_->Begin();
  oldEnd_ = former_->End();
}

void Rebinding::Prepare(const CzonTargetList& tree, const CzonTargetList& loaded,
                        const LoadedFile* file) {
  if (file != nullptr) retired_ = file->retired;
  struct Pair {
    const CzonNamedNode* node;
    const CzonNamedNode* loaded;
  };
  std::vector<Pair> open{{&tree, &loaded}};
  while (!open.empty()) {
    const Pair pair = open.back();
    open.pop_back();
    const SectionParts parts(*pair.node);
    const SectionParts loadedParts(*pair.loaded);
    for (std::size_t n = 0; n < parts.lines.size(); ++n) {
      AddName(*parts.lines[n], *loadedParts.lines[n]);
      AddValues(*parts.lines[n], *loadedParts.lines[n]);
    }
    for (std::size_t n = 0; n < parts.sections.size(); ++n) {
      AddName(*parts.sections[n], *loadedParts.sections[n]);
      open.push_back({parts.sections[n], loadedParts.sections[n]});
    }
  }
  if (isInUse_) retired_.push_back(former_);
}

void Rebinding::Add(Text& text, const char* origin, std::size_t lead, Arena* arena) {
  if (origin == nullptr) return;
  const bool endsAtZero = EndsAtZero(text, oldBegin_, oldEnd_);
  isInUse_ = isInUse_ || endsAtZero;
  if (endsAtZero || !CanMoveTo(text, origin + lead, oldBegin_, oldEnd_)) MakeString(text, arena);
  moves_.push_back({&text, origin, lead});
}

// The tree is changed in its places alone, which are no data.
void Rebinding::AddName(const CzonNamedNode& node, const CzonNamedNode& loaded) {
  Add(NodeAccess::NameText(const_cast<CzonNamedNode&>(node)),
      NodeAccess::FindNameOrigin(loaded, view_), 0, NodeAccess::GetArena(node));
}

void Rebinding::AddValues(const CzonNamedNode& keyword, const CzonNamedNode& loaded) {
  if (AddDeferred(keyword, loaded)) return;
  const NodeSpan values = NodeAccess::Children(keyword);
  const NodeSpan loadedValues = NodeAccess::Children(loaded);
  for (std::uint32_t n = 0; n < values.Size() && n < loadedValues.Size(); ++n) {
    const auto* value = dynamic_cast<const CzonParam*>(values[n]);
    const auto* from = dynamic_cast<const CzonParam*>(loadedValues[n]);
    if (value != nullptr && from != nullptr) AddValue(*value, *from);
  }
}

void Rebinding::AddValue(const CzonParam& value, const CzonParam& loaded) {
  const std::size_t lead = KindOf(loaded) == ZONX_CLOB ? kClobLead : 0;
  Add(NodeAccess::ValueText(const_cast<CzonParam&>(value)),
      NodeAccess::FindTextOrigin(loaded, view_, lead), lead, NodeAccess::GetArena(value));
}

bool Rebinding::AddDeferred(const CzonNamedNode& keyword, const CzonNamedNode& loaded) {
  const std::string_view text = NodeAccess::DeferredText(keyword);
  const std::string_view other = NodeAccess::DeferredText(loaded);
  if (text.empty() || text != other) return false;
  const auto begin = static_cast<std::size_t>(other.data() - view_.data());
  if (begin > UINT32_MAX) return false;
  make_ = NodeAccess::GetDeferred(keyword).source->make;
  deferred_.push_back({const_cast<CzonNamedNode*>(&keyword), static_cast<std::uint32_t>(begin)});
  return true;
}

void Rebinding::Commit(LoadedFile& file) {
  for (const Move& move : moves_) {
    SetOrigin(*move.text, move.origin, oldBegin_, oldEnd_, move.lead);
  }
  file.deferral = {make_, text_->Begin()};
  for (const DeferredMove& move : deferred_) {
    const std::uint32_t size = NodeAccess::GetDeferred(*move.keyword).size;
    NodeAccess::MoveDeferred(*move.keyword, {&file.deferral, move.begin, size});
  }
  file.text = std::move(text_);
  file.retired.swap(retired_);
}

}  // namespace zon
