#include "tool/paths.h"

#include <zon.h>
#include <zonx.h>

#include "tool/source.h"
#include "tool/values.h"

namespace tool {

int Find(void* file, const std::string& path, void** node) {
  return CheckMemory(zonxFind(file, path.c_str(), node));
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

std::string PathOf(void* node) {
  std::vector<void*> nodes;
  for (void* at = node; OwnerOf(at) != nullptr; at = OwnerOf(at)) nodes.push_back(at);
  std::string path;
  for (; !nodes.empty(); nodes.pop_back()) {
    const int kind = zonxGetKind(nodes.back());
    const bool isNamed = kind >= ZONX_SECTION && kind <= ZONX_DEFINITION;
    path +=
        isNamed ? NameOf(nodes.back()) : "[" + std::to_string(zonGetInstanceNo(nodes.back())) + "]";
    if (kind == ZONX_SECTION) path += '/';
  }
  return path;
}

}  // namespace tool
