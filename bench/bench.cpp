// How fast the library is. Every row reports the time of one operation on made-up but ordinary
// content: names of 3 to 24 letters, 1 to 12 values a keyword, three levels, a fixed seed.
//
//     zon_bench [--benchmark_filter=...]
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <zon.h>

namespace {

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  struct Content {
    std::string text;
    std::size_t values = 0;
    std::vector<std::pair<std::string, std::string>>
        paths;  // section, keyword in its first subsection
  };

  Content Make(std::size_t size) {
    Content content;
    while (content.text.size() < size) AddTarget(content);
    return content;
  }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

  std::string Name() {
    std::string name;
    for (int length = Number(3, 24); length > 0; --length) {
      name += static_cast<char>(Number(0, 1) ? Number('a', 'z') : Number('A', 'Z'));
    }
    return name;
  }

  std::string Value() {
    const int kind = Number(1, 20);
    char text[40];
    if (kind <= 7) return std::to_string(Number(-100000, 100000));
    if (kind <= 15) {
      std::snprintf(text, sizeof text, "%.*f", Number(1, 8), Number(-100000000, 100000000) / 1e4);
      return text;
    }
    if (kind <= 17) return Number(0, 1) ? "true" : "false";
    if (kind <= 19) return "'" + Name() + "'";
    return "|" + Name() + "/" + Name() + "|";
  }

  void AddTarget(Content& content) {
    const std::string target = Name();
    content.text += "[" + target + "]\n";
    for (int sections = Number(1, 6); sections > 0; --sections) {
      content.text += "   [" + Name() + "]\n";
      for (int keywords = Number(1, 8); keywords > 0; --keywords) AddKeyword(content);
      content.text += "   EndSect\n\n";
    }
    const std::string keyword = "k" + Name();
    content.text += "   " + keyword + " = 2.5\nEndSect\n\n";
    ++content.values;
    content.paths.emplace_back(target, keyword);
  }

  void AddKeyword(Content& content) {
    content.text += "      " + Name() + " = ";
    for (int values = Number(1, 12); values > 0; --values) {
      content.text += Value() + (values > 1 ? ", " : "\n");
      ++content.values;
    }
  }

  std::mt19937 random_;
};

// A made-up file of about `size` bytes, written once.
struct TestFile {
  explicit TestFile(std::size_t size) : content(Generator(1).Make(size)) {
    char name[] = "/tmp/zon-bench-XXXXXX";
    const int file = mkstemp(name);
    if (file >= 0) close(file);
    path = name;
    std::ofstream(path, std::ios::binary) << content.text;
  }
  ~TestFile() { unlink(path.c_str()); }

  Generator::Content content;
  std::string path;
};

void Rates(benchmark::State& state, const TestFile& file) {
  const auto rounds = static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(rounds) *
                          static_cast<std::int64_t>(file.content.text.size()));
  // Time of one value: the inverse of a rate.
  state.counters["per_value"] =
      benchmark::Counter(rounds * static_cast<double>(file.content.values),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void LoadAndClose(benchmark::State& state) {
  const TestFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    void* handle = zonLoadFile(file.path.c_str(), 1);
    zonClose(&handle);
  }
  Rates(state, file);
}

void CloseAlone(benchmark::State& state) {
  const TestFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    void* handle = zonLoadFile(file.path.c_str(), 1);
    state.ResumeTiming();
    zonClose(&handle);
  }
  Rates(state, file);
}

// Heap in use by one loaded file.
void Memory(benchmark::State& state) {
  const TestFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const struct mallinfo2 before = mallinfo2();
    void* handle = zonLoadFile(file.path.c_str(), 1);
    const struct mallinfo2 after = mallinfo2();
    const auto bytes = static_cast<double>(after.uordblks + after.hblkhd) -
                       static_cast<double>(before.uordblks + before.hblkhd);
    state.counters["bytes_per_value"] = bytes / static_cast<double>(file.content.values);
    zonClose(&handle);
  }
}

// From section name and keyword name to a double, through the checked interface.
void LookUp(benchmark::State& state) {
  const TestFile file(static_cast<std::size_t>(state.range(0)));
  void* handle = zonLoadFile(file.path.c_str(), 1);
  std::size_t at = 0;
  double sum = 0;
  for (auto _ : state) {
    const auto& [section, keyword] = file.content.paths[at];
    at = (at + 1) % file.content.paths.size();
    void* target = zonTargetByNameNum(handle, section.c_str(), 1);
    void* found = zonKeywordByNameNum(target, keyword.c_str(), 1);
    sum += zonGetDouble(zonParamByNum(found, 1));
  }
  benchmark::DoNotOptimize(sum);
  zonClose(&handle);
}

// One keyword of a hundred thousand reals.
void Numbers(benchmark::State& state) {
  constexpr int kCount = 100000;
  std::mt19937_64 random(1);
  std::string text = "[A]\nk = 0";
  for (int n = 1; n < kCount; ++n) {
    char number[40];
    std::snprintf(number, sizeof number, ", %.*g", static_cast<int>(state.range(0)),
                  std::uniform_real_distribution<double>(0, 1e6)(random));
    text += number;
  }
  text += "\nEndSect\n";
  char name[] = "/tmp/zon-bench-XXXXXX";
  const int file = mkstemp(name);
  if (file >= 0) close(file);
  std::ofstream(name, std::ios::binary) << text;
  for (auto _ : state) {
    void* handle = zonLoadFile(name, 1);
    zonClose(&handle);
  }
  unlink(name);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(text.size()));
  state.counters["per_value"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kCount,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The written form of a loaded tree, into a fresh file each time.
void Write(benchmark::State& state) {
  const TestFile file(static_cast<std::size_t>(state.range(0)));
  const std::string target = file.path + ".out";
  void* handle = zonLoadFile(file.path.c_str(), 1);
  for (auto _ : state) {
    unlink(target.c_str());
    zonWrite(handle, target.c_str());
  }
  unlink(target.c_str());
  zonClose(&handle);
  Rates(state, file);
}

// Builds a tree of `range` keywords with a real and an integer each, and closes it.
void Build(benchmark::State& state) {
  for (auto _ : state) {
    void* handle = zonCreate();
    zonAddTarget(handle, "A");
    for (std::int64_t n = 0; n < state.range(0); ++n) {
      char name[32];
      std::snprintf(name, sizeof name, "keyword%ld", static_cast<long>(n));
      zonAddKeyword(handle, name);
      zonAddDouble(handle, 0.25 * static_cast<double>(n));
      zonAddInt(handle, static_cast<int>(n));
    }
    zonClose(&handle);
  }
  state.counters["per_value"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * 2 * static_cast<double>(state.range(0)),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Every token of a file; its rate in bytes is that of the file.
void Tokens(benchmark::State& state) {
  const TestFile file(static_cast<std::size_t>(state.range(0)));
  std::size_t tokens = 0;
  for (auto _ : state) {
    void* reader = nullptr;
    if (zontLoadFile(file.path.c_str(), &reader) != 0) return state.SkipWithError("cannot open");
    for (; zontNextToken(reader) > 0; ++tokens) {
      benchmark::DoNotOptimize(zontGetTokenString(reader));
    }
    zontDispose(&reader);
  }
  state.counters["tokens"] =
      benchmark::Counter(static_cast<double>(tokens), benchmark::Counter::kIsRate);
  Rates(state, file);
}

// A section of `range` keywords against itself as the template.
void Compare(benchmark::State& state) {
  void* handle = zonCreate();
  zonAddTarget(handle, "A");
  for (std::int64_t n = 0; n < state.range(0); ++n) {
    zonAddKeyword(handle, ("keyword" + std::to_string(n)).c_str());
    zonAddInt(handle, 1);
  }
  void* section = zonTargetByNum(handle, 1);
  for (auto _ : state) {
    if (!zonEquivalent(section, section, nullptr)) return state.SkipWithError("differs");
  }
  zonClose(&handle);
}

BENCHMARK(LoadAndClose)->Arg(10000)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(CloseAlone)->Arg(1000000)->Iterations(50)->Unit(benchmark::kMicrosecond);
BENCHMARK(Memory)->Arg(1000000)->Arg(10000000)->Iterations(3);
BENCHMARK(LookUp)->Arg(1000000);
BENCHMARK(Write)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Build)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Tokens)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Compare)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Numbers)->Arg(5)->Arg(17)->Unit(benchmark::kMicrosecond);

}  // namespace
