// Lists of nodes by number and by name.
#ifndef ZON_TREE_ZONNAMELIST_H
#define ZON_TREE_ZONNAMELIST_H

#include <string_view>

#include "base/zonexport.h"
#include "tree/zonnodefields.h"

class CzonKeyword;
class CzonNamedNode;
class CzonSection;

/** The list of the sections or of the keywords of an owner, which alone owns the nodes. T is
 *  CzonSection or CzonKeyword. */
template <class T>
class ZON_API CzonNameList {
 public:
  CzonNameList() = default;
  CzonNameList(const CzonNameList&) = delete;
  CzonNameList& operator=(const CzonNameList&) = delete;
  ~CzonNameList();

  /** Files the node by its name and numbers it. Returns 1; 0 for null. The ordered list stays. */
  int AddToIndex(T* node);

  /** Files a node that is about to be at place `pos` (from 1) of the ordered list, and renumbers
   *  its namesakes after it. Returns 0; 1 for null. The ordered list stays. */
  int InsertIntoHashtable(T* node, unsigned int pos);

  /** Removes the node from the index and renumbers its namesakes. Returns 0, or 1006 if the index
   *  does not hold it. The ordered list stays and the node lives on. */
  int EraseFromHashtable(T* node);

  /** Change the index and the ordered list. Append and Insert throw std::bad_alloc and change
   *  nothing. Insert makes the node the one at place `pos`, from 1 to one past the last. Remove
   *  returns as EraseFromHashtable. @{ */
  void Append(T* node);
  void Insert(T* node, unsigned int pos);
  int Remove(T* node);
  /** @} */

  unsigned int Count() const;                                 ///< of all nodes
  bool Holds(const T* node) const;                            ///< whether the index does
  T* ByNum(unsigned int n) const;                             ///< null for a number out of range
  T* ByNameNum(std::string_view name, unsigned int n) const;  ///< null for a miss
  unsigned int CountOf(const CzonNamedNode& namesake) const;  ///< of the nodes of its name

 private:
  mutable zon::NameList list_ = {};
};

#endif
