// What the commands tell about a node.
#ifndef ZON_TOOL_VALUES_H
#define ZON_TOOL_VALUES_H

#include <string>

namespace tool {

// "integer", "real", "boolean", "string", "filename", "datetime", "substitution", "list" (a packed
// one), "default" (a placeholder), "unknown" (a remark alone), "undefined" (an empty place).
const char* KindOf(void* value);

// A value as it is written in a file.
std::string WrittenForm(void* value);

// A value as a script wants it: texts, file names and date-times without their marks.
std::string PlainForm(void* value);

// A value as it was loaded: its written form, but file names and substitutions as in the file.
std::string LoadedForm(void* value);

// The values of a keyword as they were loaded, with commas between.
std::string LoadedValues(void* keyword);

// Whether an integer is the number that stands in the file: of a larger one the low 32 bits are left.
bool IsWithinInt(void* value);

// "Quay:2", or the name alone where there is no other of it; "()" for the keyword without a name.
std::string NameOf(void* node);

}  // namespace tool

#endif
