#include <iostream>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace {

constexpr int kMismatch = 17;  // the severity of what the comparison reports

}  // namespace

// What the library tells its host. The loader's reports come as diagnostics already.
extern "C" void ReportHook(const char* pattern, int severity, void*) {
  if (severity == kMismatch) std::cerr << pattern << '\n';
}

namespace tool {

Status Compare(const std::string& pattern, const std::string& file) {
  const Source wanted(pattern);
  const Source source(file);
  if (wanted.Problem() != kFine || source.Problem() != kFine) {
    return std::max(wanted.Problem(), source.Problem());
  }
  Status status = kFine;
  for (unsigned int n = 1; void* section = zonTargetByNum(source.File(), n); ++n) {
    void* model = zonTargetByNameNum(wanted.File(), zonGetName(section), 1);
    if (model == nullptr) {
      std::cerr << "Error: Unrecognized section\n\tCand: " << zonGetNameGlb(section) << '\n';
    } else if (zonEquivalent(model, section, nullptr) != 0) {
      continue;
    }
    status = kFindings;
  }
  return status;
}

}  // namespace tool
