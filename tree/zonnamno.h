// A node with a name, flags and children: the common part of file roots, sections and keywords.
//
// The named node owns its children and frees them without recursion, however deep the tree. Nodes
// in a store whose subtree holds nothing but store memory are not even visited: their store goes as
// a whole.
#ifndef ZON_TREE_ZONNAMNO_H
#define ZON_TREE_ZONNAMNO_H

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "base/zonchars.h"
#include "base/zonexport.h"
#include "tree/zonnameindex.h"
#include "tree/zonnode.h"
#include "tree/zonnodelist.h"
#include "tree/zonnodetext.h"

/** A node with a name and children. */
class ZON_API CzonNamedNode : public CzonNode {
 public:
  CzonNamedNode() { Set(kNamed); }
  CzonNamedNode(const std::string& name, int multi, int mandat);  ///< see SetMultiMandat
  ~CzonNamedNode() override;

  /** The flags of a node, as GetFlags gives them. */
  enum Flags : unsigned int {
    kMulti = 1,    ///< in a template: may occur more than once
    kMandat = 2,   ///< in a template: a section that must occur
    kOpenList = 4  ///< in a template: the last value of the keyword may repeat
  };

  CzonNode* CreateObj() override;
  const std::string& GetName() const override;
  const std::string& GetNameGlb() const override;
  unsigned int GetNoNodes() const override;
  CzonNode* NodeByNum(unsigned int n) const override;
  std::ostream& Write(std::ostream& out) const override;
  void Explore(void (*visit)(CzonNode*)) override;
  CzonParam* FindDefault(CzonNode* start, const std::string& name, unsigned int n) const override;
  void Copy(const CzonNode* source) override;

  /** Appends a node to the children and owns it from now on; null is ignored. Sections, keywords
   *  and values are added by AddSection, AddKeyword and AddParam, which file them as well. */
  void AddNode(CzonNode* node);

  /** Sets or clears the multi and the mandatory flag; other flags stay. */
  void SetMultiMandat(int multi, int mandat);

  /** Deletes all children, forgets the cached global name and clears the flags. */
  void Clear();

  unsigned int GetFlags() const { return flags_; }  ///< a sum of Flags
  void SetOpenList() { flags_ |= kOpenList; }       ///< for good

  /** Writes the blanks in front of a line: three for each level below the first. */
  void Indent(std::ostream& out) const;

  // For the library's own use.
  std::string_view GetNameView() const { return name_.View(); }
  std::uint32_t GetNameHash() const { return nameHash_; }
  bool IsInStore() const { return Has(kInArena); }  // only nodes of the library's classes are
  zon::NameKey GetKey() const;
  // Whether the class is one of the library's own, so that none of its operations is overridden.
  bool IsOfLibrary() const;
  void SetName(std::string_view name);
  void ReferToName(std::string_view name);  // characters that lie in the node's store
  void EnterArena(zon::Arena& arena) {
    CzonNode::EnterArena(arena);
    arena_ = &arena;
  }
  // The children. The values of a loaded keyword are made when they are first asked for, which may
  // throw std::bad_alloc.
  zon::NodeList& Children() {
    if (Has(kDeferred)) MakeDeferred();
    return children_;
  }
  const zon::NodeList& Children() const { return const_cast<CzonNamedNode*>(this)->Children(); }
  // Filing at a place of the child list, counted from 0 (its length appends); taking a child out,
  // which lives on; a value in the place of another; another name. All or nothing.
  void FileAt(CzonNode* child, std::uint32_t place);
  void Unfile(CzonNode* child);
  bool IsFiled(CzonNode& child);  // false if it belongs into an index, which does not hold it
  void Replace(CzonNode* child, CzonNode* by);
  void Rename(std::string_view name);
  // Numbers the namesakes of the child, one of which a Copy has reset.
  void RestoreNumbers(CzonNode& child);
  // A copy of everything of `source` but the name, in a node for SwapContent with this one.
  std::unique_ptr<CzonNamedNode> CopyAside(const CzonNamedNode& source) const;
  // Everything but name and place; both lie in one arena, or in none.
  void SwapContent(CzonNamedNode& other);

  // Where the child stands in the child list, from 0; the length of the list when it does not.
  std::uint32_t PlaceOf(const CzonNode* child) const;
  // Where this node was last seen in the child list of its owner: a hint.
  std::uint32_t PlaceSeen() const { return place_; }

 protected:
  zon::Arena* arena_ = nullptr;  // set exactly for nodes that lie in one

  // An empty node that can exchange its content with this one.
  virtual std::unique_ptr<CzonNamedNode> NewAside() const;
  template <class T>
  std::unique_ptr<T> NewInStore() const {
    auto node = std::make_unique<T>();
    if (arena_ != nullptr) node->EnterArena(*arena_);
    return node;
  }

  // All children in their order: written, deleted.
  void WriteChildren(std::ostream& out) const;
  void FreeChildren();

 private:
  friend class CzonNode;
  friend class CzonKeyword;

  void MakeDeferred();
  void ChildrenMoved(std::uint32_t from, const CzonNode& child, int by);
  void LoseNumber(CzonNode& child);
  void CopyContent(const CzonNamedNode& source);
  void CopyOwn(const CzonNamedNode& source);
  void FileCopied(std::unique_ptr<CzonNode>& child);
  const CzonNamedNode* FirstDefinition(std::string_view name) const;

  zon::NodeList children_;
  mutable std::string* nameGlb_ = nullptr;
  zon::Text name_;
  std::uint32_t nameHash_ = zon::kHashOfNoName;
  std::uint32_t flags_ = 0;
  mutable std::uint32_t place_ = 0;  // in the child list of the owner, as last seen
};

#endif
