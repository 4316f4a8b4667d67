// A file that a command changes in place.
#ifndef ZON_TOOL_EDITEDFILE_H
#define ZON_TOOL_EDITEDFILE_H

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include <zonx.h>

#include "tool/commands.h"
#include "tool/loadedfile.h"

namespace tool {

class EditedFile {
 public:
  EditedFile(std::string argument, const EditOptions& options)
      : options_(options), argument_(std::move(argument)) {}

  // Loads the file, with reports. False if it cannot be edited.
  bool Load();
  void* File() const { return loaded_->File(); }

  // Prints why a path leads to nothing, and returns the exit status. `status` is what the library
  // returned for it.
  Status ReportPath(const std::string& path, int status);
  // Prints a warning if a name is missing that a name of the file is similar to.
  void WarnOfNewName(const std::string& path);
  // Prints an error at a node.
  Status Refuse(void* node, const std::string& message, const std::string& hint);

  // Saves the file, prints what would change, or prints the text of standard input.
  Status Deliver();

 private:
  static void PrintWarning(const zonxReport* report, void* context);
  static void PrintForOutput(const zonxReport* report, void* context);
  std::string Text(bool* isMade);
  bool IsOtherFile() const;
  Status Save();

  const EditOptions& options_;
  const std::string argument_;
  std::optional<LoadedFile> loaded_;  // set by Load
  std::string before_;                // with --dry-run
};

// Loads a file, changes it and saves it, if the change returns kFine.
Status EditFile(const std::string& file, const EditOptions& options,
                const std::function<Status(EditedFile&)>& change);

}  // namespace tool

#endif
