// The empty text that exported functions return if there is none. Some return a char*: a host can
// write into it as into any path. Each call empties it again.
#ifndef ZON_BASE_ZONEMPTYTEXT_H
#define ZON_BASE_ZONEMPTYTEXT_H

#include <cstddef>

namespace zon {

// The room of every returned path, because hosts append to it.
inline constexpr std::size_t kPathRoom = 260;

// The text is not thread_local: a pointer that a thread got stays valid after the thread. Unless a
// host writes into it, it is only read here, by several threads at a time if they ask.
inline char* EmpSt() {
  static char empty[kPathRoom + 1];
  if (empty[0] != '\0') empty[0] = '\0';
  return empty;
}

}  // namespace zon

#endif
