// Runs a harness over the files of the named folders: the corpus, with any compiler.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz.h"

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> paths;
  for (int n = 1; n < argc; ++n) {
    if (!std::filesystem::is_directory(argv[n])) {
      paths.emplace_back(argv[n]);
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[n])) paths.push_back(entry);
  }
  std::sort(paths.begin(), paths.end());
  for (const auto& path : paths) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  return paths.empty() ? 1 : 0;
}
