// Depth-first walk over pairs of sections. In each pair: first the inner sections, in the order of
// the definition; then its named keywords; then the other keywords, in the order of the candidate.
// The order decides which mismatch is found first.
//
// Sections are matched by name and instance through the name indexes of both trees, so a check
// costs time linear in the number of nodes, plus the depth for each default placeholder. The pairs
// of sections that are not finished are a stack on the heap: the depth of a template costs no call
// stack. Each pair counts how many sections of the candidate are not matched yet. Sections left
// over at the end of a pair are a mismatch.
//
// A keyword of the definition without a name is the wildcard: it defines all keywords of the
// candidate that have no definition of their own. Compatibility: a keyword of the candidate without
// a name is not checked if there is a wildcard. Keywords may be missing in the candidate.
//
// Each mismatch is passed to an observer, which decides whether the walk goes on; so the functions
// here return false if it ends. zonEquivalent ends at the first one, zonxValidate reads all.
// Tested by tests/equiv_test.cpp and tests/zonxvalidate_test.cpp, and against a model by
// fuzz/equiv_fuzz.cpp.
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

const char* TextOf(MismatchKind kind) {
  switch (kind) {
    case MismatchKind::kNoSections:
      return "Two sections required";
    case MismatchKind::kBlankSection:
      return "Blank section name";
    case MismatchKind::kSectionName:
      return "Section name conflict";
    case MismatchKind::kTemplateSection:
      return "Ambiguous template section";
    case MismatchKind::kSurplusSection:
      return "Ambiguous candidate section";
    case MismatchKind::kMissingSection:
      return "Missing section";
    case MismatchKind::kUnknownSections:
      return "Inconsistent number of sections";
    case MismatchKind::kNoKeywords:
      return "Two keywords required";
    case MismatchKind::kKeywordName:
      return "Keyword name conflict";
    case MismatchKind::kTemplateKeyword:
      return "Ambiguous template keyword";
    case MismatchKind::kSurplusKeyword:
      return "Ambiguous candidate keyword";
    case MismatchKind::kUnknownKeyword:
      return "Unrecognized keyword";
    case MismatchKind::kMissingValue:
      return "Missing parameters";
    case MismatchKind::kSurplusValue:
      return "Too many parameters";
    case MismatchKind::kUnresolved:
      return "Unresolved default value";
    default:
      return "Parameter type conflict";
  }
}

// Passes the first mismatch to ReportHook, and ends the check.
class FirstMismatch : public EquivalenceObserver {
 public:
  bool OnMismatch(const Mismatch& mismatch) override {
    if (GetEquivalenceQuiet() != 0) return false;
    const char* text = TextOf(mismatch.kind);
    switch (mismatch.kind) {
      case MismatchKind::kMissingSection:
        ReportNodes(mismatch.definition, nullptr, text);
        break;
      case MismatchKind::kUnknownKeyword:
        // Compatibility: the keyword of the candidate is reported as if it were of the template.
        ReportNodes(mismatch.candidate, nullptr, text);
        break;
      case MismatchKind::kMissingValue:
      case MismatchKind::kSurplusValue:
        ReportValue(mismatch.definition, mismatch.number, text);
        break;
      case MismatchKind::kValueKind:
      case MismatchKind::kUnresolved:
        if (!mismatch.expected->IsParam() || !mismatch.value->IsParam()) {
          ReportNodes(mismatch.expected, mismatch.value, "Two parameters expected");
        }
        ReportValue(mismatch.candidate, mismatch.number, text);
        break;
      default:
        ReportNodes(mismatch.definition, mismatch.candidate, text);
    }
    return false;
  }

 private:
  // Either node may be null.
  static void ReportNodes(const CzonNode* definition, const CzonNode* candidate,
                          const char* message) {
    std::string text = std::string("Error: ") + message;
    if (definition != nullptr) text += "\n\tTemp: " + definition->GetNameGlb();
    if (candidate != nullptr) text += "\n\tCand: " + candidate->GetNameGlb();
    SendReport(text.c_str(), kSeverity);
  }

  static void ReportValue(const CzonNode* keyword, unsigned int n, const char* message) {
    const std::string text = std::string("Error: ") + message +
                             "\n\tKeyw: " + keyword->GetNameGlb() + "\n\tNo:" + std::to_string(n);
    SendReport(text.c_str(), kSeverity);
  }
};

bool HasFlag(const CzonNode* node, CzonNamedNode::Flags flag) {
  return (static_cast<const CzonNamedNode*>(node)->GetFlags() & flag) != 0;
}

bool HaveSameName(const CzonNode* a, const CzonNode* b) {
  return EqualNoCase(a->GetName(), b->GetName());
}

// Whether it is a section inside a file: the root is a section too, but has no owner. A host's
// class may override IsSection without being a CzonNamedNode, which HasFlag requires.
bool IsOwnedSection(const CzonNode* node) {
  return node != nullptr && node->IsSection() && NodeAccess::IsNamed(*node) &&
         node->GetOwner() != nullptr;
}

bool IsKeyword(const CzonNode* node) {
  return node != nullptr && node->IsKeyword() && NodeAccess::IsNamed(*node);
}

bool IsOfLibrary(const CzonNode* node) {
  return NodeAccess::IsNamed(*node) &&
         NodeAccess::IsOfLibrary(static_cast<const CzonNamedNode&>(*node));
}

unsigned int CountNamesakes(const CzonNode* section, const CzonKeyword* keyword) {
  return NodeAccess::CountNamesakes(static_cast<const CzonNamedNode&>(*section), *keyword);
}

// The first keyword of the name. Two sections mostly have the same keywords in the same order, so
// the n-th one is looked at before the name is looked up.
const CzonKeyword* FindFirst(const CzonNode* section, const char* name, unsigned int n) {
  const CzonKeyword* near = IsOfLibrary(section) ? section->KeywordByNum(n) : nullptr;
  const bool isFirst = near != nullptr && IsOfLibrary(near) && near->GetInstanceNo() == 1 &&
                       EqualNoCase(near->GetName(), name);
  return isFirst ? near : section->KeywordByNameNum(name, 1);
}

// Names and instances of two sections; not what is in them.
MismatchKind CompareSectionHeads(const CzonNode* definition, const CzonNode* candidate) {
  if (!IsOwnedSection(definition) || !IsOwnedSection(candidate)) return MismatchKind::kNoSections;
  if (definition->GetName().empty()) return MismatchKind::kBlankSection;
  if (!HaveSameName(definition, candidate)) return MismatchKind::kSectionName;
  if (definition->GetNoInstances() > 1) return MismatchKind::kTemplateSection;
  if (!HasFlag(definition, CzonNamedNode::kMulti) && candidate->GetNoInstances() > 1) {
    return MismatchKind::kSurplusSection;
  }
  return MismatchKind::kNone;
}

// Names and instances of two keywords; not their values.
MismatchKind CompareKeywordHeads(const CzonNode* definition, const CzonNode* candidate) {
  if (!IsKeyword(definition) || !IsKeyword(candidate)) return MismatchKind::kNoKeywords;
  const bool named = definition->GetName().empty() ? !candidate->GetName().empty()
                                                   : HaveSameName(definition, candidate);
  if (!named) return MismatchKind::kKeywordName;
  if (definition->GetNoInstances() >= 2) return MismatchKind::kTemplateKeyword;
  if (!HasFlag(definition, CzonNamedNode::kMulti) && candidate->GetNoInstances() > 1) {
    return MismatchKind::kSurplusKeyword;
  }
  return MismatchKind::kNone;
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

// The next sections of a pair that match: first all instances of a section in the candidate, then
// the next section. Null if there are none left.
struct Match {
  const CzonSection* definition = nullptr;
  const CzonSection* candidate = nullptr;
};

class Walk {
 public:
  explicit Walk(EquivalenceObserver& observer) : observer_(observer) {}

  // Sections and all in them; roots have no keywords and their own heads are not compared.
  bool CompareRoots(const CzonNode* definition, const CzonNode* candidate);
  bool CompareSections(const CzonNode* definition, const CzonNode* candidate);
  bool CompareKeywords(const CzonNode* definition, const CzonNode* candidate);

 private:
  bool Report(MismatchKind kind, const CzonNode* definition, const CzonNode* candidate,
              unsigned int n = 0) {
    return observer_.OnMismatch({kind, n, definition, candidate, nullptr, nullptr});
  }

  bool Enter(const CzonNode* definition, const CzonNode* candidate);
  bool CompareOpen();
  bool FindNextMatch(SectionPair& pair, Match& match);
  bool Finish(const SectionPair& pair);
  bool CompareNamedKeywords(const CzonNode* definition, const CzonNode* candidate);
  bool CompareOtherKeywords(const CzonNode* definition, const CzonNode* candidate);
  bool CompareValues(const CzonNode* definition, const CzonNode* candidate);

  EquivalenceObserver& observer_;
  std::vector<SectionPair> open_;
};

// Begins the comparison of two sections. Sections that have not even the name in common are
// skipped.
bool Walk::Enter(const CzonNode* definition, const CzonNode* candidate) {
  const MismatchKind kind = CompareSectionHeads(definition, candidate);
  if (kind != MismatchKind::kNone && !Report(kind, definition, candidate)) return false;
  if (kind == MismatchKind::kNone || kind == MismatchKind::kSurplusSection) {
    observer_.OnSections(*definition, *candidate);
    open_.emplace_back(definition, candidate);
  }
  return true;
}

// Stores the next match.
bool Walk::FindNextMatch(SectionPair& pair, Match& match) {
  for (; const CzonSection* section = pair.definition->SectionByNum(pair.section); ++pair.section) {
    const char* name = section->GetName().c_str();
    if (const CzonSection* found = pair.candidate->SectionByNameNum(name, pair.instance)) {
      ++pair.instance;
      match = {section, found};
      return true;
    }
    if (pair.instance == 1 && HasFlag(section, CzonNamedNode::kMandat) &&
        !Report(MismatchKind::kMissingSection, section, pair.candidate)) {
      return false;
    }
    pair.instance = 1;
  }
  match = {};
  return true;
}

// What is compared after the last section of a pair.
bool Walk::Finish(const SectionPair& pair) {
  if (pair.unmatched != 0 &&
      !Report(MismatchKind::kUnknownSections, pair.definition, pair.candidate)) {
    return false;
  }
  if (pair.definition->GetOwner() == nullptr) return true;
  return CompareNamedKeywords(pair.definition, pair.candidate) &&
         CompareOtherKeywords(pair.definition, pair.candidate);
}

bool Walk::CompareOpen() {
  while (!open_.empty()) {
    SectionPair& pair = open_.back();
    Match match;
    if (!FindNextMatch(pair, match)) return false;
    if (match.definition == nullptr) {
      if (!Finish(pair)) return false;
      open_.pop_back();
      continue;
    }
    --pair.unmatched;
    if (!Enter(match.definition, match.candidate)) return false;  // `pair` is invalid from here
  }
  return true;
}

bool Walk::CompareSections(const CzonNode* definition, const CzonNode* candidate) {
  return Enter(definition, candidate) && CompareOpen();
}

bool Walk::CompareRoots(const CzonNode* definition, const CzonNode* candidate) {
  observer_.OnSections(*definition, *candidate);
  open_.emplace_back(definition, candidate);
  return CompareOpen();
}

// Each named keyword of the definition against all keywords of that name in the candidate.
bool Walk::CompareNamedKeywords(const CzonNode* definition, const CzonNode* candidate) {
  for (unsigned int n = 1; const CzonKeyword* keyword = definition->KeywordByNum(n); ++n) {
    const std::string& name = keyword->GetName();
    if (name.empty()) continue;
    const CzonKeyword* found = FindFirst(candidate, name.c_str(), n);
    for (unsigned int k = 1; found != nullptr; ++k) {
      if (!CompareKeywords(keyword, found)) return false;
      const bool isLast = IsOfLibrary(candidate) && CountNamesakes(candidate, found) <= k;
      found = isLast ? nullptr : candidate->KeywordByNameNum(name.c_str(), k + 1);
    }
  }
  return true;
}

// All other keywords of the candidate against the wildcard.
bool Walk::CompareOtherKeywords(const CzonNode* definition, const CzonNode* candidate) {
  const CzonKeyword* wildcard = definition->KeywordByNameNum("", 1);
  for (unsigned int n = 1; const CzonKeyword* keyword = candidate->KeywordByNum(n); ++n) {
    if (FindFirst(definition, keyword->GetName().c_str(), n) != nullptr) continue;
    const bool goesOn = wildcard == nullptr
                            ? Report(MismatchKind::kUnknownKeyword, definition, keyword)
                            : CompareKeywords(wildcard, keyword);
    if (!goesOn) return false;
  }
  return true;
}

bool Walk::CompareKeywords(const CzonNode* definition, const CzonNode* candidate) {
  const MismatchKind kind = CompareKeywordHeads(definition, candidate);
  if (kind != MismatchKind::kNone) {
    if (!Report(kind, definition, candidate)) return false;
    if (kind != MismatchKind::kSurplusKeyword) return true;
  }
  observer_.OnKeywords(*definition, *candidate);
  return CompareValues(definition, candidate);
}

bool Walk::CompareValues(const CzonNode* definition, const CzonNode* candidate) {
  const CzonNode* last = nullptr;  // the last value of the definition so far
  for (unsigned int n = 1;; ++n) {
    const CzonNode* expected = definition->ParamByNum(n);
    const CzonNode* value = candidate->ParamByNum(n);
    if (value == nullptr) {
      return expected == nullptr || Report(MismatchKind::kMissingValue, definition, candidate, n);
    }
    if (expected != nullptr) {
      last = expected;
    } else if (!observer_.IsOpen(*definition)) {
      return Report(MismatchKind::kSurplusValue, definition, candidate, n);
    }
    // The last value of an open list repeats. An open list without values accepts any.
    const MismatchKind kind = last != nullptr ? CompareValue(*last, *value) : MismatchKind::kNone;
    if (kind != MismatchKind::kNone &&
        !observer_.OnMismatch({kind, n, definition, candidate, last, value})) {
      return false;
    }
  }
}

// Numbers conform if they share a view. Numbers of a file always have the double view; only builder
// definitions are narrower, for example an integer definition without it. Other values conform by
// syntax class, so a date-time conforms to a file name.
bool DoKindsConform(const CzonNode& definition, const CzonNode& value) {
  if (!definition.IsParam() || !value.IsParam()) return false;
  if (!definition.IsNumeric()) return definition.GetSyntaxClass() == value.GetSyntaxClass();
  return (definition.IsInt() && value.IsInt()) || (definition.IsFloat() && value.IsFloat()) ||
         (definition.IsDouble() && value.IsDouble());
}

}  // namespace

bool EquivalenceObserver::IsOpen(const CzonNode& definition) const {
  return HasFlag(&definition, CzonNamedNode::kOpenList);
}

MismatchKind CompareValue(const CzonNode& definition, const CzonNode& value) {
  if (DoKindsConform(definition, value)) return MismatchKind::kNone;
  return value.IsDefaultPar() ? MismatchKind::kUnresolved : MismatchKind::kValueKind;
}

void CompareRoots(const CzonNode& definition, const CzonNode& candidate,
                  EquivalenceObserver& observer) {
  Walk(observer).CompareRoots(&definition, &candidate);
}

bool ConformsSection(const CzonNode* definition, const CzonNode* candidate) {
  FirstMismatch observer;
  return Walk(observer).CompareSections(definition, candidate);
}

bool ConformsKeyword(const CzonNode* definition, const CzonNode* candidate) {
  FirstMismatch observer;
  return Walk(observer).CompareKeywords(definition, candidate);
}

void SetEquivalenceQuiet(int quiet) {
  equivalenceQuiet = quiet;
}

int GetEquivalenceQuiet() {
  return equivalenceQuiet;
}

}  // namespace zon
