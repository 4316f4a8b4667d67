// The parameter file that a command works on.
#ifndef ZON_TOOL_SOURCE_H
#define ZON_TOOL_SOURCE_H

#include <string>

#include "tool/console.h"

namespace tool {

// Where the bytes of an argument can be read, as often as one likes: what can be read only once is
// taken into memory first, as are pipes and "-", which is standard input.
class Input {
 public:
  explicit Input(const std::string& argument);
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  ~Input();

  bool IsInMemory() const { return memory_ >= 0; }
  const std::string& Name() const { return name_; }  // for people
  const std::string& Path() const { return path_; }  // to open it by; empty if it could not be read

  // Tells an error at a line, as the library counts it: of a position 0 it has seen no more than the
  // end of the line before.
  void Diagnose(unsigned int line, unsigned int position, const char* text) const;
  // Tells why the file did not open; `code` is what the library says.
  void DiagnoseOpening(int code) const;

 private:
  void Take(int file);

  int memory_ = -1;
  std::string name_;
  std::string path_;
};

// A file that is loaded. What is wrong with it has been told when the constructor is back.
class Source {
 public:
  explicit Source(const std::string& argument);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  Status Problem() const { return problem_; }  // kFine: there is a tree, and all of it
  const Input& From() const { return input_; }
  void* File() const { return file_; }
  void* Root() const;

 private:
  void Anchor();

  Input input_;
  void* file_ = nullptr;
  Status problem_ = kFine;
};

}  // namespace tool

#endif
