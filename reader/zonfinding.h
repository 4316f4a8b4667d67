// What the checker finds in a text: errors and warnings, each with the range of the text where the
// mistake is.
#ifndef ZON_READER_ZONFINDING_H
#define ZON_READER_ZONFINDING_H

#include <cstddef>
#include <string>

namespace zon {

// A range of the text; no place if `begin` is null.
struct Span {
  const char* begin = nullptr;
  const char* end = nullptr;

  std::size_t Size() const { return static_cast<std::size_t>(end - begin); }
};

enum class Severity { kError = 0, kWarning = 1, kNote = 2 };

struct Finding {
  Severity severity = Severity::kError;
  const char* rule = "";  // a word that never changes, such as "unclosed-section"
  std::string message;    // one line
  std::string hint;       // what to do about it
  Span place;
  Span related;
  std::string relatedMessage;
};

// Where the loader notices the first error, as zonGetSyntaxErr returns it.
struct FirstError {
  std::string message;  // empty if there is no error
  unsigned int line = 0;
  unsigned int position = 0;
  const char* at = nullptr;
};

}  // namespace zon

#endif
