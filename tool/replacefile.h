// A file gets another content.
#ifndef ZON_TOOL_REPLACEFILE_H
#define ZON_TOOL_REPLACEFILE_H

#include <string>
#include <string_view>

namespace tool {

// Replaces the content of an existing file in one step: at every moment the file has the old or the new
// content. The mode and, as far as the rights of the process go, the owner stay; a symbolic link stays,
// and the file that it points to is replaced. Returns 0, or the errno of the call that failed: then the
// file is as it was. A file with several hard links is refused with EMLINK.
int ReplaceFile(const std::string& name, std::string_view text);

}  // namespace tool

#endif
