// Writes characters to a stream as they are, without width, fill, locale and sentry: those cost
// more than the short pieces that a tree is written in. Short texts are stored in the room of the
// buffer, as a character is, so they cost no call either.
#ifndef ZON_BASE_ZONPUT_H
#define ZON_BASE_ZONPUT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace zon {

// Copies up to 16 characters by at most two moves, which may overlap.
inline void CopyShort(char* to, std::string_view text) {
  const std::size_t size = text.size();
  const auto both = [&](auto word) {
    auto last = word;
    std::memcpy(&word, text.data(), sizeof word);
    std::memcpy(&last, text.data() + size - sizeof last, sizeof last);
    std::memcpy(to, &word, sizeof word);
    std::memcpy(to + size - sizeof last, &last, sizeof last);
  };
  if (size >= 8) return both(std::uint64_t{});
  if (size >= 4) return both(std::uint32_t{});
  if (size >= 2) return both(std::uint16_t{});
  if (size == 1) *to = text[0];
}

// The room of a buffer, which only a derived class may use.
class BufferRoom : public std::streambuf {
 public:
  static constexpr std::size_t kMost = 16;

  // Appends a text of up to kMost characters; false if there is no room for it.
  static bool Append(std::streambuf& buffer, std::string_view text) {
    char* const next = (buffer.*&BufferRoom::pptr)();
    const char* const end = (buffer.*&BufferRoom::epptr)();
    if (end - next < static_cast<std::ptrdiff_t>(text.size())) return false;
    CopyShort(next, text);
    (buffer.*&BufferRoom::pbump)(static_cast<int>(text.size()));
    return true;
  }
};

inline void Put(std::ostream& out, std::string_view text) {
  if (!out.good()) return;
  std::streambuf& buffer = *out.rdbuf();
  if (text.size() <= BufferRoom::kMost && BufferRoom::Append(buffer, text)) return;
  const auto size = static_cast<std::streamsize>(text.size());
  if (buffer.sputn(text.data(), size) != size) out.setstate(std::ios_base::badbit);
}

inline void Put(std::ostream& out, char c) {
  if (!out.good()) return;
  const int put = out.rdbuf()->sputc(c);
  if (put == std::char_traits<char>::eof()) out.setstate(std::ios_base::badbit);
}

}  // namespace zon

#endif
