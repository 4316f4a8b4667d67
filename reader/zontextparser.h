// A parser without a grammar, for a lexer that reads a text without making a tree of it: skips
// comments and keeps the first error.
#ifndef ZON_READER_ZONTEXTPARSER_H
#define ZON_READER_ZONTEXTPARSER_H

#include <memory>
#include <utility>

#include "reader/yyparser.h"
#include "reader/zonsource.h"

namespace zon {

class TextParser final : public CyyParser {
 public:
  // The text must have been read to its end, and nothing is consumed from it.
  explicit TextParser(std::shared_ptr<FileText> text)
      : CyyParser(TextSource::MakeStream(std::move(text)).release()) {}

  int Parse(int) override { return 0; }
  int yylex() override { return 0; }
  int yyparse() override { return 0; }

  CyyStream& Stream() { return *GetStream(); }
  using CyyParser::ForgetError;
  using CyyParser::GetArena;
};

}  // namespace zon

#endif
