#include "hooks.h"

#include <cstdlib>
#include <memory>
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

void Add(Texts& texts, const std::string& text) {
  const std::lock_guard lock(mutex);
  texts.push_back(text);
}

// The words of a report, which are freed with it.
void* Prepend(const std::string& word, void* rest) {
  auto* const words = rest != nullptr ? static_cast<Texts*>(rest) : new Texts;
  words->insert(words->begin(), word);
  return words;
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
  const std::unique_ptr<host::Texts> words(static_cast<host::Texts*>(arguments));
  for (std::size_t used = 0; *pattern != '\0'; ++pattern) {
    const bool isWord = *pattern == '%' && words != nullptr && used < words->size();
    text += isWord ? (*words)[used++] : std::string(1, *pattern);
  }
  host::Add(host::reports, text);
  if (host::onReport != nullptr) host::onReport();
}

void* ReportArgString(const char* text, void* next) {
  const host::OwnMemory mark;
  return host::Prepend(text, next);
}
void* ReportArgInt(int value, void* next) {
  const host::OwnMemory mark;
  return host::Prepend(std::to_string(value), next);
}

}  // extern "C"
