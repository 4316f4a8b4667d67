// The hooks of the host receive a pattern and its words, the functions that were set the whole
// text. An exception of either ends the call, as base/zonhook.h and api/zonguard.h provide for.
// Atomic: several threads send at the same time. Tested by tests/sethooks/test.cpp.
#include "base/zonhooks.h"

#include <atomic>
#include <iterator>
#include <new>
#include <string>

#include "base/zonhook.h"
#include "base/zonsilence.h"

namespace zon {
namespace {

std::atomic<MessageFunction> messageFunction{nullptr};
std::atomic<ReportFunction> reportFunction{nullptr};
std::atomic<void*> functionContext{nullptr};

// The words as the host's functions chain them, from the last to the first.
void* ChainWords(std::initializer_list<ReportWord> words) {
  void* chain = nullptr;
  for (auto word = std::rbegin(words); word != std::rend(words); ++word) {
    chain = word->text != nullptr ? ReportArgString(word->text, chain)
                                  : ReportArgInt(word->number, chain);
  }
  return chain;
}

// The words are not searched for placeholders: they can be names of files.
std::string FillIn(const char* pattern, std::initializer_list<ReportWord> words) {
  std::string text;
  const ReportWord* word = words.begin();
  for (; *pattern != '\0'; ++pattern) {
    if (*pattern != '%' || word == words.end()) {
      text += *pattern;
      continue;
    }
    text += word->text != nullptr ? word->text : std::to_string(word->number);
    ++word;
  }
  return text;
}

}  // namespace

void SetHooks(MessageFunction message, ReportFunction report, void* context) {
  messageFunction = message;
  reportFunction = report;
  functionContext = context;
}

void SendMessage(const char* text) {
  if (IsSilent()) return;
  MessageHook(text);
  if (const MessageFunction message = messageFunction) message(text, functionContext);
}

void SendReport(const char* pattern, int severity, std::initializer_list<ReportWord> words) {
  if (IsSilent()) return;
  ReportHook(pattern, severity, ChainWords(words));
  const ReportFunction report = reportFunction;
  if (report == nullptr) return;
  std::string filled;
  const char* text = pattern;
  try {
    if (words.size() != 0) {
      filled = FillIn(pattern, words);
      text = filled.c_str();
    }
  } catch (const std::bad_alloc&) {
    // The pattern still says what happened.
  }
  report(text, severity, functionContext);
}

}  // namespace zon
