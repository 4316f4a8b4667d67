// A stream that gathers text in memory, in the "C" locale whatever the host's global locale is.
#ifndef ZON_BASE_ZONTEXTB_H
#define ZON_BASE_ZONTEXTB_H

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <new>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace zon {

class TextStream : private std::streambuf, public std::ostream {
 public:
  TextStream() : std::ostream(static_cast<std::streambuf*>(this)) {
    std::ostream::imbue(std::locale::classic());
  }

  ~TextStream() override { std::free(text_); }
  TextStream(const TextStream&) = delete;
  TextStream& operator=(const TextStream&) = delete;

  std::string_view View() const { return {text_, Size()}; }

 private:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (size > epptr() - pptr()) Grow(static_cast<std::size_t>(size));
    std::memcpy(pptr(), text, static_cast<std::size_t>(size));
    setp(pptr() + size, epptr());
    return size;
  }
  int overflow(int c) override {
    if (c == std::char_traits<char>::eof()) return 0;
    Grow(1);
    return sputc(std::char_traits<char>::to_char_type(c));
  }

  std::size_t Size() const { return static_cast<std::size_t>(pptr() - text_); }

  // By realloc, which moves the pages of a long text instead of copying them.
  void Grow(std::size_t more) {
    const std::size_t size = Size();
    const std::size_t room = std::max(size + more, 2 * static_cast<std::size_t>(epptr() - text_));
    void* text = room > size ? std::realloc(text_, room) : nullptr;
    if (text == nullptr) throw std::bad_alloc();
    text_ = static_cast<char*>(text);
    setp(text_ + size, text_ + room);
  }

  char* text_ = nullptr;  // between it and pptr() stands what was put
};

}  // namespace zon

#endif
