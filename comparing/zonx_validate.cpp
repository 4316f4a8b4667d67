// Exported functions: a file against a template. Tested by tests/zonxvalidate_test.cpp.
#include <utility>
#include <vector>

#include "api/zonfilehandle.h"
#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "comparing/zonvalidation.h"
#include "comparing/zonvalidationreport.h"
#include "tree/zonsection.h"
#include "zonx/zoncheckreport.h"
#include "zonx/zonnodeplace.h"
#include "zonx/zonreporter.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

int Validate(const CzonData& definition, const CzonData& candidate, zonxReporter function,
             void* context) {
  const NodeFile templateFile = FileOf(definition);
  const NodeFile file = FileOf(candidate);
  Reporter ofTemplate(function, context, templateFile.name);
  Reporter ofCandidate(function, context, file.name);
  const bool hasTemplate = RequireSound(definition, ofTemplate);
  if (&definition == &candidate && !hasTemplate) return ZONX_FAULTY;
  if (!RequireSound(candidate, ofCandidate) || !hasTemplate) return ZONX_FAULTY;

  const CzonTargetList& root = *definition.GetRoot();
  const TemplateRules rules(root);
  Validation validation(rules, ofCandidate.IsOn());
  CompareRoots(root, *candidate.GetRoot(), validation);
  std::vector<TemplateFault> faults = rules.Faults();
  if (validation.IsTemplateFaulty()) {
    const std::vector<TemplateFault> ofNames = FindNameFaults(root);
    faults.insert(faults.end(), ofNames.begin(), ofNames.end());
  }
  if (!faults.empty()) {
    if (ofTemplate.IsOn()) ReportFaults(std::move(faults), templateFile, ofTemplate);
    return ZONX_FAULTY;
  }
  if (validation.Conforms()) return ZONX_OK;
  ReportProblems(std::move(validation.Problems()), file, templateFile, ofCandidate);
  return ZONX_MISMATCH;
}

}  // namespace
}  // namespace zon

extern "C" {

int zonxValidate(void* templateHandle, void* candidateHandle, zonxReporter reporter,
                 void* context) {
  return zon::WithStatus([&]() -> int {
    const auto* definition = zon::CastHandle<CzonData>(templateHandle);
    const auto* candidate = zon::CastHandle<CzonData>(candidateHandle);
    if (definition == nullptr || candidate == nullptr) return ZONX_BAD_ARGUMENT;
    return zon::Validate(*definition, *candidate, reporter, context);
  });
}

}  // extern "C"
