// The characters of a parameter file, counted as they are delivered.
#ifndef ZON_READER_YYINPUT_H
#define ZON_READER_YYINPUT_H

#include <memory>

#include "base/zonexport.h"

namespace zon {
class FileText;
class TextSource;
}  // namespace zon

/** A source of characters. A host may supply its own: it defines Get, Peek and Put, and inherits
 *  the counting. */
class ZON_API CyyInput {
 public:
  CyyInput() = default;
  CyyInput(const CyyInput&) = delete;
  CyyInput& operator=(const CyyInput&) = delete;
  virtual ~CyyInput();

  virtual int Get() = 0;        ///< the next raw character, 0 to 255; -1 at the end
  virtual int Peek() = 0;       ///< the same without consuming it
  virtual void Put(int c) = 0;  ///< pushes one character back

  /** Consumes and counts the next character. Returns it, or -1 at the end. */
  int GetCh();

  /** Pushes a character back and takes back what was counted for it. -1, the end of the input,
   *  cannot be pushed back: it is ignored. */
  void PutBack(int c);

  int GetStatus() const { return status_; }                ///< 1 new, 0 open, 2 could not be opened
  unsigned int GetNoChars() const { return characters_; }  ///< consumed so far
  unsigned int GetNoLines() const { return lines_; }       ///< the current line, from 1
  unsigned int GetPosition() const { return position_; }   ///< characters of this line so far

 protected:
  /** Counts the characters of a text that were consumed at once. */
  void CountText(const char* begin, const char* end);

  int status_ = 1;  ///< as GetStatus returns it

 private:
  unsigned int characters_ = 0;
  unsigned int lines_ = 1;
  unsigned int position_ = 0;
  unsigned int previousPosition_ = 0;  // of the last newline, in case it is pushed back
};

/** A file as a source. Its text is kept in one piece until the stream is deleted; a pipe or a
 *  device is read as far as it is needed. A directory does not open. */
class ZON_API CyyStream : public CyyInput {
 public:
  explicit CyyStream(const char* name);  ///< GetStatus says whether it opened
  ~CyyStream() override;

  int Get() override;
  int Peek() override;
  void Put(int c) override;

  /** Whether the file ended because it could not be read on. */
  bool HasFailed() const;

  /** Closes the file, unless another stream reads it too: the input ends here. The text stays. */
  void Close();

  /** Closes the file and deletes its text, unless another stream reads it too. */
  void Release();

 private:
  friend class zon::TextSource;  // consumes many characters at a time

  // Reads a text that others may read as well, from its beginning.
  explicit CyyStream(std::shared_ptr<zon::FileText> text);

  bool Fill();  // reads on; false at the end of the file

  // Counts what was consumed since the last call. Until then the counters are those of an earlier
  // place, so that the scanner need not look for newlines.
  void Count() {
    CountText(counted_, next_);
    counted_ = next_;
  }

  std::shared_ptr<zon::FileText> text_;
  char* next_;  // the characters that were read and not consumed; a zero follows them
  char* end_;
  const char* counted_;  // up to here they are counted
};

#endif
