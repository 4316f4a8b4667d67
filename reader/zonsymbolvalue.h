// The values on the stack of the parser.
#ifndef ZON_READER_ZONSYMBOLVALUE_H
#define ZON_READER_ZONSYMBOLVALUE_H

#include <cstddef>
#include <string_view>

class CzonNode;

namespace zon {

// The value of a grammar symbol: the node that a rule made, or the text of a token.
struct SymbolValue {
  union {
    CzonNode* node;
    const char* chars;
  };
  std::size_t size;

  std::string_view Text() const { return {chars, size}; }
  void SetText(std::string_view text) {
    chars = text.data();
    size = text.size();
  }
};

}  // namespace zon

#endif
