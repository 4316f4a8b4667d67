// Only nodes with conditions are kept, so a template without remarks costs one pass over its
// keywords. Values that are still text have no remarks; they are not made.
// Tested by tests/zonxvalidate_test.cpp.
#include "comparing/zontemplaterules.h"

#include <algorithm>
#include <utility>

#include "api/zonx.h"
#include "reader/zonmistake.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodepath.h"

namespace zon {
namespace {

// Calls `visit` for a root and each section below it, in the order of the tree. Without recursion:
// trees can be deep.
template <class F>
void VisitSections(const CzonNode& root, F&& visit) {
  struct Visit {
    const CzonNode* section;
    unsigned int next;
  };
  visit(root);
  std::vector<Visit> open{{&root, 1}};
  while (!open.empty()) {
    const CzonNode* const inner = open.back().section->SectionByNum(open.back().next++);
    if (inner == nullptr) {
      open.pop_back();
    } else {
      visit(*inner);
      open.push_back({inner, 1});
    }
  }
}

// A root has no keywords.
template <class F>
void VisitKeywords(const CzonNode& section, F&& visit) {
  if (section.GetOwner() == nullptr) return;
  for (unsigned int n = 1; const CzonKeyword* keyword = section.KeywordByNum(n); ++n) {
    visit(*keyword);
  }
}

bool IsMandatory(const CzonNamedNode& section) {
  return (section.GetFlags() & CzonNamedNode::kMandat) != 0;
}

// Of the second and later nodes of a name.
void AddRepeatedName(const CzonNode& node, const CzonNode* first,
                     std::vector<TemplateFault>* faults) {
  if (node.GetInstanceNo() <= 1 || first == &node) return;
  faults->push_back({"ambiguous-name", &node, first,
                     "a template cannot have two of " + Quoted(node.GetName()),
                     "write () after the name if it may occur more than once"});
}

}  // namespace

TemplateRules::TemplateRules(const CzonNode& root) {
  VisitSections(root, [this](const CzonNode& section) { ReadSection(section); });
}

const KeywordRules* TemplateRules::RulesOf(const CzonNode& keyword) const {
  if (keywords_.empty()) return nullptr;
  const auto found = keywords_.find(&keyword);
  return found != keywords_.end() ? &found->second : nullptr;
}

const std::vector<const CzonNamedNode*>* TemplateRules::RequiredIn(const CzonNode& section) const {
  if (required_.empty()) return nullptr;
  const auto found = required_.find(&section);
  return found != required_.end() ? &found->second : nullptr;
}

// A condition other than "required" has no meaning for a section, so it is a text for people there.
void TemplateRules::ReadSection(const CzonNode& section) {
  if (!section.GetRemark().empty() && section.GetOwner() != nullptr) {
    const auto& named = static_cast<const CzonNamedNode&>(section);
    const bool isRequired = ParseConditions(section.GetRemark()).isRequired;
    if (isRequired && !IsMandatory(named)) required_[section.GetOwner()].push_back(&named);
  }
  VisitKeywords(section, [&](const CzonNamedNode& keyword) { ReadKeyword(section, keyword); });
}

void TemplateRules::ReadKeyword(const CzonNode& section, const CzonNamedNode& keyword) {
  KeywordRules rules;
  if (!keyword.GetRemark().empty()) rules.all = ParseConditions(keyword.GetRemark());
  if (NodeAccess::DeferredText(keyword).empty()) ReadValues(keyword, &rules);
  if (!rules.all.IsAny() && rules.values.empty()) return;
  rules.isOpen = rules.all.isOpen;
  rules.isRequired = rules.all.isRequired;
  rules.hasConditions = rules.all.IsOfValues();
  for (const KeywordRules::OfValue& value : rules.values) {
    rules.isOpen = rules.isOpen || value.conditions.isOpen;
    rules.isRequired = rules.isRequired || value.conditions.isRequired;
    rules.hasConditions = rules.hasConditions || value.conditions.IsOfValues();
  }
  CheckKeyword(keyword, rules);
  if (rules.isRequired) required_[&section].push_back(&keyword);
  keywords_.emplace(&keyword, std::move(rules));
}

void TemplateRules::ReadValues(const CzonNamedNode& keyword, KeywordRules* rules) {
  unsigned int number = 0;
  for (const CzonNode* value : NodeAccess::Children(keyword)) {
    ++number;
    if (value->GetRemark().empty()) continue;
    Conditions conditions = ParseConditions(value->GetRemark());
    if (conditions.IsAny()) rules->values.push_back({number, value, std::move(conditions)});
  }
}

void TemplateRules::CheckKeyword(const CzonNode& keyword, const KeywordRules& rules) {
  if (keyword.GetName().empty() && rules.isRequired) {
    Report(keyword, keyword, "a keyword without a name cannot be required");
  }
  // Why the first value cannot have the conditions, unless another one can.
  std::string why;
  const unsigned int count = rules.all.IsOfValues() ? keyword.GetNoParams() : 0;
  for (unsigned int n = 1; n <= count; ++n) {
    const CzonNode* value = keyword.ParamByNum(n);
    const std::string reason = value != nullptr ? WhyUnfit(rules.all, KindOf(*value)) : "";
    if (n == 1) why = reason;
    if (!reason.empty()) continue;
    why.clear();
    break;
  }
  if (!why.empty()) Report(keyword, keyword, why + ", and the keyword has none");
  CheckAlone(keyword, keyword, rules.all, {});
  for (const KeywordRules::OfValue& item : rules.values) CheckValue(keyword, rules, item);
}

void TemplateRules::CheckValue(const CzonNode& keyword, const KeywordRules& rules,
                               const KeywordRules::OfValue& value) {
  const Conditions& conditions = value.conditions;
  if (conditions.isOpen && value.number < keyword.GetNoParams()) {
    Report(*value.value, keyword, "only the last value can be `open`");
  }
  const CzonNode* const resolved = keyword.ParamByNum(value.number);
  const int kind = resolved != nullptr ? KindOf(*resolved) : 0;
  const std::string why = WhyUnfit(conditions, kind);
  if (!why.empty()) Report(*value.value, keyword, why + ", and the value is " + KindText(kind));
  if (conditions.IsOfValues()) CheckAlone(*value.value, keyword, conditions, rules.all.range);
}

// Conditions that contradict each other. `around`: the range of all values of the keyword.
void TemplateRules::CheckAlone(const CzonNode& node, const CzonNode& keyword,
                               const Conditions& conditions, const Range& around) {
  if (conditions.hasTwoChoices) Report(node, keyword, "`one of` is written twice");
  Range range = conditions.range;
  range.Narrow(around);
  if (range.IsEmpty()) {
    const std::string low = std::string(range.low.text);
    Report(node, keyword,
           "no number is " + Quoted(low) +
               (range.low.text == range.high.text ? "" : " and " + Quoted(range.high.text)));
    return;
  }
  const std::vector<Number>& numbers = conditions.choice.numbers;
  const bool isPossible = std::any_of(numbers.begin(), numbers.end(),
                                      [&](const Number& number) { return range.Contains(number); });
  if (!numbers.empty() && !isPossible) {
    Report(node, keyword, "none of the numbers of `one of` is in the range");
  }
}

void TemplateRules::Report(const CzonNode& node, const CzonNode& keyword, const std::string& what) {
  faults_.push_back({"bad-condition", &node, nullptr, "`" + ShortPathOf(keyword) + "`: " + what,
                     "correct the condition or the value of the template"});
}

std::vector<TemplateFault> FindNameFaults(const CzonNode& root) {
  std::vector<TemplateFault> faults;
  VisitSections(root, [&](const CzonNode& section) {
    const CzonNode* const owner = section.GetOwner();
    if (owner != nullptr && section.GetName().empty()) {
      faults.push_back(
          {"missing-name", &section, nullptr, "a section of the template has no name", ""});
    }
    if (owner != nullptr) {
      AddRepeatedName(section, owner->SectionByNameNum(section.GetName().c_str(), 1), &faults);
    }
    VisitKeywords(section, [&](const CzonKeyword& keyword) {
      AddRepeatedName(keyword, section.KeywordByNameNum(keyword.GetName().c_str(), 1), &faults);
    });
  });
  return faults;
}

}  // namespace zon
