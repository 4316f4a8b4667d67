// Temporary files, file handles that are closed at the end of the scope, and sources in memory.
#ifndef ZON_TESTS_FILES_H
#define ZON_TESTS_FILES_H

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "hooks.h"

namespace host {

// A folder of this process for the files of the tests; it is removed at exit.
std::string FolderPath();

// Writes a file into that folder and returns its path.
std::string WriteFile(const std::string& name, const std::string& content);
std::string ReadFile(const std::string& path);

// Without the lines that say when the file was written.
std::string ReadFileWithoutDates(const std::string& path);

// The descriptor that the next open returns. If it has not changed, no file was left open.
int LowestFreeDescriptor();

// A file handle, which is closed at the end of the scope.
class File {
 public:
  explicit File(void* handle) : handle_(handle) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (handle_ != nullptr) zonClose(&handle_);
  }
  operator void*() const { return handle_; }
  void** Address() { return &handle_; }

 private:
  void* handle_;
};

// Loads the text from a file of its own.
void* Load(const std::string& content);

// A built file with the section A and in it the keyword k; both are current.
struct Built : File {
  Built() : File(zonCreate()) {
    zonAddTarget(*this, "A");
    zonAddKeyword(*this, "k");
  }
};

// A text as a source of characters.
class Memory : public CyyInput {
 public:
  explicit Memory(std::string text) : text_(std::move(text)) {}
  int Get() override { return Peek() < 0 ? -1 : static_cast<unsigned char>(text_[next_++]); }
  int Peek() override {
    return next_ < text_.size() ? static_cast<unsigned char>(text_[next_]) : -1;
  }
  void Put(int c) override { text_[--next_] = static_cast<char>(c); }

 private:
  std::string text_;
  std::size_t next_ = 0;
};

// A text as a source in memory and as a file.
inline std::array<CyyInput*, 2> BothSources(const std::string& text) {
  return {new Memory(text), new CyyStream(WriteFile("source.zon", text).c_str())};
}

}  // namespace host

#endif
