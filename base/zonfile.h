// Appends whole texts to files. A text is composed first and written in as few calls as possible; a
// regular file that cannot take all of it is cut back. A host that is killed during a call can leave
// the beginning of the text behind.
#ifndef ZON_BASE_ZONFILE_H
#define ZON_BASE_ZONFILE_H

#include <string_view>
#include <vector>

namespace zon {

// A file that is open for writing, created if it was missing.
class OutputFile {
 public:
  enum Mode { kAppend, kReplace };

  OutputFile(const char* name, Mode mode);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  bool IsOpen() const { return file_ >= 0; }

  // Appends the pieces of a text. On failure a regular file is cut back to what it held before,
  // unless another writer has appended to it since.
  bool Write(const std::vector<std::string_view>& pieces);

 private:
  int file_;
};

}  // namespace zon

#endif
