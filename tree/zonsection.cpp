// Sections and file roots.
//
// A section has its children in the order of the file (CzonNamedNode), and its sections and its
// keywords each in a NameList, by number and by name. Default definitions are in neither list. They
// are found by FindDefinition, through a third index, that is filled at the first search: few
// sections have any.
//
// The lists and the index are made by the first question (ChildLists): nobody asks most sections of
// a file.
//
// Invariants: `definitions` has exactly the default definitions among the first `definitionsSeen`
// children. A change of a definition among them empties it; a change of another child among them
// moves the limit. Tested by tests/tree_test.cpp, tests/values_test.cpp and tests/edit_test.cpp.
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

// ---- CzonNameList: the typed interface of NameList, without an arena ----------------------------

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

// ---- CzonTargetList -----------------------------------------------------------------------------

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
  if (lists_ == nullptr) return;
  CzonTargetList::ForgetChildren();
  if (arena_ != nullptr) {
    arena_->ReleasePiece(lists_, sizeof *lists_);
  } else {
    delete lists_;
  }
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
  return zon::Count(Complete().sections);
}

const std::string& CzonTargetList::GetZonFilename() const {
  return GetOwner() != nullptr ? CzonNode::GetZonFilename() : GetOwnFilename();
}

int CzonTargetList::IsSection() const {
  return 1;
}

CzonSection* CzonTargetList::SectionByNum(unsigned int n) const {
  return static_cast<CzonSection*>(zon::FindByNumber(Complete().sections, n));
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
  const auto* other = dynamic_cast<const CzonTargetList*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zontarli", "Src");
  CzonNamedNode::Copy(source);
}

void CzonTargetList::AddSection(CzonSection* section) {
  if (section != nullptr) AddListed(*section);
}

zon::NameList* CzonTargetList::ListOf(const CzonNode& child) {
  return zon::NodeAccess::IsSection(child) ? &EnsureLists().sections : nullptr;
}

// A child that AddNode has added is in no list; any other one has no number until it is in the
// index.
void CzonTargetList::ListChildren() {
  const zon::NodeSpan children = Children();
  std::uint32_t& listed = EnsureLists().listed;
  for (; listed < children.Size(); ++listed) {
    CzonNode& child = *children[listed];
    zon::NameList* list = zon::NodeAccess::IsUnnumbered(child) ? ListOf(child) : nullptr;
    if (list != nullptr) zon::Append(list->ordered, &child, arena_);
  }
}

zon::ChildLists& CzonTargetList::EnsureLists() const {
  if (lists_ == nullptr) {
    lists_ = arena_ != nullptr ? new (arena_->AllocatePiece(sizeof *lists_)) zon::ChildLists{}
                               : new zon::ChildLists{};
  }
  return *lists_;
}

zon::ChildLists& CzonTargetList::Complete() const {
  if (EnsureLists().listed < ChildCount()) const_cast<CzonTargetList*>(this)->ListChildren();
  return *lists_;
}

void CzonTargetList::ChildInserted(const CzonNode& child, std::uint32_t place) {
  if (lists_ == nullptr) return;
  ++lists_->listed;
  if (place >= lists_->definitionsSeen) return;
  if (child.IsDefaultDef()) return ForgetDefinitions();
  ++lists_->definitionsSeen;
}

void CzonTargetList::ChildErased(const CzonNode& child, std::uint32_t place) {
  if (lists_ == nullptr) return;
  --lists_->listed;
  if (place >= lists_->definitionsSeen) return;
  if (child.IsDefaultDef()) return ForgetDefinitions();
  --lists_->definitionsSeen;
}

void CzonTargetList::ChildRenamed(const CzonNode& child) {
  if (lists_ != nullptr && child.IsDefaultDef()) ForgetDefinitions();
}

unsigned int CzonTargetList::CountIn(zon::NameList& list, const CzonNamedNode& child) const {
  return zon::CountNamesakes(list, child, const_cast<CzonTargetList*>(this));
}

unsigned int CzonTargetList::CountNamesakes(const CzonNamedNode& child) const {
  return zon::NodeAccess::IsSection(child) ? CountIn(Complete().sections, child) : 0;
}

void CzonTargetList::ChildLostNumber(const CzonNode& child) {
  zon::NameList* list = ListOf(child);
  if (list != nullptr) zon::LoseNumber(*list, static_cast<const CzonNamedNode&>(child));
}

void CzonTargetList::ForgetChildren() {
  if (lists_ == nullptr) return;
  zon::Release(lists_->sections, arena_);
  zon::Release(lists_->keywords, arena_);
  ForgetDefinitions();
  lists_->listed = 0;
}

void CzonTargetList::ForgetDefinitions() const {
  zon::Release(lists_->definitions, arena_);
  lists_->definitionsSeen = 0;
}

void CzonTargetList::SwapOwn(CzonNamedNode& other) {
  auto& list = static_cast<CzonTargetList&>(other);
  std::swap(lists_, list.lists_);
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

// ---- CzonSection --------------------------------------------------------------------------------

CzonSection::CzonSection() {
  Set(kSection);
}

CzonSection::CzonSection(const std::string& name, int multi, int mandat)
    : CzonTargetList(name, multi, mandat) {
  Set(kSection);
}

CzonSection::~CzonSection() = default;

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
  return zon::Count(Complete().keywords);
}

unsigned int CzonSection::GetNoInstances() const {
  return GetOwner() != nullptr ? zon::NodeAccess::CountNamesakes(*GetOwner(), *this) : 0;
}

CzonKeyword* CzonSection::KeywordByNum(unsigned int n) const {
  return static_cast<CzonKeyword*>(zon::FindByNumber(Complete().keywords, n));
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
  const auto* other = dynamic_cast<const CzonSection*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zontarli", "Src");
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
  return isKeyword ? &EnsureLists().keywords : CzonTargetList::ListOf(child);
}

unsigned int CzonSection::CountNamesakes(const CzonNamedNode& child) const {
  if (zon::NodeAccess::IsKeyword(child)) return CountIn(Complete().keywords, child);
  return CzonTargetList::CountNamesakes(child);
}

// Continues where the last search ended. If AddToIndex throws, the limit is still correct.
const CzonNamedNode* CzonSection::FindDefinition(std::string_view name) const {
  const zon::NodeSpan children = Children();
  zon::ChildLists& lists = EnsureLists();
  for (; lists.definitionsSeen < children.Size(); ++lists.definitionsSeen) {
    CzonNode* child = children[lists.definitionsSeen];
    if (!child->IsDefaultDef()) continue;
    zon::AddToIndex(lists.definitions, *static_cast<CzonNamedNode*>(child), arena_);
  }
  // The index files the empty name as " "; for definitions they are two names.
  for (const CzonNode* node : zon::FindNamesakes(lists.definitions, name)) {
    const auto* definition = static_cast<const CzonNamedNode*>(node);
    if (zon::EqualNoCase(zon::NodeAccess::GetKey(*definition).name, name)) return definition;
  }
  return nullptr;
}
