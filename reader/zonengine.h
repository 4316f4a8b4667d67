// The table engine: shifts tokens and reduces rules as the tables of zongrammar.inc say.
//
// An LALR(1) parser with a stack of fixed depth and without error recovery. States with only a
// default reduction reduce without lookahead: the place of an error depends on it, and so does
// whether an error of the lexer after a complete section is seen at all.
//
// All of its state belongs to one parse, so a hook may load another file in the middle of it.
// Tested by tests/grammar_test.cpp.
#ifndef ZON_READER_ZONENGINE_H
#define ZON_READER_ZONENGINE_H

#include <cstddef>

#include "reader/zonsymbolvalue.h"

class CyyParser;

namespace zon {

class Lexer;
class TreeBuilder;

// Where the tokens come from: the lexer, or the scanner of a derived parser.
class TokenSource {
 public:
  virtual int ReadToken() = 0;

 protected:
  ~TokenSource() = default;
};

class Engine {
 public:
  // `takesLines`: nothing else sees the tokens, so that the lexer may take many as one.
  Engine(CyyParser& parser, TokenSource& tokens, Lexer& lexer, TreeBuilder& builder,
         bool takesLines)
      : parser_(parser),
        tokens_(tokens),
        lexer_(lexer),
        builder_(builder),
        takesLines_(takesLines) {}

  // Parses the input to its end. Returns 0, or 1 after an error, which the parser records.
  int Run();

 private:
  static constexpr std::size_t kDepth = 150;

  bool HasRoom(std::size_t more) const { return depth_ + more <= kDepth; }
  void Push(int state, const SymbolValue& value);
  int State() const { return states_[depth_ - 1]; }
  void ReadToken();
  int Fail(const char* message);

  CyyParser& parser_;
  TokenSource& tokens_;
  Lexer& lexer_;
  TreeBuilder& builder_;
  const bool takesLines_;
  int token_;  // as the tables number it
  std::size_t depth_ = 0;
  int states_[kDepth];
  SymbolValue values_[kDepth];  // of the symbols that led to the states
};

}  // namespace zon

#endif
