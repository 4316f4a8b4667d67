// Writing quoted texts.
#ifndef ZON_TREE_ZONQUOTEDTEXT_H
#define ZON_TREE_ZONQUOTEDTEXT_H

#include <iosfwd>
#include <string_view>

namespace zon {

// Writes the text between single quotes, with every single quote in it doubled.
void PutQuoted(std::ostream& out, std::string_view text);

// The same without the quotes around it.
void PutDoublingQuotes(std::ostream& out, std::string_view text);

}  // namespace zon

#endif
