#include <algorithm>
#include <iostream>
#include <string_view>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace {

constexpr int kMismatch = 17;  // the severity of what the comparison reports

// The heading of the next report: the candidate's name and a colon. Empty after its first report,
// and if there is only one candidate. A global, as the hook has no argument for it.
std::string heading;

void Report(std::string_view text) {
  std::cout << heading << text << '\n';
  heading.clear();
}

}  // namespace

// What the library tells its host. The loader's reports come as diagnostics already.
extern "C" void ReportHook(const char* pattern, int severity, void*) {
  if (severity == kMismatch) Report(pattern);
}

namespace tool {
namespace {

Status CompareOne(const Source& wanted, const std::string& file, bool withName) {
  const Source source(file);
  if (source.Problem() != kFine) return source.Problem();
  heading = withName ? Harmless(source.From().Name()) + ":\n" : "";
  Status status = kFine;
  for (unsigned int n = 1; void* section = zonTargetByNum(source.File(), n); ++n) {
    void* model = zonTargetByNameNum(wanted.File(), zonGetName(section), 1);
    if (model == nullptr) {
      Report(std::string("Error: Unrecognized section\n\tCand: ") + zonGetNameGlb(section));
    } else if (zonEquivalent(model, section, nullptr) != 0) {
      continue;
    }
    status = kFindings;
  }
  std::cout.flush();  // before the diagnostics of the next file
  return status;
}

}  // namespace

Status Compare(const std::string& pattern, const std::vector<std::string>& files) {
  const Source wanted(pattern);
  Status worst = wanted.Problem();
  if (worst != kFine) return worst;
  for (const std::string& file : files) {
    worst = std::max(worst, CompareOne(wanted, file, files.size() > 1));
    if (!std::cout) break;
  }
  return worst;
}

}  // namespace tool
