// The character source of the token reader: a file with unlimited push-back and exact counters.
//
// One buffer holds both the characters of a block and those put back: a character is put back
// before the unread ones, so there is one place to read from. Invariants: begin_ <= cursor_ <=
// end_, and *end_ is zero, so only a zero can be the end of the buffer.
//
// The counters of characters and of the position are stored as origins and follow from the place of
// the cursor. Only a newline changes an origin, so the scanner may consume a run without newlines
// in one step. Tested by tests/tokens_test.cpp.
#ifndef ZON_TOKENS_ZONINPUT_H
#define ZON_TOKENS_ZONINPUT_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/zonexport.h"

namespace zon {
class InputFile;
class TokenScanner;
}  // namespace zon

/** A counted character source over one file, pipe or device. Its memory does not depend on the
 *  length of the file. */
class ZON_API CzonInput {
 public:
  CzonInput();
  ~CzonInput();
  CzonInput(const CzonInput&) = delete;
  CzonInput& operator=(const CzonInput&) = delete;

  /** Opens a file for reading and resets the input: nothing put back, no characters, line 1,
   *  position 0, previous position 0.
   *  returns  0 open; 2 null name, a directory, or a file that cannot be opened. After 2 the input
   *           is unchanged.
   *  throws   std::bad_alloc, the input unchanged */
  int open(const char* name);

  /** Consumes and counts the next character. Returns 0 to 255, or -1 at the end of the file and
   *  after a read error, which changes no counter. */
  int get() {
    const int c = *cursor_;
    if (c <= '\n') return GetSpecial();  // a newline, a zero, or one of the rare codes between
    ++cursor_;
    return c;
  }

  /** The character that get() would return, not consumed. */
  int peek() {
    if (*cursor_ == 0 && cursor_ == end_ && !Fill()) return -1;
    return *cursor_;
  }

  /** Puts a character back before the unread ones and reverts what get() counted for it; a newline
   *  returns to the line and position before it. Any number may be put back; the last one is read
   *  first. The -1 of the end is no character and must not be put back.
   *  throws  std::bad_alloc, the input unchanged */
  void putback(char c);

  /** Whether reading the file failed. Characters read before are still delivered, then -1. */
  bool Failed() const { return failed_; }

  std::uint32_t Characters() const {  ///< consumed and not put back
    return charactersBefore_ + static_cast<std::uint32_t>(cursor_ - begin_);
  }
  std::uint32_t Lines() const { return lines_; }                         ///< current line, from 1
  std::uint32_t Position() const { return Characters() - lineOrigin_; }  ///< consumed in this line
  /** The position before the last newline that was consumed. */
  std::uint32_t PreviousPosition() const { return previousPosition_; }

 private:
  friend class zon::TokenScanner;  // consumes runs of characters directly from the buffer

  int GetSpecial();
  bool Fill();
  void MakeRoom();
  void Use(std::unique_ptr<unsigned char[]> buffer, std::size_t start, std::size_t size);

  std::unique_ptr<zon::InputFile> file_;  // null when it is closed
  bool failed_ = false;
  std::unique_ptr<unsigned char[]> buffer_;
  unsigned char nothing_ = 0;           // the empty buffer of an input that was never opened
  unsigned char* begin_ = &nothing_;    // of the buffer
  unsigned char* cursor_ = &nothing_;   // the next character
  unsigned char* end_ = &nothing_;      // after the last character; holds a zero
  std::uint32_t charactersBefore_ = 0;  // Characters() if the cursor were at begin_
  std::uint32_t lines_ = 1;
  std::uint32_t lineOrigin_ = 0;  // Characters() at the start of the current line
  std::uint32_t previousPosition_ = 0;
};

#endif
