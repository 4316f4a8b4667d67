// The text of a file in one piece of memory, read as far as the caller asks for it. The text can
// also be a copy of one that the host has in memory.
//
// What was read never moves, so tokens, names and values can point into it for as long as the
// object lives. A zero byte follows the last one, and kFront bytes precede the first one: a search
// needs no limit, and a look at the byte before any place is allowed. Reading stops where the
// parser stops, so an endless device does not fill the memory.
//
// Tested by tests/load_test.cpp and tests/scanner_test.cpp.
#ifndef ZON_BASE_ZONFILETEXT_H
#define ZON_BASE_ZONFILETEXT_H

#include <cerrno>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "base/zonfile.h"
#include "base/zonlexeme.h"
#include "base/zonlines.h"

namespace zon {

class FileText {
 public:
  static constexpr std::size_t kFront = 16;

  FileText() = default;
  FileText(const FileText&) = delete;
  FileText& operator=(const FileText&) = delete;
  ~FileText() { Release(); }

  bool Open(const char* name) { return file_.Open(name); }
  bool Adopt(int file) { return file_.Adopt(file); }

  // Makes a copy of a text, or of its pieces, the text of the file. Throws std::bad_alloc.
  void Assign(std::string_view text) { Assign(std::vector<std::string_view>{text}); }
  void Assign(const std::vector<std::string_view>& pieces);

  // Reads on; false at the end of the file. Throws std::bad_alloc.
  bool ReadMore();

  // Reads to the end of the file. A pipe or device that delivers too much to be a file, as an
  // endless one does, has failed.
  void ReadAll();

  // What has been read. Both are null before the first ReadMore.
  char* Begin() const { return begin_; }
  char* End() const { return end_; }

  // The same as a text; never null.
  std::string_view View() const {
    return begin_ != nullptr ? TextBetween(begin_, end_) : std::string_view("");
  }

  // Whether a part of the file could not be read.
  bool HasFailed() const { return file_.HasFailed() || isTooLong_; }

  // The errno of the Open or the read that failed; 0 if none did.
  int Error() const { return isTooLong_ ? EFBIG : file_.Error(); }

  // Whether a check may warn of something in the text. Noted by the parser that reads it.
  bool IsSuspect() const { return isSuspect_; }
  void MarkSuspect() { isSuspect_ = true; }

  // The lines of what has been read, made at the first call after which nothing more may be read.
  // Throws std::bad_alloc.
  const LineIndex& Lines();

  void Close() { file_.Close(); }  // there is nothing more to read
  void Release();                  // frees the memory

 private:
  void Reserve(std::size_t size);
  void ReserveAddresses();
  void SetBegin(char* memory);
  void Trim();

  InputFile file_;
  char* memory_ = nullptr;
  std::size_t size_ = 0;   // of the memory
  bool isMapped_ = false;  // by addresses alone: pages are there once they are used
  bool isSuspect_ = false;
  bool isTooLong_ = false;  // the file has grown beyond the memory
  char* begin_ = nullptr;
  char* end_ = nullptr;
  std::unique_ptr<LineIndex> lines_;
};

}  // namespace zon

#endif
