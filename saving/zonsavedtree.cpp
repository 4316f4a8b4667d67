#include "saving/zonsavedtree.h"

#include <algorithm>
#include <functional>

#include "api/zonx.h"
#include "base/zonchars.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "tree/zontreewalk.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

constexpr std::string_view kStep = "   ";  // the indentation of each level

void AppendValueWithRemark(std::string* out, const CzonNode& value) {
  AppendValue(out, value);
  if (value.GetRemark().empty()) return;
  if (KindOf(value) == ZONX_UNKNOWN) {
    out->append(1, '{').append(value.GetRemark()).append(1, '}');
  } else {
    AppendRemark(out, value);
  }
}

// Sections that are nested more than some 144 deep do not load. Their text is made all the same, to
// be tried, and must not grow with the square of their depth.
void AppendIndentation(std::string* out, std::string_view first, std::size_t levels) {
  constexpr std::size_t kMostLevels = 200;
  *out += first;
  for (levels = std::min(levels, kMostLevels); levels > 0; --levels) *out += kStep;
}

}  // namespace

SectionParts::SectionParts(const CzonNamedNode& section) {
  for (const CzonNode* child : NodeAccess::Children(section)) {
    if (!NodeAccess::IsNamed(*child)) {
      hasOthers = true;
      continue;
    }
    const auto* named = static_cast<const CzonNamedNode*>(child);
    if (NodeAccess::IsSection(*named)) {
      sections.push_back(named);
    } else if (NodeAccess::IsKeyword(*named)) {
      lines.push_back(named);
    } else {
      hasOthers = true;
    }
  }
}

std::vector<const CzonNode*> SavedValues(const CzonNamedNode& keyword) {
  std::vector<const CzonNode*> values;
  const NodeSpan children = NodeAccess::Children(keyword);
  values.reserve(children.Size());
  for (const CzonNode* value : children) values.push_back(value);
  if (values.empty()) values.push_back(nullptr);
  return values;
}

bool IsSameSavedValue(const CzonNode* wanted, const CzonNode* loaded) {
  if (wanted != nullptr && loaded != nullptr) {
    return IsSameValue(*wanted, *loaded) && wanted->GetRemark() == loaded->GetRemark();
  }
  const CzonNode* present = wanted != nullptr ? wanted : loaded;
  return present == nullptr || KindOf(*present) == ZONX_EMPTY ||
         KindOf(*present) == ZONX_PLACEHOLDER;
}

bool IsSameHead(const CzonNamedNode& wanted, const CzonNamedNode& loaded) {
  return NodeAccess::GetNameView(wanted) == NodeAccess::GetNameView(loaded) &&
         KindOf(wanted) == KindOf(loaded) && wanted.GetFlags() == loaded.GetFlags() &&
         wanted.GetRemark() == loaded.GetRemark();
}

bool HasSameValues(const CzonNamedNode& wanted, const CzonNamedNode& loaded) {
  const std::string_view deferred = NodeAccess::DeferredText(wanted);
  if (!deferred.empty() && deferred == NodeAccess::DeferredText(loaded)) return true;
  const NodeSpan values = NodeAccess::Children(wanted);
  const NodeSpan others = NodeAccess::Children(loaded);
  if (values.Size() == 0 && others.Size() == 1) return IsSameSavedValue(nullptr, others[0]);
  if (values.Size() != others.Size()) return false;
  for (std::uint32_t n = 0; n < values.Size(); ++n) {
    if (!IsSameSavedValue(values[n], others[n])) return false;
  }
  return true;
}

AlignmentKey MixKeys(AlignmentKey key, AlignmentKey more) {
  return (key ^ more) * 0x9E3779B97F4A7C15U + (key >> 29);
}

AlignmentKey KeyOfHead(const CzonNamedNode& node) {
  std::string name(NodeAccess::GetNameView(node));
  for (char& c : name) c = static_cast<char>(Upper(c));
  return MixKeys(std::hash<std::string>()(name), static_cast<AlignmentKey>(KindOf(node)));
}

AlignmentKey KeyOfContent(const CzonNamedNode& node) {
  std::vector<AlignmentKey> keys{0};
  const auto enter = [&](const CzonNamedNode& head, std::size_t) {
    keys.push_back(KeyOfHead(head));
  };
  const auto line = [&](const CzonNamedNode& keyword, std::size_t) {
    AlignmentKey key = KeyOfHead(keyword);
    for (const CzonNode* value : SavedValues(keyword)) {
      if (value != nullptr) key = MixKeys(key, KeyOfValue(*value));
    }
    keys.back() = keys.size() > 1 ? MixKeys(keys.back(), key) : key;
  };
  const auto leave = [&](const CzonNamedNode&, std::size_t level) {
    const AlignmentKey key = keys.back();
    keys.pop_back();
    keys.back() = level > 0 ? MixKeys(keys.back(), key) : key;
  };
  if (NodeAccess::IsSection(node)) {
    WalkTree(node, enter, line, leave);
  } else {
    line(node, 0);
  }
  return keys.back();
}

void AppendName(std::string* out, const CzonNamedNode& node) {
  const std::string_view name = NodeAccess::GetNameView(node);
  if (node.IsDefaultDef() != 0) {
    out->append("default (").append(name).append(")");
    return;
  }
  *out += name;
  if ((node.GetFlags() & CzonNamedNode::kMulti) != 0) *out += "()";
}

void AppendRemark(std::string* out, const CzonNode& node) {
  if (!node.GetRemark().empty()) out->append(" {").append(node.GetRemark()).append(1, '}');
}

void AppendLine(std::string* out, const CzonNamedNode& keyword) {
  AppendName(out, keyword);
  AppendRemark(out, keyword);
  *out += " =";
  const char* separator = " ";
  for (const CzonNode* value : SavedValues(keyword)) {
    *out += separator;
    separator = ", ";
    if (value != nullptr) AppendValueWithRemark(out, *value);
  }
}

void AppendSection(std::string* out, const CzonNamedNode& section, std::string_view indentation,
                   std::string_view lineEnd) {
  const auto enter = [&](const CzonNamedNode& head, std::size_t level) {
    AppendIndentation(out, indentation, level);
    *out += '[';
    AppendName(out, head);
    *out += ']';
    AppendRemark(out, head);
    *out += lineEnd;
  };
  const auto line = [&](const CzonNamedNode& keyword, std::size_t level) {
    AppendIndentation(out, indentation, level);
    AppendLine(out, keyword);
    *out += lineEnd;
  };
  const auto leave = [&](const CzonNamedNode& tail, std::size_t level) {
    AppendIndentation(out, indentation, level);
    out->append("EndSect  // ").append(NodeAccess::GetNameView(tail));
    if (level > 0) out->append(lineEnd).append(lineEnd);
  };
  WalkTree(section, enter, line, leave);
}

std::string PlainForm(const CzonTargetList& root) {
  std::string text;
  for (const CzonNamedNode* section : SectionParts(root).sections) {
    AppendSection(&text, *section, "", "\n");
    text += "\n\n";
  }
  return text;
}

}  // namespace zon
