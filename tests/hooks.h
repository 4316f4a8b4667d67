// The test program as a host of the library: it collects what the hooks receive.
#ifndef ZON_TESTS_HOOKS_H
#define ZON_TESTS_HOOKS_H

#include <gtest/gtest.h>
#include <zon.h>
#include <zonclasses.h>

#include <string>
#include <vector>

namespace host {

using Texts = std::vector<std::string>;

// What MessageHook and ReportHook have received since the last call, oldest first. A report is its
// severity and its pattern with the words filled in: "1: Open error: x.zon".
Texts Messages();
Texts Reports();

// The pending code, which is cleared, and the messages: "1006 Invalid zonNode".
std::string Heard();

// Called at the end of MessageHook and of ReportHook unless null.
extern void (*onMessage)(const char* text);
extern void (*onReport)();

// While one exists, memory is allocated for the test and not for the library. Each hook makes one.
struct OwnMemory {
  OwnMemory() { ++count; }
  ~OwnMemory() { --count; }
  static thread_local int count;
};

}  // namespace host

#endif
