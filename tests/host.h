// The test program as a host of the library: it hears the hooks, writes files to read, and shows a
// tree as one line, so that a case is a text beside its expected text.
#ifndef ZON_TESTS_HOST_H
#define ZON_TESTS_HOST_H

#include <string>
#include <vector>

#include <zon.h>
#include <zonclasses.h>

namespace host {

// What MessageHook and ReportHook have received since the last call, oldest first. A report is
// shown with its severity and its words in place of the placeholders: "1: Open error: x.zon".
std::vector<std::string> Messages();
std::vector<std::string> Reports();

// Called by MessageHook while it is set.
extern void (*onMessage)(const char* text);

// A file in a fresh folder of the test, removed at the end of the process.
std::string FolderPath();
std::string WriteFile(const std::string& name, const std::string& content);
std::string ReadFile(const std::string& path);

// A file handle that is closed at the end of the scope.
class File {
 public:
  explicit File(void* handle) : handle_(handle) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File();
  operator void*() const { return handle_; }
  void** Address() { return &handle_; }

 private:
  void* handle_;
};

// Loads a text from a file of its own.
void* Load(const std::string& content);

// The tree as one line:
//   sections          Name{...}      name<2> for an instance number above 1, name() for the multi
//   flag keywords          name(values) definitions       default name(values) values int 5,
//   real 2.5, bool true, string x, file x, date x, subst x, clob x, undef,
//                     unknown, default
//   remarks           in braces behind the node: A{remark}{...}
std::string Show(const CzonNode* node);
inline std::string ShowTree(void* handle) {
  return Show(dynamic_cast<CzonNode*>(static_cast<CzonBase*>(zonGetRoot(handle))));
}

// "line:position message" of a handle's first error; empty if there was none.
std::string SyntaxError(void* handle);

}  // namespace host

#endif
