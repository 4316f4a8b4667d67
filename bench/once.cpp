// Repeats one action, for tools that count instructions. The difference of two runs with different TIMES
// does not contain the start-up.
//
//     zon_once load|read|write|lookup TIMES
//
// Prints the number of values that one repetition processes.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "zonrows.h"

namespace {

bool Load(const bench::Source& source) {
  bench::Zon zon;
  return zon.Load(source.files.front());
}

}  // namespace

int main(int count, char** arguments) {
  const char* const action = count == 3 ? arguments[1] : "";
  const int times = count == 3 ? std::atoi(arguments[2]) : 0;
  const bench::Source& source = bench::SourceOf(bench::Format::kZon, "1MB");
  std::size_t values = source.totals.Values();
  bool good = times > 0;

  if (std::strcmp(action, "load") == 0) {
    for (int n = 0; n < times; ++n) good = Load(source) && good;
  } else if (std::strcmp(action, "read") == 0) {
    for (int n = 0; n < times; ++n) {
      bench::Zon zon;
      bench::Totals totals;
      good = zon.Load(source.files.front()) && good;
      zon.Read(totals);
      good = totals.Near(source.totals) && good;
    }
  } else if (std::strcmp(action, "write") == 0) {
    bench::Zon zon;
    good = zon.Load(source.files.front()) && good;
    for (int n = 0; n < times; ++n) {
      good = zon.Write(bench::TemporaryFile("written" + std::to_string(n))) && good;
    }
  } else if (std::strcmp(action, "lookup") == 0) {
    bench::Zon zon;
    good = zon.Load(source.files.front()) && good;
    values = source.paths.size();
    for (int n = 0; n < times; ++n) {
      for (const bench::Path& path : source.paths) {
        good = zon.LookUp(path.section, path.keyword) == path.number && good;
      }
    }
  } else {
    good = false;
  }
  if (good) std::printf("%zu\n", values);
  return good ? 0 : 1;
}
