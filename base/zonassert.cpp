#include "base/zonassert.h"

#include <cstdio>
#include <cstdlib>

namespace zon {

void AssertionFailed(const char* source, const char* function, const char* expression) {
  std::fprintf(stderr, "%s: %s: Assertion `%s' failed.\n", source, function, expression);
  std::abort();
}

}  // namespace zon
