// The kind, the text and the name of a node, as the commands print them.
#ifndef ZON_TOOL_VALUES_H
#define ZON_TOOL_VALUES_H

#include <string>

#include <zonx.h>

namespace tool {

// Throws std::bad_alloc for ZONX_NO_MEMORY, and returns any other status.
int CheckMemory(int status);

// The kind of a value: "integer", "real", "boolean", "string", "filename", "datetime",
// "substitution", "list" (packed), "default" (placeholder), "unknown" (only a remark) or
// "undefined" (nothing).
const char* KindOf(void* value);

// The kind for people, which is a zonxKind: "file name", and "a file name".
const char* KindName(int kind);
std::string KindWithArticle(int kind);

// A value as the library writes it to a file.
std::string WrittenForm(void* value);

// A value for scripts: strings, file names and date-times without their delimiters.
std::string PlainForm(void* value);

// A value as the file has it: its written form, except for file names and substitutions, which the
// written form changes.
std::string LoadedForm(void* value);

// A value as it is written in a file; of a default placeholder, the default value. Empty for an
// empty place, a remark alone, and a placeholder without default.
std::string TextForm(void* value);

// The values of a keyword as the file has them, separated by ", ".
std::string LoadedValues(void* keyword);

// Whether an integer value is the whole number of the file. Only the low 32 bits of it are kept.
bool IsWithinInt(void* value);

// Whether a section, keyword or definition has the mark "()".
bool HasMultiFlag(void* node);

// The place of a node in its file; line 0 if it has none.
zonxPlace PlaceOf(void* node);

// The section or keyword that a node is in; null for the root.
void* OwnerOf(void* node);

// An element of a path: "Quay:2", or "Quay" if the name does not repeat; "()" for an empty name.
std::string NameOf(void* node);

}  // namespace tool

#endif
