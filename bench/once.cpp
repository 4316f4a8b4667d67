// Repeats one action, for tools that count instructions. The difference of two runs with different
// TIMES does not contain the start-up.
//
//     zon_once load|read|write|lookup|find TIMES [SIZE]
//
// SIZE is one of content.h. Prints the number of values that one repetition processes.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "zonrows.h"

namespace {

using Libraries = std::vector<bench::Zon>;

bool Load(const bench::Source& source, Libraries& libraries) {
  bool good = true;
  for (std::size_t n = 0; n < libraries.size(); ++n) {
    good = libraries[n].Load(source.files[n]) && good;
  }
  return good;
}

bool Read(const bench::Source& source, Libraries& libraries) {
  bench::Totals totals;
  for (bench::Zon& zon : libraries) zon.Read(totals);
  return totals.Near(source.totals);
}

bool Write(Libraries& libraries, int time) {
  bool good = true;
  for (std::size_t n = 0; n < libraries.size(); ++n) {
    const std::string name = "written" + std::to_string(time) + "-" + std::to_string(n);
    good = libraries[n].Write(bench::TemporaryFile(name)) && good;
  }
  return good;
}

bool LookUp(const bench::Source& source, Libraries& libraries) {
  bool good = true;
  for (const bench::Path& path : source.paths) {
    good = libraries.front().LookUp(path.section, path.keyword) == path.number && good;
  }
  return good;
}

bool Find(const bench::Source& source, Libraries& libraries) {
  double sum = 0;
  for (const bench::Place& place : source.places) sum += libraries[place.file].Find(place);
  return sum != 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string action = count >= 3 ? arguments[1] : "";
  const int times = count >= 3 ? std::atoi(arguments[2]) : 0;
  const bench::Source& source =
      bench::SourceOf(bench::Format::kZon, count == 4 ? arguments[3] : "1MB");
  std::size_t values = source.totals.Values();
  if (action == "lookup") values = source.paths.size();
  if (action == "find") values = source.places.size();

  bool good = times > 0;
  if (action == "load" || action == "read") {
    for (int n = 0; n < times; ++n) {
      Libraries libraries(source.files.size());
      good = Load(source, libraries) && good;
      if (action == "read") good = Read(source, libraries) && good;
    }
  } else {
    Libraries libraries(source.files.size());
    good = Load(source, libraries) && good;
    for (int n = 0; n < times; ++n) {
      if (action == "write") {
        good = Write(libraries, n) && good;
      } else if (action == "lookup") {
        good = LookUp(source, libraries) && good;
      } else {
        good = action == "find" && Find(source, libraries) && good;
      }
    }
  }
  if (good) std::printf("%zu\n", values);
  return good ? 0 : 1;
}
