// Tested by tests/build_test.cpp.
#include "api/zondata.h"

#include "base/zonerror.h"
#include "base/zonhook.h"
#include "tree/zonclob.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"

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
  const CzonNode* open = section_;
  while (open != nullptr && open != node) open = open->GetOwner();
  if (open != nullptr) LeaveSection(*node);
  if (node == keyword_) {
    keyword_ = nullptr;
    clob_ = nullptr;
  }
  // The CLOB may be one of an earlier keyword: AddKeywordDef leaves it current.
  if (clob_ != nullptr && (clob_ == node || clob_->GetOwner() == node)) clob_ = nullptr;
}

void CzonData::Error(const std::string& message) {
  if (quiet_ == 0) MessageHook(message.c_str());
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
