// The rows of the library.
//
//     zon_bench [--benchmark_filter=...]
//
// A row is named by action, library and size of the content: load/zon/1MB.
#include <random>

#include "rows.h"
#include "zonrows.h"
#include "zonxrows.h"

namespace bench {
namespace {

// Every token of a file.
void Tokens(benchmark::State& state, const char* size) {
  const Source& source = SourceOf(Format::kZonTokens, size);
  for (auto _ : state) {
    void* reader = nullptr;
    Require(zontLoadFile(source.files.front().c_str(), &reader) == 0, "cannot open");
    std::size_t values = 0;
    for (int token; (token = zontNextToken(reader)) != 0;) {
      if (token < 0) break;
      if (token >= 1000) ++values;
      benchmark::DoNotOptimize(zontGetTokenString(reader));
    }
    zontDispose(&reader);
    Require(values == source.totals.Values(), "the number of tokens is wrong");
  }
  Rates(state, source);
}

// A section of many keywords, compared with itself as the template.
void Compare(benchmark::State& state, int count) {
  void* handle = zonCreate();
  zonAddTarget(handle, "A");
  for (int n = 0; n < count; ++n) {
    zonAddKeyword(handle, ("keyword" + std::to_string(n)).c_str());
    zonAddInt(handle, 1);
  }
  void* section = zonTargetByNum(handle, 1);
  bool equal = true;
  for (auto _ : state) equal = zonEquivalent(section, section, nullptr) != 0 && equal;
  zonClose(&handle);
  Require(equal, "a section differs from itself");
  PerValue(state, static_cast<std::size_t>(count));
}

// One keyword of a hundred thousand reals.
void Numbers(benchmark::State& state, int digits) {
  constexpr int kCount = 100000;
  std::mt19937_64 random(1);
  std::string text = "[A]\nk = 0";
  for (int n = 1; n < kCount; ++n) {
    char number[40];
    std::snprintf(number, sizeof number, ", %.*g", digits,
                  std::uniform_real_distribution<double>(0, 1e6)(random));
    text += number;
  }
  const std::string file = TemporaryFile("numbers");
  Require(WriteText(file, text + "\nEndSect\n"), "cannot write content");
  for (auto _ : state) {
    Zon zon;
    Require(zon.Load(file), "cannot load");
  }
  PerValue(state, kCount);
}

void AddRows() {
  Rows<Zon>("zon")
      .Load({"100KB", "1MB", "10MB", "50MB", "small", "settings", "settings1MB", "settings10MB"})
      .Read({"100KB", "1MB", "10MB", "small", "settings", "settings1MB", "settings10MB"})
      .Free({"100KB", "1MB", "10MB"})
      .LookUp({"100KB", "1MB"})
      .Find({"settings", "settings1MB", "settings10MB"})
      .Write({"100KB", "1MB", "10MB", "settings", "settings1MB"})
      .Rewrite({"1MB", "10MB"})
      .Build({"100KB", "1MB"})
      .Memory({"100KB", "10MB", "settings10MB"});
  // Loaded first, the library is found at once, as an installed one is. In a folder of its own it
  // would be looked for some forty times, once for each kind of processor.
  AddFirst("zon", "zon_first", Format::kZon, ZON_BENCH_LIBRARY);
  AddFirst("zon-c", "zon_first_c", Format::kZon, ZON_BENCH_LIBRARY);
  for (const char* const size : {"100KB", "1MB", "10MB"}) {
    AddRow("tokens/zon/" + std::string(size), [size](auto& state) { Tokens(state, size); });
  }
  for (const int count : {1000, 100000}) {
    AddRow("compare/zon/" + std::to_string(count), [count](auto& state) { Compare(state, count); });
  }
  for (const int digits : {5, 17}) {
    AddRow("numbers/zon/" + std::to_string(digits) + "digits",
           [digits](auto& state) { Numbers(state, digits); });
  }
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) {
  bench::AddRows();
  bench::AddZonxRows();
  bench::AddHppRows();
  bench::AddEditRows();
  if (count == 5 && std::string(arguments[1]) == "--memory") {
    return bench::MemoryMain(arguments[2], arguments[3], arguments[4]);
  }
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
