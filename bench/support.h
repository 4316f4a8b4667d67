// Files, time and memory of the process, as the rows need them.
#ifndef ZON_BENCH_SUPPORT_H
#define ZON_BENCH_SUPPORT_H

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace bench {

// A whole file in memory, followed by a zero, for libraries that parse from memory.
struct FileText {
  bool Read(const std::string& path);
  std::unique_ptr<char[]> text;
  std::size_t size = 0;
};

// Processor time of this thread.
double CpuSeconds();

struct MemoryUse {
  double resident = 0;  // in bytes
  double peak = 0;
};

// The resident memory that `load` adds, mapped files included: what remains after it, and the peak.
MemoryUse MemoryOf(const std::function<void()>& load);

// The libraries by name. Each loads the first file, so that its code is resident, and measures the
// second one.
using MemoryLoad = std::function<MemoryUse(const std::string& warmUp, const std::string& file)>;
std::map<std::string, MemoryLoad>& MemoryLoads();

// The same in a new process, zon_bench --memory NAME WARMUP FILE: this one has free memory left
// from other rows.
MemoryUse MemoryInChild(const std::string& name, const std::string& warmUp,
                        const std::string& file);
int MemoryMain(const std::string& name, const std::string& warmUp, const std::string& file);

// Processor time of a new process, from its start to its end. Runs a program of the folder of this
// one; a library that is named is loaded first.
double CpuSecondsOf(const std::string& program, std::string argument, const std::string& library);

}  // namespace bench

#endif
