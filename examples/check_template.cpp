// Checks a parameter file against its template and prints the report:
//
//     check_template TEMPLATE FILE
//
// Every top-level section is compared with the section of its name in the template. Exit status 1
// if one does not conform, 2 if a file cannot be read.
#include <cstdio>

#include <zon.h>

// Receives the reports of the library: a host defines a function of this name.
extern "C" void ReportHook(const char* pattern, int severity, void*) {
  std::printf("report (severity %d):\n%s\n", severity, pattern);
}

namespace {

void* Load(const char* name) {
  void* file = zonLoadFile(name, 1);
  if (zonGetErrorGlb() == 0) return file;
  unsigned line = 0;
  unsigned position = 0;
  const char* message =
      file != nullptr ? zonGetSyntaxErr(file, &line, &position, nullptr) : "cannot be read";
  std::printf("%s:%u:%u: %s\n", name, line, position, message);
  if (file != nullptr) zonClose(&file);
  return nullptr;
}

bool CheckSections(void* pattern, void* file) {
  bool good = true;
  for (int n = 1; n <= zonGetNoTargets(file); ++n) {
    void* section = zonTargetByNum(file, static_cast<unsigned>(n));
    void* wanted = zonTargetByNameNum(pattern, zonGetName(section), 1);
    const bool conforms = wanted != nullptr && zonEquivalent(wanted, section, nullptr) != 0;
    std::printf("%-12s %s\n", zonGetName(section),
                conforms            ? "conforms"
                : wanted != nullptr ? "differs"
                                    : "is not in the template");
    good = good && conforms;
  }
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s TEMPLATE FILE\n", argv[0]);
    return 2;
  }
  void* pattern = Load(argv[1]);
  void* file = Load(argv[2]);
  int status = 2;
  if (pattern != nullptr && file != nullptr) status = CheckSections(pattern, file) ? 0 : 1;
  if (pattern != nullptr) zonClose(&pattern);
  if (file != nullptr) zonClose(&file);
  return status;
}
