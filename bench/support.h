// What rows need from the system.
#ifndef ZON_BENCH_SUPPORT_H
#define ZON_BENCH_SUPPORT_H

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace bench {

// A whole file in memory with a zero behind it, for libraries that parse from memory.
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

// What `load` adds to the heap, and to the most that was resident up to its end.
MemoryUse MemoryOf(const std::function<void()>& load);

// The libraries by name: each loads the first file, which draws in its code, and measures the
// other.
using MemoryLoad = std::function<MemoryUse(const std::string& warmUp, const std::string& file)>;
std::map<std::string, MemoryLoad>& MemoryLoads();

// The same in a fresh process, zon_bench --memory NAME WARMUP FILE, for this one has free memory
// left over from other rows.
MemoryUse MemoryInChild(const std::string& name, const std::string& warmUp,
                        const std::string& file);
int MemoryMain(const std::string& name, const std::string& warmUp, const std::string& file);

}  // namespace bench

#endif
