// Runs a harness without libFuzzer: replay CORPUS [NUMBER]. The inputs are the files of the corpus,
// then NUMBER mutations of them, the same ones in each run.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <vector>

#include "fuzz.h"

namespace {

using Number = std::function<std::size_t(std::size_t end)>;

// A file with up to five changes: a piece is removed, or inserted from another file or as random
// bytes.
std::string Mutation(const std::vector<std::string>& corpus, const Number& below) {
  std::string text = corpus[below(corpus.size())];
  for (std::size_t changes = 1 + below(5); changes > 0; --changes) {
    const std::string& other = corpus[below(corpus.size())];
    const std::size_t at = below(text.size() + 1), from = below(other.size() + 1);
    std::string piece = other.substr(from, below(below(8) == 0 ? 200 : 12));
    if (below(4) == 0) {
      for (char& c : piece) c = static_cast<char>(below(256));
    }
    text.replace(at, below(3) == 0 ? below(12) : 0, piece);
  }
  return text;
}

void Run(const std::string& text) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

// The same again, with reads of 1 to 600 bytes.
void RunInPieces(const std::string& text) {
  fuzz::largestRead = 1 + text.size() % 600;
  Run(text);
  fuzz::largestRead = 0;
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
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    Run(corpus.back());
    RunInPieces(corpus.back());
  }
  // The current mutation is kept in a file of the working directory, for the case of a crash.
  const std::string name = "changed_" + folder.filename().string();
  const int last = open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  const int number = argc > 2 ? std::atoi(argv[2]) : 0;
  for (int n = 1; n <= number; ++n) {
    std::mt19937 random(static_cast<unsigned>(n));
    const std::string text = Mutation(corpus, [&](std::size_t end) { return random() % end; });
    const auto size = static_cast<ssize_t>(text.size());
    const bool isKept =
        pwrite(last, text.data(), text.size(), 0) == size && ftruncate(last, size) == 0;
    fuzz::Check(isKept, "cannot write", name);
    if (n % 4 == 0) {
      RunInPieces(text);
    } else {
      Run(text);
    }
  }
  return corpus.empty() ? 1 : 0;
}
