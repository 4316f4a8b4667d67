#include "reader/zonitemreader.h"

#include "reader/zonengine.h"
#include "reader/zonlexer.h"
#include "reader/zontextparser.h"

namespace zon {

bool ReadItems(const std::shared_ptr<FileText>& text, ItemVisitor& visitor) {
  TextParser parser(text);
  Lexer lexer(parser, parser.Stream(), &parser.Stream(), parser.GetArena());
  ItemBuilder builder(parser, lexer, visitor);
  const bool isAccepted = Engine<ItemBuilder>(parser, lexer, builder, true).Run() == 0;
  return isAccepted && !parser.HasError();
}

}  // namespace zon
