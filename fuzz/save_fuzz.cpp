// Random edits of any sound text, saved again and again. The first bytes of an input choose the
// edits, the others are the text.
#include <unistd.h>

#include "save_model.h"

namespace {

// A file of this process, which is replaced again and again.
const std::string& Path() {
  static const std::string path = "/dev/shm/zon_save_fuzz." + std::to_string(getpid());
  return path;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoices = 24;
  if (size < kChoices) return 0;
  fuzz::Bytes bytes{data, data + kChoices};
  const std::string text(fuzz::TextOf(data + kChoices, size - kChoices));
  model::SaveChecker checker(text, Path(),
                             [&](unsigned from, unsigned to) { return bytes.Number(from, to); });
  if (checker.IsSound()) checker.Run(3);
  unlink(Path().c_str());
  return 0;
}
