#include "comparing/zonoverlaynodes.h"

#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "api/zonx.h"
#include "comparing/zonvaluecomparison.h"
#include "paths/zonfilepath.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonclob.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreference.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

template <class T>
NewValue Make(std::string_view text) {
  auto value = std::make_unique<T>();
  NodeAccess::SetText(*value, text, nullptr);
  return value;
}

// Plain numbers, truth values and strings keep their spelling.
bool IsPlain(const CzonNode& value) {
  return IsExactly<CzonInt>(value) || IsExactly<CzonReal>(value) || IsExactly<CzonBool>(value) ||
         IsExactly<CzonString>(value);
}

NewValue CopyReal(const CzonNode& value) {
  const RealNumber number = NumberOf(value);
  if (!std::isfinite(number.value)) {
    auto real = std::make_unique<CzonReal>();
    NodeAccess::SetReal(*real, number.value, NumberText::OfDouble(number.value).View());
    return real;
  }
  return number.isSingle ? NewReal(static_cast<float>(number.value)) : NewReal(number.value);
}

void CopyHead(const CzonNamedNode& node, CzonNamedNode* copy) {
  NodeAccess::SetFlags(*copy, node.GetFlags());
  NodeAccess::SetName(*copy, NodeAccess::GetNameView(node));
  if (!node.GetRemark().empty()) NodeAccess::SetRemark(*copy, node.GetRemark(), nullptr);
}

}  // namespace

bool IsReference(const CzonNode& value) {
  if (IsPlain(value)) return false;
  return dynamic_cast<const CzonIntRef*>(&value) != nullptr ||
         dynamic_cast<const CzonFloatRef*>(&value) != nullptr ||
         dynamic_cast<const CzonDoubleRef*>(&value) != nullptr ||
         dynamic_cast<const CzonBoolRef*>(&value) != nullptr ||
         dynamic_cast<const CzonStringRef*>(&value) != nullptr;
}

NodeCopier::NodeCopier(std::string from, std::string to)
    : from_(std::move(from)), to_(std::move(to)), movesNames_(!AreInOneFolder(from_, to_)) {}

NewValue NodeCopier::CopyData(const CzonNode& value, bool isInDefinition) const {
  const CzonParam* param = AsParam(&value);
  const std::string_view text =
      param != nullptr ? NodeAccess::GetTextView(*param) : std::string_view();
  switch (KindOf(value)) {
    case ZONX_INTEGER:
      return NewInteger(value.GetInt());
    case ZONX_REAL:
      return CopyReal(value);
    case ZONX_BOOLEAN:
      return NewBoolean(value.GetBool() != 0);
    case ZONX_STRING:
      return NewString(value.GetString());
    case ZONX_FILENAME:
      return NewFilename(movesNames_ ? MovedFilename(text, from_, to_) : std::string(text));
    case ZONX_DATETIME:
      return Make<CzonDateTime>(text);
    case ZONX_SUBSTITUTION:
      return Make<CzonSubstit>(text);
    case ZONX_CLOB:
      return Make<CzonClob>(text);
    case ZONX_PLACEHOLDER:
      return NewEmpty(true);
    case ZONX_UNKNOWN:
      return std::make_unique<CzonUnknown>();
    default:
      return NewEmpty(isInDefinition);
  }
}

NewValue NodeCopier::CopyValue(const CzonNode* value, bool isInDefinition) const {
  if (value == nullptr) return NewEmpty(isInDefinition);
  if (IsPlain(*value)) return CopyOf(const_cast<CzonNode&>(*value));
  NewValue copy = CopyData(*value, isInDefinition);
  if (!value->GetRemark().empty()) NodeAccess::SetRemark(*copy, value->GetRemark(), nullptr);
  return copy;
}

std::unique_ptr<CzonKeyword> NodeCopier::CopyLine(const CzonNamedNode& line) const {
  const bool isDefinition = line.IsDefaultDef() != 0;
  std::unique_ptr<CzonKeyword> copy =
      isDefinition ? std::make_unique<CzonDefaultDef>() : std::make_unique<CzonKeyword>();
  CopyHead(line, copy.get());
  const ValueSpan values(line);
  NodeAccess::ReserveChildren(*copy, values.Size());
  for (std::uint32_t n = 0; n < values.Size(); ++n) {
    copy->AddParam(CopyValue(values[n], isDefinition).release());
  }
  return copy;
}

std::unique_ptr<CzonSection> NodeCopier::CopySection(const CzonNamedNode& section) const {
  auto top = std::make_unique<CzonSection>();
  CopyHead(section, top.get());
  std::vector<std::pair<CzonSection*, const CzonNamedNode*>> open{{top.get(), &section}};
  while (!open.empty()) {
    const auto [to, from] = open.back();
    open.pop_back();
    for (const CzonNode* child : NodeAccess::Children(*from)) {
      if (NodeAccess::IsSection(*child)) {
        const auto& inner = static_cast<const CzonNamedNode&>(*child);
        auto copy = std::make_unique<CzonSection>();
        CopyHead(inner, copy.get());
        to->AddSection(copy.get());
        open.emplace_back(copy.release(), &inner);
      } else if (NodeAccess::IsKeyword(*child)) {
        std::unique_ptr<CzonKeyword> copy = CopyLine(static_cast<const CzonNamedNode&>(*child));
        to->AddKeyword(copy.get());
        static_cast<void>(copy.release());  // owned by the section
      }
    }
  }
  return top;
}

}  // namespace zon
