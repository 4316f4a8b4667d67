#include "comparing/zonvaluecomparison.h"

#include <algorithm>
#include <cmath>

#include "api/zonx.h"
#include "paths/zonfilepath.h"
#include "reader/zontokencode.h"
#include "saving/zonsavedtree.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonclob.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

// A remark alone is an empty place. 0: an empty place of either kind.
int KindAt(const CzonNode* value) {
  if (value == nullptr) return 0;
  const int kind = SavedKind(*value);
  if (kind != ZONX_UNKNOWN) return kind;
  const CzonNode* owner = value->GetOwner();
  return owner != nullptr && owner->IsDefaultDef() != 0 ? ZONX_PLACEHOLDER : ZONX_EMPTY;
}

bool IsEmptyKind(int kind) {
  return kind == ZONX_EMPTY || kind == ZONX_PLACEHOLDER;
}

int KindOfToken(int token) {
  switch (token) {
    case INTEGER:
      return ZONX_INTEGER;
    case REAL:
      return ZONX_REAL;
    case BOOLEAN:
      return ZONX_BOOLEAN;
    case FILENAME:
      return ZONX_FILENAME;
    case DATETIME:
      return ZONX_DATETIME;
    default:
      return ZONX_STRING;
  }
}

void AddKey(AlignmentKey key, int kind, ValueKeys* keys) {
  keys->content = MixKeys(keys->content, key);
  const bool isReal = kind == ZONX_REAL;
  keys->similarity = MixKeys(keys->similarity, isReal ? AlignmentKey{ZONX_REAL} : key);
}

}  // namespace

bool IsEmptyPlace(const CzonNode& value) {
  return IsEmptyKind(KindAt(&value));
}

// ---- Comparing ----------------------------------------------------------------------------------

bool ValueComparison::AreSame(const CzonNode* before, const CzonNode* after) const {
  const int kind = KindAt(before);
  const int other = KindAt(after);
  if (before == nullptr || after == nullptr) {
    return before == after || IsEmptyKind(before == nullptr ? other : kind);
  }
  if (kind != other) return false;
  if (IsEmptyKind(kind)) return true;
  if (kind == ZONX_REAL) return AreSameReals(*before, *after);
  if (kind == ZONX_FILENAME) return AreSameNames(*before, *after);
  return before == after || IsSameValue(*before, *after);
}

// Infinities and what is no number have no tolerance. A float is compared in its own precision.
bool ValueComparison::AreSameReals(const CzonNode& before, const CzonNode& after) const {
  RealNumber a = NumberOf(before);
  RealNumber b = NumberOf(after);
  if (a.isSingle || b.isSingle) {
    a.value = static_cast<double>(static_cast<float>(a.value));
    b.value = static_cast<double>(static_cast<float>(b.value));
  }
  if (a.value == b.value || (std::isnan(a.value) && std::isnan(b.value))) return true;
  if (!std::isfinite(a.value) || !std::isfinite(b.value)) return false;
  const double size = std::max(std::fabs(a.value), std::fabs(b.value));
  return std::fabs(a.value - b.value) <= std::max(rules_.absolute, rules_.relative * size);
}

// The two kinds of slashes are the same.
std::string ValueComparison::NameOf(std::string_view text, Side side) const {
  if (rules_.resolvesNames) return ResolveFilename(text, rules_.fileNames[side]);
  std::string name(text);
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

bool ValueComparison::AreSameNames(const CzonNode& before, const CzonNode& after) const {
  const CzonParam* from = AsParam(&before);
  const CzonParam* to = AsParam(&after);
  if (from == nullptr || to == nullptr) return from == to && &before == &after;
  const std::string_view a = NodeAccess::GetTextView(*from);
  const std::string_view b = NodeAccess::GetTextView(*to);
  return (a == b && !rules_.resolvesNames) || NameOf(a, kBefore) == NameOf(b, kAfter);
}

bool ValueComparison::HaveSameText(const CzonNamedNode& before, const CzonNamedNode& after) const {
  const std::string_view text = NodeAccess::DeferredText(before);
  return !text.empty() && text == NodeAccess::DeferredText(after) &&
         (!rules_.resolvesNames || text.find('|') == std::string_view::npos);
}

bool ValueComparison::HaveSameValues(const CzonNamedNode& before,
                                     const CzonNamedNode& after) const {
  if (HaveSameText(before, after)) return true;
  const ValueSpan values(before);
  const ValueSpan others(after);
  if (values.Size() != others.Size()) return false;
  for (std::uint32_t n = 0; n < values.Size(); ++n) {
    if (!AreSame(values[n], others[n])) return false;
  }
  return true;
}

bool ValueComparison::HasValue(const CzonNamedNode& keyword) {
  if (!NodeAccess::DeferredText(keyword).empty()) return true;
  const NodeSpan values = NodeAccess::Children(keyword);
  return std::any_of(values.begin(), values.end(),
                     [](const CzonNode* value) { return !IsEmptyPlace(*value); });
}

// ---- Keys ---------------------------------------------------------------------------------------

void ValueComparison::AddPlain(const PlainValue& value, Side side, ValueKeys* keys) const {
  int kind = KindOfToken(value.token);
  std::string_view text = UpToZero(value.text);
  if (kind == ZONX_FILENAME) return AddKey(KeyOfValue(kind, NameOf(text, side)), kind, keys);
  if (kind == ZONX_STRING && NodeAccess::FindContent<CzonClob>(text, &text)) kind = ZONX_CLOB;
  AddKey(KeyOfValue(kind, text), kind, keys);
}

void ValueComparison::AddNode(const CzonNode& value, Side side, ValueKeys* keys) const {
  const int kind = KindAt(&value);
  const CzonParam* param = AsParam(&value);
  if (IsEmptyKind(kind)) {
    AddKey(static_cast<AlignmentKey>(kind), kind, keys);
  } else if (kind == ZONX_FILENAME && param != nullptr) {
    AddKey(KeyOfValue(kind, NameOf(NodeAccess::GetTextView(*param), side)), kind, keys);
  } else {
    AddKey(KeyOfValue(value), kind, keys);
  }
}

ValueKeys ValueComparison::KeysOf(const CzonNamedNode& keyword, Side side) {
  ValueKeys keys{1, 1};
  const std::string_view text = NodeAccess::DeferredText(keyword);
  if (!text.empty()) {
    SplitPlainValues(text, &plain_);
    for (const PlainValue& value : plain_) AddPlain(value, side, &keys);
    return keys;
  }
  const NodeSpan values = NodeAccess::Children(keyword);
  for (const CzonNode* value : values) AddNode(*value, side, &keys);
  if (values.Size() == 0) {
    const int kind = keyword.IsDefaultDef() != 0 ? ZONX_PLACEHOLDER : ZONX_EMPTY;
    AddKey(static_cast<AlignmentKey>(kind), kind, &keys);
  }
  return keys;
}

}  // namespace zon
