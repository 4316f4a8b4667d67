// Exported functions: checks against a template. Tested by tests/equiv_test.cpp.
#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "equivalence/zonequivalence.h"

namespace {

void ReportUnlessQuiet(const char* message) {
  if (zon::GetEquivalenceQuiet() == 0) zon::SendMessage(message);
}

// As zon::Require, but without a message in a quiet check.
CzonNode* RequireNode(void* handle) {
  auto* node = zon::CastHandle<CzonNode>(handle);
  if (node == nullptr) {
    zon::RaiseError(zon::kErrNode);
    ReportUnlessQuiet("Invalid zonNode");
  }
  return node;
}

// Both handles are checked before either of them ends the call: each bad one is reported.
bool Conforms(void* templateNode, void* candidateNode) {
  const CzonNode* definition = RequireNode(templateNode);
  const CzonNode* candidate = RequireNode(candidateNode);
  if (definition == nullptr || candidate == nullptr) return false;
  if (definition->IsSection() && candidate->IsSection()) {
    return zon::ConformsSection(definition, candidate);
  }
  if (definition->IsKeyword() && candidate->IsKeyword()) {
    return zon::ConformsKeyword(definition, candidate);
  }
  ReportUnlessQuiet("Conflicting zonNode types");
  return false;
}

}  // namespace

extern "C" {

int zonEquivalent(void* templateNode, void* candidateNode, void* third) {
  return zonEquivalentExt(templateNode, candidateNode, third, 0);
}

int zonEquivalentExt(void* templateNode, void* candidateNode, void*, int quiet) {
  zon::SetEquivalenceQuiet(quiet);
  return zon::Guarded(zon::kErrNode, 0,
                      [&] { return Conforms(templateNode, candidateNode) ? 1 : 0; });
}

int zonIsEqvQuiet(void) {
  return zon::GetEquivalenceQuiet();
}

int zonEqvSection(CzonNode* t, CzonNode* c) {
  return zon::Guarded(zon::kErrNode, 0, [&] { return zon::ConformsSection(t, c) ? 1 : 0; });
}

int zonEqvKeyword(CzonNode* t, CzonNode* c) {
  return zon::Guarded(zon::kErrNode, 0, [&] { return zon::ConformsKeyword(t, c) ? 1 : 0; });
}

}  // extern "C"
