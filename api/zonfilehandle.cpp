#include "api/zonfilehandle.h"

#include "base/zonchars.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
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
  if (root_ != nullptr) zon::NodeAccess::SetHandle(*root_, this);
}

CzonLoad::~CzonLoad() {
  root_ = nullptr;
}

CzonCreate::CzonCreate() {
  root_ = zon::NodeAccess::Make<CzonTargetList>(*arena_);
}

void CzonCreate::AddSectionDef(const std::string& name, int multi, int mandat) {
  if (!HasSection()) return;
  AddSection(name);
  GetCurrentSection()->SetMultiMandat(multi, mandat);
}

void CzonCreate::AddKeywordDef(const std::string& name, const std::string& codes, int multi,
                               int mandat, int flag) {
  if (!HasSection()) return;
  auto* keyword = zon::NodeAccess::Make<CzonKeyword>(*arena_);
  zon::NodeAccess::SetName(*keyword, name);
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
  T* definition = zon::NodeAccess::Make<T>(arena);
  fill(*definition);
  return definition;
}

}  // namespace

CzonParam* NewDefinition(char code, Arena& arena) {
  switch (Upper(code)) {
    case 'B':
      return NewFilled<CzonBool>(arena,
                                 [&](CzonBool& p) { zon::NodeAccess::SetValue(p, false, &arena); });
    case 'D':
      return NewFilled<CzonDoubleDef>(
          arena, [&](CzonDoubleDef& p) { zon::NodeAccess::SetValue(p, 0.0, &arena); });
    case 'F':
      return NewFilled<CzonFloatDef>(
          arena, [&](CzonFloatDef& p) { zon::NodeAccess::SetValue(p, 0.0F, &arena); });
    case 'I':  // its integer view is there, the others are not
      return NewFilled<CzonIntDef>(
          arena, [&](CzonIntDef& p) { zon::NodeAccess::SetText(p, "0", &arena); });
    case 'N':
      return zon::NodeAccess::Make<CzonFilename>(arena);
    case 'S':
      return zon::NodeAccess::Make<CzonString>(arena);
    default:
      return nullptr;
  }
}

}  // namespace zon
