// A stream that gathers text in memory, in the "C" locale whatever the host's global locale is.
#ifndef ZON_BASE_ZONTEXTB_H
#define ZON_BASE_ZONTEXTB_H

#include <locale>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace zon {

class TextStream : private std::streambuf, public std::ostream {
 public:
  TextStream() : std::ostream(static_cast<std::streambuf*>(this)) {
    std::ostream::imbue(std::locale::classic());
  }

  std::string_view View() const { return text_; }

 private:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    text_.append(text, static_cast<std::size_t>(size));
    return size;
  }
  int overflow(int c) override {
    if (c != std::char_traits<char>::eof()) text_.push_back(static_cast<char>(c));
    return 0;
  }

  std::string text_;
};

}  // namespace zon

#endif
