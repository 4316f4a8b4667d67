#include "zonx/zoncheckreport.h"

#include "api/zonhandleaccess.h"
#include "reader/zoncheck.h"

namespace zon {

int CheckAndReport(const std::shared_ptr<FileText>& text, Reporter& reporter) {
  const CheckResult result = CheckText(text);
  const FirstError* first = &result.first;
  for (const Finding& finding : result.findings) {
    const bool isFirst = finding.severity == Severity::kError && first != nullptr;
    reporter.Report(text.get(), finding, isFirst ? first : nullptr);
    if (isFirst) first = nullptr;
  }
  if (!text->HasFailed()) return result.hasErrors ? ZONX_FAULTY : ZONX_OK;
  reporter.ReportFile("cannot-read", "the file cannot be read to its end", text->Error());
  return ZONX_CANNOT_READ;
}

bool RequireSound(const CzonData& data, Reporter& reporter) {
  if (HandleAccess::IsSound(data)) return true;
  Finding finding;
  finding.rule = "not-loaded";
  finding.message = "the file was not loaded without errors";
  reporter.Report(nullptr, finding);
  return false;
}

}  // namespace zon
