// Differences and merges of two files: of two texts that are separated by a zero byte, or of one
// text, each with random edits. The first bytes of an input choose the edits.
#include "diff_model.h"
#include "save_model.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoices = 32;
  if (size < kChoices) return -1;
  fuzz::Bytes bytes{data, data + kChoices};
  const std::string_view text = fuzz::TextOf(data + kChoices, size - kChoices);
  const std::string first(text.substr(0, text.find('\0')));
  const std::string second(first.size() < text.size() ? text.substr(first.size() + 1) : first);
  const auto number = [&](unsigned from, unsigned to) { return bytes.Number(from, to); };
  const bool resolved = number(0, 1) != 0;
  const char* const key = number(0, 1) != 0 ? "k" : nullptr;
  model::SaveChecker before(first, "/d/f.zon", number);
  model::SaveChecker after(second, resolved ? "/e/f.zon" : "/d/g.zon", number);
  if (!before.IsSound() || !after.IsSound()) return -1;
  for (unsigned edits = number(0, 3); edits > 0; --edits) before.Edit();
  for (unsigned edits = number(0, 4); edits > 0; --edits) after.Edit();
  model::CheckDifferences(before.Handle(), after.Handle(), resolved, key);
  model::CheckMerge(before.Handle(), after.Handle(), resolved);
  zonGetErrorGlb();
  return 0;
}
