// A file that a command reads with the reports of zonx.h.
#ifndef ZON_TOOL_LOADEDFILE_H
#define ZON_TOOL_LOADEDFILE_H

#include <string>

#include <zonx.h>

#include "tool/console.h"
#include "tool/source.h"

namespace tool {

// The constructor prints every error of the file on standard error.
class LoadedFile {
 public:
  explicit LoadedFile(const std::string& argument);
  LoadedFile(const LoadedFile&) = delete;
  LoadedFile& operator=(const LoadedFile&) = delete;
  ~LoadedFile();

  bool IsSound() const { return isSound_; }  // the whole file is loaded
  const Input& GetInput() const { return input_; }
  void* File() const { return file_; }
  void* Root() const;

  // Prints an error of the library. The context is the LoadedFile.
  static void Print(const zonxReport* report, void* context);
  // Prints a report about a node on standard error.
  void Report(void* node, int severity, const std::string& message, const std::string& hint) const;

 private:
  const Input input_;
  void* file_ = nullptr;
  bool isSound_ = false;
};

}  // namespace tool

#endif
