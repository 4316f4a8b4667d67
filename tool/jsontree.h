// The document of `dump --json`, read back.
#ifndef ZON_TOOL_JSONTREE_H
#define ZON_TOOL_JSONTREE_H

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace tool {

// The members of the objects, as bits.
enum JsonMember : unsigned int {
  kJsonFile = 1 << 0,
  kJsonSections = 1 << 1,
  kJsonKind = 1 << 2,
  kJsonName = 1 << 3,
  kJsonMulti = 1 << 4,
  kJsonRemark = 1 << 5,
  kJsonChildren = 1 << 6,
  kJsonValues = 1 << 7,
  kJsonValue = 1 << 8,
  kJsonText = 1 << 9,
  kJsonReal = 1 << 10,
  kJsonItems = 1 << 11,
  kJsonLine = 1 << 12,
  kJsonColumn = 1 << 13
};

const char* NameOf(JsonMember member);

// A number, and how it is spelled.
struct JsonNumber {
  double number;
  std::string text;
};

// An object: the document, a section, a keyword, a definition or a value.
struct JsonNode {
  unsigned int members = 0;  // which there are
  std::string kind;
  std::string name;
  std::string remark;
  std::string text;
  std::variant<std::monostate, bool, JsonNumber, std::string> value;
  double real = 0;
  bool isMulti = false;
  std::size_t offset = 0;      // of what an error about the node is placed at
  std::size_t firstChild = 0;  // the numbers of nodes in the list; 0: none
  std::size_t lastChild = 0;
  std::size_t next = 0;

  bool Has(JsonMember member) const { return (members & member) != 0; }
};

struct JsonTree {
  std::vector<JsonNode> nodes;  // the first one is the document
  std::string error;            // empty if the whole text was read
  std::size_t offset = 0;       // of the error
};

// Reads a text of any depth without recursion.
JsonTree ReadJsonTree(const std::string& text);

}  // namespace tool

#endif
