#include "tool/sametree.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <zon.h>
#include <zonclasses.h>
#include <zonx.h>

#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

std::optional<std::string> TextFrom(int status, const char* text) {
  if (CheckMemory(status) != ZONX_OK) return std::nullopt;
  return text;
}

std::optional<std::string> RemarkOf(void* node) {
  const char* text = nullptr;
  const int status = zonxGetRemark(node, &text);
  return TextFrom(status, text);
}

// The plain form spells the words of booleans in another letter case.
std::optional<std::string> ValueOf(void* value) {
  if (zonxGetKind(value) == ZONX_BOOLEAN) return zonGetBool(value) != 0 ? "true" : "false";
  const char* text = nullptr;
  const int status = zonxGetText(value, "", &text);
  return TextFrom(status, text);
}

unsigned int FlagsOf(void* node) {
  return static_cast<const CzonNamedNode*>(static_cast<CzonBase*>(node))->GetFlags();
}

bool IsSameNode(void* first, void* second) {
  const int kind = zonxGetKind(first);
  if (kind != zonxGetKind(second) || RemarkOf(first) != RemarkOf(second)) return false;
  if (kind > ZONX_DEFINITION) return ValueOf(first) == ValueOf(second);
  return FlagsOf(first) == FlagsOf(second) &&
         std::string_view(zonGetName(first)) == zonGetName(second);
}

// Two nodes, and how many of their children have been compared.
struct Level {
  void* first;
  void* second;
  unsigned int compared;
};

}  // namespace

bool IsSameTree(void* first, void* second) {
  if (!IsSameNode(first, second)) return false;
  std::vector<Level> levels{{first, second, 0}};
  while (!levels.empty()) {
    Level& level = levels.back();
    ++level.compared;
    void* const a = zonNodeByNum(level.first, level.compared);
    void* const b = zonNodeByNum(level.second, level.compared);
    if ((a == nullptr) != (b == nullptr)) return false;
    if (a == nullptr) {
      levels.pop_back();
      continue;
    }
    if (!IsSameNode(a, b)) return false;
    if (zonxGetKind(a) <= ZONX_DEFINITION) levels.push_back({a, b, 0});
  }
  return true;
}

}  // namespace tool
