// Paths of nodes: "Quay:2/Berth/Draught[3]".
// Tested by tests/zonx_test.cpp.
#ifndef ZON_ZONX_ZONNODEPATH_H
#define ZON_ZONX_ZONNODEPATH_H

#include <cstdint>
#include <string>
#include <string_view>

class CzonNamedNode;
class CzonNode;

namespace zon {

// One name of a path. A number that is too large for an instance is the largest one, which no list
// reaches.
struct PathStep {
  std::string_view name;  // empty for "()"
  unsigned int instance = 1;
  bool isSection = false;  // "/" follows
  bool hasInstance = false;
  bool isRead = false;  // false for no step
};

// Walks along a path.
class PathReader {
 public:
  explicit PathReader(const char* path) : at_(path) {}

  // Reads the next name. False at the end, before "[n]", and if the path is malformed.
  bool ReadStep(PathStep* step);

  // Reads the "[n]" at the end; 0 if there is none.
  unsigned int ReadValueNumber();

  bool IsAtEnd() const { return *at_ == '\0' && !isMalformed_; }
  bool IsMalformed() const { return isMalformed_; }

 private:
  unsigned int ReadNumber();
  bool Fail();

  const char* at_;
  bool isMalformed_ = false;
};

// Where a path begins: a node, or the root of a file handle, null if it has none. False for an
// object that is neither; it is not null.
bool FindStart(void* fileOrNode, CzonNode** node);

// The keyword or the section of a step; null if there is none. The nodes of a host's class are
// asked by their operations, which it can override.
CzonNode* FindKeyword(const CzonNode& node, const PathStep& step);
CzonNode* FindSection(const CzonNode& node, const PathStep& step);

// The number by which FindNode finds a section or keyword among its namesakes, also if a Copy has
// reset its instance number.
unsigned int InstanceOf(const CzonNamedNode& node);

struct FoundNode {
  int status;                // ZONX_OK, ZONX_MISSING or ZONX_BAD_ARGUMENT
  CzonNode* node;            // what was found: a root, section, keyword or value
  CzonNode* deepest;         // the last node of the path that exists; null for none
  PathStep missing;          // the name that was not found; of an instance, its name exists
  unsigned int valueNumber;  // of "[n]", 0 for none
};

// Follows a path from a file handle or node. Null, and an object that is neither, are
// ZONX_BAD_ARGUMENT. May throw std::bad_alloc.
FoundNode FindNode(void* fileOrNode, const char* path);

// The path of a node as FindNode takes it, from the root of its tree. Numbers of 1 are left out.
std::string PathOf(const CzonNode& node);

// The same for messages: at most some 200 characters of its end, after "..." if that is not all,
// and without control characters. So the messages on a deep tree do not grow with its depth.
std::string ShortPathOf(const CzonNode& node);

}  // namespace zon

#endif
