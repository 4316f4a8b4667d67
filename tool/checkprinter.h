// How the commands `check` and `validate` print what the library reports.
#ifndef ZON_TOOL_CHECKPRINTER_H
#define ZON_TOOL_CHECKPRINTER_H

#include <memory>
#include <string>

#include <zonx.h>

#include "tool/source.h"

namespace tool {

class CheckPrinter {
 public:
  CheckPrinter() = default;
  CheckPrinter(const CheckPrinter&) = delete;
  CheckPrinter& operator=(const CheckPrinter&) = delete;
  virtual ~CheckPrinter() = default;

  virtual void Begin() {}
  // The names in the report are those that the user gave. `related`: the file of its related place.
  virtual void Print(const zonxReport& report, const Input& input, const Input& related) = 0;
  // `isComplete`: every file was read.
  virtual void End([[maybe_unused]] bool isComplete) {}
};

// A printer for "text", "json" or "sarif".
std::unique_ptr<CheckPrinter> MakePrinter(const std::string& format);

// A document in the Static Analysis Results Interchange Format, version 2.1.0.
std::unique_ptr<CheckPrinter> MakeSarifPrinter();

}  // namespace tool

#endif
