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
#include <zonx.h>

#include "tool/values.h"

namespace tool {
namespace {

// Copies a file from its current place to its end. Returns false and sets errno on failure.
bool CopyAll(int from, int to) {
  char piece[1 << 16];
  for (;;) {
    const ssize_t size = read(from, piece, sizeof piece);
    if (size < 0 && errno == EINTR) continue;
    if (size == 0) return true;
    if (size < 0 || write(to, piece, static_cast<std::size_t>(size)) != size) return false;
  }
}

// Whether the file can be read only once: a pipe, a device or a socket.
bool IsReadOnce(const char* path) {
  struct stat facts {};
  return stat(path, &facts) == 0 && !S_ISREG(facts.st_mode) && !S_ISDIR(facts.st_mode);
}

// The text of a line, counted from 1; empty if there is none.
std::string LineOf(const std::string& path, unsigned int line) {
  std::ifstream file(path, std::ios::binary);
  std::string text;
  for (unsigned int n = 0; n < line && std::getline(file, text);) ++n;
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

}  // namespace

int ReadFile(const std::string& path, std::string* text) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (file < 0) return errno;
  char piece[1 << 16];
  ssize_t size = 0;
  while ((size = read(file, piece, sizeof piece)) != 0) {
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) break;
    text->append(piece, static_cast<std::size_t>(size));
  }
  const int error = size < 0 ? errno : 0;
  close(file);
  return error;
}

Input::Input(const std::string& argument)
    : name_(argument == "-" ? "stdin" : argument), path_(argument) {
  if (argument == "-") {
    CopyToMemory(STDIN_FILENO);
  } else if (argument.empty()) {
    PrintMessage("the file name is empty");
  } else if (IsReadOnce(argument.c_str())) {
    const int file = open(argument.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    CopyToMemory(file);
    if (file >= 0) close(file);
  }
}

Input::~Input() {
  if (memory_ >= 0) close(memory_);
}

void Input::CopyToMemory(int file) {
  bool copied = false;
  if (file >= 0) {
    std::optional<Progress> progress;
    if (isatty(file) == 0) progress.emplace(name_);  // at a terminal the user is typing
    memory_ = memfd_create("zon", MFD_CLOEXEC);
    copied = memory_ >= 0 && CopyAll(file, memory_);
  }
  path_ = copied ? "/proc/self/fd/" + std::to_string(memory_) : "";
  if (!copied) PrintMessage(name_ + ": " + std::strerror(errno));
}

int Load(const Input& input, void** file, zonxReporter reporter, void* context) {
  if (!input.IsInMemory()) return zonxLoadFile(input.Path().c_str(), file, reporter, context);
  std::string text;
  errno = ReadFile(input.Path(), &text);
  if (errno != 0) return ZONX_CANNOT_READ;
  return zonxLoadText(text.data(), text.size(), input.Name().c_str(), file, reporter, context);
}

void Input::ReportSyntaxError(unsigned int line, unsigned int position, const char* text) const {
  const bool atEnd = position == 0 && line > 1;
  const std::string shown = LineOf(path_, atEnd ? line - 1 : line);
  const Place place{name_, atEnd ? line - 1 : line,
                    atEnd           ? static_cast<unsigned int>(shown.size()) + 1
                    : position == 0 ? 1
                                    : position};
  const bool isMarked =
      shown.compare(0, 3, "\xEF\xBB\xBF") == 0 || shown.compare(0, 2, "\xFF\xFE") == 0;
  const char* hint =
      place.line == 1 && isMarked ? " (remove the byte order mark at the start of the file)" : "";
  PrintDiagnostic(place, std::string(text) + hint, shown);
}

void Input::ReportOpenError(int code) const {
  const int file = open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat facts {};
  const char* reason = zonGetErrorMessageFromErrorCode(code);
  if (file < 0) {
    reason = std::strerror(errno);
  } else if (fstat(file, &facts) == 0 && S_ISDIR(facts.st_mode)) {
    reason = std::strerror(EISDIR);
  }
  if (file >= 0) close(file);
  PrintMessage(name_ + ": " + reason);
}

Source::Source(const std::string& argument) : input_(argument) {
  if (input_.Path().empty()) {
    status_ = kTrouble;
    return;
  }
  {
    const Progress progress(input_.Name());
    if (input_.IsInMemory()) {
      CheckMemory(Load(input_, &file_, nullptr, nullptr));
    } else {
      file_ = zonLoadFile(input_.Path().c_str(), 1);
    }
  }
  const int code = zonGetErrorGlb();
  if (file_ == nullptr) {
    input_.ReportOpenError(code);
    status_ = kTrouble;
    return;
  }
  unsigned int line = 0;
  unsigned int position = 0;
  const char* text = zonGetSyntaxErr(file_, &line, &position, nullptr);
  if (*text != '\0') {
    input_.ReportSyntaxError(line, position, text);
    status_ = kFindings;
  }
}

Source::~Source() {
  if (file_ != nullptr) zonClose(&file_);
}

void* Source::Root() const {
  return zonGetRoot(file_);
}

}  // namespace tool
