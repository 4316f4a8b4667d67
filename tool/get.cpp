#include <cstring>
#include <iostream>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

// Whether behind each ':' a number ends the element.
bool IsSound(const std::string& path) {
  for (std::size_t at = path.find(':'); at != std::string::npos; at = path.find(':', at)) {
    const std::size_t digits = at + 1;
    at = path.find_first_not_of("0123456789", digits);
    const bool ends = at == std::string::npos || path[at] == '/' || path[at] == '.';
    if (at == digits || digits == path.size() || !ends) return false;
  }
  return true;
}

// The keyword at the end of a path; null for a miss.
void* FindKeyword(const Source& source, const std::string& path) {
  const std::size_t last = path.find_last_of("/.");
  if (last == std::string::npos) return nullptr;
  void* section = zonFindSectionByHandle(source.File(), path.substr(0, last).c_str());
  if (section == nullptr) return nullptr;
  std::string name = path.substr(last + 1) + '\0';
  int instance = 1;
  splitElement(name.data(), &instance);
  const char* wanted = std::strcmp(name.c_str(), "()") == 0 ? "" : name.c_str();
  return zonKeywordByNameNum(section, wanted, static_cast<unsigned int>(instance));
}

Status SayMissing(const Source& source, const std::string& path) {
  const bool isSection = zonFindSectionByHandle(source.File(), path.c_str()) != nullptr;
  Say(source.From().Name() + ": " +
      (isSection ? path + " is a section" : "there is no keyword " + path));
  return kFindings;
}

void Print(void* value, const Wanted& wanted) {
  if (wanted.withType) std::cout << KindOf(value) << '\t';
  const bool resolved = wanted.resolved && zonIsFilename(value) != 0;
  std::cout << (resolved ? zonGetFilename(value) : PlainForm(value)) << '\n';
}

}  // namespace

Status Get(const Wanted& wanted) {
  if (!IsSound(wanted.path)) {
    Say(wanted.path + ": behind ':' stands a number");
    return kTrouble;
  }
  const Source source(wanted.file);
  if (source.Problem() != kFine) return source.Problem();
  void* keyword = FindKeyword(source, wanted.path);
  if (keyword == nullptr) return SayMissing(source, wanted.path);
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
