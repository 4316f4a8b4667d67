// The characters of a parameter file, counted as they are delivered.
#ifndef ZON_READER_YYINPUT_H
#define ZON_READER_YYINPUT_H

#include <cstddef>

#include "base/zonexport.h"
#include "base/zonstore.h"

namespace zon {
class StreamSource;
}

/** A source of characters. A host may supply its own: Get, Peek and Put are all that a source has
 *  to know; the counting is done here. */
class ZON_API CyyInput {
 public:
  CyyInput() = default;
  CyyInput(const CyyInput&) = delete;
  CyyInput& operator=(const CyyInput&) = delete;
  virtual ~CyyInput();

  virtual int Get() = 0;        ///< the next raw character, 0 to 255; -1 at the end
  virtual int Peek() = 0;       ///< the same without consuming it
  virtual void Put(int c) = 0;  ///< pushes one character back

  /** Get, counted. */
  int GetCh() {
    const int c = Get();
    if (c == '\n') {
      CountNewline();
    } else if (c >= 0) {
      CountRun(1);
    }
    return c;
  }

  /** Put, uncounted again. The end of the input cannot be put back: -1 is ignored. */
  void PutBack(int c);

  int GetStatus() const { return status_; }                ///< 1 new, 0 open, 2 could not be opened
  unsigned int GetNoChars() const { return characters_; }  ///< all that were taken so far
  unsigned int GetNoLines() const { return lines_; }       ///< the current line, from 1
  unsigned int GetPosition() const { return position_; }   ///< characters of this line so far

  // For scanners that take many characters at a time: a run without a newline, and a newline.
  void CountRun(std::size_t length) {
    characters_ += static_cast<unsigned int>(length);
    position_ += static_cast<unsigned int>(length);
  }
  void CountNewline() {
    ++characters_;
    ++lines_;
    previousPosition_ = position_;
    position_ = 0;
  }

 protected:
  int status_ = 1;  // as GetStatus gives it

 private:
  unsigned int characters_ = 0;
  unsigned int lines_ = 1;
  unsigned int position_ = 0;
  unsigned int previousPosition_ = 0;  // of the line that ended last, should its newline come back
};

/** A file as a source. It is read in large blocks, from pipes and devices as well, and closed at
 *  its end. A directory does not open. */
class ZON_API CyyStream : public CyyInput {
 public:
  explicit CyyStream(const char* name);  ///< see GetStatus for how it went
  ~CyyStream() override;

  int Get() override;
  int Peek() override;
  void Put(int c) override;

  /** Whether the file ended because it could not be read on. */
  bool HasFailed() const { return failed_; }

  /** From now on what is read stays in memory, in the store or as long as the stream: who scans it
   *  may leave texts where they were read. */
  void KeepBlocks(zon::Store& store) { keeper_ = &store; }

  /** Ends the input here: gives back the file, and its memory unless that is to be kept. */
  void Close();

 private:
  friend class zon::StreamSource;  // scans many characters at a time

  static constexpr std::size_t kPutBackRoom = 16;  // in front of a block

  bool Fill();  // the next piece of the file; false at its end
  void StartBlock(zon::Store& store);
  void ReleaseBlock();  // the stream is at its end from now on
  void CloseFile();

  // Counts what has been scanned since it was last counted, up to here.
  void Count() {
    CountRun(static_cast<std::size_t>(next_ - counted_));
    counted_ = next_;
  }

  zon::Store ownBlock_;
  zon::Store* keeper_ = nullptr;  // of further blocks; null to fill the one block again and again
  std::size_t size_ = 0;
  unsigned char* block_ = nullptr;          // room for size_ characters and a zero
  unsigned char* next_ = nullptr;           // the characters that lie ready; behind them a zero,
  unsigned char* end_ = nullptr;            // so that a search for other characters needs no limit
  const unsigned char* counted_ = nullptr;  // up to here they are counted
  int file_ = -1;
  bool failed_ = false;
};

#endif
