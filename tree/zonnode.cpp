// The defaults of the virtual operations. What depends on the class of the owner is in
// zonnamno.cpp.
#include "tree/zonnode.h"

#include <memory>
#include <new>
#include <ostream>
#include <utility>

#include "base/zonarena.h"
#include "base/zonhooks.h"

namespace {

void ReportInvalidContext() {
  zon::SendMessage("Function invalid in this context");
}

// The result of an unsupported query, after the message.
template <class T>
T Unsupported(T neutral) {
  ReportInvalidContext();
  return neutral;
}

}  // namespace

CzonBase::~CzonBase() = default;

// Never destroyed: a host may ask for texts while the process ends.
const std::string& CzonNode::empty_string = *new std::string;

CzonNode::~CzonNode() {
  if (Has(kOwnsRemark)) delete link_.extras->remark;
  if (Has(kOwnsExtras)) delete link_.extras;
}

const std::string& CzonNode::GetName() const {
  return empty_string;
}
const std::string& CzonNode::GetNameGlb() const {
  return empty_string;
}
unsigned int CzonNode::GetNoSections() const {
  return 0;
}
unsigned int CzonNode::GetNoKeywords() const {
  return 0;
}
unsigned int CzonNode::GetNoParams() const {
  return 0;
}
unsigned int CzonNode::GetNoNodes() const {
  return 0;
}
unsigned int CzonNode::GetNoInstances() const {
  return 0;
}
int CzonNode::GetInstanceNo() const {
  return Has(kUnnumbered) || instance_ == 0 ? FindNumber() : instance_;
}

int CzonNode::IsSection() const {
  return 0;
}
int CzonNode::IsKeyword() const {
  return 0;
}
int CzonNode::IsParam() const {
  return 0;
}
int CzonNode::IsDefaultDef() const {
  return 0;
}
int CzonNode::IsNumeric() const {
  return 0;
}
int CzonNode::IsFloat() const {
  return 0;
}
int CzonNode::IsDouble() const {
  return 0;
}
int CzonNode::IsInt() const {
  return 0;
}
int CzonNode::IsString() const {
  return 0;
}
int CzonNode::IsDefaultPar() const {
  return 0;
}
int CzonNode::IsBool() const {
  return 0;
}
int CzonNode::IsFilename() const {
  return 0;
}
int CzonNode::IsClob() const {
  return 0;
}
int CzonNode::IsUndefinedPar() const {
  return 0;
}

float CzonNode::GetFloat() const {
  return Unsupported(0.0F);
}
double CzonNode::GetDouble() const {
  return Unsupported(0.0);
}
int CzonNode::GetInt() const {
  return Unsupported(0);
}
char* CzonNode::GetFilename() const {
  return Unsupported<char*>(nullptr);
}
const char* CzonNode::GetFilenameString() const {
  return Unsupported<const char*>(nullptr);
}
int CzonNode::GetBool() const {
  return Unsupported(0);
}
CzonClob* CzonNode::GetClob() const {
  return nullptr;
}

const std::string& CzonNode::GetString() const {
  ReportInvalidContext();
  return empty_string;
}

CzonSection* CzonNode::SectionByNum(unsigned int) const {
  return Unsupported<CzonSection*>(nullptr);
}
CzonKeyword* CzonNode::KeywordByNum(unsigned int) const {
  return Unsupported<CzonKeyword*>(nullptr);
}
CzonParam* CzonNode::ParamByNum(unsigned int) const {
  return Unsupported<CzonParam*>(nullptr);
}
CzonNode* CzonNode::NodeByNum(unsigned int) const {
  return nullptr;
}
CzonSection* CzonNode::SectionByName(const char*) const {
  return Unsupported<CzonSection*>(nullptr);
}
CzonKeyword* CzonNode::KeywordByName(const char*) const {
  return Unsupported<CzonKeyword*>(nullptr);
}
CzonSection* CzonNode::SectionByNameNum(const char*, unsigned int) const {
  return Unsupported<CzonSection*>(nullptr);
}
CzonKeyword* CzonNode::KeywordByNameNum(const char*, unsigned int) const {
  return Unsupported<CzonKeyword*>(nullptr);
}

std::ostream& CzonNode::Write(std::ostream& out) const {
  ReportInvalidContext();
  return out;
}

void CzonNode::Explore(void (*visit)(CzonNode*)) {
  visit(this);
}

int CzonNode::GetSyntaxClass() const {
  return kZonNode;
}

CzonParam* CzonNode::FindDefault(CzonNode*, const std::string&, unsigned int) const {
  return nullptr;
}

void CzonNode::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  SetRemark(source->GetRemark(), GetArena());
  ResetNumber();
}

int CzonNode::GetLevel() const {
  int level = 0;
  for (const CzonNode* node = Owner(); node != nullptr; node = node->Owner()) ++level;
  return level;
}

CzonNode* CzonNode::GetTopNode() const {
  const CzonNode* node = this;
  while (node->Owner() != nullptr) node = node->Owner();
  return const_cast<CzonNode*>(node);
}

const std::string& CzonNode::GetRemark() const {
  const std::string* const remark = Remark();
  return remark != nullptr ? *remark : empty_string;
}

zon::NodeExtras& CzonNode::EnsureExtras(zon::Arena* arena) {
  if (Has(kHasExtras)) return *link_.extras;
  if (arena != nullptr) {
    link_.extras = new (arena->AllocatePiece(sizeof *link_.extras))
        zon::NodeExtras{link_.owner, nullptr, nullptr};
  } else {
    link_.extras = new zon::NodeExtras{link_.owner, nullptr, nullptr};
    Set(kOwnsExtras);
  }
  Set(kHasExtras);
  if (Has(kOwnsExtras) && Has(kInArena)) MarkDeep();
  return *link_.extras;
}

// A remark that exists is changed in place, wherever its string is. Only a first one is allocated.
void CzonNode::SetRemark(std::string_view text, zon::Arena* arena) {
  if (Remark() != nullptr) {
    Remark()->assign(text);
  } else if (text.empty()) {
    return;
  } else if (arena != nullptr) {
    EnsureExtras(arena).remark = arena->KeepString(std::string(text));
  } else {
    auto remark = std::make_unique<std::string>(text);
    zon::NodeExtras& extras = EnsureExtras(nullptr);
    extras.remark = remark.release();
    Set(kOwnsRemark);
    if (Has(kInArena)) MarkDeep();
  }
}

// Each keeps its owner.
void CzonNode::SwapExtras(CzonNode& other) {
  constexpr std::uint32_t kSwapped = kHasExtras | kOwnsExtras | kOwnsRemark;
  CzonNode* const owner = Owner();
  CzonNode* const otherOwner = other.Owner();
  std::swap(link_, other.link_);
  const std::uint32_t differences = (bits_ ^ other.bits_) & kSwapped;
  bits_ ^= differences;
  other.bits_ ^= differences;
  SetOwner(owner);
  other.SetOwner(otherOwner);
}

void CzonNode::Free(CzonNode* node) {
  if (node == nullptr || !node->NeedsDestructor()) return;
  if (node->Has(kInArena)) {
    node->~CzonNode();
  } else {
    delete node;
  }
}

// Stops at the first node that has the bit: its owners have it too.
void CzonNode::MarkDeep() {
  for (CzonNode* node = this; node != nullptr && !node->Has(kDeep); node = node->Owner()) {
    node->Set(kDeep);
  }
}
