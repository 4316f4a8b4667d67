// Keywords and default definitions. Writing them is in zontreewriter.cpp, the search for default
// values in zondefaults.cpp.
//
// The values are the children. The instance number of a value is its place, from 1, unless a Copy
// reset it; then kLostNumbers is set, and the next change numbers all values again. Tested by
// tests/values_test.cpp and tests/tree_test.cpp.
#include "tree/zonkeyword.h"

#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"

CzonKeyword::CzonKeyword() {
  Set(kKeyword);
}

CzonKeyword::CzonKeyword(const std::string& name, int multi, int mandat)
    : CzonNamedNode(name, multi, mandat) {
  Set(kKeyword);
}

CzonNode* CzonKeyword::CreateObj() {
  return new CzonKeyword;
}

const std::type_info& CzonKeyword::LibraryClass() const {
  return typeid(CzonKeyword);
}

std::unique_ptr<CzonNamedNode> CzonKeyword::MakeAside() const {
  return MakeInArena<CzonKeyword>();
}

unsigned int CzonKeyword::GetNoParams() const {
  return Children().Size();
}

unsigned int CzonKeyword::GetNoInstances() const {
  return GetOwner() != nullptr ? zon::NodeAccess::CountNamesakes(*GetOwner(), *this) : 0;
}

int CzonKeyword::IsKeyword() const {
  return 1;
}

CzonParam* CzonKeyword::ParamByNum(unsigned int n) const {
  auto* param = static_cast<CzonParam*>(NodeByNum(n));
  if (param == nullptr || !param->IsDefaultPar()) return param;
  CzonParam* value = FindDefault(param, GetName(), n);
  return value != nullptr ? value : param;
}

void CzonKeyword::Explore(void (*visit)(CzonNode*)) {
  visit(this);
  CzonNamedNode::Explore(visit);
}

int CzonKeyword::GetSyntaxClass() const {
  return kZonKeyword;
}

void CzonKeyword::AddParam(CzonParam* param) {
  if (param == nullptr) return;
  AddNode(param);
  NumberValues(Children().Size() - 1);
}

// Numbers the values from the place `from` on, or all if a number was lost. Those of a long list
// are counted when they are asked for.
void CzonKeyword::NumberValues(std::uint32_t from) {
  const bool hasLost = Has(kLostNumbers);
  if (hasLost) from = 0;
  Set(kLostNumbers, false);
  const zon::NodeSpan values = Children();
  if (zon::NodeAccess::GetLongChildren(*this) != nullptr) {
    if (!hasLost) return;
    for (CzonNode* value : values) zon::NodeAccess::RestoreNumber(*value);
    return;
  }
  for (std::uint32_t at = from; at < values.Size(); ++at) {
    zon::NodeAccess::SetNumber(*values[at], static_cast<std::int32_t>(at + 1));
  }
}

void CzonKeyword::ChildInserted(const CzonNode&, std::uint32_t place) {
  NumberValues(place);
}

void CzonKeyword::ChildErased(const CzonNode&, std::uint32_t place) {
  NumberValues(place);
}

void CzonKeyword::ChildLostNumber(const CzonNode&) {
  Set(kLostNumbers);
}

CzonDefaultDef::CzonDefaultDef(const std::string& name, int multi, int mandat)
    : CzonKeyword(name, multi, mandat) {}

CzonNode* CzonDefaultDef::CreateObj() {
  return new CzonDefaultDef;
}

const std::type_info& CzonDefaultDef::LibraryClass() const {
  return typeid(CzonDefaultDef);
}

// Compatibility: hosts know definitions by their empty global name.
const std::string& CzonDefaultDef::GetNameGlb() const {
  return empty_string;
}

int CzonDefaultDef::IsDefaultDef() const {
  return 1;
}

CzonParam* CzonDefaultDef::ParamByNum(unsigned int n) const {
  return static_cast<CzonParam*>(NodeByNum(n));
}

int CzonDefaultDef::GetSyntaxClass() const {
  return kZonDefaultDef;
}
