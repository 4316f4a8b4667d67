// The empty text that exported functions return where there is none, as some return a char*. A
// caller may write a terminating zero into it; whatever else it wrote is gone at the next question.
#ifndef ZON_BASE_ZONEMPST_H
#define ZON_BASE_ZONEMPST_H

namespace zon {

inline char* EmpSt() {
  static char empty[1];
  empty[0] = '\0';
  return empty;
}

}  // namespace zon

#endif
