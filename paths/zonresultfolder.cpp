// Tested by tests/results_test.cpp.
#include "paths/zonresultfolder.h"

#include <libgen.h>

#include <cstdlib>

#include "base/zonenvironment.h"

namespace zon {
namespace {

constexpr char g_lpszResultFolderPostfix[] = " - Result Files";

std::string DirectoryOf(std::string path) {
  return dirname(path.data());  // writes into its argument
}

// Kept: the path is looked up and what is found is not used.
void LookUpPath(const char* path) {
  std::free(realpath(path, nullptr));
}

}  // namespace

void ReadFolderTemplate() {
  // A volatile result, as compilers may leave out a getenv whose result is not used.
  [[maybe_unused]] const char* const volatile unused = std::getenv("VXRESULTFOLDERTEMPLATE");
}

std::string ResultSubFolder(std::string_view anchor) {
  std::string folder;
  if (anchor.find('/') == std::string_view::npos) folder = "/";
  folder.append(anchor).append(g_lpszResultFolderPostfix).append("/");
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
