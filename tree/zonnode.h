// The common root of everything that a handle can point at, and the node of a parameter tree.
//
// CzonNode's virtual interface is the one way in which the rest of the library asks a node what it
// is, how many children it has and what its value is. Each operation has a harmless default; a
// class overrides what it knows. The order of the virtual operations is part of the interface.
#ifndef ZON_TREE_ZONNODE_H
#define ZON_TREE_ZONNODE_H

#include <cstdint>
#include <iosfwd>
#include <new>
#include <string>
#include <string_view>

#include "base/zonarena.h"
#include "base/zonexport.h"

class CzonClob;
class CzonDefaultDef;
class CzonKeyword;
class CzonNamedNode;
class CzonNode;
class CzonParam;
class CzonSection;

/** What a file handle or a node handle points at. */
class ZON_API CzonBase {
 public:
  virtual ~CzonBase();
};

/** The kinds that GetSyntaxClass tells apart. The numbers are part of the interface. */
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
  kZonFilename = 10,  ///< and, Kept: also date-times; nothing answers 13
  kZonDefaultPar = 11,
  kZonSubstit = 12,
  kZonUnknown = 14,
  kZonUndefinedPar = 15
};

/** A node of a parameter tree.
 *
 *  Numbers of children and instances count from 1; 0 or a number past the end gives null. A query
 *  that the kind of node does not support passes "Function invalid in this context" to MessageHook
 *  and gives 0, null or the empty text; where "silently" is said, no message is passed. Texts given
 *  by reference live as long as the node, or until the next change of what they tell. */
class ZON_API CzonNode : public CzonBase {
 public:
  CzonNode() = default;
  CzonNode(const CzonNode&) = delete;
  CzonNode& operator=(const CzonNode&) = delete;
  ~CzonNode() override;

  /** The text given where there is none. Lives as long as the process. */
  static const std::string& empty_string;

  /** Makes an empty node of the same class on the free arena; the caller owns it. */
  virtual CzonNode* CreateObj() = 0;

  virtual const std::string& GetName() const;     ///< silently empty but for named nodes
  virtual const std::string& GetNameGlb() const;  ///< "Model.Grid.depth"; silently empty otherwise

  /** How many of them the node has; and where it stands itself. */
  virtual unsigned int GetNoSections() const;
  virtual unsigned int GetNoKeywords() const;
  virtual unsigned int GetNoParams() const;
  virtual unsigned int GetNoNodes() const;      ///< children of any kind
  virtual unsigned int GetNoInstances() const;  ///< siblings of this name; values of the keyword
  virtual int GetInstanceNo() const;            ///< place among these; 0 outside any list

  /** The name of the parameter file, which the root of the tree holds. The top of the tree must be
   *  a CzonTargetList, else the process ends. */
  virtual const std::string& GetZonFilename() const;

  /** 1 if the node is of that kind, else 0. */
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

  /** The value. */
  virtual float GetFloat() const;
  virtual double GetDouble() const;
  virtual int GetInt() const;
  virtual const std::string& GetString() const;
  virtual char* GetFilename() const;              ///< the resolved path; valid until the next call
  virtual const char* GetFilenameString() const;  ///< the name as it was written
  virtual int GetBool() const;
  virtual CzonClob* GetClob() const;  ///< silently null

  /** The n-th section, keyword, value or child; the n-th of a name, without a number the first. */
  virtual CzonSection* SectionByNum(unsigned int n) const;
  virtual CzonKeyword* KeywordByNum(unsigned int n) const;
  virtual CzonParam* ParamByNum(unsigned int n) const;
  virtual CzonNode* NodeByNum(unsigned int n) const;  ///< silently null
  virtual CzonSection* SectionByName(const char* name) const;
  virtual CzonKeyword* KeywordByName(const char* name) const;
  virtual CzonSection* SectionByNameNum(const char* name, unsigned int n) const;
  virtual CzonKeyword* KeywordByNameNum(const char* name, unsigned int n) const;

  /** Writes the node as it stands in a parameter file. Gives back the stream. */
  virtual std::ostream& Write(std::ostream& out) const;

  /** Calls the visitor on the node and everything below it, parents before children, in the order
   *  of the file; the root of a file is left out. The visitor may add nodes behind the current
   *  one. */
  virtual void Explore(void (*visit)(CzonNode*));

  virtual int GetSyntaxClass() const;  ///< a CzonSyntaxClass

  /** The n-th default value for a keyword of that name as seen from the child `start`; null when
   *  there is none. The value stays in its default definition. */
  virtual CzonParam* FindDefault(CzonNode* start, const std::string& name, unsigned int n) const;

  /** Makes this node a deep copy of `source`, a node of the same class (else the process ends), as it
   *  was at the call: the source may be above or below this node. The node keeps its place and is
   *  filed under its new name. Its instance number becomes 0 until nodes of its name are next added
   *  or removed. Null or the node itself changes nothing. */
  virtual void Copy(const CzonNode* source);

  /** Depth: 0 for a node without owner, 1 for a top-level section. */
  int GetLevel() const;

  /** The node above all others; this node when it has no owner. */
  CzonNode* GetTopNode() const;

  /** The section, root or keyword that holds the node; null for none. */
  CzonNamedNode* GetOwner() const;

  /** The text of the braced remark that the reader found at the node. Nothing else reads it, and it
   *  is not written back. */
  const std::string& GetRemark() const;

  // For the library's own use: nodes in a arena.

  // Deletes a node; one that lies in a store is only emptied of what the store does not hold.
  static void Free(CzonNode* node);

  // Makes a node in a arena; it is never deleted by itself. It may hold nothing that the store does
  // not.
  template <class T, class... Arguments>
  static T* Make(zon::Arena& arena, Arguments... arguments) {
    void* place = arena.Allocate(sizeof(T));
    T* node;
    if constexpr (sizeof...(arguments) == 0) {
      node = new (place) T;  // without parentheses: nothing is cleared first
    } else {
      node = new (place) T(arguments...);
    }
    node->EnterArena(arena);
    return node;
  }

  // The node lies in the arena.
  void EnterArena(zon::Arena&) { Set(kInArena); }

  // Keeps a copy of the text, in the store if there is one.
  void SetRemark(std::string_view text, zon::Arena* arena);

  // The store whose memory may serve this node; null for none.
  zon::Arena* GetArena() const;

 protected:
  // What is to be known of a node, in one place.
  enum Bits : std::uint32_t {
    kNamed = 1,    // a CzonNamedNode
    kInArena = 2,  // lies in the store of its tree
    kDeep = 4,     // something in it or below it wants its destructor; so has every owner above
    kOwnsRemark = 8,
    kHasDouble = 16,  // of numeric values: which views are set
    kHasInt = 32,
    kExploresItself = 64,  // Explore begins with the node, then its children
    kDeferred = 128,       // the children stand as text, to be made when they are asked for
    kLostNumbers = 256,    // of keywords: a Copy has reset the number of a value
  };

  // Asks for a bit, and sets or clears it.
  bool Has(Bits bit) const { return (bits_ & bit) != 0; }
  void Set(Bits bit, bool on = true) {
    bits_ = on ? bits_ | bit : bits_ & ~static_cast<std::uint32_t>(bit);
  }

  // Whether somebody has to run the destructor.
  bool WantsDestructor() const { return (bits_ & (kInArena | kDeep)) != kInArena; }
  void MarkDeep();
  void SwapRemark(CzonNode& other);
  void ResetNumber();  // to 0, as a Copy does; the owner takes note

 private:
  friend class CzonNamedNode;
  friend class CzonKeyword;
  template <class T>
  friend class CzonNameList;

  CzonNode* owner_ = nullptr;  // always a CzonNamedNode, but while a subtree is taken down
  std::string* remark_ = nullptr;
  std::int32_t instance_ = 0;

 protected:
  std::uint32_t bits_ = 0;  // of Bits
};

#endif
