// The reports of a validation.
#ifndef ZON_COMPARING_ZONVALIDATIONREPORT_H
#define ZON_COMPARING_ZONVALIDATIONREPORT_H

#include <vector>

#include "comparing/zontemplaterules.h"
#include "comparing/zonvalidation.h"
#include "zonx/zonnodeplace.h"
#include "zonx/zonreporter.h"

namespace zon {

// Reports the problems of a candidate in the order of their places.
void ReportProblems(std::vector<Problem> problems, const NodeFile& candidate,
                    const NodeFile& definition, Reporter& reporter);

// Reports what is wrong with a template.
void ReportFaults(std::vector<TemplateFault> faults, const NodeFile& definition,
                  Reporter& reporter);

}  // namespace zon

#endif
