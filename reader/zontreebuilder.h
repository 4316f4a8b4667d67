// The tree that a parse makes: the action of each rule, the rule on data and templates, and who
// frees the nodes of a parse that failed.
//
// All nodes of a parse are in the arena of the parser. A failed parse frees the arena and every
// node with it, wherever it ended; no node has to be collected. Tested by tests/grammar_test.cpp.
#ifndef ZON_READER_ZONTREEBUILDER_H
#define ZON_READER_ZONTREEBUILDER_H

#include <cstddef>
#include <string_view>
#include <vector>

#include "reader/zonnamesseen.h"
#include "reader/zonsymbol.h"
#include "tree/zondeferredvalues.h"

class CyyParser;
class CzonKeyword;
class CzonNamedNode;
class CzonNode;
class CzonTargetList;

namespace zon {

class Arena;
class Lexer;

class TreeBuilder {
 public:
  static constexpr bool kRecovers = false;

  TreeBuilder(CyyParser& parser, const Lexer& lexer, Arena& arena);
  TreeBuilder(const TreeBuilder&) = delete;
  TreeBuilder& operator=(const TreeBuilder&) = delete;
  ~TreeBuilder();

  // Runs the action of a rule of zongrammar.y on the values of its right side.
  SymbolValue Reduce(int rule, const SymbolValue* right);

  // The keyword of a whole line that the lexer has consumed, and filing a keyword in its section.
  SymbolValue MakeLine();
  void FileKeyword(const SymbolValue& section, const SymbolValue& keyword);

  // Whether a check may warn of something in the tree.
  bool IsSuspect() const { return isSuspect_; }

  // The root of an accepted parse, else null.
  CzonTargetList* GetRoot() const { return root_; }

  // The first of names that repeat and names that declare repetition decides what the file is; the
  // other one is then an error. CheckUnique is for a node that was just filed.
  void CheckUnique(const CzonNamedNode* node);
  void CheckMulti();

  // Nodes that are deleted with the parse unless they have an owner by then.
  void KeepTemporary(CzonNode* node) { temporaries_.push_back(node); }
  void ForgetTemporaries() { temporaries_.clear(); }
  void CollectGarbage();

  void ForgetRoot() { root_ = nullptr; }
  void Abandon();  // frees everything

 private:
  enum FileKind { kUndecided, kData, kTemplate };

  SymbolValue ReduceName(int rule, const SymbolValue* right);
  SymbolValue ReduceItem(int rule, const SymbolValue* right);
  SymbolValue ReduceValue(int rule, const SymbolValue* right);
  SymbolValue ReduceText(int rule, const SymbolValue* right);
  template <class T>
  T* NewNamed(std::string_view name, bool multi);
  CzonNode* NewSubstitution(std::string_view text);
  void NoteSuspects(const CzonNode& section, std::string_view end);
  void NoteName(CzonNode* owner, const CzonNamedNode* node);
  void DeferValues(CzonKeyword* keyword);  // the values that the lexer has consumed last
  template <class T>
  CzonNode* NewEmpty(const char* place);
  std::string_view AfterMark(char mark, const SymbolValue* right);
  std::string_view Signed(char sign, const SymbolValue* right);

  CyyParser& parser_;
  const Lexer& lexer_;
  Arena& arena_;
  ValueDeferral deferral_;
  FileKind kind_ = kUndecided;
  bool isSuspect_ = false;
  CzonTargetList* list_ = nullptr;  // of the sections at the top level
  CzonTargetList* root_ = nullptr;  // the same, once it is accepted
  NamesSeen names_;
  std::vector<CzonNode*> temporaries_;
};

}  // namespace zon

#endif
