// Exported functions: status, version and reports. Tested by tests/reports_test.cpp and
// tests/zonx_test.cpp.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonnodeplace.h"
#include "zonx/zonpathreport.h"
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
                  zon::DescribePath(fileOrNode, path, found, status), reporter, context);
    return ZONX_OK;
  });
}

}  // extern "C"
