// Counts and refuses what the process requests from operator new, the library included.
#ifndef ZON_HOSTS_CPP_TESTS_MEMORY_H
#define ZON_HOSTS_CPP_TESTS_MEMORY_H

#include <limits>

// Requests since the last reset, and the number of the request that is refused.
struct Memory {
  static inline thread_local long requests = 0;
  static inline thread_local long refused = std::numeric_limits<long>::max();

  static void Refuse(long number) {
    requests = 0;
    refused = number;
  }
  static void Allow() { Refuse(std::numeric_limits<long>::max()); }
};

#endif
