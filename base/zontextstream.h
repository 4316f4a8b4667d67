// A stream that collects text in memory, in the "C" locale whatever locale the host has set. The
// text is a list of growing pieces: appending never copies what was written before.
#ifndef ZON_BASE_ZONTEXTSTREAM_H
#define ZON_BASE_ZONTEXTSTREAM_H

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>
#include <locale>
#include <new>
#include <ostream>
#include <streambuf>
#include <string_view>
#include <vector>

#include "base/zonchunk.h"

namespace zon {

class TextStream : private std::streambuf, public std::ostream {
 public:
  TextStream() : std::ostream(static_cast<std::streambuf*>(this)) {
    std::ostream::imbue(std::locale::classic());
  }
  ~TextStream() override {
    for (const Piece& piece : pieces_) ReleaseChunk(piece.start, piece.room);
  }
  TextStream(const TextStream&) = delete;
  TextStream& operator=(const TextStream&) = delete;

  // The pieces of the text, in order. Valid until more is written.
  std::vector<std::string_view> Pieces() const {
    std::vector<std::string_view> views;
    for (const Piece& piece : pieces_) views.emplace_back(piece.start, piece.size);
    if (!views.empty()) views.back() = {pbase(), static_cast<std::size_t>(pptr() - pbase())};
    return views;
  }

 private:
  struct Piece {
    char* start;
    std::size_t room;
    std::size_t size;  // of all but the last piece
  };

  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (size == 0) return 0;
    if (size > epptr() - pptr()) Grow(static_cast<std::size_t>(size));
    std::memcpy(pptr(), text, static_cast<std::size_t>(size));
    Advance(size);
    return size;
  }
  int overflow(int c) override {
    if (c == std::char_traits<char>::eof()) return 0;
    Grow(1);
    return sputc(std::char_traits<char>::to_char_type(c));
  }

  void Advance(std::streamsize size) {
    constexpr std::streamsize kStep = INT_MAX;
    for (; size > kStep; size -= kStep) pbump(INT_MAX);
    pbump(static_cast<int>(size));
  }

  void Grow(std::size_t more) {
    pieces_.reserve(pieces_.size() + 1);
    const std::size_t common = kChunkSizes[std::min(pieces_.size(), std::size(kChunkSizes) - 1)];
    std::size_t room = std::max(more, common);
    auto* start = static_cast<char*>(AllocateChunk(room));
    if (start == nullptr) throw std::bad_alloc();
    if (!pieces_.empty()) pieces_.back().size = static_cast<std::size_t>(pptr() - pbase());
    pieces_.push_back({start, room, 0});
    setp(start, start + room);
  }

  std::vector<Piece> pieces_;
};

}  // namespace zon

#endif
