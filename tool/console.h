// Output for people: messages, diagnostics with their place, and a progress line on standard error;
// and what such output on any stream consists of.
#ifndef ZON_TOOL_CONSOLE_H
#define ZON_TOOL_CONSOLE_H

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace tool {

// The exit status of a command, from the mildest to the worst.
enum Status {
  kFine = 0,
  kFindings = 1,  // an error in a file, a mismatch, a missing keyword, a loss
  kTrouble = 2    // wrong usage, or a file that cannot be read or written
};

// "always", "never", or "auto": for each stream only if it is a terminal, and only if NO_COLOR is
// not set.
void UseColor(const std::string& when);

bool IsControl(char c);

// The text with each control character as '?'. File names can contain them.
std::string Printable(std::string_view text);

// Prints "zon: text".
void PrintMessage(std::string_view text);

// The start of a diagnostic, in colour if the stream has it: the place and "error: " or another
// severity.
std::string Heading(std::string_view where, std::string_view severity, int stream);

// A line of a difference, in the colour of its sign "-", "+", "~" or ">" if the stream has colours.
std::string ColoredChange(const std::string& line, int stream);

// A place in a file. Lines and columns count from 1, columns in bytes.
struct Place {
  std::string file;
  unsigned int line = 1;
  unsigned int column = 1;
};

// Prints "file:line:column: error: text", then the line with a caret below the column.
void PrintDiagnostic(const Place& place, std::string_view text, std::string_view line);

// Prints which file is being read, from the first second on, on a terminal only. Runs a thread.
class Progress {
 public:
  explicit Progress(std::string name);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void Run();

  std::string name_;
  bool done_ = false;  // guarded by mutex_; set by the destructor, ends the thread
  std::mutex mutex_;
  std::condition_variable ending_;
  std::thread thread_;
};

}  // namespace tool

#endif
