// A node with a name, flags and children: the base of file roots, sections and keywords.
#ifndef ZON_TREE_ZONNAMNO_H
#define ZON_TREE_ZONNAMNO_H

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>

#include "base/zonexport.h"
#include "tree/zonnode.h"
#include "tree/zonnodefields.h"

namespace zon {
struct GlobalName;
struct NameKey;
class NodeSpan;
}  // namespace zon

/** A node with a name and children. */
class ZON_API CzonNamedNode : public CzonNode {
 public:
  CzonNamedNode() { Set(kNamed); }
  CzonNamedNode(const std::string& name, int multi, int mandat);  ///< see SetMultiMandat
  ~CzonNamedNode() override;

  /** The flags of a node, as GetFlags returns them. */
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

  unsigned int GetFlags() const { return bits_ >> kFlagShift & kAllFlags; }  ///< a sum of Flags
  void SetOpenList() { SetFlags(GetFlags() | kOpenList); }                   ///< until Clear

  /** Writes the indentation of a line: three blanks for each level below the first. */
  void Indent(std::ostream& out) const;

 protected:
  // Operations that differ between the classes of the library. A class of a host inherits those of
  // its base.

  /// The class of the library whose operations these are.
  virtual const std::type_info& LibraryClass() const;

  /// Makes an empty node that can exchange its content with this one.
  virtual std::unique_ptr<CzonNamedNode> MakeAside() const;

  /// The list in which a child of its class is filed beside the children; null for none.
  virtual zon::NameList* ListOf(const CzonNode& child);

  /// The number of children that are made.
  std::uint32_t ChildCount() const { return Has(kDeferred) ? 0 : children_.nodes.size; }

  /// Enters all children into their lists. May throw std::bad_alloc.
  virtual void ListChildren();

  /// The number of children that are filed under the name of this child.
  virtual unsigned int CountNamesakes(const CzonNamedNode& child) const;

  /// The first child that is a default definition of that name; null for none.
  virtual const CzonNamedNode* FindDefinition(std::string_view name) const;

  /** Called after a change of the children, which were in their lists. A place counts from 0;
   *  AddNode calls none of them. @{ */
  virtual void ChildInserted(const CzonNode& child, std::uint32_t place);
  virtual void ChildErased(const CzonNode& child, std::uint32_t place);
  virtual void ChildRenamed(const CzonNode& child);
  /** @} */

  /// Called after a Copy has reset the number of a child.
  virtual void ChildLostNumber(const CzonNode& child);

  /// Called before all children are deleted.
  virtual void ForgetChildren();

  /** Exchange and copy what the class has beside name, flags, remark and children. `other` was made
   *  by MakeAside of this node. @{ */
  virtual void SwapOwn(CzonNamedNode& other);
  virtual void CopyOwn(const CzonNamedNode& source);
  /** @} */

  /// Whether it can return GetZonFilename as the root of a tree.
  virtual bool HoldsFilename() const;

  /** A new node that uses the arena of this one, if there is one, but is not in it. */
  template <class T>
  std::unique_ptr<T> MakeInArena() const {
    auto node = std::make_unique<T>();
    if (arena_ != nullptr) node->EnterArena(*arena_);
    return node;
  }

  /// The children. Makes those that are not parsed yet, which may throw std::bad_alloc.
  zon::NodeSpan Children() const;

  /// Adds a child that is to be in a list. Throws std::bad_alloc and changes nothing.
  void AddListed(CzonNamedNode& child);

  void WriteChildren(std::ostream& out) const;  ///< each by its own Write, in order

  zon::Arena* arena_ = nullptr;  ///< set exactly for nodes in an arena

 private:
  friend class CzonNode;
  friend struct zon::NodeAccess;

  // A keyword has either values or the text of them.
  union ChildFields {
    zon::NodeList nodes;
    zon::DeferredValues deferred;  // if kDeferred is set
  };

  static constexpr unsigned int kAllFlags = kMulti | kMandat | kOpenList;

  void SetFlags(unsigned int flags) {
    bits_ = (bits_ & ~(kAllFlags << kFlagShift)) | flags << kFlagShift;
  }
  zon::GlobalName* FindGlobalName() const {
    return Has(kHasExtras) ? link_.extras->globalName : nullptr;
  }
  const zon::GlobalName* BeginGlobalName() const;
  void ForgetGlobalName();
  void EnterArena(zon::Arena& arena);
  bool IsOfLibrary() const;
  std::string_view GetNameView() const;
  zon::NameKey GetKey() const;
  zon::NameKey MakeKey() const;
  void SetName(std::string_view name);
  void ReferToName(std::string_view name);
  zon::NodeList& EnsureChildren();
  void MakeDeferredChildren();
  void MakeValues(const zon::DeferredValues& values);
  void DeferValues(const zon::DeferredValues& values);
  void AppendNew(CzonNode* const* values, std::uint32_t count);
  void AppendNew(CzonNamedNode& child);
  std::uint32_t PlaceOf(const CzonNode* child) const;
  void NumberChildren(const CzonNamedNode& child);
  int CountNumber(const CzonNode& child);
  void AppendChild(CzonNode* node);
  void FreeChildren();
  void LinkChildren(CzonNode*& pending, bool all) const;
  template <class Destroy>
  static void TakeApart(CzonNode* pending, bool all, Destroy&& destroy);
  void CopyContent(const CzonNamedNode& source);
  void CopyFields(const CzonNamedNode& source);
  void AppendCopy(CzonNode* child);

  ChildFields children_ = {};
  mutable zon::Text name_;
  mutable std::uint32_t place_ = 0;  // among the children of the owner when last seen: a hint
};

#endif
