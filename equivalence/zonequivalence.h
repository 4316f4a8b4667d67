// Equivalence: whether a section or keyword of a file conforms to its definition in a template.
//
// One walk finds the mismatches and passes each to an observer. zonEquivalent stops at the first
// one and reports it through ReportHook; zonxValidate collects them all.
#ifndef ZON_EQUIVALENCE_ZONEQUIVALENCE_H
#define ZON_EQUIVALENCE_ZONEQUIVALENCE_H

#include "tree/zonnode.h"

namespace zon {

enum class MismatchKind {
  kNone,
  kNoSections,       // two sections inside a file are required
  kBlankSection,     // the section of the template has no name
  kSectionName,      // the names differ
  kTemplateSection,  // the template has several sections of the name
  kSurplusSection,   // the candidate has several, and the template permits one
  kMissingSection,   // `candidate` has no section like `definition`
  kUnknownSections,  // `candidate` has sections that `definition` has not
  kNoKeywords,       // two keywords are required
  kKeywordName,      // the names differ
  kTemplateKeyword,  // the template has several keywords of the name
  kSurplusKeyword,   // the candidate has several, and the template permits one
  kUnknownKeyword,   // the section `definition` has no keyword like `candidate`
  kMissingValue,     // the candidate has no value of this number
  kSurplusValue,     // the template has no value of this number
  kValueKind,        // the kinds differ
  kUnresolved        // the value of the candidate is a placeholder without a default
};

// If not said otherwise, the nodes are the two sections or keywords.
struct Mismatch {
  MismatchKind kind;
  unsigned int number;  // of the value, from 1
  const CzonNode* definition;
  const CzonNode* candidate;
  const CzonNode* expected;  // of kValueKind and kUnresolved: the two values
  const CzonNode* value;
};

class EquivalenceObserver {
 public:
  virtual ~EquivalenceObserver() = default;

  // Returns whether the walk goes on.
  virtual bool OnMismatch(const Mismatch& mismatch) = 0;

  // Called for two sections, or two roots, before what is in them is compared.
  virtual void OnSections(const CzonNode&, const CzonNode&) {}

  // Called for two keywords before their values are compared.
  virtual void OnKeywords(const CzonNode&, const CzonNode&) {}

  // Whether the last value of a keyword of the template may repeat.
  virtual bool IsOpen(const CzonNode& definition) const;
};

// Compares each section of a file with the section of its name in a template.
void CompareRoots(const CzonNode& definition, const CzonNode& candidate,
                  EquivalenceObserver& observer);

// kNone, kValueKind or kUnresolved.
MismatchKind CompareValue(const CzonNode& definition, const CzonNode& value);

// The first mismatch ends the check and is reported through ReportHook, unless reports are off. A
// child of a keyword that is no CzonParam causes two reports.
bool ConformsSection(const CzonNode* definition, const CzonNode* candidate);
bool ConformsKeyword(const CzonNode* definition, const CzonNode* candidate);

// Not 0 turns off the reports of all later checks in this thread, until it is set again.
void SetEquivalenceQuiet(int quiet);
int GetEquivalenceQuiet();

}  // namespace zon

#endif
