// The commands unset, add and rename. All nodes are found before the first one changes, so every
// path is that of the file as it was.
#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include <zon.h>
#include <zonx.h>

#include "tool/addition.h"
#include "tool/commands.h"
#include "tool/editedfile.h"
#include "tool/nodes.h"
#include "tool/valuetext.h"

namespace tool {
Status Unset(const std::string& file, const std::vector<std::string>& paths,
             const EditOptions& options) {
  return EditFile(file, options, [&](EditedFile& edited) {
    std::vector<void*> nodes;
    Status status = kFine;
    for (const std::string& path : paths) {
      status = std::max(status, FindNodes(edited, path, ZONX_CLOB, &nodes));
    }
    if (status == kFine) RemoveAll(nodes);
    return status;
  });
}

Status Add(const AddOptions& options) {
  const Addition addition(options.path, options.values, options.type);
  if (!addition.GetFault().empty()) {
    PrintMessage(addition.GetFault());
    return kTrouble;
  }
  return EditFile(options.file, options.edit,
                  [&](EditedFile& file) { return addition.AddTo(file, ""); });
}

Status Rename(const std::string& file, const std::string& path, const std::string& name,
              const EditOptions& options) {
  if (!ValueText().IsName(name)) {
    PrintMessage("`" + name + "` is no name of a section or keyword");
    return kTrouble;
  }
  return EditFile(file, options, [&](EditedFile& edited) {
    std::vector<void*> nodes;
    const Status status = FindNodes(edited, path, ZONX_KEYWORD, &nodes);
    if (status != kFine) return status;
    for (void* node : nodes) {
      const bool isSection = zonxGetKind(node) == ZONX_SECTION;
      const auto rename = isSection ? zoneRenameSection : zoneRenameKeyword;
      if (rename(node, name.c_str()) != 0) throw std::bad_alloc();
    }
    return kFine;
  });
}

}  // namespace tool
