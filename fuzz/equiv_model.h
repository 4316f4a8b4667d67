// A naive comparison with a template: it scans lists where the library uses an index.
#ifndef ZON_FUZZ_EQUIV_MODEL_H
#define ZON_FUZZ_EQUIV_MODEL_H

#include <strings.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz.h"

namespace model {

inline bool Has(const CzonNode& node, CzonNamedNode::Flags flag) {
  return (static_cast<const CzonNamedNode&>(node).GetFlags() & flag) != 0;
}

using Nodes = std::vector<const CzonNode*>;

// The children of a kind, of any name or of one name, without default definitions.
inline Nodes ChildrenOf(const CzonNode* node, bool sections, const std::string* name = nullptr) {
  Nodes nodes;
  for (unsigned n = 1; n <= node->GetNoNodes(); ++n) {
    const CzonNode* child = node->NodeByNum(n);
    if ((child->IsSection() != 0) != sections || child->IsDefaultDef()) continue;
    if (name == nullptr || strcasecmp(child->GetName().c_str(), name->c_str()) == 0)
      nodes.push_back(child);
  }
  return nodes;
}

// Whether both nodes occur among their siblings as often as the template permits.
inline bool IsCountPermitted(const CzonNode& t, const CzonNode& c) {
  const auto count = [](const CzonNode& node) {
    return node.IsDefaultDef()
               ? 0
               : ChildrenOf(node.GetOwner(), node.IsSection(), &node.GetName()).size();
  };
  return count(t) <= 1 && (Has(t, CzonNamedNode::kMulti) || count(c) <= 1);
}

inline bool SameName(const CzonNode& t, const CzonNode& c) {
  return strcasecmp(t.GetName().c_str(), c.GetName().c_str()) == 0;
}

inline bool KeywordFits(const CzonNode& t, const CzonNode& c) {
  if (t.GetName().empty() ? c.GetName().empty() : !SameName(t, c)) return false;
  const unsigned wanted = t.GetNoNodes();
  const unsigned count = c.GetNoNodes();
  const bool isLong = count > wanted && !Has(t, CzonNamedNode::kOpenList);
  if (!IsCountPermitted(t, c) || count < wanted || isLong) return false;
  for (unsigned n = 1; n <= count && wanted > 0; ++n) {
    const CzonNode& definition = *t.NodeByNum(std::min(n, wanted));
    const CzonNode& value = *c.NodeByNum(n);
    const bool areNumbers = definition.IsNumeric() && value.IsNumeric();
    if (!areNumbers && definition.GetSyntaxClass() != value.GetSyntaxClass()) return false;
  }
  return true;
}

inline bool SectionFits(const CzonNode& t, const CzonNode& c) {
  if (!SameName(t, c) || !IsCountPermitted(t, c)) return false;
  for (const CzonNode* inner : ChildrenOf(&c, true)) {
    const Nodes named = ChildrenOf(&t, true, &inner->GetName());
    if (named.empty() || !SectionFits(*named[0], *inner)) return false;
  }
  for (const CzonNode* inner : ChildrenOf(&t, true)) {
    const bool isMissing = ChildrenOf(&c, true, &inner->GetName()).empty();
    if (isMissing && Has(*inner, CzonNamedNode::kMandat)) return false;
  }
  const std::string none;
  for (const CzonNode* keyword : ChildrenOf(&c, false)) {
    Nodes named = ChildrenOf(&t, false, &keyword->GetName());
    // An unnamed keyword of the candidate is not compared if the template has one.
    if (!named.empty() && keyword->GetName().empty()) continue;
    if (named.empty()) named = ChildrenOf(&t, false, &none);
    if (named.empty() || !KeywordFits(*named[0], *keyword)) return false;
  }
  return true;
}

}  // namespace model

#endif
