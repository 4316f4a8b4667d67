// The rows of a library, by templates, so that every library does the same work.
//
// A library is represented by a class whose destructor frees all memory. It has the members that
// its rows use:
//   static constexpr Format kFormat;
//   bool Load(const std::string& path);
//   void Read(Totals& totals);  // every value
//   double LookUp(const std::string& section, const std::string& keyword);
//   double Find(const Place& place);  // the first value: a number, 1 for true, a text's length
//   void Build(const Section& root);
//   bool Write(const std::string& path);
#ifndef ZON_BENCH_ROWS_H
#define ZON_BENCH_ROWS_H

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <exception>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>

#include "content.h"
#include "support.h"

namespace bench {

using Sizes = std::initializer_list<const char*>;

inline void Require(bool holds, const char* otherwise) {
  if (!holds) throw std::runtime_error(otherwise);
}

// Adds a column with the time of one value.
inline void PerValue(benchmark::State& state, std::size_t values) {
  state.counters["per_value"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(values),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

inline void Rates(benchmark::State& state, const Source& source) {
  PerValue(state, source.totals.Values());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(source.bytes));
}

// Adds a row. An exception of the run becomes the error of the row.
template <class Run>
benchmark::internal::Benchmark* AddRow(const std::string& name, Run run) {
  return benchmark::RegisterBenchmark(name.c_str(),
                                      [run](benchmark::State& state) {
                                        try {
                                          run(state);
                                        } catch (const std::exception& error) {
                                          state.SkipWithError(error.what());
                                        }
                                      })
      ->Unit(benchmark::kMicrosecond);
}

// Adds a row of new processes that load one file and end.
inline void AddFirst(const std::string& name, const std::string& program, Format format,
                     const std::string& library = {}) {
  const auto run = [=](benchmark::State& state) {
    const Source& source = SourceOf(format, "100KB");
    for (auto _ : state) {
      state.SetIterationTime(CpuSecondsOf(program, source.files.front(), library));
    }
    Rates(state, source);
  };
  AddRow("first/" + name + "/100KB", run)->UseManualTime();
}

template <class Library>
class Rows {
 public:
  explicit Rows(const std::string& name) : name_(name) {}

  // Loads the files and frees their trees.
  Rows& Load(Sizes sizes) {
    return Add("load", sizes, [](benchmark::State& state, const Source& source) {
      // Once per run: compares the loaded values with the content.
      static std::set<const Source*> checked;
      if (checked.insert(&source).second) Check(source.files, source);
      for (auto _ : state) {
        for (const std::string& file : source.files) {
          Library library;
          LoadInto(library, file);
        }
      }
      Rates(state, source);
    });
  }

  // The same, and reads every value once.
  Rows& Read(Sizes sizes) {
    return Add("read", sizes, [](benchmark::State& state, const Source& source) {
      for (auto _ : state) Check(source.files, source);
      Rates(state, source);
    });
  }

  // Frees loaded trees; only that is timed.
  Rows& Free(Sizes sizes) {
    const auto run = [](benchmark::State& state, const Source& source) {
      for (auto _ : state) {
        double seconds = 0;
        for (const std::string& file : source.files) {
          std::optional<Library> library(std::in_place);
          LoadInto(*library, file);
          const double start = CpuSeconds();
          library.reset();
          seconds += CpuSeconds() - start;
        }
        state.SetIterationTime(seconds);
      }
      Rates(state, source);
    };
    return Add("free", sizes, run,
               [](benchmark::internal::Benchmark* row) { row->UseManualTime()->Iterations(10); });
  }

  // Finds a number by the names of its section and keyword.
  Rows& LookUp(Sizes sizes) {
    return Add("lookup", sizes, [](benchmark::State& state, const Source& source) {
      Library library;
      LoadInto(library, source.files.front());
      for (const Path& path : source.paths) {
        const double found = library.LookUp(path.section, path.keyword);
        Require(std::abs(found - path.number) <= 1e-9 * std::abs(path.number),
                "a look-up found a wrong number");
      }
      std::size_t at = 0;
      double sum = 0;
      for (auto _ : state) {
        const Path& path = source.paths[at];
        if (++at == source.paths.size()) at = 0;
        sum += library.LookUp(path.section, path.keyword);
      }
      benchmark::DoNotOptimize(sum);
      PerValue(state, 1);
    });
  }

  // Finds the keywords of all sections, in random order, and gets their first values.
  Rows& Find(Sizes sizes) {
    return Add("find", sizes, [](benchmark::State& state, const Source& source) {
      std::vector<Library> libraries(source.files.size());
      for (std::size_t n = 0; n < libraries.size(); ++n) LoadInto(libraries[n], source.files[n]);
      for (const Place& place : source.places) {
        const Value& first = place.first;
        const double wanted =
            first.kind < Kind::kString ? first.number : static_cast<double>(first.text.size());
        const double found = libraries[place.file].Find(place);
        Require(std::abs(found - wanted) <= 1e-9 * std::abs(wanted), "a wrong value was found");
      }
      std::size_t at = 0;
      double sum = 0;
      for (auto _ : state) {
        const Place& place = source.places[at];
        if (++at == source.places.size()) at = 0;
        sum += libraries[place.file].Find(place);
      }
      benchmark::DoNotOptimize(sum);
      PerValue(state, 1);
    });
  }

  // Writes loaded trees to new files. A first write is not timed: it does what a library defers.
  Rows& Write(Sizes sizes) {
    return Add("write", sizes, [](benchmark::State& state, const Source& source) {
      std::vector<Library> libraries(source.files.size());
      std::vector<std::string> targets;
      for (std::size_t n = 0; n < libraries.size(); ++n) {
        LoadInto(libraries[n], source.files[n]);
        targets.push_back(TemporaryFile("written" + std::to_string(n)));
        WriteFrom(libraries[n], targets[n]);
      }
      for (auto _ : state) {
        for (std::size_t n = 0; n < libraries.size(); ++n) WriteFrom(libraries[n], targets[n]);
      }
      Check(targets, source);
      Rates(state, source);
    });
  }

  // Loads a file, writes it to another one and frees the tree.
  Rows& Rewrite(Sizes sizes) {
    return Add("rewrite", sizes, [](benchmark::State& state, const Source& source) {
      const std::string target = TemporaryFile("rewritten");
      for (auto _ : state) {
        Library library;
        LoadInto(library, source.files.front());
        WriteFrom(library, target);
      }
      Rates(state, source);
    });
  }

  // Builds a tree call by call, writes it to a new file and frees it.
  Rows& Build(Sizes sizes) {
    const std::string name = name_;
    for (const char* const size : sizes) {
      AddRow("build/" + name + "/" + size, [size](benchmark::State& state) {
        const Section model = Models(size).front();
        const Source& source = SourceOf(Library::kFormat, size);
        const std::string target = TemporaryFile("built");
        for (auto _ : state) {
          Library library;
          library.Build(model);
          WriteFrom(library, target);
        }
        Check({target}, source);
        PerValue(state, source.totals.Values());
      });
    }
    return *this;
  }

  // Resident memory after a load, and its peak during the load.
  Rows& Memory(Sizes sizes) {
    MemoryLoads()[name_] = [](const std::string& warmUp, const std::string& file) {
      Library().Load(warmUp);
      Library library;
      return MemoryOf([&] { LoadInto(library, file); });
    };
    const auto run = [name = name_](benchmark::State& state, const Source& source) {
      const Source& small = SourceOf(Library::kFormat, "100KB");
      MemoryUse use;
      for (auto _ : state) use = MemoryInChild(name, small.files.front(), source.files.front());
      const auto values = static_cast<double>(source.totals.Values());
      state.counters["resident_per_value"] = use.resident / values;
      state.counters["peak_per_value"] = use.peak / values;
    };
    return Add("memory", sizes, run,
               [](benchmark::internal::Benchmark* row) { row->Iterations(1); });
  }

 private:
  template <class Run>
  Rows& Add(const std::string& action, Sizes sizes, Run run,
            void (*configure)(benchmark::internal::Benchmark*) = nullptr) {
    for (const char* const size : sizes) {
      if (!HasSize(size)) continue;
      auto* const row = AddRow(
          action + "/" + name_ + "/" + size,
          [run, size](benchmark::State& state) { run(state, SourceOf(Library::kFormat, size)); });
      if (configure != nullptr) configure(row);
    }
    return *this;
  }

  static void LoadInto(Library& library, const std::string& file) {
    Require(library.Load(file), "cannot load");
  }

  static void WriteFrom(Library& library, const std::string& file) {
    unlink(file.c_str());
    Require(library.Write(file), "cannot write");
  }

  static void Check(const std::vector<std::string>& files, const Source& source) {
    Totals totals;
    for (const std::string& file : files) {
      Library library;
      LoadInto(library, file);
      library.Read(totals);
    }
    Require(totals.Near(source.totals), "the values differ from the content");
  }

  std::string name_;
};

}  // namespace bench

#endif
