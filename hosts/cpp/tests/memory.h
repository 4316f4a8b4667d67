// Counts and refuses what the process requests from operator new, the library included. Not with
// the address sanitizer, which replaces the operators itself.
#ifndef ZON_HOSTS_CPP_TESTS_MEMORY_H
#define ZON_HOSTS_CPP_TESTS_MEMORY_H

#include <limits>

#if defined(__SANITIZE_ADDRESS__)
#define ZON_COUNTS_MEMORY 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZON_COUNTS_MEMORY 0
#endif
#endif
#ifndef ZON_COUNTS_MEMORY
#define ZON_COUNTS_MEMORY 1
#endif

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
