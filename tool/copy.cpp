// The command copy. Reports what the written form loses.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include <zon.h>
#include <zonclasses.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

void Resolve(CzonNode* node) {
  zonFileCopyCallBack(node);
}

// What the written form of a file loses. A global, because visitors have no argument for it.
struct Losses {
  std::string keyword;  // the keyword of the values that are visited
  std::vector<std::string> messages;
} losses;

void AddLoss(const std::string& what) {
  losses.messages.push_back(losses.keyword + ": " + what);
}

// The library writes an absolute file name relative to the name of the parameter file, but reads it
// relative to the folder of the file. Sets the written name for a moment to see which path it has.
void CheckFilename(CzonNode* node) {
  const std::string text = zonGetFilenameString(node);
  if (text.empty() || text.front() != '/') return;
  const std::string path = zonGetFilename(node);
  const std::string written = WrittenForm(node);
  zonSetFilename(node, written.substr(1, written.size() - 2).c_str());
  std::string found = zonGetFilename(node);
  while (found.compare(0, 4, "/../") == 0) found.erase(0, 3);  // the parent of / is /
  if (found != path) {
    AddLoss("the file name is written as " + written + ", which leads to " + found +
            " instead of " + path);
  }
  zonSetFilename(node, text.c_str());
}

void CheckValue(CzonNode* node) {
  switch (zonGetSyntaxClass(node)) {
    case kZonKeyword:
      losses.keyword = zonGetNameGlb(node);
      break;
    case kZonFilename:
      if (zonIsFilename(node) != 0) CheckFilename(node);
      break;
    case kZonSubstit:
      AddLoss("%" + WrittenForm(node) +
              " is written without its '%', so the written text does not load");
      break;
    case kZonUnknown:
      AddLoss("an unknown value is written as an undefined value");
      break;
    case kZonInt:
      if (!IsWithinInt(node))
        AddLoss("an integer beyond 32 bits is written as " + WrittenForm(node));
      break;
    default:
      break;
  }
}

Status ReportLosses(const Source& source, const std::string& name) {
  losses = {};
  zonExplore(source.File(), CheckValue);
  for (const std::string& what : losses.messages)
    PrintMessage(std::string(name).append(": ").append(what));
  return losses.messages.empty() ? kFine : kFindings;
}

// Copies with the library's function for files; the content of a pipe is written from its tree. The
// library leaves an empty file after a failure, which is removed. Returns whether there is a copy;
// if not, `error` is the errno, or 0.
bool WriteCopy(const Source& source, const std::string& target, int* error) {
  const Progress progress(target);
  errno = 0;
  const bool inMemory = source.GetInput().IsInMemory();
  if (!inMemory) zonFileCopy(source.GetInput().Path().c_str(), target.c_str());
  *error = errno;
  zonExplore(source.File(), Resolve);
  if (inMemory) {
    errno = 0;
    zonWrite(source.File(), target.c_str());
    *error = errno;
  }
  struct stat facts {};
  const bool exists = stat(target.c_str(), &facts) == 0;
  if (exists && facts.st_size == 0) unlink(target.c_str());
  zonSetAnchorFilename(source.Root(), target.c_str());
  return exists && facts.st_size > 0;
}

// Why no copy can be written to the target; empty if it can.
std::string WhyRefused(const std::string& target) {
  struct stat facts {};
  if (target.empty() || target == "-") return "the target of a copy must be a file name";
  if (lstat(target.c_str(), &facts) != 0) return "";
  if (S_ISDIR(facts.st_mode)) return target + ": " + std::strerror(EISDIR);
  return target + ": exists, and a copy would be appended to it; remove it or use another name";
}

}  // namespace

Status Copy(const std::string& source, const std::string& target) {
  if (const std::string reason = WhyRefused(target); !reason.empty()) {
    PrintMessage(reason);
    return kTrouble;
  }
  const Source loaded(source);
  if (loaded.GetStatus() != kFine) return loaded.GetStatus();
  int error = 0;
  if (WriteCopy(loaded, target, &error)) return ReportLosses(loaded, target);
  PrintMessage(target + ": " + (error != 0 ? std::strerror(error) : "cannot be written"));
  return kTrouble;
}

}  // namespace tool
