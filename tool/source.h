// The parameter files that a command works on.
#ifndef ZON_TOOL_SOURCE_H
#define ZON_TOOL_SOURCE_H

#include <string>

#include <zonx.h>

#include "tool/console.h"

namespace tool {

// An argument as a file that can be opened several times. Standard input, which is "-", pipes and
// devices can be read only once, so they are copied into a file in memory first.
class Input {
 public:
  explicit Input(const std::string& argument);
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  ~Input();

  bool IsInMemory() const { return memory_ >= 0; }
  const std::string& Name() const { return name_; }  // for people
  const std::string& Path() const { return path_; }  // to open; empty after a failure

  // Prints an error at a place that the library reports. Position 0 means that only the end of the
  // line before has been read, so that is the place that is shown.
  void ReportSyntaxError(unsigned int line, unsigned int position, const char* text) const;
  // Prints why the file did not open. `code` is the error code of the library.
  void ReportOpenError(int code) const;

 private:
  void CopyToMemory(int file);

  int memory_ = -1;  // the file in memory, if there is one
  std::string name_;
  std::string path_;
};

// Appends the content of a file. Returns 0, or the errno of the call that failed.
int ReadFile(const std::string& path, std::string* text);

// Loads a file as zonxLoadFile does. The file names in a text in memory are relative to the folder
// that the user named, or for standard input to the working directory.
int Load(const Input& input, void** file, zonxReporter reporter, void* context);

// A loaded file. The constructor prints any error of it.
class Source {
 public:
  explicit Source(const std::string& argument);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  Status GetStatus() const { return status_; }  // kFine: the whole file is loaded
  const Input& GetInput() const { return input_; }
  void* File() const { return file_; }
  void* Root() const;

 private:
  Input input_;
  void* file_ = nullptr;
  Status status_ = kFine;
};

}  // namespace tool

#endif
