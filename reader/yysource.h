// How the scanner takes characters: from the block of a file, many at a time, or from any other
// source one by one. Both count alike and look alike, so there is one scanner for the two.
#ifndef ZON_READER_YYSOURCE_H
#define ZON_READER_YYSOURCE_H

#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "base/zonchars.h"
#include "reader/yyinput.h"

namespace zon {

// There is no memory to collect the text of a token in.
struct TokenTooLong {};

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
    text_ = {&c, 1};
    Settle();
  }

  // Before the block goes: whenever a source has come to the end of the block, as its next Peek or
  // Take may bring another.
  void Settle() {
    try {
      buffer_.append(text_);
    } catch (const std::bad_alloc&) {
      throw TokenTooLong();
    }
    text_ = std::string_view("");
  }

  std::string_view Text() {
    if (buffer_.empty()) return text_;
    Settle();
    return buffer_;
  }

  // Whether the text lies where the file was read to.
  bool IsInPlace() const { return buffer_.empty(); }

 private:
  std::string_view text_ = "";  // never null: an empty text is given out as characters too
  std::string& buffer_;
};

class StreamSource {
 public:
  explicit StreamSource(CyyStream& stream) : stream_(stream) {}

  // Has the source count up to here. Newlines are always counted at once.
  void Sync() { stream_.Count(); }

  int Peek() { return stream_.next_ < stream_.end_ || stream_.Fill() ? *stream_.next_ : -1; }

  int Take() {
    if (stream_.next_ == stream_.end_ && !stream_.Fill()) return -1;
    if (*stream_.next_ == '\n') return TakeNewline();
    return *stream_.next_++;
  }

  // Puts back what was taken last.
  void Back(int c) {
    if (stream_.next_ != stream_.counted_) {
      --stream_.next_;  // it still stands there, and is no newline
    } else {
      stream_.PutBack(c);
    }
  }

  // Passes over white space and gives the first other character, taken.
  int TakeBehindSpace() {
    for (;;) {
      unsigned char* next = stream_.next_;
      for (; IsClass(*next, kSpace); ++next) {
        if (*next != '\n') continue;
        stream_.next_ = next;
        TakeNewline();
      }
      stream_.next_ = next;
      if (next < stream_.end_) return *stream_.next_++;
      if (!stream_.Fill()) return -1;
    }
  }

  // Takes the character if it stands next, behind blanks at most.
  bool TakeIf(char c) {
    unsigned char* next = stream_.next_;
    while (*next == ' ') ++next;
    if (*next != static_cast<unsigned char>(c)) return false;
    stream_.next_ = next + 1;
    return true;
  }

  // The characters that lie ready.
  std::string_view Ready() const {
    return {reinterpret_cast<const char*>(stream_.next_),
            static_cast<std::size_t>(stream_.end_ - stream_.next_)};
  }

  // Takes those before `end`.
  void TakeUpTo(const char* end, bool hasNewline) {
    unsigned char* const last =
        stream_.next_ + (end - reinterpret_cast<const char*>(stream_.next_));
    while (unsigned char* newline = hasNewline ? Find('\n', last) : nullptr) {
      stream_.next_ = newline;
      TakeNewline();
    }
    stream_.next_ = last;
  }

  // Collects the next character, which is known to be there.
  void CollectOne(Collector& text) {
    text.Add(stream_.next_, stream_.next_ + 1);
    if (++stream_.next_ == stream_.end_) text.Settle();
  }

  void CollectWord(Collector& text) {
    CollectAhead(text, [](const char* at, const char* end) { return WordLength(at, end); });
  }
  void CollectDigits(Collector& text) {
    CollectAhead(text, [](const char* at, const char* end) {
      const char* const start = at;
      while (at < end && IsClass(static_cast<unsigned char>(*at), kDigit)) ++at;
      return static_cast<std::size_t>(at - start);
    });
  }

  // Collects everything up to the character `stop`, which is taken but not collected and given
  // back. -1 at the end of the file; in `lineOnly` a newline ends the search likewise.
  int CollectTo(char stop, bool lineOnly, Collector& text) {
    for (;;) {
      unsigned char* found = Find(stop, stream_.end_);
      unsigned char* last = found != nullptr ? found : stream_.end_;
      while (unsigned char* newline = Find('\n', last)) {
        text.Add(stream_.next_, lineOnly ? newline : newline + 1);
        stream_.next_ = newline;
        TakeNewline();
        if (lineOnly) return '\n';
      }
      text.Add(stream_.next_, last);
      stream_.next_ = found != nullptr ? last + 1 : last;
      if (stream_.next_ == stream_.end_) text.Settle();
      if (found != nullptr) return *last;
      if (!stream_.Fill()) return -1;
    }
  }

  // Passes over the rest of the line, up to its newline.
  void SkipLine() {
    do {
      unsigned char* newline = Find('\n', stream_.end_);
      stream_.next_ = newline != nullptr ? newline : stream_.end_;
    } while (stream_.next_ == stream_.end_ && stream_.Fill());
  }

 private:
  // Collects as many characters as `lengthOf` gives, none of them a newline.
  template <class LengthOf>
  void CollectAhead(Collector& text, LengthOf lengthOf) {
    for (;;) {
      const std::size_t length = lengthOf(reinterpret_cast<const char*>(stream_.next_),
                                          reinterpret_cast<const char*>(stream_.end_));
      text.Add(stream_.next_, stream_.next_ + length);
      stream_.next_ += length;
      if (stream_.next_ < stream_.end_) return;
      text.Settle();
      if (!stream_.Fill()) return;
    }
  }

  unsigned char* Find(char c, const unsigned char* limit) const {
    if (stream_.next_ == limit) return nullptr;
    return static_cast<unsigned char*>(
        std::memchr(stream_.next_, c, static_cast<std::size_t>(limit - stream_.next_)));
  }

  int TakeNewline() {
    stream_.Count();
    stream_.CountNewline();
    stream_.counted_ = ++stream_.next_;
    return '\n';
  }

  CyyStream& stream_;
};

class CallSource {
 public:
  explicit CallSource(CyyInput& input) : input_(input) {}

  void Sync() {}

  int Peek() { return input_.Peek(); }
  int Take() { return input_.GetCh(); }
  void Back(int c) { input_.PutBack(c); }

  int TakeBehindSpace() {
    int c = Take();
    while (IsClass(c, kSpace)) c = Take();
    return c;
  }

  void CollectOne(Collector& text) { text.Add(static_cast<char>(Take())); }

  void CollectWord(Collector& text) { Collect(kWord, text); }
  void CollectDigits(Collector& text) { Collect(kDigit, text); }

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
  void Collect(unsigned classes, Collector& text) {
    int c = Take();
    for (; IsClass(c, classes); c = Take()) text.Add(static_cast<char>(c));
    Back(c);
  }

  CyyInput& input_;
};

}  // namespace zon

#endif
