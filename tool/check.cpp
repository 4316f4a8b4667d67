#include <algorithm>

#include "tool/commands.h"
#include "tool/source.h"

namespace tool {

Status Check(const std::vector<std::string>& files) {
  Status worst = kFine;
  for (const std::string& file : files) worst = std::max(worst, Source(file).GetStatus());
  return worst;
}

}  // namespace tool
