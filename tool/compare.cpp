#include <algorithm>
#include <iostream>
#include <string_view>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace {

constexpr int kMismatch = 17;  // the severity of the reports of a comparison

// Printed before the next report: the name of the candidate and a colon. Set for each candidate if
// there are several, cleared by its first report. A global, because the hook has no argument for
// it.
std::string heading;

void PrintReport(std::string_view text) {
  std::cout << heading << text << '\n';
  heading.clear();
}

}  // namespace

// Receives the reports of the library. Those of the loader are ignored: Source prints the error.
extern "C" void ReportHook(const char* pattern, int severity, void*) {
  if (severity == kMismatch) PrintReport(pattern);
}

namespace tool {
namespace {

Status CompareOne(const Source& pattern, const std::string& file, bool withName) {
  const Source source(file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  heading = withName ? Printable(source.GetInput().Name()) + ":\n" : "";
  Status status = kFine;
  for (unsigned int n = 1; void* section = zonTargetByNum(source.File(), n); ++n) {
    void* expected = zonTargetByNameNum(pattern.File(), zonGetName(section), 1);
    if (expected == nullptr) {
      PrintReport(std::string("Error: Unrecognized section\n\tCand: ") + zonGetNameGlb(section));
    } else if (zonEquivalent(expected, section, nullptr) != 0) {
      continue;
    }
    status = kFindings;
  }
  std::cout.flush();  // before messages on the next file, if both go to one place
  return status;
}

}  // namespace

Status Compare(const std::string& templateFile, const std::vector<std::string>& files) {
  const Source pattern(templateFile);
  Status worst = pattern.GetStatus();
  if (worst != kFine) return worst;
  for (const std::string& file : files) {
    worst = std::max(worst, CompareOne(pattern, file, files.size() > 1));
    if (!std::cout) break;
  }
  return worst;
}

}  // namespace tool
