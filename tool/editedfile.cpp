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
#include "tool/values.h"

namespace tool {

void EditedFile::PrintWarning(const zonxReport* report, void* context) {
  if (*report->hint == '\0') return;
  zonxReport warning =
      WithName(*report, static_cast<const LoadedFile*>(context)->GetInput().Name());
  const std::string message = std::string(report->message) + " yet; it is added";
  warning.severity = ZONX_WARNING;
  warning.message = message.c_str();
  PrintError(warning);
}

void EditedFile::PrintForOutput(const zonxReport* report, void* context) {
  if (report->severity == ZONX_WARNING) return;
  PrintError(WithName(*report, static_cast<const EditOptions*>(context)->output));
}

bool EditedFile::Load() {
  if (options_.backup && argument_ == "-" && options_.target == EditOptions::Target::kFile) {
    PrintMessage("--backup needs a file, and standard input is none");
    return false;
  }
  loaded_.emplace(argument_);
  if (!loaded_->IsSound()) return false;
  const bool isReplaced = options_.target == EditOptions::Target::kFile && argument_ != "-";
  if (loaded_->GetInput().IsInMemory() && isReplaced) {
    PrintMessage(loaded_->GetInput().Name() + ": is not a file that can be replaced");
    return false;
  }
  bool isMade = true;
  if (options_.dryRun) before_ = Text(&isMade);
  return isMade;
}

Status EditedFile::ReportPath(const std::string& path, int status) {
  CheckMemory(
      zonxReportPath(File(), path.c_str(), CheckMemory(status), LoadedFile::Print, &*loaded_));
  return status == ZONX_MISSING || status == ZONX_WRONG_KIND ? kFindings : kTrouble;
}

void EditedFile::WarnOfNewName(const std::string& path) {
  CheckMemory(zonxReportPath(File(), path.c_str(), ZONX_MISSING, PrintWarning, &*loaded_));
}

Status EditedFile::Refuse(void* node, const std::string& message, const std::string& hint) {
  CheckMemory(zonxReportNode(node, ZONX_ERROR, "edit", message.c_str(), hint.c_str(),
                             LoadedFile::Print, &*loaded_));
  return kTrouble;
}

// Whether the text goes to another file than the loaded one.
bool EditedFile::IsOtherFile() const {
  if (options_.target != EditOptions::Target::kOtherFile) return false;
  std::error_code error;
  return !std::filesystem::equivalent(options_.output, loaded_->GetInput().Path(), error);
}

std::string EditedFile::Text(bool* isMade) {
  char* text = nullptr;
  std::size_t size = 0;
  const int status = CheckMemory(
      zonxText(File(), ZONX_NAMES_AS_WRITTEN, &text, &size, LoadedFile::Print, &*loaded_));
  *isMade = status == ZONX_OK;
  const std::unique_ptr<char, void (*)(void*)> owner(text, zonxFree);
  return *isMade ? std::string(text, size) : std::string();
}

Status EditedFile::Save() {
  unsigned int flags = 0;
  if (options_.backup) flags |= ZONX_BACKUP;
  int status = ZONX_OK;
  if (IsOtherFile()) {
    status = zonxSave(File(), options_.output.c_str(), flags | ZONX_OVERWRITE, PrintForOutput,
                      const_cast<EditOptions*>(&options_));
  } else {
    status = zonxSave(File(), nullptr, flags, LoadedFile::Print, &*loaded_);
  }
  return CheckMemory(status) == ZONX_OK ? kFine : kTrouble;
}

Status EditedFile::Deliver() {
  const bool isPrinted = options_.target == EditOptions::Target::kStandardOutput ||
                         (argument_ == "-" && options_.target == EditOptions::Target::kFile);
  if (!options_.dryRun && !isPrinted) return Save();
  bool isMade = false;
  const std::string text = Text(&isMade);
  if (!isMade) return kTrouble;
  if (options_.dryRun) {
    const bool isOther = IsOtherFile();
    if (isOther) {
      before_.clear();
      ReadFile(options_.output, &before_);  // it may be missing
    }
    PrintUnifiedDiff(std::cout, isOther ? options_.output : loaded_->GetInput().Name(), before_,
                     text);
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
