// The test program as a host of the library: it hears the hooks, writes files to read, and shows a
// tree as one line, so that a case is a text beside its expected text.
#ifndef ZON_TESTS_HOST_H
#define ZON_TESTS_HOST_H

#include <gtest/gtest.h>
#include <zon.h>
#include <zonclasses.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <locale>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace host {

using Texts = std::vector<std::string>;
using Codes = std::vector<int>;  // of calls, made in the order of the list

// What MessageHook and ReportHook have received since the last call, oldest first. A report is
// shown with its severity and its words in place of the placeholders: "1: Open error: x.zon".
Texts Messages();
Texts Reports();

// The pending code, which is taken, and the messages behind it: "1006 Invalid zonNode".
std::string Heard();

// Called by MessageHook and by ReportHook while they are set.
extern void (*onMessage)(const char* text);
extern void (*onReport)();

// While there is one it is not the library that wants memory; each hook has one.
struct AtWork {
  AtWork() { ++count; }
  ~AtWork() { --count; }
  static int count;
};

// The descriptor that the next file would get: the same again shows that none was left open.
int LowestFreeFile();

// Runs the body in a thread with a stack of 256 KiB; false if there is no such thread.
bool OnSmallStack(void* (*body)(void*));

// How long is too long; the environment may give a slow tool more by the factor ZON_PATIENCE.
std::chrono::seconds Seconds(int seconds);

// A file in a fresh folder of the test, removed at the end of the process.
std::string FolderPath();
std::string WriteFile(const std::string& name, const std::string& content);
std::string ReadFile(const std::string& path);
std::string Timeless(const std::string& path);  // but for the lines that tell when it was written

// A file handle that is closed at the end of the scope.
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

// A text as a source of characters that is no file.
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

// A text as such a source, and as a file.
inline std::array<CyyInput*, 2> BothSources(const std::string& text) {
  return {new Memory(text), new CyyStream(WriteFile("source.zon", text).c_str())};
}

// A list of texts, a tilde between each two of them.
Texts Split(const std::string& list);

// Loads a text from a file of its own.
void* Load(const std::string& content);

// A built file whose current section is A, with the current keyword k.
struct Built : File {
  Built() : File(zonCreate()) {
    zonAddTarget(*this, "A");
    zonAddKeyword(*this, "k");
  }
};

// The first keyword of the first section, and its n-th value.
inline void* KeywordOf(void* file) {
  return zonKeywordByNum(zonTargetByNum(file, 1), 1);
}
inline void* ValueOf(void* file, unsigned n = 1) {
  return zonParamByNum(KeywordOf(file), n);
}

// The object behind a handle.
template <class T = CzonNode>
T& As(void* handle) {
  return dynamic_cast<T&>(*static_cast<CzonBase*>(handle));
}

// A built file with nothing but a file name.
struct OneName : Built {
  OneName() {
    zonAddFilename(*this, "");
    name = ValueOf(*this);
  }
  // How a name is resolved, and how it is written.
  std::string Both(const std::string& text, const std::string& anchor) const {
    zonSetFilename(name, text.c_str());
    zonSetAnchorFilename(name, anchor.c_str());
    std::ostringstream out;
    As(name).Write(out);
    return zonGetFilename(name) + out.str();
  }
  void *section = zonTargetByNum(*this, 1), *name = nullptr;
};

// Numbers of a host that look different in every respect.
struct Commas : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\1"; }
};

// The tree as one line:
//   sections     Name{...}
//   keywords     name(values)
//   definitions  default name(values)
//   values       int 5, real 2.5, bool true, string x, file x, date x, subst x, clob x, undef,
//                unknown, default
//   names        name<2> for an instance number above 1, name() for the multi flag
//   remarks      in braces behind the node: A{remark}{...}
std::string Show(const CzonNode* node);
inline std::string ShowTree(void* handle) {
  void* root = zonGetRoot(handle);
  return Show(root != nullptr ? &As(root) : nullptr);
}

// What the flat interface says of a node: its kind as a number, a letter for each kind test that
// says yes (taRget, Section, Keyword, Param, Numeric, Int, Float, Double, Bool, sTring, fiLe name,
// Undefined, f for a default, i for an integer class), the integer, double, float, boolean, string
// value, and how many of these five questions did not suit the node: "6 PNIFDi 1 1 1 0 '' 2".
std::string Facts(void* node);

// "line:position message" of a handle's first error; empty if there was none.
std::string SyntaxError(void* handle);

}  // namespace host

#endif
