// The root of a file, and sections: both hold sections by number and by name.
#ifndef ZON_TREE_ZONSECTION_H
#define ZON_TREE_ZONSECTION_H

#include <memory>
#include <string>

#include "tree/zonnameindex.h"
#include "tree/zonnamno.h"

/** A list of sections; as itself, the root of a file. */
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
   *  folder is to be used. Null texts count as empty, null outputs are left out. */
  void SetResultRoot(const char* root);
  void SetResultRoot(const std::string& root);
  const std::string& GetResultRoot() const;
  void SetCustomResultFolder(int use, const char* folder);
  void GetCustomResultFolder(int* use, std::string* folder) const;

  /** The name of the parameter file as it was given; any length, never made absolute. */
  void SetZonFilename(const std::string& name);
  const std::string& GetOwnFilename() const;

  // For the library's own use.
  void SetHandle(CzonBase* handle);
  CzonBase* GetHandle() const;
  void EnterArena(zon::Arena& arena) {
    CzonNamedNode::EnterArena(arena);
    sections_.EnterArena(arena);
  }
  const CzonNameList<CzonSection>& Sections() const { return sections_; }

 protected:
  CzonTargetList(const std::string& name, int multi, int mandat);  // of a section
  std::unique_ptr<CzonNamedNode> NewAside() const override;

 private:
  friend class CzonNamedNode;
  struct FileFacts;

  FileFacts& EnsureFacts();
  void SwapLists(CzonTargetList& other);
  void ForgetNames();  // before the children go
  void CopyFacts(const CzonTargetList& source);

  CzonNameList<CzonSection> sections_;
  std::unique_ptr<FileFacts> facts_;  // sections seldom have any
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

  // For the library's own use.
  void EnterArena(zon::Arena& arena) {
    CzonTargetList::EnterArena(arena);
    keywords_.EnterArena(arena);
  }
  const CzonNameList<CzonKeyword>& Keywords() const { return keywords_; }

  // The first child that is a default definition of that name, null for none.
  const CzonNamedNode* FirstIndexedDefinition(std::string_view name) const;

 protected:
  std::unique_ptr<CzonNamedNode> NewAside() const override;

 private:
  friend class CzonNamedNode;
  friend class CzonTargetList;

  void WriteHead(std::ostream& out) const;
  void WriteEnd(std::ostream& out) const;
  void ForgetDefinitions() const;
  void DefinitionsMoved(std::uint32_t from, const CzonNode& child, int by);

  CzonNameList<CzonKeyword> keywords_;

  // The default definitions by name, made while somebody asks: the first `definitionsSeen_`
  // children have been looked at.
  mutable zon::NameIndex definitions_;
  mutable std::uint32_t definitionsSeen_ = 0;
};

#endif
