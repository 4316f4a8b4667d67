// What the remarks of a template demand, and its mistakes.
#ifndef ZON_COMPARING_ZONTEMPLATERULES_H
#define ZON_COMPARING_ZONTEMPLATERULES_H

#include <string>
#include <unordered_map>
#include <vector>

#include "comparing/zoncondition.h"

class CzonNamedNode;
class CzonNode;

namespace zon {

// Of one keyword of a template.
struct KeywordRules {
  struct OfValue {
    unsigned int number;  // from 1
    const CzonNode* value;
    Conditions conditions;
  };
  Conditions all;               // of the remark of the keyword
  std::vector<OfValue> values;  // of values with conditions, in their order
  bool isOpen = false;
  bool isRequired = false;
  bool hasConditions = false;  // on values
};

struct TemplateFault {
  const char* rule;
  const CzonNode* node;
  const CzonNode* first;  // of a name that occurs twice; else null
  std::string message;
  const char* hint;
};

class TemplateRules {
 public:
  // Reads the remarks of a template. The tree must not change as long as the object lives.
  explicit TemplateRules(const CzonNode& root);

  // Null if the keyword has no conditions.
  const KeywordRules* RulesOf(const CzonNode& keyword) const;

  // The sections and keywords that a section or root must have by its remarks; null for none.
  const std::vector<const CzonNamedNode*>* RequiredIn(const CzonNode& section) const;

  // The conditions that cannot be meant.
  const std::vector<TemplateFault>& Faults() const { return faults_; }

 private:
  void ReadSection(const CzonNode& section);
  void ReadKeyword(const CzonNode& section, const CzonNamedNode& keyword);
  void ReadValues(const CzonNamedNode& keyword, KeywordRules* rules);
  void CheckKeyword(const CzonNode& keyword, const KeywordRules& rules);
  void CheckValue(const CzonNode& keyword, const KeywordRules& rules,
                  const KeywordRules::OfValue& value);
  void CheckAlone(const CzonNode& node, const CzonNode& keyword, const Conditions& conditions,
                  const Range& around);
  void Report(const CzonNode& node, const CzonNode& keyword, const std::string& what);

  std::unordered_map<const CzonNode*, KeywordRules> keywords_;
  std::unordered_map<const CzonNode*, std::vector<const CzonNamedNode*>> required_;
  std::vector<TemplateFault> faults_;
};

// The names that a template has twice where it must not, and sections without a name.
std::vector<TemplateFault> FindNameFaults(const CzonNode& root);

}  // namespace zon

#endif
