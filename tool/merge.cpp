// The command merge.
#include <zonx.h>

#include "tool/commands.h"
#include "tool/editedfile.h"
#include "tool/loadedfile.h"
#include "tool/values.h"

namespace tool {

Status Merge(const MergeOptions& options) {
  const auto merge = [&](EditedFile& file) {
    for (const std::string& name : options.overlays) {
      const LoadedFile overlay(name);
      if (!overlay.IsSound()) return kTrouble;
      if (CheckMemory(zonxMerge(file.File(), overlay.File())) != ZONX_OK) return kTrouble;
    }
    return kFine;
  };
  return EditFile(options.base, options.edit, merge);
}

}  // namespace tool
