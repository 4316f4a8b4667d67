// Runs a harness with any compiler: replay CORPUS [NUMBER]. The files of the corpus, and as many
// changed copies of them, always the same ones.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <vector>

#include "fuzz.h"

namespace {

std::mt19937 random_number(1);

std::size_t Below(std::size_t end) {
  return random_number() % end;
}

// A few pieces go, come from another file, or are any bytes; one may be long.
std::string Changed(const std::vector<std::string>& corpus) {
  std::string text = corpus[Below(corpus.size())];
  for (std::size_t changes = 1 + Below(5); changes > 0; --changes) {
    const std::string& other = corpus[Below(corpus.size())];
    const std::size_t at = Below(text.size() + 1);
    std::string piece = other.substr(Below(other.size() + 1), Below(Below(8) == 0 ? 200 : 12));
    if (Below(4) == 0) {
      for (char& c : piece) c = static_cast<char>(Below(256));
    }
    text.replace(at, Below(3) == 0 ? Below(12) : 0, piece);
  }
  return text;
}

void Run(const std::string& name, const std::string& text) {
  std::printf("%s\n", name.c_str());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

}  // namespace

int main(int argc, char** argv) {
  const std::filesystem::path folder = argc > 1 ? argv[1] : "";
  std::vector<std::filesystem::path> paths(std::filesystem::directory_iterator(folder), {});
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> corpus;
  for (const auto& path : paths) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    corpus.push_back(text.str());
    Run(path, corpus.back());
  }
  const int number = argc > 2 ? std::atoi(argv[2]) : 0;
  for (int n = 1; n <= number; ++n) Run("changed copy " + std::to_string(n), Changed(corpus));
  return corpus.empty() ? 1 : 0;
}
