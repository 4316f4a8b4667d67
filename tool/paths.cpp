#include "tool/paths.h"

#include <new>

#include <zonx.h>

namespace tool {

int Find(void* file, const std::string& path, void** node) {
  const int status = zonxFind(file, path.c_str(), node);
  if (status == ZONX_NO_MEMORY) throw std::bad_alloc();
  return status;
}

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

}  // namespace tool
