// Files of the system. A text is composed first and appended in as few calls as possible; a regular
// file that cannot take all of it is cut back. A host that is killed during a call can leave the
// beginning of the text in the file.
#ifndef ZON_BASE_ZONFILE_H
#define ZON_BASE_ZONFILE_H

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/zondescriptor.h"

namespace zon {

// A file that is open for reading: a regular file, a pipe or a device, but no directory.
class InputFile {
 public:
  bool Open(const char* name);

  // Takes over what an open has just returned: a descriptor, or -1 and an errno.
  bool Adopt(int file);

  bool IsOpen() const { return file_.IsOpen(); }

  // The size that the system reports; 0 if unknown, as for a pipe. Only a hint: a file may grow.
  std::size_t Size() const { return size_; }

  // Reads up to `size` bytes and returns how many. 0 at the end and on failure, which close the
  // file, and for a closed file.
  std::size_t Read(char* room, std::size_t size);

  // Whether the last read failed. What was read before is only a part of the file.
  bool HasFailed() const { return failed_; }

  // Whether it is a character device.
  bool IsDevice() const { return isDevice_; }

  // The errno of the Open or Read that failed; 0 if none did.
  int Error() const { return error_; }

  void Close() { file_.Close(); }

 private:
  Descriptor file_;
  std::size_t size_ = 0;
  int error_ = 0;
  bool failed_ = false;
  bool isDevice_ = false;
};

// A file that is open for writing, created if it was missing.
class OutputFile {
 public:
  enum Mode { kAppend, kReplace };

  OutputFile(const char* name, Mode mode);

  bool IsOpen() const { return file_.IsOpen(); }

  // Appends the pieces of a text. On failure a regular file is cut back to what it held before,
  // unless another writer has appended to it since.
  bool Write(const std::vector<std::string_view>& pieces);

 private:
  Descriptor file_;
};

}  // namespace zon

#endif
