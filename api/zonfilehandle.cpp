#include "api/zonfilehandle.h"

#include "base/zonchars.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonreal.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

CzonLoad::CzonLoad(std::unique_ptr<CzonParser> parser) {
  Take(std::move(parser));
}

void CzonLoad::Take(std::unique_ptr<CzonParser> parser) {
  parser_ = std::move(parser);
  if (parser_ == nullptr) return;
  arena_ = &parser_->GetArena();
  root_ = parser_->GetRoot();
  if (root_ != nullptr) root_->SetHandle(this);
}

CzonLoad::~CzonLoad() {
  root_ = nullptr;
}

CzonCreate::CzonCreate() {
  root_ = CzonNode::Make<CzonTargetList>(*arena_);
}

void CzonCreate::AddSectionDef(const std::string& name, int multi, int mandat) {
  if (!HasSection()) return;
  AddSection(name);
  GetCurrentSection()->SetMultiMandat(multi, mandat);
}

void CzonCreate::AddKeywordDef(const std::string& name, const std::string& codes, int multi,
                               int mandat, int flag) {
  if (!HasSection()) return;
  auto* keyword = CzonNode::Make<CzonKeyword>(*arena_);
  keyword->SetName(name);
  keyword->SetMultiMandat(multi, mandat);
  if (flag != 0) keyword->SetOpenList();
  std::string invalid;
  for (const char code : codes) {
    CzonParam* definition = zon::NewDefinition(code, *arena_);
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
CzonParam* NewFilled(Arena& arena, F&& fill) {
  T* definition = CzonNode::Make<T>(arena);
  fill(*definition);
  return definition;
}

}  // namespace

CzonParam* NewDefinition(char code, Arena& arena) {
  switch (Upper(code)) {
    case 'B':
      return NewFilled<CzonBool>(arena, [&](CzonBool& p) { p.SetBool(false, &arena); });
    case 'D':
      return NewFilled<CzonDoubleDef>(arena, [&](CzonDoubleDef& p) { p.SetDouble(0.0, &arena); });
    case 'F':
      return NewFilled<CzonFloatDef>(arena, [&](CzonFloatDef& p) { p.SetFloat(0.0F, &arena); });
    case 'I':  // its integer view is there, the others are not
      return NewFilled<CzonIntDef>(arena, [&](CzonIntDef& p) { p.SetText("0", &arena); });
    case 'N':
      return CzonNode::Make<CzonFilename>(arena);
    case 'S':
      return CzonNode::Make<CzonString>(arena);
    default:
      return nullptr;
  }
}

}  // namespace zon
