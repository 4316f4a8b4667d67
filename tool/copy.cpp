// The commands that write a file again.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>
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

// What the written form of a file does not keep. Visitors have no argument for it.
struct Losses {
  std::string keyword;  // the one whose values are looked at
  std::vector<std::string> told;
} losses;

void Lose(const std::string& what) {
  losses.told.push_back(losses.keyword + ": " + what);
}

// The library writes an absolute name relative to the file's own name, and reads it relative to the
// file's folder.
void NoteFilename(CzonNode* node) {
  const std::string text = zonGetFilenameString(node);
  if (text.empty() || text.front() != '/') return;
  const std::string path = zonGetFilename(node);
  const std::string written = WrittenForm(node);
  zonSetFilename(node, written.substr(1, written.size() - 2).c_str());
  std::string found = zonGetFilename(node);
  while (found.compare(0, 4, "/../") == 0) found.erase(0, 3);  // above the root is the root
  if (found != path) Lose(written + " leads to " + found + ", not to " + path);
  zonSetFilename(node, text.c_str());
}

void NoteLoss(CzonNode* node) {
  switch (zonGetSyntaxClass(node)) {
    case kZonKeyword:
      losses.keyword = zonGetNameGlb(node);
      break;
    case kZonFilename:
      if (zonIsFilename(node) != 0) NoteFilename(node);
      break;
    case kZonSubstit:
      Lose("%" + WrittenForm(node) +
           " is written without its '%', and the text does not load again");
      break;
    case kZonUnknown:
      Lose("an unknown value is written as an empty place");
      break;
    case kZonInt:
      if (!IsWithinInt(node)) Lose("an integer beyond 32 bits is written as " + WrittenForm(node));
      break;
    default:
      break;
  }
}

Status WarnOfLoss(const Source& source, const std::string& name) {
  losses = {};
  zonExplore(source.File(), NoteLoss);
  for (const std::string& what : losses.told) Say(std::string(name).append(": ").append(what));
  return losses.told.empty() ? kFine : kFindings;
}

// The library copies from file to file; what came through a pipe is written from its tree. What could
// not be written is left empty by the library, and taken away here.
bool WriteCopy(const Source& source, const std::string& target) {
  const Progress progress(target);
  errno = 0;
  const bool inMemory = source.From().IsInMemory();
  if (!inMemory) zonFileCopy(source.From().Path().c_str(), target.c_str());
  zonExplore(source.File(), Resolve);
  if (inMemory) zonWrite(source.File(), target.c_str());
  struct stat facts {};
  const bool exists = stat(target.c_str(), &facts) == 0;
  if (exists && facts.st_size == 0) unlink(target.c_str());
  zonSetAnchorFilename(source.Root(), target.c_str());
  return exists && facts.st_size > 0;
}

// What keeps a copy from being made under this name; empty if nothing does.
std::string Refusal(const std::string& target) {
  struct stat facts {};
  if (target.empty() || target == "-") return "a copy needs the name of a file";
  if (lstat(target.c_str(), &facts) != 0) return "";
  if (S_ISDIR(facts.st_mode)) return target + ": " + std::strerror(EISDIR);
  return target + ": exists; a copy would be written behind what it holds";
}

}  // namespace

Status Copy(const std::string& source, const std::string& target) {
  if (const std::string refusal = Refusal(target); !refusal.empty()) {
    Say(refusal);
    return kTrouble;
  }
  const Source loaded(source);
  if (loaded.Problem() != kFine) return loaded.Problem();
  if (WriteCopy(loaded, target)) return WarnOfLoss(loaded, target);
  Say(target + ": " + (errno != 0 ? std::strerror(errno) : "cannot be written"));
  return kTrouble;
}

Status Format(const std::string& file) {
  const Source source(file);
  if (source.Problem() != kFine) return source.Problem();
  static_cast<CzonNode*>(static_cast<CzonBase*>(source.Root()))->Write(std::cout);
  return WarnOfLoss(source, source.From().Name());
}

}  // namespace tool
