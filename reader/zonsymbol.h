// What the engine and its builders exchange: values of grammar symbols, and errors.
#ifndef ZON_READER_ZONSYMBOL_H
#define ZON_READER_ZONSYMBOL_H

#include <cstddef>
#include <cstdint>
#include <string_view>

class CzonNode;

namespace zon {

// The value of a grammar symbol: the node that a rule made, or the text of a token. In a file the
// text of a punctuation token is the place where it is.
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

// The kinds of tokens that fit somewhere, as bits.
enum Expected : std::uint32_t {
  kExpectValue = 1,
  kExpectNumber = 2,  // after a sign
  kExpectRemark = 4,
  kExpectComma = 8,
  kExpectEquals = 16,
  kExpectName = 32,
  kExpectHeader = 64,
  kExpectEndSect = 128,
  kExpectBracket = 256,  // "]"
  kExpectParen = 512,    // ")"
  kExpectMarker = 1024,  // "("
  kExpectDefault = 2048,
  kExpectEnd = 4096
};

// Which construct the parser was in when it read a token.
enum class ParseContext {
  kOutside,  // of any section
  kHeader,   // after "["
  kBody,     // of a section, where a line begins
  kName,     // after the name at the begin of a line
  kMarker,   // after "("
  kDefault,  // after "default"
  kValue,    // after "=" or ","
  kAfterValue,
  kSign,
  kSubstitution  // after "%"
};

// The code of a token on which the lexer has failed.
constexpr int kFailedToken = -1;

struct ParseFailure {
  int token;  // as the lexer numbers it, or kFailedToken
  bool isTooDeep;
  ParseContext context;
  std::uint32_t expected;  // of Expected
  std::size_t sections;    // how many are open on the stack
  SymbolValue anchor;      // kHeader: the bracket; kName: the name; kSign: the sign
};

// How to go on after an error: with the section that is open, or with one more or one less.
struct Resumption {
  enum Action { kStop, kStay, kOpenSection, kCloseSection };
  Action action;
  const char* at;  // where to read on
};

}  // namespace zon

#endif
