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

// The listing goes over whatever its target holds, and what stands behind standard output is not
// ours alone: so it is made in memory.
Status Dump(const std::string& file) {
  const Source source(file);
  if (source.Problem() != kFine) return source.Problem();
  const int memory = memfd_create("listing", MFD_CLOEXEC);
  if (memory < 0) {
    Say(std::strerror(errno));
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
