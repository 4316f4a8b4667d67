// Writes characters to a stream as they are, without width, fill, locale and sentry: those cost more
// than the short pieces that a tree is written in.
#ifndef ZON_BASE_ZONPUT_H
#define ZON_BASE_ZONPUT_H

#include <ostream>
#include <streambuf>
#include <string_view>

namespace zon {

inline void Put(std::ostream& out, std::string_view text) {
  if (!out.good()) return;
  const auto size = static_cast<std::streamsize>(text.size());
  if (out.rdbuf()->sputn(text.data(), size) != size) out.setstate(std::ios_base::badbit);
}

inline void Put(std::ostream& out, char c) {
  if (!out.good()) return;
  const int put = out.rdbuf()->sputc(c);
  if (put == std::char_traits<char>::eof()) out.setstate(std::ios_base::badbit);
}

}  // namespace zon

#endif
