#include "api/zonhandl.h"

#include "base/zonchars.h"
#include "paths/zonfilen.h"
#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonkeyw.h"
#include "tree/zonreal.h"
#include "tree/zonstri.h"
#include "tree/zontarli.h"

CzonLoad::CzonLoad(std::unique_ptr<CzonParser> parser) : parser_(std::move(parser)) {
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
  GetCurrentSection()->AddKeyword(keyword);
  for (const char code : codes) {
    if (CzonParam* definition = zon::NewDefinition(code, *store_)) {
      keyword->AddParam(definition);
    } else {
      Error(std::string("Invalid parameter definition code: '") + code + "'");
    }
  }
  OpenKeyword(keyword);
}

namespace zon {
namespace {

template <class T>
CzonParam* NewReal(Store& store) {
  auto* real = CzonNode::Make<T>(store);
  real->FloatToInt();
  return real;
}

}  // namespace

CzonParam* NewDefinition(char code, Store& store) {
  switch (Upper(code)) {
    case 'B': {
      auto* boolean = CzonNode::Make<CzonBool>(store);
      boolean->SetBool(false, &store);
      return boolean;
    }
    case 'D':
      return NewReal<CzonDoubleDef>(store);
    case 'F':
      return NewReal<CzonFloatDef>(store);
    case 'I':
      return CzonNode::Make<CzonIntDef>(store);
    case 'N':
      return CzonNode::Make<CzonFilename>(store);
    case 'S':
      return CzonNode::Make<CzonString>(store);
    default:
      return nullptr;
  }
}

}  // namespace zon
