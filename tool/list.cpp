#include <iostream>

#include <zon.h>
#include <zonclasses.h>

#include "tool/commands.h"
#include "tool/paths.h"
#include "tool/report.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

void PrintPlace(void* node) {
  const zonxPlace place = PlaceOf(node);
  std::cout << place.line << ':' << place.column << '\t';
}

void PrintValues(void* keyword, const std::string& path) {
  for (unsigned int n = 1; void* value = zonNodeByNum(keyword, n); ++n) {
    PrintPlace(value);
    std::cout << path << '[' << n << "] = " << LoadedForm(value) << '\n';
  }
}

void PrintKeyword(void* keyword, const std::string& path, const ListOptions& options) {
  std::cout << path;
  if (options.withValues && !options.withPlaces) std::cout << " = " << LoadedValues(keyword);
  std::cout << '\n';
  if (options.withValues && options.withPlaces) PrintValues(keyword, path);
}

// Prints the children in file order, each by its full path, which `get` and `list` accept. Default
// definitions have no path and are left out.
void Print(void* section, const std::string& path, const ListOptions& options) {
  for (unsigned int n = 1; void* node = zonNodeByNum(section, n); ++n) {
    const std::string own = path + NameOf(node);
    const bool isSection = zonIsSection(node) != 0;
    if (!isSection && zonGetSyntaxClass(node) != kZonKeyword) continue;
    if (options.withPlaces) PrintPlace(node);
    if (isSection) {
      std::cout << own << "/\n";
      if (options.recursive) Print(node, own + '/', options);
    } else {
      PrintKeyword(node, own, options);
    }
  }
}

}  // namespace

Status List(const ListOptions& options) {
  const Source source(options.file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  void* node = nullptr;
  const bool hasNumber = options.path.find(':') != std::string::npos;
  if (hasNumber && Find(source.File(), options.path, &node) == ZONX_BAD_ARGUMENT) {
    ReportPath(source, options.path, ZONX_BAD_ARGUMENT);
    return kTrouble;
  }
  void* section = options.path.empty()
                      ? source.Root()
                      : zonFindSectionByHandle(source.File(), options.path.c_str());
  if (section == nullptr) {
    PrintMessage(source.GetInput().Name() + ": no section " + options.path + "; see zon list");
    return kFindings;
  }
  const bool needsSlash = !options.path.empty() && options.path.back() != '/';
  Print(section, options.path + (needsSlash ? "/" : ""), options);
  return kFine;
}

}  // namespace tool
