// Equivalence: whether a section or keyword of a file conforms to its definition in a template.
//
// The first mismatch ends the check and is reported through ReportHook, unless reports are off. A child
// of a keyword that is no CzonParam causes two reports.
#ifndef ZON_EQUIVALENCE_ZONEQUIVALENCE_H
#define ZON_EQUIVALENCE_ZONEQUIVALENCE_H

#include "tree/zonnode.h"

namespace zon {

bool ConformsSection(const CzonNode* definition, const CzonNode* candidate);
bool ConformsKeyword(const CzonNode* definition, const CzonNode* candidate);

// Not 0 turns off the reports of all later checks in this thread, until it is set again.
void SetEquivalenceQuiet(int quiet);
int GetEquivalenceQuiet();

}  // namespace zon

#endif
