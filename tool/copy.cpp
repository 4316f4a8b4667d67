// The commands that write a file again.
#include <sys/stat.h>

#include <iostream>

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

// The first value that the written form does not keep.
void* lost;

void NoteLost(CzonNode* node) {
  if (lost == nullptr && zonGetSyntaxClass(node) == kZonSubstit) lost = node;
}

// Tells of it.
Status WarnOfLoss(const Source& source) {
  lost = nullptr;
  zonExplore(source.File(), NoteLost);
  if (lost == nullptr) return kFine;
  Say(source.From().Name() + ": substitutions such as %" + WrittenForm(lost) +
      " are written without their '%'; the text does not load again");
  return kFindings;
}

// What zonFileCopy does, from a tree that is loaded already.
bool WriteCopy(const Source& source, const char* target) {
  zonExplore(source.File(), Resolve);
  zonWrite(source.File(), target);
  struct stat facts {};
  return stat(target, &facts) == 0 && facts.st_size > 0;
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
  const bool done = loaded.From().IsInMemory() ? WriteCopy(loaded, target.c_str())
                                               : zonFileCopy(source.c_str(), target.c_str()) != 0;
  if (done) return WarnOfLoss(loaded);
  Say(target + ": cannot be written");
  return kTrouble;
}

Status Format(const std::string& file) {
  const Source source(file);
  if (source.Problem() != kFine) return source.Problem();
  static_cast<CzonNode*>(static_cast<CzonBase*>(source.Root()))->Write(std::cout);
  return WarnOfLoss(source);
}

}  // namespace tool
