// Whether a section or keyword of a file conforms to one of a template.
//
// The first mismatch ends the check and is reported through ReportHook. Names are found through the
// indexes of both trees, so a check costs no more than the two have nodes.
#ifndef ZON_EQUIVALENCE_ZONEQUIVALENCE_H
#define ZON_EQUIVALENCE_ZONEQUIVALENCE_H

#include "tree/zonnode.h"

namespace zon {

bool ConformsSection(const CzonNode* t, const CzonNode* c);
bool ConformsKeyword(const CzonNode* t, const CzonNode* c);

}  // namespace zon

#endif
