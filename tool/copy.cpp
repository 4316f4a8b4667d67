// The commands that write a file again.
#include <sys/stat.h>

#include <iostream>
#include <string>

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

// What the written form does not keep: the first value of the kind, told.
std::string lost;

// The library writes an absolute name relative to the file's own name, and reads it relative to the
// file's folder.
void NoteLostFilename(CzonNode* node) {
  const std::string text = zonGetFilenameString(node);
  if (text.empty() || text.front() != '/') return;
  const std::string path = zonGetFilename(node);
  const std::string written = WrittenForm(node);
  zonSetFilename(node, written.substr(1, written.size() - 2).c_str());
  std::string found = zonGetFilename(node);
  while (found.compare(0, 4, "/../") == 0) found.erase(0, 3);  // above the root is the root
  if (found != path) lost = "the file name " + written + " leads to " + found + ", not to " + path;
  zonSetFilename(node, text.c_str());
}

void NoteLost(CzonNode* node) {
  if (!lost.empty()) return;
  if (zonIsFilename(node) != 0) NoteLostFilename(node);
  if (zonGetSyntaxClass(node) == kZonSubstit) {
    lost =
        "%" + WrittenForm(node) + " is written without its '%', and the text does not load again";
  }
}

Status WarnOfLoss(const Source& source, const std::string& name) {
  lost.clear();
  zonExplore(source.File(), NoteLost);
  if (lost.empty()) return kFine;
  Say(name + ": " + lost);
  return kFindings;
}

bool IsWritten(const std::string& target) {
  struct stat facts {};
  return stat(target.c_str(), &facts) == 0 && facts.st_size > 0;
}

// The library copies from file to file; what came through a pipe is written from its tree.
bool WriteCopy(const Source& source, const std::string& target) {
  const bool inMemory = source.From().IsInMemory();
  const bool done = inMemory || zonFileCopy(source.From().Path().c_str(), target.c_str()) != 0;
  zonExplore(source.File(), Resolve);
  if (inMemory) zonWrite(source.File(), target.c_str());
  zonSetAnchorFilename(source.Root(), target.c_str());
  return done && IsWritten(target);
}

}  // namespace

Status Copy(const std::string& source, const std::string& target) {
  struct stat facts {};
  if (lstat(target.c_str(), &facts) == 0) {
    Say(target + ": exists; a copy would be written behind what it holds");
    return kTrouble;
  }
  const Source loaded(source);
  if (loaded.Problem() != kFine) return loaded.Problem();
  if (WriteCopy(loaded, target)) return WarnOfLoss(loaded, target);
  Say(target + ": cannot be written");
  return kTrouble;
}

Status Format(const std::string& file) {
  const Source source(file);
  if (source.Problem() != kFine) return source.Problem();
  static_cast<CzonNode*>(static_cast<CzonBase*>(source.Root()))->Write(std::cout);
  return WarnOfLoss(source, source.From().Name());
}

}  // namespace tool
