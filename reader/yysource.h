// How the scanner takes characters: from the block of a file, many at a time, or from any other
// source one by one. Both count alike and look alike, so there is one scanner for the two.
#ifndef ZON_READER_YYSOURCE_H
#define ZON_READER_YYSOURCE_H

#include <cstring>
#include <string>
#include <string_view>

#include "base/zonchars.h"
#include "reader/yyinput.h"

namespace zon {

// The text of the token at hand. While it lies whole in the block of the file it is only looked at
// there; a text in several pieces is put together in a buffer.
class Collector {
 public:
  explicit Collector(std::string& buffer) : buffer_(buffer) { buffer_.clear(); }

  void Add(const unsigned char* start, const unsigned char* end) {
    const std::string_view piece(reinterpret_cast<const char*>(start),
                                 static_cast<std::size_t>(end - start));
    if (text_.empty() && buffer_.empty()) {
      text_ = piece;
    } else if (text_.data() + text_.size() == piece.data()) {
      text_ = {text_.data(), text_.size() + piece.size()};
    } else {
      Settle();
      text_ = piece;
    }
  }

  void Add(char c) {
    Settle();
    buffer_.push_back(c);
  }

  // Before the block goes: whenever a source has come to the end of the block, as its next Peek or
  // Take may bring another.
  void Settle() {
    buffer_.append(text_);
    text_ = {};
  }

  std::string_view Text() {
    if (buffer_.empty()) return text_;
    Settle();
    return buffer_;
  }

 private:
  std::string_view text_;
  std::string& buffer_;
};

class StreamSource {
 public:
  explicit StreamSource(CyyStream& stream)
      : stream_(stream), next_(stream.Next()), end_(stream.End()), counted_(next_) {}
  ~StreamSource() { Sync(); }
  StreamSource(const StreamSource&) = delete;
  StreamSource& operator=(const StreamSource&) = delete;

  // Between these two others may read from the file.
  void Sync() {
    CountTo(next_);
    stream_.MoveTo(next_);
  }
  void Resume() {
    counted_ = next_ = stream_.Next();
    end_ = stream_.End();
  }

  int Peek() { return next_ < end_ || Refill() ? *next_ : -1; }

  int Take() {
    if (next_ == end_ && !Refill()) return -1;
    if (*next_ == '\n') return TakeNewline();
    return *next_++;
  }

  // Puts back what was taken last.
  void Back(int c) {
    if (next_ != counted_) {
      --next_;  // it still stands there, and is no newline, as newlines are counted at once
    } else {
      Sync();
      stream_.PutBack(c);
      Resume();
    }
  }

  // Passes over white space and gives the first other character, taken.
  int TakeBehindSpace() {
    for (;;) {
      for (; next_ < end_; ++next_) {
        const int c = *next_;
        if (!IsClass(c, kSpace)) {
          ++next_;
          return c;
        }
        if (c == '\n') {
          CountTo(next_);
          stream_.CountNewline();
          counted_ = next_ + 1;
        }
      }
      if (!Refill()) return -1;
    }
  }

  // Collects the next character, which is known to be there.
  void CollectOne(Collector& text) {
    text.Add(next_, next_ + 1);
    if (++next_ == end_) text.Settle();
  }

  // Collects characters of these classes, which hold no newline.
  void Collect(unsigned classes, Collector& text) {
    for (;;) {
      const unsigned char* start = next_;
      while (next_ < end_ && IsClass(*next_, classes)) ++next_;
      text.Add(start, next_);
      if (next_ < end_) return;
      text.Settle();
      if (!Refill()) return;
    }
  }

  // Collects everything up to the character `stop`, which is taken but not collected and given
  // back. -1 at the end of the file; in `lineOnly` a newline ends the search likewise.
  int CollectTo(char stop, bool lineOnly, Collector& text) {
    for (;;) {
      const auto length = static_cast<std::size_t>(end_ - next_);
      const void* found = length != 0 ? std::memchr(next_, stop, length) : nullptr;
      const auto* last = found != nullptr ? static_cast<const unsigned char*>(found) : end_;
      while (const unsigned char* newline = FindNewline(last)) {
        text.Add(next_, lineOnly ? newline : newline + 1);
        next_ = newline;
        TakeNewline();
        if (lineOnly) return '\n';
      }
      text.Add(next_, last);
      next_ = last;
      if (found != nullptr) ++next_;
      if (next_ == end_) text.Settle();
      if (found != nullptr) return *last;
      if (!Refill()) return -1;
    }
  }

  // Passes over the rest of the line, up to its newline.
  void SkipLine() {
    do {
      const unsigned char* newline = FindNewline(end_);
      next_ = newline != nullptr ? newline : end_;
    } while (next_ == end_ && Refill());
  }

 private:
  const unsigned char* FindNewline(const unsigned char* limit) const {
    if (next_ == limit) return nullptr;
    return static_cast<const unsigned char*>(
        std::memchr(next_, '\n', static_cast<std::size_t>(limit - next_)));
  }

  void CountTo(const unsigned char* place) {
    stream_.CountRun(static_cast<std::size_t>(place - counted_));
    counted_ = place;
  }

  int TakeNewline() {
    CountTo(next_);
    stream_.CountNewline();
    counted_ = ++next_;
    return '\n';
  }

  bool Refill() {
    Sync();
    const bool more = stream_.Fill();
    Resume();
    return more;
  }

  CyyStream& stream_;
  const unsigned char* next_;
  const unsigned char* end_;
  const unsigned char* counted_;  // up to here the source has counted
};

class CallSource {
 public:
  explicit CallSource(CyyInput& input) : input_(input) {}

  void Sync() {}
  void Resume() {}

  int Peek() { return input_.Peek(); }
  int Take() { return input_.GetCh(); }
  void Back(int c) { input_.PutBack(c); }

  int TakeBehindSpace() {
    int c = Take();
    while (IsClass(c, kSpace)) c = Take();
    return c;
  }

  void CollectOne(Collector& text) { text.Add(static_cast<char>(Take())); }

  void Collect(unsigned classes, Collector& text) {
    int c = Take();
    for (; IsClass(c, classes); c = Take()) text.Add(static_cast<char>(c));
    Back(c);
  }

  int CollectTo(char stop, bool lineOnly, Collector& text) {
    int c = Take();
    for (; c >= 0 && c != static_cast<unsigned char>(stop) && !(lineOnly && c == '\n');
         c = Take()) {
      text.Add(static_cast<char>(c));
    }
    return c;
  }

  void SkipLine() {
    int c = Take();
    while (c >= 0 && c != '\n') c = Take();
    Back(c);
  }

 private:
  CyyInput& input_;
};

}  // namespace zon

#endif
