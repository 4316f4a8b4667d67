// Reports as short texts.
#ifndef ZON_TESTS_REPORTS_H
#define ZON_TESTS_REPORTS_H

#include <string>
#include <string_view>

#include "files.h"
#include "zonx.h"

namespace host {

// "line:column+length warning rule: message @line:column", without a length of 1, the severity of
// an error, and a related place that is missing.
std::string Short(const zonxReport& report);

// Collects reports as short texts; the reporter's context is the object.
struct Collected {
  static void Add(const zonxReport* report, void* collected) {
    static_cast<Collected*>(collected)->texts.push_back(Short(*report));
  }
  Texts texts;
};

// The reports of a text that is only checked.
Texts Check(std::string_view text);

}  // namespace host

#endif
