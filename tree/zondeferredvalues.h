// Values of a keyword that are parsed at their first query. Most values of a file are never
// queried, so the reader only checks their form and stores their text in place of the list of
// children.
//
// DeferredValues has the 16 bytes of an empty list: it counts its text from the base of a source,
// which has the function that makes the nodes. A parse needs one source for each 4 GiB of text.
// Tested by tests/values_test.cpp and fuzz/load_fuzz.cpp.
#ifndef ZON_TREE_ZONDEFERREDVALUES_H
#define ZON_TREE_ZONDEFERREDVALUES_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/zonarena.h"
#include "tree/zonnodefields.h"

class CzonNamedNode;

namespace zon {

// Appends the values of the text to the keyword, in its arena. Throws std::bad_alloc.
using MakeValuesFunction = void (*)(CzonNamedNode& keyword, std::string_view text);

struct DeferralSource {
  MakeValuesFunction make;
  const char* base;
};

// Defers the values of the keywords of one parse.
class ValueDeferral {
 public:
  // The sources are made in the arena, which must live as long as the keywords.
  ValueDeferral(Arena& arena, MakeValuesFunction make) : arena_(arena), make_(make) {}

  // The text must live as long as the keyword, and not be longer than kLongest.
  DeferredValues Defer(std::string_view text) {
    // The distance of a text before the base wraps around to a large one.
    if (source_ == nullptr || Distance(text) > UINT32_MAX) MakeSource(text.data());
    return {source_, static_cast<std::uint32_t>(Distance(text)),
            static_cast<std::uint32_t>(text.size())};
  }

  static constexpr std::size_t kLongest = UINT32_MAX;

 private:
  std::uintptr_t Distance(std::string_view text) const {
    return reinterpret_cast<std::uintptr_t>(text.data()) -
           reinterpret_cast<std::uintptr_t>(source_->base);
  }
  void MakeSource(const char* base);

  Arena& arena_;
  MakeValuesFunction make_;
  const DeferralSource* source_ = nullptr;
};

inline std::string_view TextOf(const DeferredValues& values) {
  return {values.source->base + values.begin, values.size};
}

}  // namespace zon

#endif
