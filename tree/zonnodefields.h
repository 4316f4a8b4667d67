// Fields of the node classes whose operations are internal to the library. Hosts only need their
// sizes.
#ifndef ZON_TREE_ZONNODEFIELDS_H
#define ZON_TREE_ZONNODEFIELDS_H

#include <cstdint>
#include <string>

class CzonNode;

namespace zon {

struct DeferralSource;
struct GlobalName;
class LongList;
struct IndexedName;

// What few nodes have. It is between such a node and its owner, so that other nodes have no room
// for it.
struct NodeExtras {
  CzonNode* owner;
  std::string* remark;
  GlobalName* globalName;  // of named nodes
};

// See tree/zonnodetext.h. Packed, so that the integer of a value uses the four bytes after its
// text.
struct __attribute__((packed, aligned(4))) Text {
  const void* where = "";
  std::uint32_t size = 0;
};

static_assert(sizeof(Text) == 12, "values are laid out around a text of twelve bytes");

// See tree/zonnodelist.h.
struct NodeList {
  union {
    CzonNode* single;    // if power is 0: room for one node
    CzonNode** block;    // else: room for 2^power nodes
    LongList* longList;  // if power is kLong
  };
  std::uint32_t size;
  std::uint32_t power;  // 0: no block
};

// See tree/zonnameindex.h.
struct NameIndex {
  IndexedName* entries;
  std::uint32_t used;
  std::uint32_t room;  // a power of two
};

struct NameList {
  NameIndex index;
  NodeList ordered;
  std::uint32_t indexed;  // how many nodes of `ordered`, from the first on, the index has
};

// What a section or root needs to find its children by number and by name. Made by the first
// question.
struct ChildLists {
  std::uint32_t listed;  // how many children, from the first on, are in the two lists

  // The default definitions among the first `definitionsSeen` children, by name. See
  // FindDefinition.
  std::uint32_t definitionsSeen;

  NameList keywords;
  NameList sections;
  NameIndex definitions;
};

// See tree/zondeferredvalues.h.
struct DeferredValues {
  const DeferralSource* source;
  std::uint32_t begin;
  std::uint32_t size;
};

}  // namespace zon

#endif
