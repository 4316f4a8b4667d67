#include <cstring>
#include <iostream>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

// Whether each ':' is followed by a number that ends the element.
bool IsValidPath(const std::string& path) {
  for (std::size_t at = path.find(':'); at != std::string::npos; at = path.find(':', at)) {
    const std::size_t digits = at + 1;
    at = path.find_first_not_of("0123456789", digits);
    const bool ends = at == std::string::npos || path[at] == '/' || path[at] == '.';
    if (at == digits || digits == path.size() || !ends) return false;
  }
  return true;
}

// The keyword at the end of a path; null if it is missing.
void* FindKeyword(const Source& source, const std::string& path) {
  const std::size_t last = path.find_last_of("/.");
  if (last == std::string::npos) return nullptr;
  void* section = zonFindSectionByHandle(source.File(), path.substr(0, last).c_str());
  if (section == nullptr) return nullptr;
  std::string name = path.substr(last + 1) + '\0';
  int instance = 1;
  splitElement(name.data(), &instance);
  const char* keyword = std::strcmp(name.c_str(), "()") == 0 ? "" : name.c_str();
  return zonKeywordByNameNum(section, keyword, static_cast<unsigned int>(instance));
}

Status ReportMissing(const Source& source, const std::string& path) {
  const bool isSection = zonFindSectionByHandle(source.File(), path.c_str()) != nullptr;
  PrintMessage(source.GetInput().Name() + ": " +
               (isSection ? path + " is a section, not a keyword" : "no keyword " + path) +
               "; see zon list");
  return kFindings;
}

void Print(void* value, const GetOptions& options) {
  if (options.withType) std::cout << KindOf(value) << '\t';
  const bool resolved = options.resolved && zonIsFilename(value) != 0;
  std::cout << (resolved ? zonGetFilename(value) : PlainForm(value)) << '\n';
}

}  // namespace

Status Get(const GetOptions& options) {
  if (!IsValidPath(options.path)) {
    PrintMessage(options.path + ": ':' must be followed by a number, as in Quay:2");
    return kTrouble;
  }
  const Source source(options.file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  void* keyword = FindKeyword(source, options.path);
  if (keyword == nullptr) return ReportMissing(source, options.path);
  const auto count = static_cast<unsigned int>(zonGetNoParams(keyword));
  if (options.param > count) {
    PrintMessage(source.GetInput().Name() + ": no value " + std::to_string(options.param) + " in " +
                 options.path + ", which has " + std::to_string(count) +
                 (count == 1 ? " value" : " values"));
    return kFindings;
  }
  for (unsigned int n = 1; n <= count; ++n) {
    if (options.param == 0 || options.param == n) Print(zonParamByNum(keyword, n), options);
  }
  return kFine;
}

}  // namespace tool
