// CzonBase, the base of everything that a handle can point to, and CzonNode, a node of a parameter
// tree.
//
// The virtual operations of CzonNode return what a node is, its children and its value. Each has a
// default for nodes that do not support it. Their order is part of the interface: no class adds an
// operation between them or directly after them.
#ifndef ZON_TREE_ZONNODE_H
#define ZON_TREE_ZONNODE_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "base/zonexport.h"
#include "tree/zonnodefields.h"

class CzonClob;
class CzonDefaultDef;
class CzonKeyword;
class CzonNamedNode;
class CzonNode;
class CzonParam;
class CzonSection;

namespace zon {
class Arena;
struct NodeAccess;
}  // namespace zon

/** What a file handle or a node handle points to. */
class ZON_API CzonBase {
 public:
  virtual ~CzonBase();
};

/** The kinds that GetSyntaxClass returns. The numbers are part of the interface. */
enum CzonSyntaxClass : int {
  kZonNode = 0,
  kZonTargetList = 1,
  kZonSection = 2,
  kZonKeyword = 3,
  kZonDefaultDef = 4,
  kZonParam = 5,  ///< also plain numeric values and CLOBs
  kZonInt = 6,
  kZonReal = 7,
  kZonBool = 8,
  kZonString = 9,
  kZonFilename = 10,  ///< also date-times; 13 is not used
  kZonDefaultPar = 11,
  kZonSubstit = 12,
  kZonUnknown = 14,
  kZonUndefinedPar = 15
};

/** A node of a parameter tree.
 *
 *  Numbers of children and instances count from 1; 0 or a number past the end returns null. A query
 *  that the kind of node does not support passes "Function invalid in this context" to MessageHook
 *  and returns 0, null or the empty text; a query marked "silently" passes no message. Texts that
 *  are returned by reference live as long as the node, or until they change. */
class ZON_API CzonNode : public CzonBase {
 public:
  CzonNode() = default;
  CzonNode(const CzonNode&) = delete;
  CzonNode& operator=(const CzonNode&) = delete;
  ~CzonNode() override;

  /** The empty text. Valid as long as the process runs. */
  static const std::string& empty_string;

  /** Makes an empty node of the same class on the free arena; the caller owns it. */
  virtual CzonNode* CreateObj() = 0;

  virtual const std::string& GetName() const;     ///< silently empty but for named nodes
  virtual const std::string& GetNameGlb() const;  ///< "Model.Grid.depth"; silently empty otherwise

  /** The number of nodes of each kind in this node, and its place among its siblings. @{ */
  virtual unsigned int GetNoSections() const;
  virtual unsigned int GetNoKeywords() const;
  virtual unsigned int GetNoParams() const;
  virtual unsigned int GetNoNodes() const;      ///< children of any kind
  virtual unsigned int GetNoInstances() const;  ///< siblings of this name; values of the keyword
  virtual int GetInstanceNo() const;            ///< place among these; 0 outside any list
  /** @} */

  /** The name of the parameter file, which the root of the tree holds. The top of the tree must be
   *  a CzonTargetList, else the process ends. */
  virtual const std::string& GetZonFilename() const;

  /** 1 if the node is of that kind, else 0. @{ */
  virtual int IsSection() const;  ///< also true for the root
  virtual int IsKeyword() const;
  virtual int IsParam() const;
  virtual int IsDefaultDef() const;
  virtual int IsNumeric() const;
  virtual int IsFloat() const;   ///< the value fits a float
  virtual int IsDouble() const;  ///< the value is set as a double
  virtual int IsInt() const;     ///< the value is whole
  virtual int IsString() const;
  virtual int IsDefaultPar() const;
  virtual int IsBool() const;
  virtual int IsFilename() const;
  virtual int IsClob() const;
  virtual int IsUndefinedPar() const;
  /** @} */

  /** The value. @{ */
  virtual float GetFloat() const;
  virtual double GetDouble() const;
  virtual int GetInt() const;
  virtual const std::string& GetString() const;
  virtual char* GetFilename() const;              ///< the resolved path; valid until the next call
  virtual const char* GetFilenameString() const;  ///< the name as it was written
  virtual int GetBool() const;
  virtual CzonClob* GetClob() const;  ///< silently null
  /** @} */

  /** The n-th section, keyword, value or child; the n-th of a name, without a number the first.
   *  @{ */
  virtual CzonSection* SectionByNum(unsigned int n) const;
  virtual CzonKeyword* KeywordByNum(unsigned int n) const;
  virtual CzonParam* ParamByNum(unsigned int n) const;
  virtual CzonNode* NodeByNum(unsigned int n) const;  ///< silently null
  virtual CzonSection* SectionByName(const char* name) const;
  virtual CzonKeyword* KeywordByName(const char* name) const;
  virtual CzonSection* SectionByNameNum(const char* name, unsigned int n) const;
  virtual CzonKeyword* KeywordByNameNum(const char* name, unsigned int n) const;
  /** @} */

  /** Writes the node in the form of a parameter file. Returns the stream. */
  virtual std::ostream& Write(std::ostream& out) const;

  /** Calls the visitor on the node and everything below it, parents before children, in the order
   *  of the file; the root of a file is left out. The visitor may add nodes after the current
   *  one. */
  virtual void Explore(void (*visit)(CzonNode*));

  virtual int GetSyntaxClass() const;  ///< a CzonSyntaxClass

  /** The n-th default value for a keyword of that name as seen from the child `start`; null if
   *  there is none. The value stays in its default definition. */
  virtual CzonParam* FindDefault(CzonNode* start, const std::string& name, unsigned int n) const;

  /** Makes this node a deep copy of `source`, a node of the same class (else the process ends), as
   *  it was at the call: the source may be above or below this node. The node keeps its place and
   *  is filed under its new name. Its instance number becomes 0 until nodes of its name are next
   *  added or removed. Null or the node itself changes nothing. */
  virtual void Copy(const CzonNode* source);

  /** Depth: 0 for a node without owner, 1 for a top-level section. */
  int GetLevel() const;

  /** The node above all others; this node when it has no owner. */
  CzonNode* GetTopNode() const;

  /** The section, root or keyword that holds the node; null for none. */
  CzonNamedNode* GetOwner() const;

  /** The text of the braced remark that the reader found at the node. Nothing else reads it, and it
   *  is not written. */
  const std::string& GetRemark() const;

 protected:
  /// Facts of a node. Set by the constructor of the class, if not said otherwise. Bits 17 to 19 are
  /// the flags of a named node, bits 24 to 31 the size of a node in an arena.
  enum Bits : std::uint32_t {
    kNamed = 1U << 0,       ///< a CzonNamedNode
    kList = 1U << 1,        ///< a CzonTargetList
    kSection = 1U << 2,     ///< a CzonSection
    kKeyword = 1U << 3,     ///< a CzonKeyword
    kInArena = 1U << 4,     ///< the node is in the arena of its tree; set by NodeAccess::Make
    kDeep = 1U << 5,        ///< set when the node, or one below it, owns memory outside the arena;
                            ///< read when nodes are freed
    kOwnsRemark = 1U << 6,  ///< the remark is in the free store
    kHasDouble = 1U << 7,   ///< of numbers: the view as a double is set
    kHasInt = 1U << 8,      ///< of numbers: the view as an integer is set
    kDeferred = 1U << 9,    ///< of keywords: the values are not made yet
    kLostNumbers = 1U << 10,  ///< of keywords: a Copy has reset the number of a value
    kRead = 1U << 11,         ///< of keywords: a value was read while a file was watched
    kUnnumbered = 1U << 12,   ///< the instance number is made, or counted, when it is asked for
    kNumberLost = 1U << 13,   ///< of nodes whose number is counted: a Copy has reset it to 0
    kOwnText = 1U << 14,      ///< the name or text is a copy in the arena that only this node has
    kHasExtras = 1U << 15,    ///< the owner is in the extras
    kOwnsExtras = 1U << 16,   ///< the extras are in the free store
    kAlone = 1U << 20,        ///< the index of the owner has no other node of this name
    kNamesDiffer = 1U << 21,  ///< of sections as they were read: no name is in them twice
  };

  bool Has(Bits bit) const { return (bits_ & bit) != 0; }  ///< whether the bit is set

  /** Sets or clears a bit. */
  void Set(Bits bit, bool on = true) {
    bits_ = on ? bits_ | bit : bits_ & ~static_cast<std::uint32_t>(bit);
  }

  /// The arena whose memory may serve this node; null for none.
  zon::Arena* GetArena() const;

  /// Sets kDeep here and in all owners.
  void MarkDeep();

 private:
  friend class CzonNamedNode;
  friend struct zon::NodeAccess;

  static constexpr unsigned kFlagShift = 17;
  static constexpr unsigned kSizeShift = 24;

  CzonNode* Owner() const { return Has(kHasExtras) ? link_.extras->owner : link_.owner; }
  void SetOwner(CzonNode* owner) { (Has(kHasExtras) ? link_.extras->owner : link_.owner) = owner; }
  std::string* Remark() const { return Has(kHasExtras) ? link_.extras->remark : nullptr; }
  zon::NodeExtras& EnsureExtras(zon::Arena* arena);
  static void Free(CzonNode* node);
  bool NeedsDestructor() const { return (bits_ & (kInArena | kDeep)) != kInArena; }
  void SetRemark(std::string_view text, zon::Arena* arena);
  void SwapExtras(CzonNode& other);
  void ResetNumber();  // to 0, for a Copy; notifies the owner
  int FindNumber() const;

  union Link {
    CzonNode* owner;          // a CzonNamedNode, except while a subtree is freed
    zon::NodeExtras* extras;  // if kHasExtras is set
  };

  Link link_ = {nullptr};
  std::int32_t instance_ = 0;

  // Of Bits. From kFlagShift on the three flags of a named node; from kSizeShift on the size of a
  // node in an arena, in units of 8 bytes.
  std::uint32_t bits_ = 0;
};

#endif
