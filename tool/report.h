// The reports of the library as text for people.
#ifndef ZON_TOOL_REPORT_H
#define ZON_TOOL_REPORT_H

#include <string>

#include <zonx.h>

#include "tool/source.h"

namespace tool {

// "error", "warning" or "note".
const char* SeverityText(int severity);

// The report with the name of the file that the user gave: a file in memory was loaded by another
// one.
zonxReport WithName(const zonxReport& report, const std::string& name);

// The same if the related place is in another file.
zonxReport WithNames(const zonxReport& report, const std::string& name, const std::string& related);

// The text of zonxFormatReport, with control characters as '?', and in colour if `stream` has it.
std::string TextOf(const zonxReport& report, int stream);

// Prints a report on standard error.
void PrintError(const zonxReport& report);

// Prints on standard error why a path leads to nothing. `status` is what the library returned for
// it.
void ReportPath(const Source& source, const std::string& path, int status);

}  // namespace tool

#endif
