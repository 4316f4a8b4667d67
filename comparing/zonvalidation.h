// Finds every place where a tree does not conform to a template.
#ifndef ZON_COMPARING_ZONVALIDATION_H
#define ZON_COMPARING_ZONVALIDATION_H

#include <string_view>
#include <vector>

#include "comparing/zontemplaterules.h"
#include "equivalence/zonequivalence.h"
#include "reader/zonfinding.h"

class CzonNode;

namespace zon {

enum class Rule {
  kUnknownSection,
  kSurplusSection,
  kMissingSection,
  kUnknownKeyword,
  kSurplusKeyword,
  kMissingKeyword,
  kMissingValue,
  kSurplusValue,
  kValueKind,
  kUnresolved,
  kRange,
  kChoice,
  kFile
};

// What does not conform. Texts are composed when it is reported.
struct Problem {
  Rule rule;
  unsigned int number;  // of the value, from 1; 0 for none
  const CzonNode*
      definition;  // the node of the template that is not met: that is missing, or has the
                   // condition; of an unknown name the section that should have it
  const CzonNode* candidate;   // the section or keyword
  std::string_view condition;  // that is broken; empty for none
  Span place;
};

class Validation : public EquivalenceObserver {
 public:
  // Without `keepsProblems` only the result is found.
  Validation(const TemplateRules& rules, bool keepsProblems)
      : rules_(rules), keepsProblems_(keepsProblems) {}

  bool Conforms() const { return conforms_; }

  // Whether the candidate has a part for which the template has an ambiguous or a blank name. The
  // walk ended there.
  bool IsTemplateFaulty() const { return isTemplateFaulty_; }

  std::vector<Problem>& Problems() { return problems_; }

  bool OnMismatch(const Mismatch& mismatch) override;
  void OnSections(const CzonNode& definition, const CzonNode& candidate) override;
  void OnKeywords(const CzonNode& definition, const CzonNode& candidate) override;
  bool IsOpen(const CzonNode& definition) const override;

 private:
  void Add(Rule rule, const CzonNode* definition, const CzonNode* candidate,
           unsigned int number = 0, std::string_view condition = {});
  void AddUnknownSections(const CzonNode& definition, const CzonNode& candidate);
  void CheckValue(const Conditions& conditions, const CzonNode& definition, const CzonNode& keyword,
                  unsigned int number, const CzonNode& value);

  const TemplateRules& rules_;
  const bool keepsProblems_;
  bool conforms_ = true;
  bool isTemplateFaulty_ = false;
  std::vector<Problem> problems_;
};

}  // namespace zon

#endif
