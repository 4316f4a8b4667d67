// The command fmt. Every text that it makes is loaded and compared with the tree of the file before
// it is printed or written.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>

#include <zon.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/layout.h"
#include "tool/report.h"
#include "tool/sametree.h"
#include "tool/source.h"
#include "tool/unifieddiff.h"
#include "tool/values.h"

namespace tool {
namespace {

// Prints errors, with an empty line between them. Files with warnings can be formatted. The context
// is a bool: whether there was a report before.
void PrintReport(const zonxReport* report, void* context) {
  if (report->severity == ZONX_WARNING) return;
  bool& hasReports = *static_cast<bool*>(context);
  if (hasReports) std::fputc('\n', stderr);
  hasReports = true;
  PrintError(*report);
}

class LoadedText {
 public:
  // With a null pointer errors are not reported.
  LoadedText(const std::string& text, const std::string& name, bool* hasReports)
      : status_(zonxLoadText(text.data(), text.size(), name.c_str(), &file_,
                             hasReports != nullptr ? PrintReport : nullptr, hasReports)) {
    CheckMemory(status_);
  }
  LoadedText(const LoadedText&) = delete;
  LoadedText& operator=(const LoadedText&) = delete;
  ~LoadedText() {
    if (file_ != nullptr) zonClose(&file_);
  }

  bool IsSound() const { return status_ == ZONX_OK; }
  void* File() const { return file_; }
  bool HasTreeOf(const LoadedText& other) const {
    return IsSameTree(zonGetRoot(file_), zonGetRoot(other.file_));
  }

 private:
  void* file_ = nullptr;
  int status_;
};

// False, with reports, if the library cannot write the tree.
bool MakePlainText(const LoadedText& loaded, std::string* text, bool* hasReports) {
  char* made = nullptr;
  std::size_t size = 0;
  const int status = zonxText(loaded.File(), ZONX_PLAIN | ZONX_NAMES_AS_WRITTEN, &made, &size,
                              PrintReport, hasReports);
  if (CheckMemory(status) != ZONX_OK) return false;
  const std::unique_ptr<char, void (*)(void*)> owner(made, zonxFree);
  text->assign(made, size);
  return true;
}

class Formatter {
 public:
  Formatter(const FormatOptions& options, const std::string& file, bool* hasReports)
      : options_(options), hasReports_(hasReports), input_(file) {}

  Status Run() {
    if (input_.Path().empty()) return kTrouble;
    if (options_.write && input_.IsInMemory()) return Refuse("is not a file that can be replaced");
    if (const int error = ReadFile(input_.Path(), &text_); error != 0) {
      return Refuse(std::strerror(error));
    }
    return Make() ? Deliver() : kTrouble;
  }

 private:
  Status Refuse(const std::string& reason) const {
    std::cout.flush();  // the message follows the texts before it, if both go to one place
    PrintMessage(input_.Name() + ": " + reason);
    return kTrouble;
  }

  // Makes the formatted text and proves it.
  bool Make() {
    std::cout.flush();
    const Progress progress(input_.Name());
    const LoadedText before(text_, input_.Name(), hasReports_);
    if (!before.IsSound()) return false;
    Layout layout;
    if (options_.plain) {
      if (!MakePlainText(before, &layout.text, hasReports_)) return false;
    } else {
      layout = FormatText(text_);
    }
    const LoadedText after(layout.text, input_.Name(), nullptr);
    const auto comments = zonNoComments(before.File()) + layout.addedComments;
    if (!after.IsSound() || !after.HasTreeOf(before) ||
        (!options_.plain && zonNoComments(after.File()) != comments)) {
      Refuse("its layout cannot be changed without a change of its content; it stays as it is");
      return false;
    }
    formatted_ = std::move(layout.text);
    return true;
  }

  Status Deliver() const {
    const bool isChanged = formatted_ != text_;
    if (options_.check) {
      if (isChanged) std::cout << Printable(input_.Name()) << '\n';
    } else if (options_.diff) {
      PrintUnifiedDiff(std::cout, input_.Name(), text_, formatted_);
    } else if (options_.write) {
      return isChanged ? Write() : kFine;
    } else {
      std::cout << formatted_;
      return kFine;
    }
    return isChanged ? kFindings : kFine;
  }

  // A save keeps the text that was given to the load.
  Status Write() const {
    const LoadedText made(formatted_, input_.Path(), nullptr);
    const int status = zonxSave(made.File(), input_.Path().c_str(),
                                ZONX_OVERWRITE | ZONX_NAMES_AS_WRITTEN, PrintReport, hasReports_);
    return CheckMemory(status) == ZONX_OK ? kFine : kTrouble;
  }

  const FormatOptions& options_;
  bool* const hasReports_;
  const Input input_;
  std::string text_;
  std::string formatted_;
};

}  // namespace

Status Format(const FormatOptions& options) {
  Status worst = kFine;
  bool hasReports = false;
  for (const std::string& file : options.files) {
    worst = std::max(worst, Formatter(options, file, &hasReports).Run());
    if (!std::cout) break;
  }
  return worst;
}

}  // namespace tool
