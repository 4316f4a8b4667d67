// The empty texts that exported functions return if there is none.
#ifndef ZON_BASE_ZONEMPTYTEXT_H
#define ZON_BASE_ZONEMPTYTEXT_H

#include <cstddef>

namespace zon {

// The room of every returned path, because hosts append to it.
inline constexpr std::size_t kPathRoom = 260;

// For functions that return a const char*. One text for all threads, because a pointer that a
// thread got stays valid after the thread. Only read here, unless a host in a language without
// const wrote into it: then the next call empties it.
inline const char* EmpSt() {
  static char empty[kPathRoom + 1];
  if (empty[0] != '\0') empty[0] = '\0';
  return empty;
}

// For functions that return a char*: a host can write into it as into any path, so each thread has
// its own, which ends with the thread. Each call empties it again.
inline char* EmptyPath() {
  static thread_local char empty[kPathRoom + 1];
  empty[0] = '\0';
  return empty;
}

}  // namespace zon

#endif
