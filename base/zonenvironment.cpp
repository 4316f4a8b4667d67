// The working directory and the local time.
#include "base/zonenvironment.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>

namespace zon {

std::string CurrentDirectory() {
  char common[260];  // most paths fit, so most calls allocate nothing but the result
  if (getcwd(common, sizeof common) != nullptr) return common;
  std::string buffer;
  for (std::size_t room = 1024; errno == ERANGE; room *= 2) {
    buffer.resize(room);
    if (getcwd(buffer.data(), buffer.size()) == nullptr) continue;
    buffer.resize(std::strlen(buffer.c_str()));
    return buffer;
  }
  return {};
}

std::tm LocalTime() {
  std::tm calendar{};
  const std::time_t now = std::time(nullptr);
  // The C library has a lock of its own, but the thread sanitizer does not know it.
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  // localtime_r need not look at TZ; tzset makes a zone that the host has just set count.
  tzset();
  if (localtime_r(&now, &calendar) == nullptr) return std::tm{};
  return calendar;
}

}  // namespace zon
