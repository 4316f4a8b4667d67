// A template and a candidate, with a zero byte in between, against a naive checker.
#include <strings.h>

#include <algorithm>
#include <vector>

#include "fuzz.h"

namespace {

bool Has(const CzonNode& node, CzonNamedNode::Flags flag) {
  return (static_cast<const CzonNamedNode&>(node).GetFlags() & flag) != 0;
}

using Nodes = std::vector<const CzonNode*>;

// The children of a kind, of any name or of one; default definitions are none.
Nodes ChildrenOf(const CzonNode* node, bool sections, const std::string* name = nullptr) {
  Nodes nodes;
  for (unsigned n = 1; n <= node->GetNoNodes(); ++n) {
    const CzonNode* child = node->NodeByNum(n);
    if ((child->IsSection() != 0) != sections || child->IsDefaultDef()) continue;
    if (name == nullptr || strcasecmp(child->GetName().c_str(), name->c_str()) == 0)
      nodes.push_back(child);
  }
  return nodes;
}

// Whether the names of two nodes stand where they are as often as they may.
bool MayStand(const CzonNode& t, const CzonNode& c) {
  const auto count = [](const CzonNode& node) {
    return node.IsDefaultDef()
               ? 0
               : ChildrenOf(node.GetOwner(), node.IsSection(), &node.GetName()).size();
  };
  return count(t) <= 1 && (Has(t, CzonNamedNode::kMulti) || count(c) <= 1);
}

bool SameName(const CzonNode& t, const CzonNode& c) {
  return strcasecmp(t.GetName().c_str(), c.GetName().c_str()) == 0;
}

bool KeywordFits(const CzonNode& t, const CzonNode& c) {
  if (t.GetName().empty() ? c.GetName().empty() : !SameName(t, c)) return false;
  const unsigned wanted = t.GetNoNodes();
  const unsigned count = c.GetNoNodes();
  const bool isLong = count > wanted && !Has(t, CzonNamedNode::kOpenList);
  if (!MayStand(t, c) || count < wanted || isLong) return false;
  for (unsigned n = 1; n <= count && wanted > 0; ++n) {
    const CzonNode& definition = *t.NodeByNum(std::min(n, wanted));
    const CzonNode& value = *c.NodeByNum(n);
    const bool areNumbers = definition.IsNumeric() && value.IsNumeric();
    if (!areNumbers && definition.GetSyntaxClass() != value.GetSyntaxClass()) return false;
  }
  return true;
}

bool SectionFits(const CzonNode& t, const CzonNode& c) {
  if (!SameName(t, c) || !MayStand(t, c)) return false;
  for (const CzonNode* inner : ChildrenOf(&c, true)) {
    const Nodes named = ChildrenOf(&t, true, &inner->GetName());
    if (named.empty() || !SectionFits(*named[0], *inner)) return false;
  }
  for (const CzonNode* inner : ChildrenOf(&t, true)) {
    const bool isLacking = ChildrenOf(&c, true, &inner->GetName()).empty();
    if (isLacking && Has(*inner, CzonNamedNode::kMandat)) return false;
  }
  const std::string none;
  for (const CzonNode* keyword : ChildrenOf(&c, false)) {
    Nodes named = ChildrenOf(&t, false, &keyword->GetName());
    // An unnamed keyword of the candidate is left alone where the template has one.
    if (!named.empty() && keyword->GetName().empty()) continue;
    if (named.empty()) named = ChildrenOf(&t, false, &none);
    if (named.empty() || !KeywordFits(*named[0], *keyword)) return false;
  }
  return true;
}

// What no file can say: sections with an M are mandatory, keywords with an O have open lists.
void SetFlags(CzonNode* node) {
  if (node->IsParam()) return;
  auto* named = static_cast<CzonNamedNode*>(node);
  const bool isMandat = node->GetName().find('M') != std::string::npos;
  if (isMandat) named->SetMultiMandat(Has(*node, CzonNamedNode::kMulti), 1);
  if (node->GetName().find('O') != std::string::npos) named->SetOpenList();
}

void* other;
CzonNode* candidate;
CzonNode* pattern;

void Compare() {
  const bool sections = pattern->IsSection() && candidate->IsSection();
  if (!sections && !(pattern->IsKeyword() && candidate->IsKeyword())) return;
  const unsigned long before = fuzz::heard;
  const int fits = zonEquivalent(pattern, candidate, nullptr);
  const bool naive =
      sections ? SectionFits(*pattern, *candidate) : KeywordFits(*pattern, *candidate);
  fuzz::Check((fits != 0) == naive, naive ? "refused" : "accepted", candidate->GetNameGlb());
  fuzz::Check(fuzz::heard - before == (fits != 0 ? 0U : 1U), "one report");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::TextOf(data, size);
  const std::size_t end = text.find('\0');
  if (end == text.npos) return -1;
  void* files[2] = {zonLoadFile(fuzz::FileOf(text.substr(0, end)), 1),
                    zonLoadFile(fuzz::FileOf(text.substr(end + 1), 1), 1)};
  const bool loaded = zonGetRoot(files[0]) != nullptr && zonGetRoot(files[1]) != nullptr;
  if (loaded) {
    other = files[1];
    zonExplore(files[0], SetFlags);
    zonExplore(files[0], [](CzonNode* t) {
      pattern = t;
      zonExplore(other, [](CzonNode* c) {
        candidate = c;
        Compare();
      });
    });
  }
  for (void*& file : files) zonClose(&file);
  zonGetErrorGlb();
  return loaded ? 0 : -1;
}
