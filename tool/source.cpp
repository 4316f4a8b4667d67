#include "tool/source.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>

#include <zon.h>

namespace tool {
namespace {

// Copies a file to its end; false with errno if that fails.
bool CopyAll(int from, int to) {
  char piece[1 << 16];
  for (;;) {
    const ssize_t size = read(from, piece, sizeof piece);
    if (size < 0 && errno == EINTR) continue;
    if (size == 0) return true;
    if (size < 0 || write(to, piece, static_cast<std::size_t>(size)) != size) return false;
  }
}

// Whether a second reading would give nothing, or wait for ever.
bool IsReadOnce(const char* path) {
  struct stat facts {};
  return stat(path, &facts) == 0 && !S_ISREG(facts.st_mode) && !S_ISDIR(facts.st_mode);
}

std::string LineOf(const std::string& path, unsigned int line) {
  std::ifstream file(path, std::ios::binary);
  std::string text;
  for (unsigned int n = 0; n < line && std::getline(file, text);) ++n;
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

}  // namespace

Input::Input(const std::string& argument)
    : name_(argument == "-" ? "stdin" : argument), path_(argument) {
  if (argument == "-") {
    Take(STDIN_FILENO);
  } else if (argument.empty()) {
    Say("a file without a name");
  } else if (IsReadOnce(argument.c_str())) {
    const int file = open(argument.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    Take(file);
    if (file >= 0) close(file);
  }
}

Input::~Input() {
  if (memory_ >= 0) close(memory_);
}

void Input::Take(int file) {
  bool taken = false;
  if (file >= 0) {
    std::optional<Progress> progress;
    if (isatty(file) == 0) progress.emplace(name_);  // else a person is typing
    memory_ = memfd_create("zon", MFD_CLOEXEC);
    taken = memory_ >= 0 && CopyAll(file, memory_);
  }
  path_ = taken ? "/proc/self/fd/" + std::to_string(memory_) : "";
  if (!taken) Say(name_ + ": " + std::strerror(errno));
}

void Input::Diagnose(unsigned int line, unsigned int position, const char* text) const {
  const bool atEnd = position == 0 && line > 1;
  const std::string shown = LineOf(path_, atEnd ? line - 1 : line);
  const Place place{name_, atEnd ? line - 1 : line,
                    atEnd           ? static_cast<unsigned int>(shown.size()) + 1
                    : position == 0 ? 1
                                    : position};
  const bool isMarked =
      shown.compare(0, 3, "\xEF\xBB\xBF") == 0 || shown.compare(0, 2, "\xFF\xFE") == 0;
  const char* hint = place.line == 1 && isMarked ? " (the file begins with a byte order mark)" : "";
  tool::Diagnose(place, std::string(text) + hint, shown);
}

void Input::DiagnoseOpening(int code) const {
  const int file = open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat facts {};
  const char* reason = zonGetErrorMessageFromErrorCode(code);
  if (file < 0) {
    reason = std::strerror(errno);
  } else if (fstat(file, &facts) == 0 && S_ISDIR(facts.st_mode)) {
    reason = std::strerror(EISDIR);
  }
  if (file >= 0) close(file);
  Say(name_ + ": " + reason);
}

Source::Source(const std::string& argument) : input_(argument) {
  if (input_.Path().empty()) {
    problem_ = kTrouble;
    return;
  }
  {
    const Progress progress(input_.Name());
    file_ = zonLoadFile(input_.Path().c_str(), 1);
  }
  const int code = zonGetErrorGlb();
  if (file_ == nullptr) {
    input_.DiagnoseOpening(code);
    problem_ = kTrouble;
    return;
  }
  unsigned int line = 0;
  unsigned int position = 0;
  const char* text = zonGetSyntaxErr(file_, &line, &position, nullptr);
  if (*text != '\0') {
    input_.Diagnose(line, position, text);
    problem_ = kFindings;
  } else if (input_.IsInMemory()) {
    Anchor();
  }
}

Source::~Source() {
  if (file_ != nullptr) zonClose(&file_);
}

void* Source::Root() const {
  return zonGetRoot(file_);
}

// File names count from the place that the file has for its user (of standard input the working
// directory), and so do its result folders.
void Source::Anchor() {
  zonSetAnchorFilename(Root(), input_.Name().c_str());
  void* settings = zonTargetByNameNum(file_, "SYSTEM", 1);
  if (settings == nullptr) return;
  const char* folder = nullptr;
  bool use = false;
  if (zonGetParamFilename(settings, "ResultRootFolder", &folder, 1, 1) != 0) {
    zonSetProjectResultRoot(file_, folder);
  }
  zonGetParam(settings, "UseCustomResultFolder", &use, 1, 1);
  if (zonGetParamFilename(settings, "CustomResultFolder", &folder, 1, 1) != 0) {
    zonSetCustomResultFolder(file_, use ? 1 : 0, folder);
  }
  zonGetErrorGlb();
}

}  // namespace tool
