#include "support.h"

#include <malloc.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace bench {

bool FileText::Read(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  size = std::filesystem::file_size(path);
  text.reset(new char[size + 1]);  // not initialised: it is filled below
  text[size] = 0;
  std::setvbuf(file, nullptr, _IONBF, 0);
  const bool good = std::fread(text.get(), 1, size, file) == size;
  std::fclose(file);
  return good;
}

double CpuSeconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

namespace {

double ResidentBytes() {
  std::size_t pages = 0;
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file != nullptr) {
    if (std::fscanf(file, "%*u %zu", &pages) != 1) pages = 0;
    std::fclose(file);
  }
  return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double PeakBytes() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

}  // namespace

MemoryUse MemoryOf(const std::function<void()>& load) {
  malloc_trim(0);
  const double before = ResidentBytes();
  load();
  const double after = ResidentBytes();
  // The kernel updates the two counters at different times.
  return {after - before, std::max(PeakBytes(), after) - before};
}

std::map<std::string, MemoryLoad>& MemoryLoads() {
  static std::map<std::string, MemoryLoad> loads;
  return loads;
}

MemoryUse MemoryInChild(const std::string& name, const std::string& warmUp,
                        const std::string& file) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe");
  const std::string command = "'" + program + "' --memory " + name + " " + warmUp + " " + file;
  std::FILE* const output = popen(command.c_str(), "r");
  MemoryUse use;
  const bool good =
      output != nullptr && std::fscanf(output, "%lf %lf", &use.resident, &use.peak) == 2;
  if (output == nullptr || pclose(output) != 0 || !good) {
    throw std::runtime_error("memory cannot be measured");
  }
  return use;
}

double CpuSecondsOf(const std::string& program, std::string argument, const std::string& library) {
  std::string path = std::filesystem::read_symlink("/proc/self/exe").replace_filename(program);
  std::string preload = "LD_PRELOAD=" + library;
  std::vector<char*> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) variables.push_back(*variable);
  variables.push_back(preload.data());
  variables.push_back(nullptr);
  char* const words[] = {path.data(), argument.data(), nullptr};
  pid_t process = 0;
  int status = 0;
  rusage usage = {};
  if (posix_spawn(&process, path.c_str(), nullptr, nullptr, words, variables.data()) != 0 ||
      wait4(process, &status, 0, &usage) != process || status != 0) {
    throw std::runtime_error(program + " failed");
  }
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

int MemoryMain(const std::string& name, const std::string& warmUp, const std::string& file) {
  const MemoryUse use = MemoryLoads().at(name)(warmUp, file);
  std::printf("%.0f %.0f\n", use.resident, use.peak);
  return 0;
}

}  // namespace bench
