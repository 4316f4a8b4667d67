// Exported functions: status, version and reports. Tested by tests/reports_test.cpp and
// tests/zonx_test.cpp.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "base/zonchars.h"
#include "base/zonnearest.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonnodeplace.h"
#include "zonx/zonreporter.h"
#include "zonx/zonreporttext.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

constexpr const char* kStatusTexts[] = {
    "no error",
    "bad argument: null, not a handle or node of the kind that is needed, or a malformed path",
    "out of memory",
    "the file cannot be opened",
    "the file cannot be read",
    "the file cannot be written",
    "the text has errors",
    "the tree has what the format cannot express",
    "the file has changed since it was loaded",
    "the file exists",
    "no such section, keyword, value or place",
    "the value is of another kind",
    "the value does not fit the type",
    "the candidate does not conform to the template"};

static_assert(std::size(kStatusTexts) == ZONX_MISMATCH + 1, "one text for each status");

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

void ReportAt(CzonNode* node, NodeFile file, const Finding& finding, zonxReporter function,
              void* context) {
  Reporter reporter(function, context, file.name);
  Finding placed = finding;
  if (node != nullptr && file.text != nullptr) placed.place = PlaceOf(*node, *file.text);
  reporter.Report(file.text, placed);
}

// The file of a handle or node; a null name if it is neither.
NodeFile FileOfObject(void* fileOrNode, CzonNode** node) {
  *node = CastHandle<CzonNode>(fileOrNode);
  if (*node != nullptr) return FileOf(**node);
  const auto* data = CastHandle<CzonData>(fileOrNode);
  return data != nullptr ? FileOf(*data) : NodeFile{nullptr, nullptr};
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

Finding DescribePath(const FoundNode& found, const char* path, int status) {
  Finding finding;
  const CzonNode* value = found.node;
  if (value != nullptr && value->IsKeyword() && value->NodeByNum(1) != nullptr) {
    value = value->NodeByNum(1);
  }
  const std::string name = *path != '\0' ? InQuotes(path) : NameOfNode(found.node);
  if (found.status == ZONX_BAD_ARGUMENT) {
    finding.message = name + " is no path here";
    finding.hint = "a path has the form Section:2/Keyword[3]";
  } else if (status == ZONX_MISSING) {
    finding = DescribeMissing(found);
  } else if (status == ZONX_WRONG_KIND && value != nullptr) {
    finding.message = name + " is " + KindText(KindOf(*value));
  } else if (status == ZONX_OUT_OF_RANGE) {
    finding.message = "the value of " + name + " does not fit the type";
  } else {
    finding.message = name + ": " + zonxStatusText(status);
  }
  finding.rule = RuleOf(status);
  return finding;
}

// The deepest node of a path that exists. A value that cannot be read is shown itself.
CzonNode* NodeToShow(const FoundNode& found, int status, CzonNode* start) {
  if (found.deepest == nullptr) return start;
  const bool isRead = status == ZONX_WRONG_KIND || status == ZONX_OUT_OF_RANGE;
  CzonNode* value = isRead && found.deepest->IsKeyword() ? found.deepest->NodeByNum(1) : nullptr;
  return value != nullptr ? value : found.deepest;
}

}  // namespace
}  // namespace zon

extern "C" {

const char* zonxStatusText(int status) {
  if (status < 0 || static_cast<std::size_t>(status) >= std::size(zon::kStatusTexts)) {
    return "unknown status";
  }
  return zon::kStatusTexts[status];
}

int zonxGetVersion(void) {
  return ZONX_VERSION;
}

size_t zonxFormatReport(const zonxReport* report, char* buffer, size_t size) {
  if (buffer != nullptr && size > 0) *buffer = '\0';
  if (report == nullptr) return 0;
  size_t length = 0;
  zon::WithStatus([&]() -> int {
    const std::string text = zon::FormatReport(*report);
    length = text.size();
    if (buffer == nullptr || size == 0) return ZONX_OK;
    const std::size_t copied = std::min(length, size - 1);
    std::memcpy(buffer, text.data(), copied);
    buffer[copied] = '\0';
    return ZONX_OK;
  });
  return length;
}

int zonxReportNode(void* node, int severity, const char* rule, const char* message,
                   const char* hint, zonxReporter reporter, void* context) {
  if (reporter == nullptr || severity < ZONX_ERROR || severity > ZONX_NOTE)
    return ZONX_BAD_ARGUMENT;
  return zon::WithStatus([&]() -> int {
    CzonNode* object = nullptr;
    const zon::NodeFile file = zon::FileOfObject(node, &object);
    if (file.name == nullptr) return ZONX_BAD_ARGUMENT;
    zon::Finding finding;
    finding.severity = static_cast<zon::Severity>(severity);
    finding.rule = zon::TextOf(rule);
    finding.message = zon::TextOf(message);
    finding.hint = zon::TextOf(hint);
    zon::ReportAt(object, file, finding, reporter, context);
    return ZONX_OK;
  });
}

int zonxReportPath(void* fileOrNode, const char* path, int status, zonxReporter reporter,
                   void* context) {
  if (reporter == nullptr || path == nullptr || status < ZONX_OK || status > ZONX_MISMATCH) {
    return ZONX_BAD_ARGUMENT;
  }
  return zon::WithStatus([&]() -> int {
    CzonNode* start = nullptr;
    const zon::NodeFile file = zon::FileOfObject(fileOrNode, &start);
    if (file.name == nullptr) return ZONX_BAD_ARGUMENT;
    if (status == ZONX_OK) return ZONX_OK;
    const zon::FoundNode found = zon::FindNode(fileOrNode, path);
    zon::ReportAt(zon::NodeToShow(found, status, start), file,
                  zon::DescribePath(found, path, status), reporter, context);
    return ZONX_OK;
  });
}

}  // extern "C"
