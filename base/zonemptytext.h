// The empty text that exported functions return if there is none. Some return a char*, so a host may
// write into it as into any returned path; the next call clears what was written.
#ifndef ZON_BASE_ZONEMPTYTEXT_H
#define ZON_BASE_ZONEMPTYTEXT_H

#include <cstddef>

namespace zon {

// The characters that every returned path has room for, as hosts append to it.
inline constexpr std::size_t kPathRoom = 260;

inline char* EmpSt() {
  static char empty[kPathRoom + 1];
  empty[0] = '\0';
  return empty;
}

}  // namespace zon

#endif
