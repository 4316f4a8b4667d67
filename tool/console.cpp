#include "tool/console.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tool {
namespace {

constexpr char kBold[] = "\033[1m", kRed[] = "\033[1;31m", kGreen[] = "\033[1;32m",
               kMagenta[] = "\033[1;35m", kYellow[] = "\033[1;33m", kCyan[] = "\033[1;36m";

bool coloured[STDERR_FILENO + 1];  // by stream

std::string Coloured(const char* color, std::string_view text, int stream = STDERR_FILENO) {
  if (text.empty() || !coloured[stream]) return std::string(text);
  return color + std::string(text) + "\033[m";
}

void Put(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

// Whether the byte continues a character of UTF-8.
bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The line and, below it, a caret at the column. Of a long line only the part around the column is
// shown. Control characters become blanks; continuation bytes occupy no column on the screen.
std::string LineWithCaret(std::string_view line, std::size_t column) {
  constexpr std::size_t kWidth = 120;
  const std::size_t caret = std::min(column - 1, line.size());
  std::size_t start = caret < kWidth ? 0 : caret - kWidth / 2;
  while (start > 0 && start < caret && IsContinuation(line[start])) ++start;
  std::string shown, pad;
  for (std::size_t n = start; n < std::min(line.size(), start + kWidth); ++n) {
    shown += IsControl(line[n]) ? ' ' : line[n];
    if (n < caret && !IsContinuation(line[n])) pad += ' ';
  }
  return "  " + shown + "\n  " + pad + Coloured(kGreen, "^") + "\n";
}

}  // namespace

void UseColor(const std::string& when) {
  const char* noColor = std::getenv("NO_COLOR");
  const bool isColorRefused = noColor != nullptr && *noColor != '\0';
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    coloured[stream] =
        when == "always" || (when == "auto" && isatty(stream) != 0 && !isColorRefused);
  }
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == 127;
}

std::string Printable(std::string_view text) {
  std::string shown(text);
  std::replace_if(shown.begin(), shown.end(), IsControl, '?');
  return shown;
}

void PrintMessage(std::string_view text) {
  Put(Coloured(kBold, "zon:") + " " + Printable(text) + "\n");
}

std::string Heading(std::string_view where, std::string_view severity, int stream) {
  const char* color = severity.substr(0, 5) == "error" ? kRed : kMagenta;
  return Coloured(kBold, where, stream) + Coloured(color, severity, stream);
}

std::string ColoredChange(const std::string& line, int stream) {
  const bool isHead = line.size() < 2 || line[1] != ' ';
  const char* color = isHead           ? kBold
                      : line[0] == '-' ? kRed
                      : line[0] == '+' ? kGreen
                      : line[0] == '~' ? kYellow
                                       : kCyan;
  return Coloured(color, line, stream);
}

void PrintDiagnostic(const Place& place, std::string_view text, std::string_view line) {
  const std::string where = Printable(place.file) + ":" + std::to_string(place.line) + ":" +
                            std::to_string(place.column) + ": ";
  Put(Heading(where, "error: ", STDERR_FILENO) + std::string(text) + "\n" +
      LineWithCaret(line, place.column));
}

Progress::Progress(std::string name) : name_(std::move(name)) {
  if (isatty(STDERR_FILENO) != 0) thread_ = std::thread([this] { Run(); });
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    done_ = true;
  }
  ending_.notify_one();
  thread_.join();
}

void Progress::Run() {
  std::unique_lock<std::mutex> lock(mutex_);
  int seconds = 0;
  while (!ending_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; })) {
    Put("\r" + Printable(name_) + ": reading, " + std::to_string(++seconds) + " s");
  }
  if (seconds > 0) Put("\r\033[K");
}

}  // namespace tool
