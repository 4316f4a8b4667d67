// The builder that passes on each item of a text as soon as it is complete, and keeps none.
//
// It is two TreeBuilders: that of the headers, whose nodes live until the end, as the engine has
// them on its stack, and that of the lines, whose memory is used again after a number of lines. So
// a text of any size is read in constant memory, by the grammar and the actions of a load.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_READER_ZONITEMBUILDER_H
#define ZON_READER_ZONITEMBUILDER_H

#include <optional>

#include "base/zonarena.h"
#include "reader/zontreebuilder.h"

class CzonNamedNode;

namespace zon {

// What happens with the items of a text, in the order of the text. The nodes have no owner. Places
// are in the text.
class ItemVisitor {
 public:
  virtual ~ItemVisitor() = default;

  // The header lives until the end of the text.
  virtual void OpenSection(const CzonNamedNode& header) = 0;

  // A keyword or default definition, which lives during the call, and where its last token ends.
  virtual void VisitLine(const CzonNamedNode& line, const char* end) = 0;

  // The word that ends the section.
  virtual void CloseSection(const char* begin, const char* end) = 0;
};

class ItemBuilder {
 public:
  static constexpr bool kRecovers = false;

  ItemBuilder(CyyParser& parser, const Lexer& lexer, ItemVisitor& visitor);

  SymbolValue Reduce(int rule, const SymbolValue* right);
  SymbolValue MakeLine() { return lines_->MakeLine(); }
  void FileKeyword(const SymbolValue& section, const SymbolValue& keyword);

 private:
  static constexpr int kLinesAtOnce = 256;

  CyyParser& parser_;
  const Lexer& lexer_;
  ItemVisitor& visitor_;
  Arena headerArena_;
  Arena lineArena_;
  TreeBuilder headers_;
  std::optional<TreeBuilder> lines_;
  int count_ = 0;
};

}  // namespace zon

#endif
