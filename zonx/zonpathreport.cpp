#include "zonx/zonpathreport.h"

#include <string>

#include "api/zonx.h"
#include "base/zonchars.h"
#include "base/zonnearest.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodeedit.h"

namespace zon {
namespace {

// Words for the rules of reports about a path.
constexpr const char* RuleOf(int status) {
  switch (status) {
    case ZONX_MISSING:
      return "missing";
    case ZONX_WRONG_KIND:
      return "wrong-kind";
    case ZONX_OUT_OF_RANGE:
      return "out-of-range";
    case ZONX_BAD_ARGUMENT:
      return "bad-argument";
    default:
      return "failed";
  }
}

std::string InQuotes(std::string_view text) {
  return "`" + std::string(text) + "`";
}

// "the section `Quay`", "the file"
std::string NameOfNode(const CzonNode* node) {
  if (node == nullptr || KindOf(*node) == ZONX_FILE) return "the file";
  if (node->IsKeyword()) return "the keyword " + InQuotes(node->GetName());
  if (node->IsSection()) return "the section " + InQuotes(node->GetName());
  return "the value";
}

std::string_view NearestChild(const CzonNode& node, std::string_view wanted) {
  NearestName nearest(wanted);
  for (unsigned int n = 1; const CzonNode* child = node.NodeByNum(n); ++n) {
    if (child->IsDefaultDef() || !NodeAccess::IsNamed(*child)) continue;
    nearest.Offer(NodeAccess::GetNameView(static_cast<const CzonNamedNode&>(*child)));
  }
  return nearest.Name();
}

// Of a missing name: the nearest one, unless the name itself exists and only its number does not.
std::string HintFor(const CzonNode& node, const PathStep& step) {
  const std::string_view nearest = NearestChild(node, step.name);
  if (nearest.empty() || EqualNoCase(nearest, step.name)) return {};
  return "did you mean " + std::string(nearest) + "?";
}

// Why a path leads to no value.
Finding DescribeMissing(const FoundNode& found) {
  Finding finding;
  const PathStep& step = found.missing;
  if (found.deepest == nullptr) {
    finding.message = "the file was not loaded, so it has no values";
  } else if (found.node != nullptr) {
    const CzonNode* owner = found.node->IsParam() ? found.node->GetOwner() : found.node;
    finding.message = NameOfNode(owner) + " has no value in this place";
  } else if (!step.isRead) {
    finding.message =
        NameOfNode(found.deepest) + " has no value " + std::to_string(found.valueNumber);
  } else {
    finding.message = NameOfNode(found.deepest) + " has no " +
                      (step.isSection ? "section " : "keyword ") +
                      (step.name.empty() ? "without a name" : InQuotes(step.name));
    if (step.hasInstance) finding.message += " with this number";
    finding.hint = HintFor(*found.deepest, step);
  }
  return finding;
}

// Why a path is no argument of a call. `canBeSet`: the path leads to a value, or one can be made.
Finding DescribeBadArgument(const FoundNode& found, const std::string& name, bool canBeSet) {
  Finding finding;
  if (found.status == ZONX_BAD_ARGUMENT) {
    finding.message = name + " is no path here";
    finding.hint = "a path has the form Section:2/Keyword[3]";
  } else if (found.status == ZONX_MISSING && !canBeSet) {
    finding.message = name + " cannot be made";
    finding.hint =
        "keywords are in sections; names begin with a letter, have letters, digits and _, and are "
        "no reserved words";
  } else if (found.valueNumber != 0) {
    finding.message = name + " is one value, not a list";
  } else if (found.node != nullptr && KindOf(*found.node) == ZONX_SECTION) {
    finding.message = name + " is a section";
  } else {
    finding.message = name + " does not allow this call";
  }
  return finding;
}

}  // namespace

Finding DescribePath(void* fileOrNode, const char* path, const FoundNode& found, int status) {
  Finding finding;
  const CzonNode* value = found.node;
  if (value != nullptr && value->IsKeyword() && value->NodeByNum(1) != nullptr) {
    value = value->NodeByNum(1);
  }
  const std::string name = *path != '\0' ? InQuotes(path) : NameOfNode(found.node);
  if (found.status == ZONX_BAD_ARGUMENT || status == ZONX_BAD_ARGUMENT) {
    const bool canBeSet = FindSetPlace(fileOrNode, path).status != ZONX_BAD_ARGUMENT;
    finding = DescribeBadArgument(found, name, canBeSet);
  } else if (status == ZONX_MISSING) {
    finding = DescribeMissing(found);
  } else if (status == ZONX_WRONG_KIND && value != nullptr) {
    finding.message = name + " is " + KindText(KindOf(*value));
  } else if (status == ZONX_OUT_OF_RANGE) {
    finding.message = "the value of " + name + " does not fit the type";
  } else if (status == ZONX_FAULTY) {
    finding.message = "the text for " + name + " is no list of values";
    finding.hint = "write values as in a file, with commas between them";
  } else {
    finding.message = name + ": " + zonxStatusText(status);
  }
  finding.rule = RuleOf(status);
  return finding;
}

CzonNode* NodeToShow(const FoundNode& found, int status, CzonNode* start) {
  if (found.deepest == nullptr) return start;
  const bool isRead = status == ZONX_WRONG_KIND || status == ZONX_OUT_OF_RANGE;
  CzonNode* value = isRead && found.deepest->IsKeyword() ? found.deepest->NodeByNum(1) : nullptr;
  return value != nullptr ? value : found.deepest;
}

}  // namespace zon
