#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"

namespace tool {

// The library replaces the content of the file that a listing is written to. Standard output may be
// a file that holds other text, so the listing is made in memory and copied.
Status Dump(const std::string& file) {
  const Source source(file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  const int memory = memfd_create("listing", MFD_CLOEXEC);
  if (memory < 0) {
    PrintMessage(std::strerror(errno));
    return kTrouble;
  }
  const std::string path = "/proc/self/fd/" + std::to_string(memory);
  zonDump(source.Root(), path.c_str());
  if (std::ifstream listing(path, std::ios::binary); listing.peek() != EOF) {
    std::cout << listing.rdbuf();
  }
  close(memory);
  return kFine;
}

}  // namespace tool
