#include "tool/editedfile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string_view>

#include <zon.h>

#include "tool/report.h"
#include "tool/unifieddiff.h"

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
  const bool isReplaced = options_.target == EditOptions::Target::kFile && !isStandardInput_;
  if (input_.IsInMemory() && isReplaced) {
    PrintMessage(input_.Name() + ": is not a file that can be replaced");
    return false;
  }
  int status = ZONX_OK;
  int error = 0;
  {
    const Progress progress(input_.Name());
    status =
        CheckMemory(input_.IsInMemory() ? LoadText()
                                        : zonxLoadFile(input_.Path().c_str(), &file_, Print, this));
    error = errno;
  }
  if (status != ZONX_OK && status != ZONX_FAULTY)
    PrintMessage(input_.Name() + ": " + std::strerror(error));
  if (status != ZONX_OK) return false;
  bool isMade = true;
  if (options_.dryRun) before_ = Text(&isMade);
  return isMade;
}

// File names are relative to the working directory.
int EditedFile::LoadText() {
  const std::string text = input_.ReadText();
  return zonxLoadText(text.data(), text.size(), input_.Name().c_str(), &file_, Print, this);
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

bool EditedFile::IsLoadedFile(const std::string& name) const {
  std::error_code error;
  return std::filesystem::equivalent(name, input_.Path(), error);
}

std::string EditedFile::Text(bool* isMade) {
  char* text = nullptr;
  std::size_t size = 0;
  const int status = CheckMemory(zonxText(file_, ZONX_NAMES_AS_WRITTEN, &text, &size, Print, this));
  *isMade = status == ZONX_OK;
  const std::unique_ptr<char, void (*)(void*)> owner(text, zonxFree);
  return *isMade ? std::string(text, size) : std::string();
}

Status EditedFile::Save() {
  const bool isOther =
      options_.target == EditOptions::Target::kOtherFile && !IsLoadedFile(options_.output);
  unsigned int flags = 0;
  if (options_.backup) flags |= ZONX_BACKUP;
  if (isOther) flags |= ZONX_OVERWRITE;
  const char* const name = isOther ? options_.output.c_str() : nullptr;
  return CheckMemory(zonxSave(file_, name, flags, Print, this)) == ZONX_OK ? kFine : kTrouble;
}

Status EditedFile::Deliver() {
  const bool isPrinted = options_.target == EditOptions::Target::kStandardOutput ||
                         (isStandardInput_ && options_.target == EditOptions::Target::kFile);
  if (!options_.dryRun && !isPrinted) return Save();
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
