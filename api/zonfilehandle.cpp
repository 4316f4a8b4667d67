// The builder. Nodes are made in the arena of the tree and then filed, so a node that could not be
// filed costs memory until the handle is closed, and nothing else.
//
// The tree of a loaded file is in the arena of its parser: the handle owns the parser and must not
// free the root itself. The tree of a new file is in the arena of the handle. Tested by
// tests/build_test.cpp and tests/tree_test.cpp.
#include "api/zonfilehandle.h"

#include <utility>

#include "api/zonhandleaccess.h"
#include "base/zonarena.h"
#include "base/zonchars.h"
#include "base/zonerror.h"
#include "base/zonhooks.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonreal.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

namespace zon {
namespace {

template <class T, class F>
CzonParam* MakeFilled(Arena& arena, F&& fill) {
  T* definition = zon::NodeAccess::Make<T>(arena);
  fill(*definition);
  return definition;
}

}  // namespace

CzonParam* MakeDefinition(char code, Arena& arena) {
  switch (Upper(code)) {
    case 'B':
      return MakeFilled<CzonBool>(
          arena, [&](CzonBool& p) { zon::NodeAccess::SetValue(p, false, &arena); });
    case 'D':
      return MakeFilled<CzonDoubleDef>(
          arena, [&](CzonDoubleDef& p) { zon::NodeAccess::SetValue(p, 0.0, &arena); });
    case 'F':
      return MakeFilled<CzonFloatDef>(
          arena, [&](CzonFloatDef& p) { zon::NodeAccess::SetValue(p, 0.0F, &arena); });
    case 'I':  // set as a text: only its integer view is known
      return MakeFilled<CzonIntDef>(
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

CzonData::CzonData() = default;

CzonData::~CzonData() {
  zon::NodeAccess::Free(root_);
}

void CzonData::AddTarget(const std::string& name) {
  if (section_ != nullptr) return Error("Previous section was not completed");
  if (root_ == nullptr) return Error("Missing list");
  zon::NodeAccess::SetHandle(*root_, this);
  auto* section = zon::NodeAccess::Make<CzonSection>(*arena_);
  zon::NodeAccess::SetName(*section, name);
  root_->AddSection(section);
  OpenSection(section);
}

void CzonData::AddSection(const std::string& name) {
  if (!HasSection()) return;
  auto* section = zon::NodeAccess::Make<CzonSection>(*arena_);
  zon::NodeAccess::SetName(*section, name);
  section_->AddSection(section);
  OpenSection(section);
}

void CzonData::AddKeyword(const std::string& name) {
  if (!HasSection()) return;
  auto* keyword = zon::NodeAccess::Make<CzonKeyword>(*arena_);
  zon::NodeAccess::SetName(*keyword, name);
  section_->AddKeyword(keyword);
  keyword_ = keyword;
  clob_ = nullptr;
}

void CzonData::AddParam(CzonParam* param) {
  if (!HasKeyword()) return zon::NodeAccess::Free(param);
  if (param == nullptr) return;
  keyword_->AddParam(param);
  clob_ = param->IsClob() ? static_cast<CzonClob*>(param) : nullptr;
}

void CzonData::EndSection() {
  if (HasSection()) LeaveSection(*section_);
}

void CzonData::UpdateCurrentNode(CzonNode* node) {
  if (node == nullptr) return;
  // Is the node the current section, or a section around it?
  const CzonNode* open = zon::NodeAccess::IsNamed(*node) ? section_ : nullptr;
  while (open != nullptr && open != node) open = open->GetOwner();
  if (open != nullptr) LeaveSection(*node);
  if (node == keyword_) {
    keyword_ = nullptr;
    clob_ = nullptr;
  }
  // The CLOB can be in an earlier keyword, because AddKeywordDef leaves it current.
  if (clob_ != nullptr && (clob_ == node || clob_->GetOwner() == node)) clob_ = nullptr;
}

void CzonData::Error(const std::string& message) {
  if (quiet_ == 0) zon::SendMessage(message.c_str());
  errorCode_ = zon::kErrBuilder;
  errorMessage_ = message;
}

int CzonData::GetErrorCode() {
  const unsigned int code = errorCode_;
  errorCode_ = 0;
  return static_cast<int>(code);
}

void CzonData::OpenSection(CzonSection* section) {
  section_ = section;
  keyword_ = nullptr;
  clob_ = nullptr;
}

// Every owner of a section is a section, except the root.
void CzonData::LeaveSection(const CzonNode& section) {
  CzonNamedNode* owner = section.GetOwner();
  OpenSection(owner != root_ ? static_cast<CzonSection*>(owner) : nullptr);
}

void CzonData::OpenKeyword(CzonKeyword* keyword) {
  keyword_ = keyword;
}

bool CzonData::HasSection() {
  if (section_ == nullptr) Error("Missing current section");
  return section_ != nullptr;
}

bool CzonData::HasKeyword() {
  if (keyword_ == nullptr) Error("Missing current keyword");
  return keyword_ != nullptr;
}

CzonLoad::CzonLoad(std::unique_ptr<CzonParser> parser) {
  SetParser(std::move(parser));
}

void CzonLoad::SetParser(std::unique_ptr<CzonParser> parser) {
  parser_ = std::move(parser);
  if (parser_ == nullptr) return;
  arena_ = &parser_->GetArena();
  root_ = parser_->GetRoot();
  if (root_ != nullptr) zon::NodeAccess::SetHandle(*root_, this);
}

CzonLoad::~CzonLoad() {
  root_ = nullptr;  // the parser deletes it
}

CzonCreate::CzonCreate() {
  ownArena_ = std::make_unique<zon::Arena>();
  arena_ = ownArena_.get();
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
    CzonParam* definition = zon::MakeDefinition(code, *arena_);
    if (definition == nullptr) invalid += code;
    keyword->AddParam(definition);
  }
  GetCurrentSection()->AddKeyword(keyword);  // last: throws if out of memory
  OpenKeyword(keyword);
  // After the keyword was added: a hook that receives the report finds it in the tree.
  for (const char code : invalid) {
    Error(std::string("Invalid parameter definition code: '") + code + "'");
  }
}
