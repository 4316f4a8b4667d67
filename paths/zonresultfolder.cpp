// Result folders: the name of the parameter file with a suffix, below the result root or, without
// one, below the working directory. Tested by tests/results_test.cpp.
#include "paths/zonresultfolder.h"

#include <libgen.h>

#include <cstdlib>

#include "base/zonenvironment.h"
#include "tree/zonkeyword.h"

namespace zon {
namespace {

constexpr char kResultFolderSuffix[] = " - Result Files";

std::string DirectoryOf(std::string path) {
  return dirname(path.data());  // writes into its argument
}

// Compatibility: resolves the path and ignores the result. The accesses themselves can have
// effects, such as the mounting of a directory.
void LookUpPath(const char* path) {
  std::free(realpath(path, nullptr));
}

}  // namespace

CzonParam* FindSetting(const CzonSection* settings, const char* name) {
  const CzonKeyword* keyword = settings != nullptr ? settings->KeywordByName(name) : nullptr;
  return keyword != nullptr ? keyword->ParamByNum(1) : nullptr;
}

void ReadFolderTemplate() {
  // volatile: a compiler may remove a getenv whose result is not used.
  [[maybe_unused]] const char* const volatile unused = std::getenv("VXRESULTFOLDERTEMPLATE");
}

std::string ResultSubFolder(std::string_view anchor) {
  std::string folder;
  if (anchor.find('/') == std::string_view::npos) folder = "/";
  folder.append(anchor).append(kResultFolderSuffix).append("/");
  return folder;
}

std::string ResultFolderByRoot(const CzonTargetList& root) {
  return root.GetResultRoot() + ResultSubFolder(root.GetZonFilename());
}

std::string ResultFolderByAnchor(const std::string& anchor) {
  std::string folder = ResultSubFolder(anchor);
  const std::string directory = DirectoryOf(anchor);
  const std::string working = CurrentDirectory();
  if (directory == ".") return working + folder;
  if (directory == working) return folder;
  LookUpPath(".");
  LookUpPath(directory.c_str());
  return folder.front() == '/' ? folder : working + "/" + folder;
}

}  // namespace zon
