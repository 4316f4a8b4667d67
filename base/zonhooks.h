// Messages and reports to the host, on both ways: the hooks that a host defines (base/zonhook.h),
// and the functions that it has set at run time. Every message and report of the library goes
// through here.
#ifndef ZON_BASE_ZONHOOKS_H
#define ZON_BASE_ZONHOOKS_H

#include <initializer_list>

namespace zon {

extern "C" {
using MessageFunction = void (*)(const char* text, void* context);
using ReportFunction = void (*)(const char* text, int severity, void* context);
}

// Sets the functions of the process; null switches one off. Call while no other call runs.
void SetHooks(MessageFunction message, ReportFunction report, void* context);

void SendMessage(const char* text);

// A word of a report. Texts must be valid during the call of SendReport.
struct ReportWord {
  ReportWord(const char* t) : text(t) {}
  ReportWord(int n) : number(n) {}

  const char* text = nullptr;  // null: the number is the word
  int number = 0;
};

// Sends a report. Each '%' of the pattern is a placeholder for the next word. Without words the
// pattern is the report.
void SendReport(const char* pattern, int severity, std::initializer_list<ReportWord> words = {});

}  // namespace zon

#endif
