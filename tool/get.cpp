#include <algorithm>
#include <iostream>

#include <zon.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/paths.h"
#include "tool/report.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

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
