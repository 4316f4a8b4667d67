// The open sections are a list on the heap, each with its default lines, so neither depth nor the
// number of siblings matters.
// Tested by tests/new.t.
#include "tool/templatewalk.h"

#include <algorithm>

#include <zon.h>
#include <zonclasses.h>

#include "tool/samples.h"
#include "tool/values.h"

namespace tool {
namespace {

// "2 x real, string"
std::string KindsOf(const std::vector<void*>& values) {
  std::vector<std::string> kinds;
  for (std::size_t first = 0, next = 0; first < values.size(); first = next) {
    const int kind = zonxGetKind(values[first]);
    while (next < values.size() && zonxGetKind(values[next]) == kind) ++next;
    const std::size_t count = next - first;
    kinds.push_back((count > 1 ? std::to_string(count) + " x " : "") + KindName(kind));
  }
  return Join(kinds, ", ");
}

// Whether values of these kinds conform to those of the template.
bool Conform(const std::vector<int>& kinds, const KeywordFacts& facts) {
  if (kinds.size() < facts.values.size()) return false;
  if (kinds.size() > facts.values.size() && !facts.isOpen) return false;
  for (std::size_t n = 0; n < kinds.size(); ++n) {
    void* const wanted = facts.values[std::min(n, facts.values.size() - 1)];
    if (!HaveSameKind(kinds[n], zonxGetKind(wanted))) return false;
  }
  return true;
}

}  // namespace

std::string Join(const std::vector<std::string>& parts, const char* between) {
  std::string text;
  for (const std::string& part : parts) {
    if (!part.empty()) text += (text.empty() ? "" : between) + part;
  }
  return text;
}

bool TemplateWalk::Run(const LoadedFile& file) {
  open_.push_back({file.Root(), {}, 0, {}});
  while (!open_.empty()) {
    Open& innermost = open_.back();
    void* const section = zonSectionByNum(innermost.node, ++innermost.inner);
    if (section != nullptr) {
      if (!OpenSection(file, section)) return false;
      continue;
    }
    if (open_.size() > 1) End(innermost.facts);
    open_.pop_back();
  }
  return true;
}

bool TemplateWalk::IsUnique(const LoadedFile& file, void* node) const {
  if (zonGetNoInstances(node) <= 1) return true;
  file.Report(node, ZONX_ERROR,
              std::string("a template cannot have two of `") + zonGetName(node) + "`",
              "write () after the name if it may occur more than once");
  return false;
}

bool TemplateWalk::OpenSection(const LoadedFile& file, void* node) {
  if (!IsUnique(file, node)) return false;
  const Conditions conditions = ReadConditions(RemarkOf(node), values_);
  const std::string name = zonGetName(node);
  const std::string& around = open_.back().facts.path;
  open_.push_back({node,
                   {name, around + (around.empty() ? "" : "/") + name, HasMultiFlag(node),
                    conditions.isRequired, conditions.text},
                   0,
                   {}});
  for (unsigned int n = 1; void* line = zonNodeByNum(node, n); ++n) {
    if (zonxGetKind(line) == ZONX_DEFINITION)
      open_.back().defaults.emplace(SmallLetters(zonGetName(line)), line);
  }
  Begin(open_.back().facts);
  for (unsigned int n = 1; void* keyword = zonKeywordByNum(node, n); ++n) {
    if (!IsUnique(file, keyword)) return false;
    Visit(FactsOf(keyword));
  }
  EndKeywords();
  return true;
}

KeywordFacts TemplateWalk::FactsOf(void* keyword) {
  KeywordFacts facts{};
  facts.name = zonGetName(keyword);
  facts.isMulti = HasMultiFlag(keyword);
  for (unsigned int n = 1; void* value = zonParamByNum(keyword, n); ++n)
    facts.values.push_back(value);
  AddConditions(keyword, &facts);
  facts.kinds = KindsOf(facts.values) + (facts.isOpen ? ", ..." : "");
  AddDefault(&facts);
  return facts;
}

// Conditions can be stated for the keyword, and for each of its values.
void TemplateWalk::AddConditions(void* keyword, KeywordFacts* facts) {
  std::vector<std::string> limits, units, texts;
  const auto add = [&](void* node, const std::string& which) {
    const std::string remark = RemarkOf(node);
    if (remark.empty()) return;
    const Conditions stated = ReadConditions(remark, values_);
    facts->isRequired = facts->isRequired || stated.isRequired;
    facts->isOpen = facts->isOpen || stated.isOpen;
    if (!stated.byDefault.empty()) facts->byDefault = stated.byDefault;
    for (const std::string& limit : stated.limits) limits.push_back(limit + which);
    if (!stated.unit.empty()) units.push_back(stated.unit + which);
    if (!stated.text.empty()) texts.push_back(stated.text + which);
  };
  add(keyword, "");
  for (std::size_t n = 0; n < facts->values.size(); ++n) {
    const bool isOnly = facts->values.size() == 1;
    if (zonxGetKind(facts->values[n]) == ZONX_UNKNOWN) continue;  // it is its remark
    add(facts->values[n], isOnly ? "" : " (value " + std::to_string(n + 1) + ")");
  }
  facts->limits = Join(limits, "; ");
  facts->unit = Join(units, "; ");
  facts->text = Join(texts, "; ");
}

void* TemplateWalk::FindDefaultLine(const std::string& name) const {
  for (auto section = open_.rbegin(); section != open_.rend(); ++section) {
    const auto found = section->defaults.find(name);
    if (found != section->defaults.end()) return found->second;
  }
  return nullptr;
}

// The default of the remark, or else that of the default lines. A single value may be without its
// marks.
void TemplateWalk::AddDefault(KeywordFacts* facts) {
  if (facts->byDefault.empty()) {
    void* const line = FindDefaultLine(SmallLetters(facts->name.c_str()));
    if (line == nullptr) return;
    for (unsigned int n = 1; void* value = zonNodeByNum(line, n); ++n) {
      if (n > 1) facts->byDefault += ", ";
      if (zonxGetKind(value) != ZONX_PLACEHOLDER) facts->byDefault += TextForm(value);
    }
  }
  if (Conform(values_.Kinds(facts->byDefault), *facts)) {
    facts->defaultText = facts->byDefault;
  } else if (facts->values.size() == 1) {
    const auto text = values_.OfKind(zonxGetKind(facts->values.front()), facts->byDefault);
    facts->defaultText = text.value_or("");
  }
}

}  // namespace tool
