// Any bytes for the token reader, which is called again after each error until the end of the file.
#include <algorithm>
#include <iterator>

#include "fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using fuzz::Check;
  const std::string_view text = fuzz::TextOf(data, size);
  void* reader = nullptr;
  Check(zontLoadFile(fuzz::FileOf(text), &reader) == 0, "the file does not open");
  std::size_t calls = 0;
  std::size_t sections = 0;
  std::size_t ended = 0;
  for (int token = -1; token != 0;) {
    token = zontNextToken(reader);
    ++calls;
    if (token == 100) ++sections;
    if (token == 101) ++ended;
    Check(calls <= size + sections + 2, "more calls than the file can need");
    constexpr int kTokens[] = {-1, 0, 100, 101, 200, 1000, 1010, 1011, 1020, 1021, 1030, 1200};
    Check(std::count(std::begin(kTokens), std::end(kTokens), token) == 1, "an unknown token");
    const std::string_view shown = zontGetTokenString(reader);
    const bool hasText = token == -1 || token == 100 || token == 200 || token > 1011;
    Check(shown.size() <= size && (hasText || shown.empty()), "text of a token", shown);
    unsigned line = 0;
    unsigned position = 0;
    const std::string_view message = zontGetError(reader, &line, &position);
    Check(token != -1 || (!message.empty() && line > 0), "an error without a message");
    Check(line <= size + 1 && position <= size, "a place outside the file");
  }
  Check(ended <= sections, "more ends than sections");
  zontDispose(&reader);
  return 0;
}
