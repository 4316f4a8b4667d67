#include "tree/zonkeyw.h"

#include "tree/zonparam.h"
#include "tree/zontarli.h"

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

unsigned int CzonKeyword::GetNoParams() const {
  return children_.Size();
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
  CzonNode* node = param;
  if (param != nullptr) AddParams(&node, 1);
}

void CzonKeyword::AddParams(CzonNode* const* params, std::uint32_t count) {
  std::uint32_t place = children_.Size();
  children_.Append(params, count, store_);
  for (CzonNode* const* param = params; param != params + count; ++param) {
    (*param)->owner_ = this;
    (*param)->instance_ = static_cast<std::int32_t>(++place);
    if ((*param)->WantsDestructor()) MarkDeep();
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
