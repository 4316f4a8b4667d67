#include "saving/zonsavedvalue.h"

#include <functional>
#include <string_view>

#include "api/zonx.h"
#include "base/zonlexeme.h"
#include "base/zonnumber.h"
#include "base/zonnumberscan.h"
#include "tree/zonclob.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreference.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

std::string_view TextOf(const CzonNode& value) {
  const CzonParam* param = AsParam(&value);
  return param != nullptr ? NodeAccess::GetTextView(*param) : std::string_view();
}

bool IsSingle(const CzonNode& value) {
  return !IsExactly<CzonReal>(value) && dynamic_cast<const CzonFloat*>(&value) != nullptr;
}

double RealOf(const CzonNode& value) {
  if (IsExactly<CzonReal>(value)) return static_cast<const CzonReal&>(value).CzonReal::GetDouble();
  if (dynamic_cast<const CzonFloatRef*>(&value) != nullptr) {
    return static_cast<double>(value.GetFloat());
  }
  return value.GetDouble();
}

bool IsWholeText(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  return !text.empty() && SkipDigits(text.data(), end) == end;
}

// The digits of an integer. One that is no number of a file has its integer view alone.
std::string DigitsOf(const CzonNode& value) {
  const std::string_view text = TextOf(value);
  const bool isVariable =
      !IsExactly<CzonInt>(value) && dynamic_cast<const CzonIntRef*>(&value) != nullptr;
  return !isVariable && IsWholeText(text) ? std::string(text) : std::to_string(value.GetInt());
}

// Without a plus and zeros in front. Minus zero is zero.
std::string NormalDigits(std::string_view digits) {
  const bool isNegative = digits.front() == '-';
  const std::size_t first = digits.find_first_not_of("+-0");
  if (first == std::string::npos) return "0";
  return (isNegative ? "-" : "") + std::string(digits.substr(first));
}

std::string NormalDigits(const CzonNode& value) {
  return NormalDigits(DigitsOf(value));
}

// A real that was loaded and not changed keeps its text, also one beyond the range of a double.
std::string RealText(const CzonNode& value) {
  const double real = RealOf(value);
  if (IsSingle(value)) return std::string(NumberText::Shortest(static_cast<float>(real)).View());
  const std::string_view text = TextOf(value);
  if (IsExactly<CzonReal>(value) && !text.empty() && AreSameReals(TextToDouble(text), real)) {
    const std::size_t sign = text.front() == '-' || text.front() == '+' ? 1 : 0;
    bool isWhole = false;
    const char* const end = text.data() + text.size();
    if (SkipNumber(text.data() + sign, end, &isWhole) == end && !isWhole) return std::string(text);
  }
  return std::string(NumberText::Shortest(real).View());
}

std::string_view StringOf(const CzonNode& value) {
  return IsExactly<CzonString>(value) ? TextOf(value) : std::string_view(value.GetString());
}

std::string_view CharactersOf(const CzonNode& value, int kind) {
  if (kind == ZONX_STRING) return StringOf(value);
  return TextOf(value);
}

void AppendQuoted(std::string* out, std::string_view text) {
  *out += '\'';
  for (const char c : text) {
    *out += c;
    if (c == '\'') *out += c;
  }
  *out += '\'';
}

}  // namespace

// Values in an arena are mostly loaded ones: a cast would compare the names of their classes.
const CzonParam* AsParam(const CzonNode* value) {
  if (value == nullptr) return nullptr;
  if (NodeAccess::IsArenaValue(*value)) return static_cast<const CzonParam*>(value);
  return dynamic_cast<const CzonParam*>(value);
}

int SavedKind(const CzonNode& value) {
  const int kind = KindOf(value);
  const CzonNode* owner = value.GetOwner();
  if (kind == ZONX_EMPTY && owner != nullptr && owner->IsDefaultDef() != 0) return ZONX_PLACEHOLDER;
  return kind;
}

void AppendValue(std::string* out, const CzonNode& value) {
  const int kind = KindOf(value);
  switch (kind) {
    case ZONX_INTEGER:
      *out += DigitsOf(value);
      return;
    case ZONX_REAL:
      *out += RealText(value);
      return;
    case ZONX_BOOLEAN:
      *out += value.GetBool() != 0 ? "true" : "false";
      return;
    case ZONX_STRING:
      AppendQuoted(out, StringOf(value));
      return;
    case ZONX_CLOB:
      AppendQuoted(out, "<CLOB:" + std::string(TextOf(value)) + ">");
      return;
    case ZONX_FILENAME:
      out->append(1, '|').append(TextOf(value)).append(1, '|');
      return;
    case ZONX_DATETIME:
      out->append(1, '#').append(TextOf(value)).append(1, '#');
      return;
    case ZONX_SUBSTITUTION:
      out->append(1, '%').append(TextOf(value));
      return;
    default:
      return;
  }
}

bool IsSameValue(const CzonNode& wanted, const CzonNode& loaded) {
  if (IsExactly<CzonReal>(wanted) && IsExactly<CzonReal>(loaded)) {
    return AreSameReals(RealOf(wanted), RealOf(loaded));
  }
  const int kind = SavedKind(wanted);
  if (kind != SavedKind(loaded)) return false;
  switch (kind) {
    case ZONX_INTEGER:
      if (IsExactly<CzonInt>(wanted) && TextOf(wanted) == TextOf(loaded)) return true;
      return NormalDigits(wanted) == NormalDigits(loaded);
    case ZONX_REAL:
      if (IsSingle(wanted)) {
        return AreSameReals(static_cast<double>(static_cast<float>(RealOf(wanted))),
                            static_cast<double>(static_cast<float>(RealOf(loaded))));
      }
      return AreSameReals(RealOf(wanted), RealOf(loaded));
    case ZONX_BOOLEAN:
      return (wanted.GetBool() != 0) == (loaded.GetBool() != 0);
    default:
      return kind != 0 && CharactersOf(wanted, kind) == CharactersOf(loaded, kind);
  }
}

namespace {

AlignmentKey KeyOfKind(int kind, std::size_t hash) {
  return (hash * 31 + static_cast<std::size_t>(kind)) | 1;
}

}  // namespace

AlignmentKey KeyOfValue(const CzonNode& value) {
  const int kind = SavedKind(value);
  if (kind == ZONX_INTEGER) {
    return KeyOfKind(kind, std::hash<std::string>()(NormalDigits(value)));
  }
  if (kind == ZONX_REAL) return KeyOfKind(kind, std::hash<double>()(RealOf(value)));
  if (kind == ZONX_BOOLEAN) return KeyOfKind(kind, value.GetBool() != 0 ? 1 : 0);
  return KeyOfKind(kind, std::hash<std::string_view>()(CharactersOf(value, kind)));
}

AlignmentKey KeyOfValue(int kind, std::string_view text) {
  if (kind == ZONX_INTEGER) {
    return KeyOfKind(kind, std::hash<std::string>()(NormalDigits(text)));
  }
  if (kind == ZONX_REAL) return KeyOfKind(kind, std::hash<double>()(TextToDouble(text)));
  if (kind == ZONX_BOOLEAN) return KeyOfKind(kind, EqualNoCase(text, "true") ? 1 : 0);
  return KeyOfKind(kind, std::hash<std::string_view>()(text));
}

RealNumber NumberOf(const CzonNode& real) {
  return {RealOf(real), IsSingle(real)};
}

}  // namespace zon
