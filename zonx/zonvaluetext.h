// Values from a text as it is written in a file: "1, 2.5, 'x'".
#ifndef ZON_ZONX_ZONVALUETEXT_H
#define ZON_ZONX_ZONVALUETEXT_H

#include <string_view>

#include "zonx/zonnewvalue.h"

namespace zon {

// Stores the values of the text, at least one empty place. Returns ZONX_OK; ZONX_FAULTY if the text
// is no list of values, and then stores nothing. An empty place of a definition is a placeholder.
int ParseValues(std::string_view text, bool isInDefinition, NewValues* values);

}  // namespace zon

#endif
