#include "api/zonhandl.h"

#include "base/zonchars.h"
#include "paths/zonfilen.h"
#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonkeyw.h"
#include "tree/zonreal.h"
#include "tree/zonstri.h"
#include "tree/zontarli.h"

CzonLoad::CzonLoad(std::unique_ptr<CzonParser> parser) {
  Take(std::move(parser));
}

void CzonLoad::Take(std::unique_ptr<CzonParser> parser) {
  parser_ = std::move(parser);
  if (parser_ == nullptr) return;
  store_ = &parser_->GetStore();
  root_ = parser_->GetRoot();
  if (root_ != nullptr) root_->SetHandle(this);
}

CzonLoad::~CzonLoad() {
  root_ = nullptr;
}

CzonCreate::CzonCreate() {
  root_ = CzonNode::Make<CzonTargetList>(*store_);
}

void CzonCreate::AddSectionDef(const std::string& name, int multi, int mandat) {
  if (!HasSection()) return;
  AddSection(name);
  GetCurrentSection()->SetMultiMandat(multi, mandat);
}

void CzonCreate::AddKeywordDef(const std::string& name, const std::string& codes, int multi,
                               int mandat, int flag) {
  if (!HasSection()) return;
  auto* keyword = CzonNode::Make<CzonKeyword>(*store_);
  keyword->SetName(name);
  keyword->SetMultiMandat(multi, mandat);
  if (flag != 0) keyword->SetOpenList();
  std::string invalid;
  for (const char code : codes) {
    CzonParam* definition = zon::NewDefinition(code, *store_);
    if (definition == nullptr) invalid += code;
    keyword->AddParam(definition);
  }
  GetCurrentSection()->AddKeyword(keyword);  // whole or, for want of memory, not at all
  OpenKeyword(keyword);
  for (const char code : invalid) {
    Error(std::string("Invalid parameter definition code: '") + code + "'");
  }
}

namespace zon {
namespace {

template <class T, class F>
CzonParam* NewFilled(Store& store, F&& fill) {
  T* definition = CzonNode::Make<T>(store);
  fill(*definition);
  return definition;
}

}  // namespace

CzonParam* NewDefinition(char code, Store& store) {
  switch (Upper(code)) {
    case 'B':
      return NewFilled<CzonBool>(store, [&](CzonBool& p) { p.SetBool(false, &store); });
    case 'D':
      return NewFilled<CzonDoubleDef>(store, [&](CzonDoubleDef& p) { p.SetDouble(0.0, &store); });
    case 'F':
      return NewFilled<CzonFloatDef>(store, [&](CzonFloatDef& p) { p.SetFloat(0.0F, &store); });
    case 'I':  // its integer view is there, the others are not
      return NewFilled<CzonIntDef>(store, [&](CzonIntDef& p) { p.SetText("0", &store); });
    case 'N':
      return CzonNode::Make<CzonFilename>(store);
    case 'S':
      return CzonNode::Make<CzonString>(store);
    default:
      return nullptr;
  }
}

}  // namespace zon
