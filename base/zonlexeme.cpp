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

const char* SkipComment(const char* at, const char* end) {
  if (at == end) return at;
  const bool hasTwo = end - at >= 2;
  if (*at == ';' || (hasTwo && at[0] == '/' && at[1] == '/')) {
    const char* const newline = FindChar('\n', at, end);
    return newline != nullptr ? newline : end;
  }
  if (!hasTwo || at[0] != '/' || at[1] != '*') return at;
  int depth = 1;
  for (at += 2; depth > 0 && end - at >= 2;) {
    const bool opens = at[0] == '/' && at[1] == '*';
    const bool closes = at[0] == '*' && at[1] == '/';
    depth += opens ? 1 : closes ? -1 : 0;
    at += opens || closes ? 2 : 1;
  }
  return depth > 0 ? end : at;
}

const char* SkipGaps(const char* at, const char* end) {
  for (;;) {
    at = SkipSpace(at, end);
    const char* const next = SkipComment(at, end);
    if (next == at) return at;
    at = next;
  }
}

}  // namespace zon
