// The command check. The library passes its reports to a callback, which prints each at once, so
// the reports of many files need no memory.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

#include "tool/checkprinter.h"
#include "tool/commands.h"
#include "tool/report.h"

namespace tool {
namespace {

// What the callback needs while a file is checked.
struct Run {
  const Input& input;
  CheckPrinter& printer;
  std::optional<Progress> progress;  // ends before the first report is printed
  bool hasWarnings = false;
  std::exception_ptr failure;  // the library catches exceptions of the callback
};

void Receive(const zonxReport* report, void* context) {
  Run& run = *static_cast<Run*>(context);
  // That a file cannot be opened or read is no finding: the status says so too.
  if (std::string_view(report->rule).substr(0, 7) == "cannot-" || run.failure) return;
  try {
    run.progress.reset();
    run.hasWarnings = run.hasWarnings || report->severity == ZONX_WARNING;
    run.printer.Print(WithName(*report, run.input.Name()), run.input, run.input);
  } catch (...) {
    run.failure = std::current_exception();
  }
}

Status CheckOne(const std::string& file, bool strict, CheckPrinter& printer) {
  const Input input(file);
  if (input.Path().empty()) return kTrouble;
  Run run{input, printer, {}, false, nullptr};
  run.progress.emplace(input.Name());
  const int status = zonxLoadFile(input.Path().c_str(), nullptr, Receive, &run);
  const int error = errno;
  run.progress.reset();
  if (run.failure) std::rethrow_exception(run.failure);
  switch (status) {
    case ZONX_OK:
      return strict && run.hasWarnings ? kFindings : kFine;
    case ZONX_FAULTY:
      return kFindings;
    case ZONX_NO_MEMORY:
      throw std::bad_alloc();
    default:
      std::cout.flush();  // the message follows the reports before it, if both go to one place
      PrintMessage(input.Name() + ": " + std::strerror(error));
      return kTrouble;
  }
}

}  // namespace

Status Check(const CheckOptions& options) {
  const std::unique_ptr<CheckPrinter> printer = MakePrinter(options.format);
  Status worst = kFine;
  printer->Begin();
  for (const std::string& file : options.files) {
    worst = std::max(worst, CheckOne(file, options.strict, *printer));
    if (!std::cout) break;
  }
  printer->End(worst != kTrouble);
  return worst;
}

}  // namespace tool
