// The table engine: shifts tokens and reduces rules as the tables of zongrammar.inc say.
//
// An LALR(1) parser with a stack of fixed depth. States with only a default reduction reduce
// without lookahead. Compatibility: where an error is noticed depends on it, and so does whether an
// error after a complete section fails the parse.
//
// The engine is used with three builders. TreeBuilder makes the tree of a load; its first error
// ends the parse. Checker makes no nodes; it is told what was expected and found at each error, and
// says where to go on (panic mode: the stack is popped to the section that is open there).
// ItemBuilder passes on what it reads and keeps nothing.
//
// All state belongs to one parse: code of the host that runs during it (yylex, SkipComment,
// CyyInput) may load another file.
// Tested by tests/grammar_test.cpp and tests/reports_test.cpp.
#ifndef ZON_READER_ZONENGINE_H
#define ZON_READER_ZONENGINE_H

#include <cstddef>
#include <cstdint>

#include "reader/zonsymbol.h"

class CyyParser;

namespace zon {

class Lexer;

// More open sections, keywords and values than that are an error.
constexpr std::size_t kStackDepth = 150;

template <class Builder>
class Engine {
 public:
  // `mayMergeTokens`: set for a plain file whose tokens no other code sees. The lexer may then
  // return many values, or a whole line, as one step. Otherwise tokens come from the virtual yylex.
  Engine(CyyParser& parser, Lexer& lexer, Builder& builder, bool mayMergeTokens)
      : parser_(parser), lexer_(lexer), builder_(builder), mayMergeTokens_(mayMergeTokens) {}

  // Parses the input to its end. Returns 0 if the input was accepted, else 1. An accepted parse can
  // have recorded an error: after one the lexer returns the end of the input, which is valid after
  // a complete section. See CyyParser::HasError.
  int Run();

 private:
  bool HasRoom(std::size_t more) const { return depth_ + more <= kStackDepth; }
  void Push(int state, const SymbolValue& value);
  int State() const { return states_[depth_ - 1]; }
  int ReadSimpleToken();
  void PrepareToken();
  bool Recover(const char* message);
  void NoteStack(bool afterLine);
  ParseFailure Describe(const char* message) const;
  void Resume(const Resumption& resumption);

  CyyParser& parser_;
  Lexer& lexer_;
  Builder& builder_;
  const bool mayMergeTokens_;
  int token_;  // as the tables number it
  std::size_t depth_ = 0;
  int states_[kStackDepth];
  // Of the symbols that led to the states. Initialized: a rule with an empty right side reads the
  // place after the top.
  SymbolValue values_[kStackDepth] = {};

  // Of a builder that recovers: the stack as it was when the token was read. What is expected
  // follows from it, not from what is left of it when the error is noticed.
  int code_ = 0;  // of the token, as the lexer numbers it
  bool afterLine_ = false;
  std::size_t notedDepth_ = 0;
  int notedStates_[kStackDepth];
  SymbolValue notedValues_[2];  // the top of the stack and the value below it
};

}  // namespace zon

#endif
