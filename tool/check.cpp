// The command check. The library passes its reports to a callback, which prints each at once, so the
// reports of many files need no memory.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <string_view>

#include "tool/checkprinter.h"
#include "tool/commands.h"
#include "tool/jsonwriter.h"
#include "tool/report.h"

namespace tool {
namespace {

class TextPrinter : public CheckPrinter {
 public:
  void Print(const zonxReport& report, const Input&) override {
    if (!isFirst_) std::cout << '\n';
    isFirst_ = false;
    std::cout << TextOf(report, STDOUT_FILENO) << '\n';
  }

 private:
  bool isFirst_ = true;
};

// A longer source line is left out: it can be the whole file.
constexpr std::size_t kLongestLine = 4096;

class JsonPrinter : public CheckPrinter {
 public:
  void Begin() override { json_.Open('['); }
  void Print(const zonxReport& report, const Input&) override {
    json_.Open('{');
    json_.Put("severity", SeverityText(report.severity));
    json_.PutText("rule", report.rule);
    json_.PutText("message", report.message);
    if (*report.hint != '\0') json_.PutText("hint", report.hint);
    PutPlace("place", report.place, nullptr);
    if (report.related.file != nullptr) {
      PutPlace("related", report.related, report.relatedMessage);
    }
    const char* line = report.sourceLine;
    if (line != nullptr && strnlen(line, kLongestLine + 1) <= kLongestLine) {
      json_.PutText("sourceLine", line);
    }
    json_.Close('}');
  }
  void End(bool) override {
    json_.Close(']');
    std::cout << '\n';
  }

 private:
  void PutPlace(const char* key, const zonxPlace& place, const char* message) {
    json_.Key(key);
    json_.Open('{', true);
    if (message != nullptr) json_.PutText("message", message);
    json_.PutText("file", place.file);
    json_.Put("line", place.line);
    json_.Put("column", place.column);
    json_.Put("endLine", place.endLine);
    json_.Put("endColumn", place.endColumn);
    json_.Put("offset", place.offset);
    json_.Put("length", place.length);
    json_.Close('}');
  }

  JsonWriter json_;
};

std::unique_ptr<CheckPrinter> MakePrinter(const std::string& format) {
  if (format == "json") return std::make_unique<JsonPrinter>();
  if (format == "sarif") return MakeSarifPrinter();
  return std::make_unique<TextPrinter>();
}

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
    run.printer.Print(WithName(*report, run.input.Name()), run.input);
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
