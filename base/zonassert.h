// Invariants of the library. A broken one ends the process in every kind of build, as a damaged
// tree would write damaged files. The text names the source, the function and the expression.
// Compatibility: the expression is fixed text, whatever names the code uses.
#ifndef ZON_BASE_ZONASSERT_H
#define ZON_BASE_ZONASSERT_H

namespace zon {

// Writes "<source>: <function>: Assertion `<expression>' failed." to standard error and aborts.
[[noreturn]] void AssertionFailed(const char* source, const char* function, const char* expression);

}  // namespace zon

#define ZON_ASSERT_TEXT(condition, source, text) \
  ((condition) ? static_cast<void>(0) : ::zon::AssertionFailed(source, __PRETTY_FUNCTION__, text))

#endif
