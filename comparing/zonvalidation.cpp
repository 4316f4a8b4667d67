// The walk of equivalence/ finds what does not conform; conditions are checked along with it. All
// problems are collected before the first report: a fault of the template that is found on the way
// replaces them.
//
// Tested by tests/zonxvalidate_test.cpp.
#include "comparing/zonvalidation.h"

#include <algorithm>

#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

Rule RuleOf(MismatchKind kind) {
  switch (kind) {
    case MismatchKind::kSurplusSection:
      return Rule::kSurplusSection;
    case MismatchKind::kMissingSection:
      return Rule::kMissingSection;
    case MismatchKind::kSurplusKeyword:
      return Rule::kSurplusKeyword;
    case MismatchKind::kMissingValue:
      return Rule::kMissingValue;
    case MismatchKind::kSurplusValue:
      return Rule::kSurplusValue;
    case MismatchKind::kValueKind:
      return Rule::kValueKind;
    case MismatchKind::kUnresolved:
      return Rule::kUnresolved;
    // A section or keyword that a class of the host denies to be one is none of the template.
    case MismatchKind::kNoSections:
    case MismatchKind::kSectionName:
      return Rule::kUnknownSection;
    default:
      return Rule::kUnknownKeyword;
  }
}

}  // namespace

bool Validation::OnMismatch(const Mismatch& mismatch) {
  switch (mismatch.kind) {
    case MismatchKind::kBlankSection:
    case MismatchKind::kTemplateSection:
    case MismatchKind::kTemplateKeyword:
      isTemplateFaulty_ = true;
      return false;
    case MismatchKind::kUnknownSections:
      AddUnknownSections(*mismatch.definition, *mismatch.candidate);
      return true;
    case MismatchKind::kSurplusSection:
    case MismatchKind::kSurplusKeyword:
      conforms_ = false;
      // The first of a name is not one too many.
      if (mismatch.candidate->GetInstanceNo() == 1) return true;
      break;
    default:
      break;
  }
  Add(RuleOf(mismatch.kind), mismatch.definition, mismatch.candidate, mismatch.number);
  return true;
}

void Validation::AddUnknownSections(const CzonNode& definition, const CzonNode& candidate) {
  conforms_ = false;
  for (unsigned int n = 1; const CzonSection* section = candidate.SectionByNum(n); ++n) {
    if (definition.SectionByNameNum(section->GetName().c_str(), 1) != nullptr) continue;
    Add(Rule::kUnknownSection, &definition, section);
  }
}

void Validation::OnSections(const CzonNode& definition, const CzonNode& candidate) {
  const auto* required = rules_.RequiredIn(definition);
  if (required == nullptr) return;
  for (const CzonNamedNode* node : *required) {
    const char* const name = node->GetName().c_str();
    if (node->IsSection() != 0) {
      if (candidate.SectionByNameNum(name, 1) == nullptr) {
        Add(Rule::kMissingSection, node, &candidate);
      }
    } else if (candidate.KeywordByNameNum(name, 1) == nullptr) {
      Add(Rule::kMissingKeyword, node, &candidate);
    }
  }
}

// Values of another kind are a mismatch already, and are not checked.
void Validation::OnKeywords(const CzonNode& definition, const CzonNode& candidate) {
  const KeywordRules* rules = rules_.RulesOf(definition);
  if (rules == nullptr || !rules->hasConditions) return;
  const unsigned int last = definition.GetNoParams();
  const bool isOpen = IsOpen(definition);
  auto own = rules->values.begin();
  for (unsigned int n = 1; const CzonNode* value = candidate.ParamByNum(n); ++n) {
    if (n > last && !isOpen) return;
    const unsigned int number = std::min(n, last);
    while (own != rules->values.end() && own->number < number) ++own;
    const CzonNode* expected = definition.ParamByNum(number);
    if (expected != nullptr && CompareValue(*expected, *value) != MismatchKind::kNone) continue;
    CheckValue(rules->all, definition, candidate, n, *value);
    if (own != rules->values.end() && own->number == number) {
      CheckValue(own->conditions, *own->value, candidate, n, *value);
    }
  }
}

void Validation::CheckValue(const Conditions& conditions, const CzonNode& definition,
                            const CzonNode& keyword, unsigned int number, const CzonNode& value) {
  if (!conditions.IsOfValues()) return;
  const BrokenConditions broken = FindBroken(conditions, value);
  if (!broken.range.empty()) Add(Rule::kRange, &definition, &keyword, number, broken.range);
  if (!broken.choice.empty()) Add(Rule::kChoice, &definition, &keyword, number, broken.choice);
  if (!broken.exists.empty()) Add(Rule::kFile, &definition, &keyword, number, broken.exists);
}

bool Validation::IsOpen(const CzonNode& definition) const {
  if (EquivalenceObserver::IsOpen(definition)) return true;
  const KeywordRules* rules = rules_.RulesOf(definition);
  return rules != nullptr && rules->isOpen;
}

void Validation::Add(Rule rule, const CzonNode* definition, const CzonNode* candidate,
                     unsigned int number, std::string_view condition) {
  conforms_ = false;
  if (keepsProblems_) problems_.push_back({rule, number, definition, candidate, condition, {}});
}

}  // namespace zon
