// Whole texts into files. A text is handed over in as few calls as it takes; a file that cannot
// take all of it keeps what it had.
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

  // Writes the pieces of a text behind what the file holds. On failure a regular file is cut back
  // to what it held, unless somebody else has written to it meanwhile; a kill of the host leaves
  // there all of the text or nothing.
  bool Write(const std::vector<std::string_view>& pieces);

 private:
  int file_;
};

}  // namespace zon

#endif
