// The uniform layout of a parameter file.
#ifndef ZON_TOOL_LAYOUT_H
#define ZON_TOOL_LAYOUT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

struct Layout {
  std::string text;
  std::size_t addedComments = 0;  // those that repeat the name of a section after EndSect
};

// The text with another layout: the same words, values, remarks and comments in the same order. The
// text must load without errors. A text that has this layout stays as it is.
Layout FormatText(std::string_view text);

}  // namespace tool

#endif
