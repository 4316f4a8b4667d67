#include <iostream>
#include <new>
#include <string>

#include <zon.h>

#include "tool/commands.h"
#include "tool/source.h"

namespace tool {

Status Results(const std::string& file) {
  const Source source(file);
  if (source.GetStatus() != kFine) return source.GetStatus();
  std::string path(256, '\0');
  int outcome;
  while ((outcome = zonGetResultFolderPath2(source.Root(), path.data(),
                                            static_cast<int>(path.size()))) == -1) {
    path.resize(2 * path.size());
  }
  if (outcome != 0) throw std::bad_alloc();
  std::cout << path.c_str() << '\n';
  return kFine;
}

}  // namespace tool
