// Reads parameter files and prints their content, or the error of a file that does not load:
//
//     read_file FILE...     every section, keyword and value with its kind
//     read_file FOLDER      the number of files, sections, keywords and values of each kind
//
// Exit status 1 if a file could not be read.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <zon.h>

namespace {

const char* KindOf(void* value) {
  switch (zonGetSyntaxClass(value)) {
    case 6:
      return "integer";
    case 7:
      return "real";
    case 8:
      return "boolean";
    case 9:
      return "string";
    case 10:
      return zonIsFilename(value) ? "file name" : "date-time";
    case 11:
      return "default";
    case 12:
      return "substitution";
    case 14:
      return "unknown";
    case 15:
      return "undefined";
    default:
      return "other";
  }
}

std::string ShowValue(void* value) {
  char text[64];
  if (zonIsString(value)) return std::string("'") + zonGetString(value) + "'";
  if (zonIsBool(value)) return zonGetBool(value) ? "true" : "false";
  if (zonIsFilename(value))
    return std::string(zonGetFilenameString(value)) + " -> " + zonGetFilename(value);
  if (zonNumericIsIntType(value)) {
    std::snprintf(text, sizeof text, "%d", zonGetInt(value));
    return text;
  }
  if (zonIsNumeric(value)) {
    std::snprintf(text, sizeof text, "%.16g", zonGetDouble(value));
    return text;
  }
  return {};
}

void ShowKeyword(void* keyword) {
  std::printf("%s", zonGetNameGlb(keyword));
  if (zonGetNoInstances(keyword) > 1) std::printf(" #%d", zonGetInstanceNo(keyword));
  std::printf(":\n");
  for (int n = 1; n <= zonGetNoParams(keyword); ++n) {
    void* value = zonParamByNum(keyword, static_cast<unsigned>(n));
    const std::string shown = ShowValue(value);
    std::printf("    %s%s%s\n", KindOf(value), shown.empty() ? "" : " ", shown.c_str());
  }
}

void ShowSection(void* section) {
  for (int n = 1; n <= zonGetNoKeywords(section); ++n) {
    ShowKeyword(zonKeywordByNum(section, static_cast<unsigned>(n)));
  }
  for (int n = 1; n <= zonGetNoSections(section); ++n) {
    ShowSection(zonSectionByNum(section, static_cast<unsigned>(n)));
  }
}

// Loads a file and prints its error, if there is one, as "file:line:position: message".
void* Load(const char* file, bool* faulty) {
  void* handle = zonLoadFile(file, 1);
  if (handle == nullptr) {
    std::printf("%s: %s\n", file, zonGetErrorMessageFromErrorCode(zonGetErrorGlb()));
    *faulty = true;
    return nullptr;
  }
  unsigned line = 0;
  unsigned position = 0;
  const char* message = zonGetSyntaxErr(handle, &line, &position, nullptr);
  if (*message != '\0') {
    std::printf("%s:%u:%u: %s\n", file, line, position, message);
    *faulty = true;
  }
  zonGetErrorGlb();
  return handle;
}

bool ShowFile(const char* file) {
  bool faulty = false;
  void* handle = Load(file, &faulty);
  if (zonGetRoot(handle) != nullptr) {
    std::printf("%s: %u characters, %u lines, %u comments, %d top-level sections\n", file,
                zonNoChars(handle), zonNoLines(handle), zonNoComments(handle),
                zonGetNoTargets(handle));
    ShowSection(zonGetRoot(handle));
  }
  if (handle != nullptr) zonClose(&handle);
  zonGetErrorGlb();
  return !faulty;
}

std::map<std::string, int> counts;

void Count(CzonNode* visited) {
  void* node = visited;
  if (zonIsParam(node)) {
    ++counts["values"];
    ++counts[std::string("  ") + KindOf(node)];
  } else {
    ++counts[zonIsKeyword(node) ? "keywords" : "sections"];
  }
}

bool CountFolder(const char* folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".zon") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  bool faulty = false;
  for (const std::string& file : files) {
    void* handle = Load(file.c_str(), &faulty);
    if (zonGetRoot(handle) != nullptr) zonExplore(handle, Count);
    if (handle != nullptr) zonClose(&handle);
    zonGetErrorGlb();
  }
  std::printf("%s: %zu files\n", folder, files.size());
  for (const auto& [what, count] : counts) std::printf("%-16s %d\n", what.c_str(), count);
  return !faulty;
}

}  // namespace

int main(int argc, char** argv) {
  bool good = argc > 1;
  for (int n = 1; n < argc; ++n) {
    const bool folder = std::filesystem::is_directory(argv[n]);
    good = (folder ? CountFolder(argv[n]) : ShowFile(argv[n])) && good;
  }
  return good ? 0 : 1;
}
