#include <iostream>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

// The keyword at the end of a path; null for a miss.
void* FindKeyword(const Source& source, const std::string& path) {
  const std::size_t last = path.find_last_of("/.");
  if (last == std::string::npos) return nullptr;
  void* section = zonFindSectionByHandle(source.File(), path.substr(0, last).c_str());
  if (section == nullptr) return nullptr;
  std::string name = path.substr(last + 1) + '\0';
  int instance = 1;
  splitElement(name.data(), &instance);
  return zonKeywordByNameNum(section, name.c_str(), static_cast<unsigned int>(instance));
}

void Print(void* value, const Wanted& wanted) {
  if (wanted.withType) std::cout << KindOf(value) << '\t';
  const bool resolved = wanted.resolved && zonIsFilename(value) != 0;
  std::cout << (resolved ? zonGetFilename(value) : PlainForm(value)) << '\n';
}

}  // namespace

Status Get(const Wanted& wanted) {
  const Source source(wanted.file);
  if (source.Problem() != kFine) return source.Problem();
  void* keyword = FindKeyword(source, wanted.path);
  if (keyword == nullptr) {
    Say(source.From().Name() + ": there is no keyword " + wanted.path);
    return kFindings;
  }
  const auto count = static_cast<unsigned int>(zonGetNoParams(keyword));
  if (wanted.param > count) {
    Say(source.From().Name() + ": " + wanted.path + " has " + std::to_string(count) +
        (count == 1 ? " value" : " values"));
    return kFindings;
  }
  for (unsigned int n = 1; n <= count; ++n) {
    if (wanted.param == 0 || wanted.param == n) Print(zonParamByNum(keyword, n), wanted);
  }
  return kFine;
}

}  // namespace tool
