// Paths, compared with slow reference functions that work component by component.
#include <unistd.h>

#include "../tests/treetext.h"
#include "fuzz.h"
#include "paths_model.h"

// The first line is the name of the parameter file, the rest is a file name in it. A '~' at the
// start of that is replaced by the working directory.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using fuzz::Check;
  static const host::OneName file;
  static const std::string here = [] {
    char path[4096];
    return std::string(getcwd(path, sizeof path) != nullptr ? path : "/");
  }();
  std::string text(fuzz::TextOf(data, size));
  std::string normal = text;
  _normalizePath(normal);
  Check(normal == model::SlowNormalized(text), normal.c_str(), model::SlowNormalized(text));

  text.resize(std::min(text.find('\0'), text.size()));
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string anchor = text.substr(0, end);
  std::string name = end < text.size() ? text.substr(end + 1) : text;
  if (name[0] == '~') name.replace(0, 1, here);
  const std::string full = model::SlowJoined(here, model::SlowJoined(here, anchor));
  const std::string both = file.Both(name, anchor);
  const std::string slow = model::SlowResolved(name, full) + model::SlowWritten(name, full);
  Check(both == slow, both.c_str(), slow);
  return 0;
}
