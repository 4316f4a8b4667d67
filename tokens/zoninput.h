/* The character source of the token reader: a file, unlimited push-back and exact counters.
 *
 * One buffer serves both ways: a pushed character is laid down in front of the unread ones, so that
 * reading knows a single place to look at. A zero byte always stands behind the unread ones, so
 * that only a zero can mean that the buffer is used up. Of the counters, characters and position
 * are kept as origins and follow from the place in the buffer: only a newline needs work of its
 * own, and a run without newlines may be taken in one step. Tested by tests/tokens_test.cpp. */
#ifndef ZON_TOKENS_ZONINPUT_H
#define ZON_TOKENS_ZONINPUT_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/zonexport.h"

/** A counted character source over one file. Its memory does not depend on the length of the file,
 *  which may be a pipe or a device as well. */
class ZON_API CzonInput {
 public:
  CzonInput() = default;
  ~CzonInput() { CloseFile(); }
  CzonInput(const CzonInput&) = delete;
  CzonInput& operator=(const CzonInput&) = delete;

  /** Opens a file for reading and starts over: nothing pushed back, no characters, line 1,
   *  position 0, previous position 0.
   *  returns  0 open; 2 null name, a directory, or a file that cannot be opened. After 2 the input
   *           is what it was before.
   *  throws   std::bad_alloc, also without any change */
  int open(const char* name);

  /** Takes the next character and counts it: 0 to 255, or -1 at the end of the file and after a
   *  read error, which change no counter. */
  int get() {
    const int c = *cursor_;
    if (c <= '\n') return GetSpecial();  // newline, zero, or one of the few between them
    ++cursor_;
    return c;
  }

  /** The character that get() would take. */
  int peek() {
    if (*cursor_ == 0 && cursor_ == end_ && !Fill()) return -1;
    return *cursor_;
  }

  /** Puts a character in front of the unread ones and takes back what get() counted for it; a
   *  newline returns to the line and position before it. Any number may be put back, the last one
   *  is read first. The -1 of the end is no character and must not be put back.
   *  throws  std::bad_alloc, without any change */
  void putback(char c);

  /** Whether reading the file failed. What was read before can still be taken, then comes -1. */
  bool Failed() const { return failed_; }

  std::uint32_t Characters() const {  ///< taken and not put back
    return charactersBefore_ + static_cast<std::uint32_t>(cursor_ - begin_);
  }
  std::uint32_t Lines() const { return lines_; }                         ///< current line, from 1
  std::uint32_t Position() const { return Characters() - lineOrigin_; }  ///< taken in this line
  /** The position at which the last newline was taken. */
  std::uint32_t PreviousPosition() const { return previousPosition_; }

 private:
  friend class zontScanner;  // takes runs of characters straight from the buffer

  int GetSpecial();
  bool Fill();
  void MakeRoom();
  void Use(std::unique_ptr<unsigned char[]> buffer, std::size_t start, std::size_t size);
  void CloseFile();

  int file_ = -1;
  bool failed_ = false;
  std::unique_ptr<unsigned char[]> buffer_;
  unsigned char nothing_ = 0;           // what there is to read before a buffer is
  unsigned char* begin_ = &nothing_;    // of the buffer
  unsigned char* cursor_ = &nothing_;   // next character
  unsigned char* end_ = &nothing_;      // behind the last one read; holds a zero
  std::uint32_t charactersBefore_ = 0;  // characters when the cursor stands at the buffer's start
  std::uint32_t lines_ = 1;
  std::uint32_t lineOrigin_ = 0;  // characters when the current line's position was 0
  std::uint32_t previousPosition_ = 0;
};

#endif
