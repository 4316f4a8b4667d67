// The difference of two texts, for people and for the program patch.
#ifndef ZON_TOOL_UNIFIEDDIFF_H
#define ZON_TOOL_UNIFIEDDIFF_H

#include <ostream>
#include <string>
#include <string_view>

namespace tool {

// Prints a unified diff with three lines of context, and with the name in both lines of its head.
// Prints nothing if the texts are equal. Takes n log n steps and linear memory, so the difference
// is not always the shortest.
void PrintUnifiedDiff(std::ostream& out, const std::string& name, std::string_view before,
                      std::string_view after);

}  // namespace tool

#endif
