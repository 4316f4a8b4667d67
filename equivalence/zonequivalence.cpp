// Depth-first walk over pairs of sections. In each pair: first the inner sections, in the order of the
// definition; then its named keywords; then the other keywords, in the order of the candidate. The
// order decides which mismatch is reported.
//
// Sections are matched by name and instance through the name indexes of both trees, so a check costs
// time linear in the number of nodes, plus the depth for each default placeholder. The pairs of
// sections that are not finished are a stack on the heap: the depth of a template costs no call stack.
// Each pair counts how many sections of the candidate are not matched yet. Sections left over at the
// end of a pair are an error.
//
// A keyword of the definition without a name is the wildcard: it defines all keywords of the
// candidate that have no definition of their own. Compatibility: a keyword of the candidate without a
// name is not checked if there is a wildcard. Keywords may be missing in the candidate.
// Tested by tests/equiv_test.cpp, and against a model by fuzz/equiv_fuzz.cpp.
#include "equivalence/zonequivalence.h"

#include <string>
#include <vector>

#include "base/zonchars.h"
#include "base/zonhooks.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

constexpr int kSeverity = 17;  // of ReportHook; part of the interface

// Set by each zonEquivalentExt; not 0: no reports. Also read by the later calls of zonIsEqvQuiet,
// zonEqvSection and zonEqvKeyword in the same thread.
thread_local int equivalenceQuiet = 0;

void Report(const std::string& text) {
  if (GetEquivalenceQuiet() == 0) SendReport(text.c_str(), kSeverity);
}

// Reports a mismatch of two nodes; either may be null. Returns false, the result of the check.
bool ReportNodes(const CzonNode* definition, const CzonNode* candidate, const char* message) {
  std::string text = std::string("Error: ") + message;
  if (definition != nullptr) text += "\n\tTemp: " + definition->GetNameGlb();
  if (candidate != nullptr) text += "\n\tCand: " + candidate->GetNameGlb();
  Report(text);
  return false;
}

// The same for the n-th value of a keyword.
bool ReportParam(const CzonNode* keyword, unsigned int n, const char* message) {
  Report(std::string("Error: ") + message + "\n\tKeyw: " + keyword->GetNameGlb() +
         "\n\tNo:" + std::to_string(n));
  return false;
}

bool HasFlag(const CzonNode* node, CzonNamedNode::Flags flag) {
  return (static_cast<const CzonNamedNode*>(node)->GetFlags() & flag) != 0;
}

bool HaveSameName(const CzonNode* a, const CzonNode* b) {
  return EqualNoCase(a->GetName(), b->GetName());
}

// Whether it is a section inside a file: the root is a section too, but has no owner. A host's class may
// override IsSection without being a CzonNamedNode, which HasFlag requires.
bool IsOwnedSection(const CzonNode* node) {
  return node != nullptr && node->IsSection() && NodeAccess::IsNamed(*node) &&
         node->GetOwner() != nullptr;
}

bool IsKeyword(const CzonNode* node) {
  return node != nullptr && node->IsKeyword() && NodeAccess::IsNamed(*node);
}

// Names and instances of two sections; not what is in them.
bool HeadsConform(const CzonNode* definition, const CzonNode* candidate) {
  const auto report = [&](const char* message) {
    return ReportNodes(definition, candidate, message);
  };
  if (!IsOwnedSection(definition) || !IsOwnedSection(candidate)) {
    return report("Two sections required");
  }
  if (definition->GetName().empty()) return report("Blank section name");
  if (!HaveSameName(definition, candidate)) return report("Section name conflict");
  if (definition->GetNoInstances() > 1) return report("Ambiguous template section");
  if (!HasFlag(definition, CzonNamedNode::kMulti) && candidate->GetNoInstances() > 1) {
    return report("Ambiguous candidate section");
  }
  return true;
}

// Each named keyword of the definition against all keywords of that name in the candidate.
bool NamedKeywordsConform(const CzonNode* definition, const CzonNode* candidate) {
  for (unsigned int n = 1; const CzonKeyword* keyword = definition->KeywordByNum(n); ++n) {
    const std::string& name = keyword->GetName();
    if (name.empty()) continue;
    for (unsigned int k = 1;
         const CzonKeyword* found = candidate->KeywordByNameNum(name.c_str(), k); ++k) {
      if (!ConformsKeyword(keyword, found)) return false;
    }
  }
  return true;
}

// All other keywords of the candidate against the wildcard.
bool OtherKeywordsConform(const CzonNode* definition, const CzonNode* candidate) {
  const CzonKeyword* wildcard = definition->KeywordByNameNum("", 1);
  for (unsigned int n = 1; const CzonKeyword* keyword = candidate->KeywordByNum(n); ++n) {
    if (definition->KeywordByNameNum(keyword->GetName().c_str(), 1) != nullptr) continue;
    // Compatibility: the keyword of the candidate is reported as if it were of the template.
    if (wildcard == nullptr) return ReportNodes(keyword, nullptr, "Unrecognized keyword");
    if (!ConformsKeyword(wildcard, keyword)) return false;
  }
  return true;
}

// Two sections of which the check has begun, and its state.
struct SectionPair {
  const CzonNode* definition;
  const CzonNode* candidate;
  unsigned int unmatched;     // sections of the candidate
  unsigned int section = 1;   // next section of the definition to search for
  unsigned int instance = 1;  // next instance of its name in the candidate

  SectionPair(const CzonNode* d, const CzonNode* c)
      : definition(d), candidate(c), unmatched(c->GetNoSections()) {}
};

// The next sections of the pair that match: first all instances of a section in the candidate, then
// the next section. Null if there are none left.
struct Match {
  const CzonSection* definition = nullptr;
  const CzonSection* candidate = nullptr;
};

// Stores the next match. Returns false, after a report, if a mandatory section is missing.
bool FindNextMatch(SectionPair& pair, Match& match) {
  for (; const CzonSection* section = pair.definition->SectionByNum(pair.section); ++pair.section) {
    const char* name = section->GetName().c_str();
    if (const CzonSection* found = pair.candidate->SectionByNameNum(name, pair.instance)) {
      ++pair.instance;
      match = {section, found};
      return true;
    }
    if (pair.instance == 1 && HasFlag(section, CzonNamedNode::kMandat)) {
      return ReportNodes(section, nullptr, "Missing section");
    }
    pair.instance = 1;
  }
  match = {};
  return true;
}

// What is checked after the last section of a pair.
bool RestConforms(const SectionPair& pair) {
  if (pair.unmatched != 0) {
    return ReportNodes(pair.definition, pair.candidate, "Inconsistent number of sections");
  }
  return NamedKeywordsConform(pair.definition, pair.candidate) &&
         OtherKeywordsConform(pair.definition, pair.candidate);
}

// Numbers conform if they share a view. Numbers of a file always have the double view; only builder
// definitions are narrower, for example an integer definition without it. Other values conform by
// syntax class, so a date-time conforms to a file name.
bool KindsConform(const CzonNode* definition, const CzonNode* param) {
  if (!definition->IsParam() || !param->IsParam()) {
    return ReportNodes(definition, param, "Two parameters expected");
  }
  if (!definition->IsNumeric()) return definition->GetSyntaxClass() == param->GetSyntaxClass();
  return (definition->IsInt() && param->IsInt()) || (definition->IsFloat() && param->IsFloat()) ||
         (definition->IsDouble() && param->IsDouble());
}

bool ParamConforms(const CzonNode* definition, const CzonNode* param, const CzonNode* keyword,
                   unsigned int n) {
  if (KindsConform(definition, param)) return true;
  return ReportParam(
      keyword, n, param->IsDefaultPar() ? "Unresolved default value" : "Parameter type conflict");
}

// Names and instances of two keywords; not their values.
bool KeywordHeadsConform(const CzonNode* definition, const CzonNode* candidate) {
  const auto report = [&](const char* message) {
    return ReportNodes(definition, candidate, message);
  };
  if (!IsKeyword(definition) || !IsKeyword(candidate)) return report("Two keywords required");
  const bool named = definition->GetName().empty() ? !candidate->GetName().empty()
                                                   : HaveSameName(definition, candidate);
  if (!named) return report("Keyword name conflict");
  if (definition->GetNoInstances() >= 2) return report("Ambiguous template keyword");
  if (!HasFlag(definition, CzonNamedNode::kMulti) && candidate->GetNoInstances() > 1) {
    return report("Ambiguous candidate keyword");
  }
  return true;
}

}  // namespace

bool ConformsSection(const CzonNode* definition, const CzonNode* candidate) {
  if (!HeadsConform(definition, candidate)) return false;
  std::vector<SectionPair> open{{definition, candidate}};
  while (!open.empty()) {
    SectionPair& pair = open.back();
    Match match;
    if (!FindNextMatch(pair, match)) return false;
    if (match.definition == nullptr) {
      if (!RestConforms(pair)) return false;
      open.pop_back();
      continue;
    }
    if (!HeadsConform(match.definition, match.candidate)) return false;
    --pair.unmatched;
    open.emplace_back(match.definition, match.candidate);  // `pair` is invalid from here
  }
  return true;
}

bool ConformsKeyword(const CzonNode* definition, const CzonNode* candidate) {
  if (!KeywordHeadsConform(definition, candidate)) return false;
  const CzonNode* last = nullptr;  // the last value of the definition so far
  for (unsigned int n = 1;; ++n) {
    const CzonNode* expected = definition->ParamByNum(n);
    const CzonNode* param = candidate->ParamByNum(n);
    if (param == nullptr) {
      return expected == nullptr || ReportParam(definition, n, "Missing parameters");
    }
    if (expected != nullptr) {
      last = expected;
    } else if (!HasFlag(definition, CzonNamedNode::kOpenList)) {
      return ReportParam(definition, n, "Too many parameters");
    }
    // The last value of an open list repeats. An open list without values accepts any.
    if (last != nullptr && !ParamConforms(last, param, candidate, n)) return false;
  }
}

void SetEquivalenceQuiet(int quiet) {
  equivalenceQuiet = quiet;
}

int GetEquivalenceQuiet() {
  return equivalenceQuiet;
}

}  // namespace zon
