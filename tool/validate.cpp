// The command validate. A template with a fault is reported once, before any file is read: compared
// with itself it has every fault that a file would find.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <new>

#include <zon.h>
#include <zonx.h>

#include "tool/checkprinter.h"
#include "tool/commands.h"
#include "tool/report.h"

namespace tool {
namespace {

// What the callback needs.
struct Run {
  const Input& input;
  const Input& related;
  CheckPrinter& printer;
  std::exception_ptr failure = nullptr;  // the library catches exceptions of the callback

  static void Receive(const zonxReport* report, void* context) {
    Run& run = *static_cast<Run*>(context);
    if (run.failure) return;
    try {
      const zonxReport named = WithNames(*report, run.input.Name(), run.related.Name());
      run.printer.Print(named, run.input, run.related);
    } catch (...) {
      run.failure = std::current_exception();
    }
  }

  // Warnings are those of `check`; that a file cannot be opened or read is in the status too.
  static void ReceiveErrors(const zonxReport* report, void* context) {
    const bool isOfSystem = std::strncmp(report->rule, "cannot-", 7) == 0;
    if (report->severity != ZONX_WARNING && !isOfSystem) Receive(report, context);
  }
};

void ThrowFailure(int status, const Run& run) {
  if (run.failure) std::rethrow_exception(run.failure);
  if (status == ZONX_NO_MEMORY) throw std::bad_alloc();
}

class LoadedFile {
 public:
  // Prints the errors of the file.
  LoadedFile(const std::string& name, CheckPrinter& printer) : input_(name) {
    if (input_.Path().empty()) return;
    Run run{input_, input_, printer};
    const int status = zonxLoadFile(input_.Path().c_str(), &handle_, Run::ReceiveErrors, &run);
    const int error = errno;
    ThrowFailure(status, run);
    // File names of a file in memory are relative to the folder that the user named.
    if (status == ZONX_OK && input_.IsInMemory()) {
      zonSetAnchorFilename(zonGetRoot(handle_), input_.Name().c_str());
    }
    status_ = status == ZONX_OK ? kFine : status == ZONX_FAULTY ? kFindings : kTrouble;
    if (status_ != kTrouble) return;
    std::cout.flush();  // the message follows the reports before it, if both go to one place
    PrintMessage(input_.Name() + ": " + std::strerror(error));
  }
  LoadedFile(const LoadedFile&) = delete;
  LoadedFile& operator=(const LoadedFile&) = delete;
  ~LoadedFile() {
    if (handle_ != nullptr) zonClose(&handle_);
  }

  Status GetStatus() const { return status_; }
  const Input& GetInput() const { return input_; }
  void* Handle() const { return handle_; }

 private:
  Input input_;
  void* handle_ = nullptr;
  Status status_ = kTrouble;
};

// Returns the status of the library.
int Compare(const LoadedFile& pattern, const LoadedFile& file, CheckPrinter& printer) {
  Run run{file.GetInput(), pattern.GetInput(), printer};
  const int status = zonxValidate(pattern.Handle(), file.Handle(), Run::Receive, &run);
  ThrowFailure(status, run);
  return status;
}

bool IsSound(const LoadedFile& pattern, CheckPrinter& printer) {
  if (pattern.GetStatus() != kFine) return false;
  if (zonxValidate(pattern.Handle(), pattern.Handle(), nullptr, nullptr) != ZONX_FAULTY)
    return true;
  Compare(pattern, pattern, printer);
  return false;
}

Status ValidateOne(const LoadedFile& pattern, const std::string& name, CheckPrinter& printer) {
  const LoadedFile file(name, printer);
  if (file.GetStatus() != kFine) return file.GetStatus();
  switch (Compare(pattern, file, printer)) {
    case ZONX_OK:
      return kFine;
    case ZONX_MISMATCH:
      return kFindings;
    default:
      return kTrouble;
  }
}

}  // namespace

Status Validate(const ValidateOptions& options) {
  const std::unique_ptr<CheckPrinter> printer = MakePrinter(options.format);
  printer->Begin();
  Status worst = kTrouble;
  const LoadedFile pattern(options.templateFile, *printer);
  if (IsSound(pattern, *printer)) {
    worst = kFine;
    for (const std::string& file : options.files) {
      worst = std::max(worst, ValidateOne(pattern, file, *printer));
      if (!std::cout) break;
    }
  }
  printer->End(worst != kTrouble);
  return worst;
}

}  // namespace tool
