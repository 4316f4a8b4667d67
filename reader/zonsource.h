// The two kinds of sources that the lexer reads: the text of a file, which is in one piece, and a
// source of the host, which delivers one character at a time. Both have the same functions, so the
// lexer is one template over them.
//
// A token text begins at BeginText and consists of what is consumed from there on. In a file it is
// a range of the file's own text; from a source of the host it is collected in a buffer.
#ifndef ZON_READER_ZONSOURCE_H
#define ZON_READER_ZONSOURCE_H

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "base/zonlexeme.h"
#include "reader/yyinput.h"

namespace zon {

// There is no memory to collect the text of a token in.
struct TokenTooLong {};

class TextSource {
 public:
  static constexpr bool kStays = true;  // token texts live as long as the source

  explicit TextSource(CyyStream& stream) : stream_(stream) {}

  // A stream that reads a text from its beginning.
  static std::unique_ptr<CyyStream> MakeStream(std::shared_ptr<FileText> text) {
    return std::unique_ptr<CyyStream>(new CyyStream(std::move(text)));
  }

  // Brings the counters of the stream up to date.
  void Count() { stream_.Count(); }

  int Peek() { return stream_.Peek(); }
  int Get() {
    if (stream_.next_ == stream_.end_ && !stream_.Fill()) return -1;
    return static_cast<unsigned char>(*stream_.next_++);
  }
  // Takes the last character back, unless that was the end.
  void PutBack(int c) {
    if (c >= 0) --stream_.next_;
  }

  // Consumes white space and the character after it, which is returned.
  int GetAfterSpace() {
    for (;;) {
      char* next = stream_.next_;
      while (IsClass(*next, kSpace)) ++next;
      stream_.next_ = next;
      if (next < stream_.end_) return static_cast<unsigned char>(*stream_.next_++);
      if (!stream_.Fill()) return -1;
    }
  }

  void BeginText() { start_ = stream_.next_; }
  void CollectOne() { ++stream_.next_; }
  void CollectWord() {
    do {
      Consume(SkipWord(stream_.next_, stream_.end_));
    } while (stream_.next_ == stream_.end_ && stream_.Fill());
  }
  // Consumes everything up to the character and the character itself, which is not part of the
  // text. If `inLine`, a newline ends the search. Returns the character that ended it, -1 at the
  // end.
  int CollectTo(char stop, bool inLine) {
    for (;;) {
      const char* found = FindChar(stop, stream_.next_, stream_.end_);
      const char* limit = found != nullptr ? found : stream_.end_;
      const char* newline = inLine ? FindChar('\n', stream_.next_, limit) : nullptr;
      if (newline != nullptr) found = newline;
      Consume(found != nullptr ? found : limit);
      end_ = stream_.next_;
      if (found != nullptr) return Get();
      if (!stream_.Fill()) return -1;
    }
  }
  // The text up to the last character consumed, and up to the character that CollectTo found.
  std::string_view Text() const { return Range(stream_.next_); }
  std::string_view TextBeforeStop() const { return Range(end_); }

  void SkipLine() {
    do {
      const char* newline = FindChar('\n', stream_.next_, stream_.end_);
      Consume(newline != nullptr ? newline : stream_.end_);
    } while (stream_.next_ == stream_.end_ && stream_.Fill());
  }

  // The text of a stream.
  static FileText& TextOf(const CyyStream& stream) { return *stream.text_; }
  static const std::shared_ptr<FileText>& ShareText(const CyyStream& stream) {
    return stream.text_;
  }

  // Gives a stream that was read another, empty text.
  static void Detach(CyyStream& stream, std::shared_ptr<FileText> empty) {
    stream.Release();
    stream.text_ = std::move(empty);
  }

  // The next character, and reading on from another place, whose characters are not counted.
  const char* At() const { return stream_.next_; }
  void MoveTo(const char* at) {
    Consume(at);
    stream_.counted_ = stream_.next_;
  }

  // What was read and not consumed, and consuming it up to a place.
  std::string_view Ready() const { return TextBetween(stream_.next_, stream_.end_); }
  void Consume(const char* end) { stream_.next_ += end - stream_.next_; }

 private:
  std::string_view Range(const char* end) const { return TextBetween(start_, end); }

  CyyStream& stream_;
  const char* start_ = nullptr;
  const char* end_ = nullptr;
};

class CallSource {
 public:
  static constexpr bool kStays = false;

  CallSource(CyyInput& input, std::string& buffer) : input_(input), buffer_(buffer) {}

  void Count() {}
  const char* At() const { return nullptr; }

  int Peek() { return input_.Peek(); }
  int Get() { return input_.GetCh(); }
  void PutBack(int c) { input_.PutBack(c); }

  int GetAfterSpace() {
    int c = Get();
    while (c >= 0 && IsClass(c, kSpace)) c = Get();
    return c;
  }

  void BeginText() { buffer_.clear(); }
  void CollectOne() { Append(Get()); }
  void CollectWord() {
    int c = Get();
    for (; IsClass(c, kWord); c = Get()) Append(c);
    PutBack(c);
  }
  int CollectTo(char stop, bool inLine) {
    int c = Get();
    for (; c >= 0 && c != static_cast<unsigned char>(stop) && !(inLine && c == '\n'); c = Get()) {
      Append(c);
    }
    size_ = buffer_.size();
    if (c >= 0) Append(c);
    return c;
  }
  std::string_view Text() const { return buffer_; }
  std::string_view TextBeforeStop() const { return std::string_view(buffer_).substr(0, size_); }

  void SkipLine() {
    int c = Get();
    while (c >= 0 && c != '\n') c = Get();
    PutBack(c);
  }

 private:
  void Append(int c) {
    try {
      buffer_.push_back(static_cast<char>(c));
    } catch (const std::bad_alloc&) {
      throw TokenTooLong();
    }
  }

  CyyInput& input_;
  std::string& buffer_;
  std::size_t size_ = 0;
};

}  // namespace zon

#endif
