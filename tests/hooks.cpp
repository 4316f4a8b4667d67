#include "hooks.h"

#include <cstdlib>
#include <mutex>
#include <utility>

namespace host {

void (*onMessage)(const char* text) = nullptr;
void (*onReport)() = nullptr;
thread_local int OwnMemory::count = 0;

namespace {

std::mutex mutex;  // guards both: hooks are called by several threads
Texts messages;
Texts reports;

// The words of a report form a list, which is freed with the report.
struct Word {
  std::string text;
  Word* next;
};

void Add(Texts& texts, const std::string& text) {
  const std::lock_guard lock(mutex);
  texts.push_back(text);
}

void* NewWord(std::string text, void* next) {
  return new Word{std::move(text), static_cast<Word*>(next)};
}

}  // namespace

Texts Messages() {
  const std::lock_guard lock(mutex);
  return std::exchange(messages, {});
}
Texts Reports() {
  const std::lock_guard lock(mutex);
  return std::exchange(reports, {});
}

std::string Heard() {
  std::string heard = std::to_string(zonGetErrorGlb());
  for (const std::string& message : Messages()) heard += " " + message;
  return heard;
}

}  // namespace host

extern "C" {

#ifdef ZON_COVERAGE
// Coverage is written at exit, so abort exits.
void abort() noexcept {
  std::exit(134);
}
#endif

void MessageHook(const char* text) {
  const host::OwnMemory mark;
  host::Add(host::messages, text);
  if (host::onMessage != nullptr) host::onMessage(text);
}

void ReportHook(const char* pattern, int severity, void* arguments) {
  const host::OwnMemory mark;
  std::string text = std::to_string(severity) + ": ";
  auto* word = static_cast<host::Word*>(arguments);
  for (; *pattern != '\0'; ++pattern) {
    if (*pattern != '%' || word == nullptr) {
      text += *pattern;
      continue;
    }
    text += word->text;
    delete std::exchange(word, word->next);
  }
  while (word != nullptr) delete std::exchange(word, word->next);
  host::Add(host::reports, text);
  if (host::onReport != nullptr) host::onReport();
}

void* ReportArgString(const char* text, void* next) {
  const host::OwnMemory mark;
  return host::NewWord(text, next);
}
void* ReportArgInt(int value, void* next) {
  const host::OwnMemory mark;
  return host::NewWord(std::to_string(value), next);
}

}  // extern "C"
