#include <algorithm>
#include <iostream>
#include <new>

#include <zon.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/report.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

// zonxFind, with an exception if out of memory.
int Find(void* file, const std::string& path, void** node) {
  const int status = zonxFind(file, path.c_str(), node);
  if (status == ZONX_NO_MEMORY) throw std::bad_alloc();
  return status;
}

// Replaces each ":*" by the numbers of the instances that exist. If there are none it is left out,
// which selects the first.
std::vector<std::string> Expand(void* file, const std::string& path) {
  const std::size_t star = path.find(":*");
  if (star == std::string::npos) return {path};
  const std::string before = path.substr(0, star);
  const std::string after = path.substr(star + 2);
  if (!after.empty() && after[0] != '/' && after[0] != '[') return {path};  // malformed
  const char* slash = after.substr(0, 1) == "/" ? "/" : "";
  std::vector<std::string> paths;
  void* node;
  for (unsigned int n = 1;; ++n) {
    const std::string instance = before + ':' + std::to_string(n);
    if (Find(file, instance + slash, &node) != ZONX_OK) break;
    const auto more = Expand(file, instance + after);
    paths.insert(paths.end(), more.begin(), more.end());
  }
  if (paths.empty()) return Expand(file, before + after);
  return paths;
}

// Compatibility: '.' separates names too, if no name of the path has one. A ':*' counts as ':1'.
std::string WithSlashes(void* file, const std::string& path) {
  std::string changed = path;
  std::replace(changed.begin(), changed.end(), '*', '1');
  void* node;
  if (path.find('.') == std::string::npos || Find(file, changed, &node) == ZONX_OK) return path;
  changed = path;
  std::replace(changed.begin(), changed.end(), '.', '/');
  return changed;
}

void Print(void* value, const GetOptions& options) {
  if (options.withType) std::cout << KindOf(value) << '\t';
  const bool resolved = options.resolved && zonIsFilename(value) != 0;
  std::cout << (resolved ? zonGetFilename(value) : PlainForm(value)) << '\n';
}

// Prints the values of a keyword, or one value.
void PrintAll(void* node, const GetOptions& options) {
  if (zonxGetKind(node) != ZONX_KEYWORD) return Print(node, options);
  const auto count = static_cast<unsigned int>(zonGetNoParams(node));
  for (unsigned int n = 1; n <= count; ++n) Print(zonParamByNum(node, n), options);
}

Status GetOne(const Source& source, const std::string& path, const GetOptions& options) {
  void* node = nullptr;
  int status = Find(source.File(), path, &node);
  if (status == ZONX_OK && zonxGetKind(node) <= ZONX_SECTION) status = ZONX_WRONG_KIND;
  if (status == ZONX_OK) {
    PrintAll(node, options);
    return kFine;
  }
  if (status == ZONX_MISSING && options.fallback) {
    std::cout << (options.withType ? "missing\t" : "") << *options.fallback << '\n';
    return kFine;
  }
  std::cout.flush();  // the message follows the values before it, if both go to one place
  ReportPath(source, path, status);
  return status == ZONX_BAD_ARGUMENT ? kTrouble : kFindings;
}

}  // namespace

Status Get(const GetOptions& options) {
  const Source source(options.file);
  Status worst = source.GetStatus();
  if (worst != kFine) return worst;
  for (const std::string& given : options.paths) {
    for (const std::string& path : Expand(source.File(), WithSlashes(source.File(), given))) {
      worst = std::max(worst, GetOne(source, path, options));
    }
  }
  return worst;
}

}  // namespace tool
