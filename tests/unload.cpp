// A host that opens and closes the library as a plug-in, again and again: unload LIBRARY FILE. Each
// round loads the file. The mappings of the process must not grow, and texts of the library stay.
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

int CountMappings() {
  std::ifstream maps("/proc/self/maps");
  const std::istreambuf_iterator<char> from(maps), end;
  return static_cast<int>(std::count(from, end, '\n'));
}

const char* version = nullptr;

bool RunRound(const char* library, const char* file) {
  void* opened = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  if (opened == nullptr) return false;
  const auto load = reinterpret_cast<void* (*)(const char*, int)>(dlsym(opened, "zonLoadFile"));
  const auto close = reinterpret_cast<void (*)(void**)>(dlsym(opened, "zonClose"));
  version = reinterpret_cast<const char* (*)()>(dlsym(opened, "zonGetDLLid"))();
  void* handle = load(file, 1);
  if (handle == nullptr) return false;
  close(&handle);
  return dlclose(opened) == 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  int before = 0;
  for (int round = 0; round < 50; ++round) {
    if (!RunRound(arguments[1], arguments[2])) return 2;
    if (round == 4) before = CountMappings();
  }
  const int after = CountMappings();
  std::printf("%d mappings, then %d; %s\n", before, after, version);
  return after <= before && std::strcmp(version, "zon2004") == 0 ? 0 : 1;
}
