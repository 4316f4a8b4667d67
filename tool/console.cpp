#include "tool/console.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tool {
namespace {

constexpr char kBold[] = "\033[1m", kRed[] = "\033[1;31m", kGreen[] = "\033[1;32m";

bool coloured = false;

std::string Coloured(const char* color, std::string_view text) {
  if (!coloured) return std::string(text);
  return color + std::string(text) + "\033[m";
}

void Put(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == 127;
}

bool GoesOn(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// What a terminal shows of a line, and where the column stands in it: a part of a long line, control
// characters as blanks. Bytes that go on with a character take no column of their own.
std::string Underlined(std::string_view line, std::size_t column) {
  constexpr std::size_t kWidth = 120;
  const std::size_t caret = std::min(column - 1, line.size());
  std::size_t start = caret < kWidth ? 0 : caret - kWidth / 2;
  while (start > 0 && start < caret && GoesOn(line[start])) ++start;
  std::string shown, pad;
  for (std::size_t n = start; n < std::min(line.size(), start + kWidth); ++n) {
    shown += IsControl(line[n]) ? ' ' : line[n];
    if (n < caret && !GoesOn(line[n])) pad += ' ';
  }
  return "  " + shown + "\n  " + pad + Coloured(kGreen, "^") + "\n";
}

}  // namespace

void UseColor(const std::string& when) {
  const char* refused = std::getenv("NO_COLOR");
  const bool wanted = isatty(STDERR_FILENO) != 0 && (refused == nullptr || *refused == '\0');
  coloured = when == "always" || (when == "auto" && wanted);
}

std::string Harmless(std::string_view text) {
  std::string shown(text);
  std::replace_if(shown.begin(), shown.end(), IsControl, '?');
  return shown;
}

void Say(std::string_view text) {
  Put(Coloured(kBold, "zon:") + " " + Harmless(text) + "\n");
}

void Diagnose(const Place& place, std::string_view text, std::string_view line) {
  const std::string where = Harmless(place.file) + ":" + std::to_string(place.line) + ":" +
                            std::to_string(place.column) + ":";
  Put(Coloured(kBold, where) + " " + Coloured(kRed, "error:") + " " + std::string(text) + "\n" +
      Underlined(line, place.column));
}

Progress::Progress(std::string name) : name_(std::move(name)) {
  if (isatty(STDERR_FILENO) != 0) thread_ = std::thread([this] { Show(); });
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

void Progress::Show() {
  std::unique_lock<std::mutex> lock(mutex_);
  int seconds = 0;
  while (!ending_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; })) {
    Put("\r" + Harmless(name_) + ": reading, " + std::to_string(++seconds) + " s");
  }
  if (seconds > 0) Put("\r\033[K");
}

}  // namespace tool
