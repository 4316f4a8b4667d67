// Files, time and memory of the process, as the rows need them.
#ifndef ZON_BENCH_SUPPORT_H
#define ZON_BENCH_SUPPORT_H

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace bench {

// A whole file in memory, with a terminating zero, for libraries that parse from memory.
struct FileText {
  bool Read(const std::string& path);
  std::unique_ptr<char[]> text;
  std::size_t size = 0;
};

// Processor time of this thread.
double CpuSeconds();

struct MemoryUse {
  double heap = 0;  // in bytes
  double peak = 0;
};

// Runs `load`. Returns by how much the heap grew, and the peak of resident memory above its start.
MemoryUse MemoryOf(const std::function<void()>& load);

// The libraries by name. Each loads the first file, so that its code is resident, and measures the
// load of the second.
using MemoryLoad = std::function<MemoryUse(const std::string& warmUp, const std::string& file)>;
std::map<std::string, MemoryLoad>& MemoryLoads();

// The same in a new process, `zon_bench --memory NAME WARMUP FILE`: in this one memory that other rows
// freed would be used again.
MemoryUse MemoryInChild(const std::string& name, const std::string& warmUp,
                        const std::string& file);
int MemoryMain(const std::string& name, const std::string& warmUp, const std::string& file);

}  // namespace bench

#endif
