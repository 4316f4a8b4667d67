// The text is loaded as the values of a keyword in a small file, so there is one judge of values. A
// text that is more than values could end the keyword, the section or the file, or hide what
// follows. So a keyword follows the text, and the load must find it: as the second and last child
// of the one section, and at its place in the file. Comments are refused, as nothing could keep
// them.
#include "zonx/zonvaluetext.h"

#include <memory>
#include <string>
#include <utility>

#include "api/zonx.h"
#include "base/zonfiletext.h"
#include "base/zonlexeme.h"
#include "reader/zonload.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

constexpr std::string_view kKeyword = "[s] k =\n";
constexpr std::string_view kDefinition = "[s] default(k) =\n";
constexpr std::string_view kAfterText = "\nend =\nEndSect";

bool HasComment(std::string_view text) {
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at != nullptr && at < end; ++at) {
    switch (*at) {
      case '\'':
      case '|':
      case '#':
        at = FindChar(*at, at + 1, end);
        break;
      case '{':
        at = FindChar('}', at + 1, end);
        break;
      case ';':
      case '/':
        return true;
      default:
        break;
    }
    if (at == nullptr) break;  // it has no end: the load refuses it
  }
  return false;
}

// The keyword of the text; null if there is more in the file. `after` is the place of what
// follows.
const CzonNamedNode* FindValues(const CzonTargetList& root, const char* after) {
  const NodeSpan sections = NodeAccess::Children(root);
  if (sections.Size() != 1) return nullptr;
  const NodeSpan children = NodeAccess::Children(static_cast<CzonNamedNode&>(*sections[0]));
  if (children.Size() != 2) return nullptr;
  const auto& last = static_cast<const CzonNamedNode&>(*children[1]);
  if (NodeAccess::GetNameView(last).data() != after) return nullptr;
  return static_cast<const CzonNamedNode*>(children[0]);
}

}  // namespace

int ParseValues(std::string_view text, bool isInDefinition, NewValues* values) {
  if (HasComment(text)) return ZONX_FAULTY;
  std::string whole(isInDefinition ? kDefinition : kKeyword);
  whole.append(text);
  const std::size_t after = whole.size() + 1;
  whole.append(kAfterText);
  const auto file = std::make_shared<FileText>();
  file->Assign(whole);
  const Loading loading = Load(file, nullptr);
  if (loading.status != LoadStatus::kLoaded) return ZONX_FAULTY;
  const CzonNamedNode* keyword = FindValues(*loading.parser->GetRoot(), file->Begin() + after);
  if (keyword == nullptr) return ZONX_FAULTY;
  NewValues found;
  for (CzonNode* value : NodeAccess::Children(*keyword)) found.push_back(CopyOf(*value));
  values->swap(found);
  return ZONX_OK;
}

}  // namespace zon
