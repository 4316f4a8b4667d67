#include "tool/editedfile.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>
#include <string_view>

#include <zon.h>

#include "tool/report.h"
#include "tool/unifieddiff.h"
#include "tool/values.h"

namespace tool {
EditedFile::~EditedFile() {
  if (file_ != nullptr) zonClose(&file_);
}

// Files with warnings can be edited. Why a file cannot be read is printed without a place.
void EditedFile::Print(const zonxReport* report, void* context) {
  const std::string_view rule = report->rule;
  if (report->severity == ZONX_WARNING || rule == "cannot-open" || rule == "cannot-read") return;
  PrintError(WithName(*report, static_cast<const EditedFile*>(context)->input_.Name()));
}

void EditedFile::PrintWarning(const zonxReport* report, void* context) {
  if (*report->hint == '\0') return;
  zonxReport warning = WithName(*report, static_cast<const EditedFile*>(context)->input_.Name());
  const std::string message = std::string(report->message) + " yet; it is added";
  warning.severity = ZONX_WARNING;
  warning.message = message.c_str();
  PrintError(warning);
}

bool EditedFile::Load() {
  if (input_.Path().empty()) return false;
  std::cout.flush();  // reports follow the texts before them, if both go to one place
  if (input_.IsInMemory() && !isStandardInput_) {
    PrintMessage(input_.Name() + ": is not a file that can be replaced");
    return false;
  }
  int status = ZONX_OK;
  int error = 0;
  {
    const Progress progress(input_.Name());
    status = CheckMemory(zonxLoadFile(input_.Path().c_str(), &file_, Print, this));
    error = errno;
  }
  if (status != ZONX_OK && status != ZONX_FAULTY)
    PrintMessage(input_.Name() + ": " + std::strerror(error));
  if (status != ZONX_OK) return false;
  bool isMade = true;
  if (options_.dryRun) before_ = Text(&isMade);
  return isMade;
}

Status EditedFile::ReportPath(const std::string& path, int status) {
  CheckMemory(zonxReportPath(file_, path.c_str(), CheckMemory(status), Print, this));
  return status == ZONX_MISSING || status == ZONX_WRONG_KIND ? kFindings : kTrouble;
}

void EditedFile::WarnOfNewName(const std::string& path) {
  CheckMemory(zonxReportPath(file_, path.c_str(), ZONX_MISSING, PrintWarning, this));
}

Status EditedFile::Refuse(void* node, const std::string& message, const std::string& hint) {
  CheckMemory(zonxReportNode(node, ZONX_ERROR, "edit", message.c_str(), hint.c_str(), Print, this));
  return kTrouble;
}

std::string EditedFile::Text(bool* isMade) {
  char* text = nullptr;
  std::size_t size = 0;
  const int status = CheckMemory(zonxText(file_, ZONX_NAMES_AS_WRITTEN, &text, &size, Print, this));
  *isMade = status == ZONX_OK;
  const std::unique_ptr<char, void (*)(void*)> owner(text, zonxFree);
  return *isMade ? std::string(text, size) : std::string();
}

Status EditedFile::Deliver() {
  if (!options_.dryRun && !isStandardInput_) {
    const unsigned int flags = options_.backup ? ZONX_BACKUP : 0;
    return CheckMemory(zonxSave(file_, nullptr, flags, Print, this)) == ZONX_OK ? kFine : kTrouble;
  }
  bool isMade = false;
  const std::string text = Text(&isMade);
  if (!isMade) return kTrouble;
  if (options_.dryRun) {
    PrintUnifiedDiff(std::cout, input_.Name(), before_, text);
  } else {
    std::cout << text;
  }
  return kFine;
}

Status EditFile(const std::string& file, const EditOptions& options,
                const std::function<Status(EditedFile&)>& change) {
  EditedFile edited(file, options);
  if (!edited.Load()) return kTrouble;
  const Status status = change(edited);
  return status == kFine ? edited.Deliver() : status;
}

}  // namespace tool
