// Load, write, load, write: the same tree but for what writing is known to lose, and the same text
// below the header comment.
#include "fuzz.h"

namespace {

using fuzz::Check;

// Result settings would add a section with each writing.
void Write(void* file, const char* name) {
  zonSetProjectResultRoot(file, "");
  zonSetCustomResultFolder(file, 0, "");
  zonWrite(file, name);
}

std::string Body(unsigned number) {
  const std::string text = fuzz::ContentOf(number);
  const std::size_t end = text.find("\n\n");
  Check(end != std::string::npos, "no header");
  return text.substr(end);
}

bool hasSubstitution;

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const char* name = fuzz::FileOf(fuzz::TextOf(data, size));
  void* file = zonLoadFile(name, 1);
  if (size % 8 == 0) zonFileCopy(name, fuzz::FileOf({}, 2));
  zonGetErrorGlb();
  if (zonGetRoot(file) != nullptr) {
    // An error behind whole sections leaves them; what makes it may be among them.
    const bool hasError = *zonGetSyntaxErr(file, nullptr, nullptr, nullptr) != '\0';
    // Half of them are written before anybody has asked for a value.
    hasSubstitution = false;
    const auto look = [](CzonNode* node) {
      if (node->GetSyntaxClass() == kZonSubstit) hasSubstitution = true;
    };
    if (size % 2 == 0) zonExplore(file, look);
    Write(file, fuzz::FileOf({}, 1));
    if (size % 2 != 0) zonExplore(file, look);
    const std::string first = Body(1);
    void* again = zonLoadFile(fuzz::FileOf(fuzz::ContentOf(1), 1), 1);
    if (!hasSubstitution) {
      Check(zonGetRoot(again) != nullptr, "does not load again:", first);
      Check(*zonGetSyntaxErr(again, nullptr, nullptr, nullptr) == '\0' || hasError,
            "loads not whole:", first);
      fuzz::ExpectSame(fuzz::RootOf(file), fuzz::RootOf(again), fuzz::kByWriting, 0);
      Write(again, fuzz::FileOf({}, 2));
      Check(Body(2) == first, "another text:", first);
    }
    if (size % 16 == 1) zonDump(zonGetRoot(file), fuzz::FileOf({}, 3));
    zonClose(&again);
  }
  zonClose(&file);
  zonGetErrorGlb();
  return 0;
}
