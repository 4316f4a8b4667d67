#include "tool/loadedfile.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string_view>

#include <zon.h>

#include "tool/report.h"
#include "tool/values.h"

namespace tool {

// Why a file cannot be read is printed without a place.
void LoadedFile::Print(const zonxReport* report, void* context) {
  const std::string_view rule = report->rule;
  if (report->severity == ZONX_WARNING || rule == "cannot-open" || rule == "cannot-read") return;
  PrintError(WithName(*report, static_cast<const LoadedFile*>(context)->input_.Name()));
}

LoadedFile::LoadedFile(const std::string& argument) : input_(argument) {
  if (input_.Path().empty()) return;
  std::cout.flush();  // reports follow the texts before them, if both go to one place
  int status = ZONX_OK;
  int error = 0;
  {
    const Progress progress(input_.Name());
    errno = 0;
    status = CheckMemory(Load(input_, &file_, Print, this));
    error = errno;
  }
  isSound_ = status == ZONX_OK;
  if (!isSound_ && status != ZONX_FAULTY) PrintMessage(input_.Name() + ": " + std::strerror(error));
}

LoadedFile::~LoadedFile() {
  if (file_ != nullptr) zonClose(&file_);
}

void* LoadedFile::Root() const {
  return zonGetRoot(file_);
}

void LoadedFile::Report(void* node, int severity, const std::string& message,
                        const std::string& hint) const {
  std::cout.flush();
  CheckMemory(zonxReportNode(
      node, severity, "", message.c_str(), hint.c_str(),
      [](const zonxReport* report, void* context) {
        PrintError(WithName(*report, static_cast<const LoadedFile*>(context)->input_.Name()));
      },
      const_cast<LoadedFile*>(this)));
}

}  // namespace tool
