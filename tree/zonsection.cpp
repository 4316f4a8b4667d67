// Sections and file roots.
//
// A section has its children in the order of the file (CzonNamedNode), and its sections and its
// keywords each in a NameList, by number and by name. Default definitions are in neither list. They
// are found by FindDefinition, through a third index, that is filled at the first search: few sections
// have any.
//
// Invariants: definitions_ has exactly the default definitions among the first definitionsSeen_
// children. A change of a definition among them empties it; a change of another child among them moves
// the limit. Tested by tests/tree_test.cpp, tests/values_test.cpp and tests/edit_test.cpp.
#include "tree/zonsection.h"

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "base/zonerror.h"
#include "tree/zonkeyword.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"

namespace {

std::string_view TextOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace

// ---- CzonNameList: the typed interface of NameList, without an arena ------------------------------

template <class T>
CzonNameList<T>::~CzonNameList() {
  zon::Release(list_, nullptr);
}

template <class T>
int CzonNameList<T>::AddToIndex(T* node) {
  if (node == nullptr) return 0;
  zon::AddToIndex(list_, *node, nullptr);
  return 1;
}

template <class T>
int CzonNameList<T>::InsertIntoHashtable(T* node, unsigned int pos) {
  if (node == nullptr) return 1;
  zon::InsertIntoIndex(list_, *node, pos, nullptr);
  return 0;
}

template <class T>
int CzonNameList<T>::EraseFromHashtable(T* node) {
  const bool isErased =
      node != nullptr && zon::EraseFromIndex(list_, *node, node->GetInstanceNo(), nullptr);
  return isErased ? 0 : zon::kErrNode;
}

template <class T>
void CzonNameList<T>::Append(T* node) {
  zon::Append(list_, *node, nullptr);
}

template <class T>
void CzonNameList<T>::Insert(T* node, unsigned int pos) {
  zon::Insert(list_, *node, pos, nullptr);
}

template <class T>
int CzonNameList<T>::Remove(T* node) {
  return zon::Remove(list_, *node, nullptr) ? 0 : zon::kErrNode;
}

template <class T>
unsigned int CzonNameList<T>::Count() const {
  return zon::Count(list_);
}

template <class T>
bool CzonNameList<T>::Holds(const T* node) const {
  return zon::IsIndexed(list_, *node, nullptr);
}

template <class T>
T* CzonNameList<T>::ByNum(unsigned int n) const {
  return static_cast<T*>(zon::FindByNumber(list_, n));
}

template <class T>
T* CzonNameList<T>::ByNameNum(std::string_view name, unsigned int n) const {
  return static_cast<T*>(zon::FindByName(list_, name, n, nullptr));
}

template <class T>
unsigned int CzonNameList<T>::CountOf(const CzonNamedNode& namesake) const {
  return zon::CountNamesakes(list_, namesake, nullptr);
}

template class CzonNameList<CzonSection>;
template class CzonNameList<CzonKeyword>;

// ---- CzonTargetList -------------------------------------------------------------------------------

// What only the root of a file has.
struct CzonTargetList::FileFacts {
  std::string fileName;
  std::string resultRoot;
  std::string customFolder;
  int useCustomFolder = 0;
  CzonBase* handle = nullptr;  // not owned
};

CzonTargetList::CzonTargetList() {
  Set(kList);
}

CzonTargetList::CzonTargetList(const std::string& name, int multi, int mandat)
    : CzonNamedNode(name, multi, mandat) {
  Set(kList);
}

CzonTargetList::~CzonTargetList() {
  zon::Release(sections_, arena_);
}

CzonNode* CzonTargetList::CreateObj() {
  return new CzonTargetList;
}

const std::type_info& CzonTargetList::LibraryClass() const {
  return typeid(CzonTargetList);
}

// The handle stays with the node that has it.
std::unique_ptr<CzonNamedNode> CzonTargetList::MakeAside() const {
  auto aside = MakeInArena<CzonTargetList>();
  if (GetHandle() != nullptr) aside->SetHandle(GetHandle());
  return aside;
}

unsigned int CzonTargetList::GetNoSections() const {
  return zon::Count(Complete(sections_));
}

const std::string& CzonTargetList::GetZonFilename() const {
  return GetOwner() != nullptr ? CzonNode::GetZonFilename() : GetOwnFilename();
}

int CzonTargetList::IsSection() const {
  return 1;
}

CzonSection* CzonTargetList::SectionByNum(unsigned int n) const {
  return static_cast<CzonSection*>(zon::FindByNumber(Complete(sections_), n));
}

CzonSection* CzonTargetList::SectionByName(const char* name) const {
  return SectionByNameNum(name, 1);
}

CzonSection* CzonTargetList::SectionByNameNum(const char* name, unsigned int n) const {
  return static_cast<CzonSection*>(zon::NodeAccess::FindSection(*this, TextOrEmpty(name), n));
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
  if (section != nullptr) AddListed(*section);
}

zon::NameList* CzonTargetList::ListOf(const CzonNode& child) {
  return zon::NodeAccess::IsSection(child) ? &sections_ : nullptr;
}

// A child that AddNode has added is in no list; any other one has no number until it is in the index.
void CzonTargetList::ListChildren() {
  const zon::NodeSpan children = Children();
  for (; listed_ < children.Size(); ++listed_) {
    CzonNode& child = *children[listed_];
    zon::NameList* list = zon::NodeAccess::IsUnnumbered(child) ? ListOf(child) : nullptr;
    if (list != nullptr) zon::Append(list->ordered, &child, arena_);
  }
}

zon::NameList& CzonTargetList::Complete(zon::NameList& list) const {
  if (listed_ < ChildCount()) const_cast<CzonTargetList*>(this)->ListChildren();
  return list;
}

void CzonTargetList::ChildInserted(const CzonNode&, std::uint32_t) {
  ++listed_;
}

void CzonTargetList::ChildErased(const CzonNode&, std::uint32_t) {
  --listed_;
}

unsigned int CzonTargetList::CountIn(zon::NameList& list, const CzonNamedNode& child) const {
  return zon::CountNamesakes(Complete(list), child, const_cast<CzonTargetList*>(this));
}

unsigned int CzonTargetList::CountNamesakes(const CzonNamedNode& child) const {
  return zon::NodeAccess::IsSection(child) ? CountIn(sections_, child) : 0;
}

void CzonTargetList::ChildLostNumber(const CzonNode& child) {
  zon::NameList* list = ListOf(child);
  if (list != nullptr) zon::LoseNumber(*list, static_cast<const CzonNamedNode&>(child));
}

void CzonTargetList::ForgetChildren() {
  listed_ = 0;
  zon::Release(sections_, arena_);
}

void CzonTargetList::SwapOwn(CzonNamedNode& other) {
  auto& list = static_cast<CzonTargetList&>(other);
  std::swap(sections_, list.sections_);
  std::swap(listed_, list.listed_);
  facts_.swap(list.facts_);
}

void CzonTargetList::CopyOwn(const CzonNamedNode& source) {
  if (!zon::NodeAccess::IsList(source)) return;
  const auto& list = static_cast<const CzonTargetList&>(source);
  if (facts_ == nullptr && list.facts_ == nullptr) return;
  CzonBase* handle = GetHandle();
  EnsureFacts() = list.facts_ != nullptr ? *list.facts_ : FileFacts{};
  facts_->handle = handle;  // a copy belongs to no other file
}

bool CzonTargetList::HoldsFilename() const {
  return true;
}

CzonTargetList::FileFacts& CzonTargetList::EnsureFacts() {
  if (facts_ == nullptr) {
    facts_ = std::make_unique<FileFacts>();
    MarkDeep();  // facts_ is outside the arena
  }
  return *facts_;
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

// ---- CzonSection ----------------------------------------------------------------------------------

CzonSection::CzonSection() {
  Set(kSection);
}

CzonSection::CzonSection(const std::string& name, int multi, int mandat)
    : CzonTargetList(name, multi, mandat) {
  Set(kSection);
}

CzonSection::~CzonSection() {
  zon::Release(keywords_, arena_);
  zon::Release(definitions_, arena_);
}

CzonNode* CzonSection::CreateObj() {
  return new CzonSection;
}

const std::type_info& CzonSection::LibraryClass() const {
  return typeid(CzonSection);
}

std::unique_ptr<CzonNamedNode> CzonSection::MakeAside() const {
  return MakeInArena<CzonSection>();
}

unsigned int CzonSection::GetNoKeywords() const {
  return zon::Count(Complete(keywords_));
}

unsigned int CzonSection::GetNoInstances() const {
  return GetOwner() != nullptr ? zon::NodeAccess::CountNamesakes(*GetOwner(), *this) : 0;
}

CzonKeyword* CzonSection::KeywordByNum(unsigned int n) const {
  return static_cast<CzonKeyword*>(zon::FindByNumber(Complete(keywords_), n));
}

CzonKeyword* CzonSection::KeywordByName(const char* name) const {
  return KeywordByNameNum(name, 1);
}

CzonKeyword* CzonSection::KeywordByNameNum(const char* name, unsigned int n) const {
  return static_cast<CzonKeyword*>(zon::NodeAccess::FindKeyword(*this, TextOrEmpty(name), n));
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
  AddListed(*keyword);
}

void CzonSection::AddDefaultDef(CzonDefaultDef* definition) {
  AddNode(definition);
}

zon::NameList* CzonSection::ListOf(const CzonNode& child) {
  const bool isKeyword = zon::NodeAccess::IsKeyword(child) && !child.IsDefaultDef();
  return isKeyword ? &keywords_ : CzonTargetList::ListOf(child);
}

unsigned int CzonSection::CountNamesakes(const CzonNamedNode& child) const {
  if (zon::NodeAccess::IsKeyword(child)) return CountIn(keywords_, child);
  return CzonTargetList::CountNamesakes(child);
}

void CzonSection::ForgetDefinitions() const {
  zon::Release(definitions_, arena_);
  definitionsSeen_ = 0;
}

void CzonSection::ChildInserted(const CzonNode& child, std::uint32_t place) {
  CzonTargetList::ChildInserted(child, place);
  if (place >= definitionsSeen_) return;
  if (child.IsDefaultDef()) return ForgetDefinitions();
  ++definitionsSeen_;
}

void CzonSection::ChildErased(const CzonNode& child, std::uint32_t place) {
  CzonTargetList::ChildErased(child, place);
  if (place >= definitionsSeen_) return;
  if (child.IsDefaultDef()) return ForgetDefinitions();
  --definitionsSeen_;
}

void CzonSection::ChildRenamed(const CzonNode& child) {
  if (child.IsDefaultDef()) ForgetDefinitions();
}

void CzonSection::ForgetChildren() {
  CzonTargetList::ForgetChildren();
  zon::Release(keywords_, arena_);
  ForgetDefinitions();
}

void CzonSection::SwapOwn(CzonNamedNode& other) {
  CzonTargetList::SwapOwn(other);
  auto& section = static_cast<CzonSection&>(other);
  std::swap(keywords_, section.keywords_);
  ForgetDefinitions();
  section.ForgetDefinitions();
}

const CzonNamedNode* CzonSection::FindDefinition(std::string_view name) const {
  const zon::NodeSpan children = Children();
  // Continues where the last search ended. If AddToIndex throws, the limit is still correct.
  for (; definitionsSeen_ < children.Size(); ++definitionsSeen_) {
    CzonNode* child = children[definitionsSeen_];
    if (!child->IsDefaultDef()) continue;
    zon::AddToIndex(definitions_, *static_cast<CzonNamedNode*>(child), arena_);
  }
  // The index files the empty name as " "; for definitions they are two names.
  for (const CzonNode* node : zon::FindNamesakes(definitions_, name)) {
    const auto* definition = static_cast<const CzonNamedNode*>(node);
    if (zon::EqualNoCase(zon::NodeAccess::GetKey(*definition).name, name)) return definition;
  }
  return nullptr;
}
