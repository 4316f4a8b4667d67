#include "tree/zonsection.h"

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "tree/zonkeyword.h"

namespace {

std::string_view TextOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace

// What the root of a file knows of the file.
struct CzonTargetList::FileFacts {
  std::string fileName;
  std::string resultRoot;
  std::string customFolder;
  int useCustomFolder = 0;
  CzonBase* handle = nullptr;  // not owned
};

CzonTargetList::CzonTargetList() = default;

CzonTargetList::CzonTargetList(const std::string& name, int multi, int mandat)
    : CzonNamedNode(name, multi, mandat) {}

CzonTargetList::~CzonTargetList() = default;

CzonNode* CzonTargetList::CreateObj() {
  return new CzonTargetList;
}

// The handle stays with the node that has it.
std::unique_ptr<CzonNamedNode> CzonTargetList::NewAside() const {
  auto aside = NewInStore<CzonTargetList>();
  if (GetHandle() != nullptr) aside->SetHandle(GetHandle());
  return aside;
}

unsigned int CzonTargetList::GetNoSections() const {
  return sections_.Count();
}

const std::string& CzonTargetList::GetZonFilename() const {
  return GetOwner() != nullptr ? CzonNode::GetZonFilename() : GetOwnFilename();
}

int CzonTargetList::IsSection() const {
  return 1;
}

CzonSection* CzonTargetList::SectionByNum(unsigned int n) const {
  return sections_.ByNum(n);
}

CzonSection* CzonTargetList::SectionByName(const char* name) const {
  return SectionByNameNum(name, 1);
}

CzonSection* CzonTargetList::SectionByNameNum(const char* name, unsigned int n) const {
  return sections_.ByNameNum(TextOrEmpty(name), n);
}

int CzonTargetList::GetSyntaxClass() const {
  return kZonTargetList;
}

void CzonTargetList::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* Src = dynamic_cast<const CzonTargetList*>(source);
  ZON_ASSERT_TEXT(Src != nullptr, "zontarli", "Src");
  CzonNamedNode::Copy(source);
}

void CzonTargetList::AddSection(CzonSection* section) {
  if (section == nullptr) return;
  Children().Reserve(arena_);
  sections_.Append(section);
  AddNode(section);
}

CzonTargetList::FileFacts& CzonTargetList::EnsureFacts() {
  if (facts_ == nullptr) {
    facts_ = std::make_unique<FileFacts>();
    MarkDeep();
  }
  return *facts_;
}

void CzonTargetList::CopyFacts(const CzonTargetList& source) {
  if (facts_ == nullptr && source.facts_ == nullptr) return;
  CzonBase* handle = GetHandle();
  EnsureFacts() = source.facts_ != nullptr ? *source.facts_ : FileFacts{};
  facts_->handle = handle;  // a copy belongs to no other file
}

void CzonTargetList::SetResultRoot(const char* root) {
  EnsureFacts().resultRoot.assign(TextOrEmpty(root));
}

void CzonTargetList::SetResultRoot(const std::string& root) {
  EnsureFacts().resultRoot = root;
}

const std::string& CzonTargetList::GetResultRoot() const {
  return facts_ != nullptr ? facts_->resultRoot : empty_string;
}

void CzonTargetList::SetCustomResultFolder(int use, const char* folder) {
  FileFacts& facts = EnsureFacts();
  facts.customFolder.assign(TextOrEmpty(folder));
  facts.useCustomFolder = use;
}

void CzonTargetList::GetCustomResultFolder(int* use, std::string* folder) const {
  if (use != nullptr) *use = facts_ != nullptr ? facts_->useCustomFolder : 0;
  if (folder != nullptr) *folder = facts_ != nullptr ? facts_->customFolder : empty_string;
}

void CzonTargetList::SetZonFilename(const std::string& name) {
  EnsureFacts().fileName = name;
}

const std::string& CzonTargetList::GetOwnFilename() const {
  return facts_ != nullptr ? facts_->fileName : empty_string;
}

void CzonTargetList::SetHandle(CzonBase* handle) {
  EnsureFacts().handle = handle;
}

CzonBase* CzonTargetList::GetHandle() const {
  return facts_ != nullptr ? facts_->handle : nullptr;
}

void CzonTargetList::ForgetNames() {
  sections_.Forget();
  if (auto* section = dynamic_cast<CzonSection*>(this)) {
    section->keywords_.Forget();
    section->ForgetDefinitions();
  }
}

CzonSection::CzonSection() {
  Set(kExploresItself);
}

CzonSection::CzonSection(const std::string& name, int multi, int mandat)
    : CzonTargetList(name, multi, mandat) {
  Set(kExploresItself);
}

CzonSection::~CzonSection() {
  definitions_.Release(arena_);
}

CzonNode* CzonSection::CreateObj() {
  return new CzonSection;
}

std::unique_ptr<CzonNamedNode> CzonSection::NewAside() const {
  return NewInStore<CzonSection>();
}

unsigned int CzonSection::GetNoKeywords() const {
  return keywords_.Count();
}

unsigned int CzonSection::GetNoInstances() const {
  const CzonNamedNode* owner = GetOwner();
  if (owner == nullptr || !owner->IsSection()) return 0;
  return static_cast<const CzonTargetList*>(owner)->Sections().CountOf(*this);
}

CzonKeyword* CzonSection::KeywordByNum(unsigned int n) const {
  return keywords_.ByNum(n);
}

CzonKeyword* CzonSection::KeywordByName(const char* name) const {
  return KeywordByNameNum(name, 1);
}

CzonKeyword* CzonSection::KeywordByNameNum(const char* name, unsigned int n) const {
  return keywords_.ByNameNum(TextOrEmpty(name), n);
}

void CzonSection::Explore(void (*visit)(CzonNode*)) {
  visit(this);
  CzonNamedNode::Explore(visit);
}

int CzonSection::GetSyntaxClass() const {
  return kZonSection;
}

void CzonSection::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* Src = dynamic_cast<const CzonSection*>(source);
  ZON_ASSERT_TEXT(Src != nullptr, "zontarli", "Src");
  CzonTargetList::Copy(source);
}

void CzonSection::AddKeyword(CzonKeyword* keyword) {
  if (keyword == nullptr) return;
  if (keyword->IsDefaultDef()) return AddNode(keyword);
  Children().Reserve(arena_);
  keywords_.Append(keyword);
  AddNode(keyword);
}

void CzonSection::AddDefaultDef(CzonDefaultDef* definition) {
  AddNode(definition);
}

void CzonSection::ForgetDefinitions() const {
  definitions_.Release(arena_);
  definitionsSeen_ = 0;
}

// Only a definition that comes or goes changes what is known of those looked at.
void CzonSection::DefinitionsMoved(std::uint32_t from, const CzonNode& child, int by) {
  if (from >= definitionsSeen_) return;
  if (child.IsDefaultDef()) return ForgetDefinitions();
  definitionsSeen_ += static_cast<std::uint32_t>(by);
}

const CzonNamedNode* CzonSection::FirstIndexedDefinition(std::string_view name) const {
  for (; definitionsSeen_ < Children().Size(); ++definitionsSeen_) {
    CzonNode* child = Children()[definitionsSeen_];
    if (child->IsDefaultDef()) definitions_.Append(*static_cast<CzonNamedNode*>(child), arena_);
  }
  const zon::NameIndex::Queue* queue = definitions_.Find(name);
  if (queue == nullptr) return nullptr;
  // The index files "" under " "; here they are two names.
  for (const CzonNode* node : queue->nodes) {
    const auto* definition = static_cast<const CzonNamedNode*>(node);
    if (zon::EqualNoCase(definition->GetKey().name, name)) return definition;
  }
  return nullptr;
}
