// What the command says to a person: messages, diagnostics with their place, a line of progress.
#ifndef ZON_TOOL_CONSOLE_H
#define ZON_TOOL_CONSOLE_H

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace tool {

// What a command ends with, from the mildest to the worst.
enum Status { kFine = 0, kFindings = 1, kTrouble = 2 };

// "auto" colours on a terminal only, and not where NO_COLOR is set.
void UseColor(const std::string& when);

// A name for people: file names may hold control characters, which become '?'.
std::string Harmless(std::string_view text);

// "zon: text" on standard error.
void Say(std::string_view text);

// A place in a file. Lines and columns count from 1, columns in bytes.
struct Place {
  std::string file;
  unsigned int line = 1;
  unsigned int column = 1;
};

// "file:line:column: error: text" on standard error, and the line with a caret where it is known.
void Diagnose(const Place& place, std::string_view text, std::string_view line);

// Tells a waiting person what is read, once it has taken a second: only on a terminal.
class Progress {
 public:
  explicit Progress(std::string name);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void Show();

  std::string name_;
  bool done_ = false;
  std::mutex mutex_;
  std::condition_variable ending_;
  std::thread thread_;
};

}  // namespace tool

#endif
