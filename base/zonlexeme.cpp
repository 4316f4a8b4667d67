// Tested by tests/scanner_test.cpp and tests/clob_test.cpp.
#include "base/zonlexeme.h"

namespace zon {

std::string WithoutDoubled(char delimiter, std::string_view text) {
  std::string single;
  single.reserve(text.size());
  for (;;) {
    const std::size_t found = text.find(delimiter);
    single.append(text.substr(0, found == text.npos ? found : found + 1));
    if (found == text.npos || text.size() - found < 2) return single;
    text.remove_prefix(found + 2);
  }
}

}  // namespace zon
