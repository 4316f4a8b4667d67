#include "tree/zonkeyword.h"

#include "tree/zonparam.h"
#include "tree/zonsection.h"

CzonKeyword::CzonKeyword() {
  Set(kExploresItself);
}

CzonKeyword::CzonKeyword(const std::string& name, int multi, int mandat)
    : CzonNamedNode(name, multi, mandat) {
  Set(kExploresItself);
}

CzonNode* CzonKeyword::CreateObj() {
  return new CzonKeyword;
}

std::unique_ptr<CzonNamedNode> CzonKeyword::NewAside() const {
  return NewInStore<CzonKeyword>();
}

unsigned int CzonKeyword::GetNoParams() const {
  return Children().Size();
}

unsigned int CzonKeyword::GetNoInstances() const {
  const auto* owner = dynamic_cast<const CzonSection*>(static_cast<CzonNode*>(GetOwner()));
  return owner != nullptr ? owner->Keywords().CountOf(*this) : 0;
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

void CzonKeyword::NumberValues(std::uint32_t from) {
  if (Has(kLostNumbers)) from = 0;
  Set(kLostNumbers, false);
  for (std::uint32_t at = from; at < Children().Size(); ++at) {
    Children()[at]->instance_ = static_cast<std::int32_t>(at + 1);
  }
}

CzonKeyword::MakeFunction CzonKeyword::make_ = nullptr;

void CzonKeyword::DeferValues(std::string_view text, MakeFunction make) {
  make_ = make;  // there is but one reader
  if (Has(kDeferred) || children_.Size() != 0 || text.size() > UINT32_MAX) {
    Children();
    return MakeValues(text);
  }
  children_.Defer(text);
  Set(kDeferred);
}

void CzonKeyword::MakeValues(std::string_view text) {
  make_(*this, text);
}

void CzonKeyword::AppendNew(CzonNode* const* values, std::uint32_t count) {
  std::uint32_t place = children_.Size();
  children_.Append(values, count, arena_);
  for (CzonNode* const* value = values; value != values + count; ++value) {
    (*value)->owner_ = this;
    (*value)->instance_ = static_cast<std::int32_t>(++place);
  }
}

CzonDefaultDef::CzonDefaultDef(const std::string& name, int multi, int mandat)
    : CzonKeyword(name, multi, mandat) {}

CzonNode* CzonDefaultDef::CreateObj() {
  return new CzonDefaultDef;
}

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
