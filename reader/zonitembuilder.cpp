#include "reader/zonitembuilder.h"

#include "reader/zonlexer.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

#include "reader/zongrammar.inc"

}  // namespace

ItemBuilder::ItemBuilder(CyyParser& parser, const Lexer& lexer, ItemVisitor& visitor)
    : parser_(parser),
      lexer_(lexer),
      visitor_(visitor),
      headers_(parser, lexer, headerArena_),
      lines_(std::in_place, parser, lexer, lineArena_) {}

SymbolValue ItemBuilder::Reduce(int rule, const SymbolValue* right) {
  switch (rule) {
    case kFile:
    case kListEmpty:
    case kListSection:
    case kBodySection:
      return right[0];
    case kSectionSingle:
    case kSectionMulti:
      return headers_.Reduce(rule, right);
    case kSectionRemark:
    case kSectionNoRemark: {
      const SymbolValue header = headers_.Reduce(rule, right);
      visitor_.OpenSection(*static_cast<const CzonSection*>(header.node));
      return header;
    }
    case kSectionEnd:
      visitor_.CloseSection(right[1].chars, right[1].chars + right[1].size);
      return right[0];
    case kBodyKeyword:
    case kBodyDefault:
      FileKeyword(right[0], right[1]);
      return right[0];
    default:
      return lines_->Reduce(rule, right);
  }
}

// The next token has been read, so the line ends where the token before it does.
void ItemBuilder::FileKeyword(const SymbolValue&, const SymbolValue& keyword) {
  visitor_.VisitLine(*static_cast<const CzonNamedNode*>(keyword.node), lexer_.PreviousEnd());
  if (++count_ < kLinesAtOnce) return;
  count_ = 0;
  lines_.reset();
  lineArena_.Clear();
  lines_.emplace(parser_, lexer_, lineArena_);
}

}  // namespace zon
