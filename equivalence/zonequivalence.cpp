// Tested by tests/equiv_test.cpp.
#include "equivalence/zonequivalence.h"

#include <cstdint>
#include <string>
#include <vector>

#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "base/zonchars.h"
#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

namespace {

constexpr int kSeverity = 17;

std::int32_t _bEqvQuiet = 0;

void Report(const std::string& text) {
  if (!zonIsEqvQuiet()) ReportHook(text.c_str(), kSeverity, nullptr);
}

// Each report gives false, so that a failing test is one line.
bool Error(const CzonNode* t, const CzonNode* c, const char* message) {
  std::string text = std::string("Error: ") + message;
  if (t != nullptr) text += "\n\tTemp: " + t->GetNameGlb();
  if (c != nullptr) text += "\n\tCand: " + c->GetNameGlb();
  Report(text);
  return false;
}

bool parError(const CzonNode* keyword, unsigned int number, const char* message) {
  Report(std::string("Error: ") + message + "\n\tKeyw: " + keyword->GetNameGlb() +
         "\n\tNo:" + std::to_string(number));
  return false;
}

bool HasFlag(const CzonNode* node, CzonNamedNode::Flags flag) {
  return (static_cast<const CzonNamedNode*>(node)->GetFlags() & flag) != 0;
}

bool SameName(const CzonNode* t, const CzonNode* c) {
  return zon::EqualNoCase(t->GetName(), c->GetName());
}

bool IsOwnedSection(const CzonNode* node) {
  return node != nullptr && node->IsSection() && node->GetOwner() != nullptr;
}

bool HeadsConform(const CzonNode* t, const CzonNode* c) {
  if (!IsOwnedSection(t) || !IsOwnedSection(c)) return Error(t, c, "Two sections required");
  if (t->GetName().empty()) return Error(t, c, "Blank section name");
  if (!SameName(t, c)) return Error(t, c, "Section name conflict");
  if (t->GetNoInstances() > 1) return Error(t, c, "Ambiguous template section");
  if (!HasFlag(t, CzonNamedNode::kMulti) && c->GetNoInstances() > 1) {
    return Error(t, c, "Ambiguous candidate section");
  }
  return true;
}

// Every keyword of the template against all of its name in the candidate; one that is lacking there
// is no error.
bool NamedKeywordsConform(const CzonNode* t, const CzonNode* c) {
  for (unsigned int n = 1; const CzonKeyword* tk = t->KeywordByNum(n); ++n) {
    const std::string& name = tk->GetName();
    if (name.empty()) continue;
    for (unsigned int k = 1; const CzonKeyword* ck = c->KeywordByNameNum(name.c_str(), k); ++k) {
      if (!zon::ConformsKeyword(tk, ck)) return false;
    }
  }
  return true;
}

// The unnamed keyword of a template stands for every keyword that the template does not name.
bool OtherKeywordsConform(const CzonNode* t, const CzonNode* c) {
  const CzonKeyword* wildcard = t->KeywordByNameNum("", 1);
  for (unsigned int n = 1; const CzonKeyword* ck = c->KeywordByNum(n); ++n) {
    if (t->KeywordByNameNum(ck->GetName().c_str(), 1) != nullptr) continue;
    if (wildcard == nullptr) return Error(ck, nullptr, "Unrecognized keyword");
    if (!zon::ConformsKeyword(wildcard, ck)) return false;
  }
  return true;
}

bool KindsConform(const CzonNode* tp, const CzonNode* cp) {
  if (!tp->IsParam() || !cp->IsParam()) return Error(tp, cp, "Two parameters expected");
  if (!tp->IsNumeric()) return tp->GetSyntaxClass() == cp->GetSyntaxClass();
  return (tp->IsInt() && cp->IsInt()) || (tp->IsFloat() && cp->IsFloat()) ||
         (tp->IsDouble() && cp->IsDouble());
}

bool ParamConforms(const CzonNode* tp, const CzonNode* cp, const CzonNode* keyword,
                   unsigned int number) {
  if (KindsConform(tp, cp)) return true;
  return parError(keyword, number,
                  cp->IsDefaultPar() ? "Unresolved default value" : "Parameter type conflict");
}

}  // namespace

namespace zon {

// The sections in progress are kept in a list, so that the depth of a template costs no stack.
bool ConformsSection(const CzonNode* t, const CzonNode* c) {
  struct Pair {
    const CzonNode* t;
    const CzonNode* c;
    unsigned int remaining;  // sections of the candidate that no section of the template has named
    unsigned int section = 1;
    unsigned int instance = 1;
  };
  if (!HeadsConform(t, c)) return false;
  std::vector<Pair> open{{t, c, c->GetNoSections()}};
  while (!open.empty()) {
    Pair& pair = open.back();
    if (const CzonSection* ts = pair.t->SectionByNum(pair.section)) {
      const CzonSection* cs = pair.c->SectionByNameNum(ts->GetName().c_str(), pair.instance);
      if (cs == nullptr) {
        if (pair.instance == 1 && HasFlag(ts, CzonNamedNode::kMandat)) {
          return Error(ts, nullptr, "Missing section");
        }
        ++pair.section;
        pair.instance = 1;
        continue;
      }
      if (!HeadsConform(ts, cs)) return false;
      ++pair.instance;
      --pair.remaining;
      open.push_back({ts, cs, cs->GetNoSections()});
      continue;
    }
    if (pair.remaining != 0) return Error(pair.t, pair.c, "Inconsistent number of sections");
    if (!NamedKeywordsConform(pair.t, pair.c) || !OtherKeywordsConform(pair.t, pair.c))
      return false;
    open.pop_back();
  }
  return true;
}

bool ConformsKeyword(const CzonNode* t, const CzonNode* c) {
  if (t == nullptr || c == nullptr || !t->IsKeyword() || !c->IsKeyword()) {
    return Error(t, c, "Two keywords required");
  }
  const bool named = t->GetName().empty() ? !c->GetName().empty() : SameName(t, c);
  if (!named) return Error(t, c, "Keyword name conflict");
  if (t->GetNoInstances() >= 2) return Error(t, c, "Ambiguous template keyword");
  if (!HasFlag(t, CzonNamedNode::kMulti) && c->GetNoInstances() > 1) {
    return Error(t, c, "Ambiguous candidate keyword");
  }
  const CzonNode* last = nullptr;  // of the template
  for (unsigned int n = 1;; ++n) {
    const CzonNode* tp = t->ParamByNum(n);
    const CzonNode* cp = c->ParamByNum(n);
    if (cp == nullptr) return tp == nullptr || parError(t, n, "Missing parameters");
    if (tp != nullptr) {
      last = tp;
    } else if (!HasFlag(t, CzonNamedNode::kOpenList)) {
      return parError(t, n, "Too many parameters");
    }
    // An open list without a definition takes anything.
    if (last != nullptr && !ParamConforms(last, cp, c, n)) return false;
  }
}

}  // namespace zon

namespace {

CzonNode* CheckUnlessQuiet(void* node) {
  auto* checked = zon::CastHandle<CzonNode>(node);
  if (checked == nullptr) {
    zon::RaiseError(zon::kErrNode);
    if (!zonIsEqvQuiet()) MessageHook("Invalid zonNode");
  }
  return checked;
}

bool Conforms(void* templateNode, void* candidateNode) {
  const CzonNode* t = CheckUnlessQuiet(templateNode);
  const CzonNode* c = CheckUnlessQuiet(candidateNode);
  if (t == nullptr || c == nullptr) return false;
  if (t->IsSection() && c->IsSection()) return zon::ConformsSection(t, c);
  if (t->IsKeyword() && c->IsKeyword()) return zon::ConformsKeyword(t, c);
  if (!zonIsEqvQuiet()) MessageHook("Conflicting zonNode types");
  return false;
}

}  // namespace

extern "C" {

int zonEquivalent(void* templateNode, void* candidateNode, void* third) {
  return zonEquivalentExt(templateNode, candidateNode, third, 0);
}

int zonEquivalentExt(void* templateNode, void* candidateNode, void*, int quiet) {
  _bEqvQuiet = quiet;
  return zon::Guarded(zon::kErrNode, 0,
                      [&] { return Conforms(templateNode, candidateNode) ? 1 : 0; });
}

int zonIsEqvQuiet(void) {
  return _bEqvQuiet;
}

int zonEqvSection(CzonNode* t, CzonNode* c) {
  return zon::Guarded(zon::kErrNode, 0, [&] { return zon::ConformsSection(t, c) ? 1 : 0; });
}

int zonEqvKeyword(CzonNode* t, CzonNode* c) {
  return zon::Guarded(zon::kErrNode, 0, [&] { return zon::ConformsKeyword(t, c) ? 1 : 0; });
}

}  // extern "C"
