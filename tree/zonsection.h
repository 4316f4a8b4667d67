// The root of a file, and sections: both hold sections by number and by name.
#ifndef ZON_TREE_ZONSECTION_H
#define ZON_TREE_ZONSECTION_H

#include <memory>
#include <string>

#include "tree/zonnamelist.h"
#include "tree/zonnamno.h"

/** A list of sections. An object of this class itself is the root of a file. */
class ZON_API CzonTargetList : public CzonNamedNode {
 public:
  CzonTargetList();
  ~CzonTargetList() override;

  CzonNode* CreateObj() override;
  unsigned int GetNoSections() const override;
  const std::string& GetZonFilename() const override;
  int IsSection() const override;
  CzonSection* SectionByNum(unsigned int n) const override;
  CzonSection* SectionByName(const char* name) const override;
  CzonSection* SectionByNameNum(const char* name, unsigned int n) const override;
  int GetSyntaxClass() const override;
  void Copy(const CzonNode* source) override;

  /** Appends a section to the children and files it by name. Null is ignored. */
  void AddSection(CzonSection* section);

  /** The result settings of the file; all empty or 0 at first. The use flag says whether the custom
   *  folder is to be used. Null texts count as empty, null outputs are not written. @{ */
  void SetResultRoot(const char* root);
  void SetResultRoot(const std::string& root);
  const std::string& GetResultRoot() const;
  void SetCustomResultFolder(int use, const char* folder);
  void GetCustomResultFolder(int* use, std::string* folder) const;
  /** @} */

  /** The name of the parameter file as it was given; any length, never made absolute. @{ */
  void SetZonFilename(const std::string& name);
  const std::string& GetOwnFilename() const;
  /** @} */

  /** The file handle of a root that has one; null otherwise. */
  CzonBase* GetHandle() const;

 protected:
  CzonTargetList(const std::string& name, int multi, int mandat);  ///< of a section

  const std::type_info& LibraryClass() const override;
  std::unique_ptr<CzonNamedNode> MakeAside() const override;
  zon::NameList* ListOf(const CzonNode& child) override;
  void ListChildren() override;
  unsigned int CountNamesakes(const CzonNamedNode& child) const override;
  void ChildInserted(const CzonNode& child, std::uint32_t place) override;
  void ChildErased(const CzonNode& child, std::uint32_t place) override;
  void ChildRenamed(const CzonNode& child) override;
  void ChildLostNumber(const CzonNode& child) override;
  void ForgetChildren() override;
  void SwapOwn(CzonNamedNode& other) override;
  void CopyOwn(const CzonNamedNode& source) override;
  bool HoldsFilename() const override;

  /** The lists of the children, and the same with all children in them. May throw std::bad_alloc.
   *  @{ */
  zon::ChildLists& EnsureLists() const;
  zon::ChildLists& Complete() const;
  /** @} */

  /// The number of nodes of this list that have the name of the child.
  unsigned int CountIn(zon::NameList& list, const CzonNamedNode& child) const;

  /// Empties the index of default definitions.
  void ForgetDefinitions() const;

  mutable zon::ChildLists* lists_ = nullptr;  ///< null until a child is asked for by number or name

 private:
  friend struct zon::NodeAccess;
  struct FileFacts;

  FileFacts& EnsureFacts();
  void SetHandle(CzonBase* handle);

  std::unique_ptr<FileFacts> facts_;  // null for most sections
};

/** A section: sections, keywords and default definitions in any order. */
class ZON_API CzonSection : public CzonTargetList {
 public:
  CzonSection();
  CzonSection(const std::string& name, int multi, int mandat);  ///< see SetMultiMandat
  ~CzonSection() override;

  CzonNode* CreateObj() override;
  unsigned int GetNoKeywords() const override;
  unsigned int GetNoInstances() const override;
  CzonKeyword* KeywordByNum(unsigned int n) const override;
  CzonKeyword* KeywordByName(const char* name) const override;
  CzonKeyword* KeywordByNameNum(const char* name, unsigned int n) const override;
  std::ostream& Write(std::ostream& out) const override;
  void Explore(void (*visit)(CzonNode*)) override;
  int GetSyntaxClass() const override;
  void Copy(const CzonNode* source) override;

  /** Appends a keyword to the children and files it by name. A default definition is added as
   *  AddDefaultDef does. Null is ignored. */
  void AddKeyword(CzonKeyword* keyword);

  /** Appends a default definition to the children alone: it has no number, no instance number and
   *  is found by no name. Null is ignored. */
  void AddDefaultDef(CzonDefaultDef* definition);

 protected:
  const std::type_info& LibraryClass() const override;
  std::unique_ptr<CzonNamedNode> MakeAside() const override;
  zon::NameList* ListOf(const CzonNode& child) override;
  unsigned int CountNamesakes(const CzonNamedNode& child) const override;
  const CzonNamedNode* FindDefinition(std::string_view name) const override;

 private:
  friend struct zon::NodeAccess;
  friend class CzonNamedNode;  // writes the head and the end around the children

  void WriteHead(std::ostream& out) const;
  void WriteEnd(std::ostream& out) const;
};

#endif
