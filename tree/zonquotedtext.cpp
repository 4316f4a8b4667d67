// The text is written in runs that end with a quote, not character by character.
#include "tree/zonquotedtext.h"

#include "base/zonput.h"

namespace zon {

void PutDoublingQuotes(std::ostream& out, std::string_view text) {
  for (;;) {
    const std::size_t quote = text.find('\'');
    if (quote == std::string_view::npos) break;
    Put(out, text.substr(0, quote + 1));
    Put(out, '\'');
    text.remove_prefix(quote + 1);
  }
  Put(out, text);
}

void PutQuoted(std::ostream& out, std::string_view text) {
  Put(out, '\'');
  PutDoublingQuotes(out, text);
  Put(out, '\'');
}

}  // namespace zon
