// Load, write, load, write: the trees are equal except for what writing does not keep, and the
// second text equals the first below the header comment.
#include "fuzz.h"

namespace {

using fuzz::Check;

// Without result settings, which add a section to each written file.
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
    // An error after complete sections keeps them; its cause can be among them.
    const bool hasError = *zonGetSyntaxErr(file, nullptr, nullptr, nullptr) != '\0';
    // Half of the files are written while their values are still deferred.
    hasSubstitution = false;
    const auto visit = [](CzonNode* node) {
      if (node->GetSyntaxClass() == kZonSubstit) hasSubstitution = true;
    };
    if (size % 2 == 0) zonExplore(file, visit);
    Write(file, fuzz::FileOf({}, 1));
    if (size % 2 != 0) zonExplore(file, visit);
    const std::string first = Body(1);
    void* again = zonLoadFile(fuzz::FileOf(fuzz::ContentOf(1), 1), 1);
    if (!hasSubstitution) {
      Check(zonGetRoot(again) != nullptr, "the written text does not load:", first);
      Check(*zonGetSyntaxErr(again, nullptr, nullptr, nullptr) == '\0' || hasError,
            "the written text has an error:", first);
      fuzz::ExpectSame(fuzz::RootOf(file), fuzz::RootOf(again), fuzz::kByWriting, 0);
      Write(again, fuzz::FileOf({}, 2));
      Check(Body(2) == first, "the second text differs:", first);
    }
    if (size % 16 == 1) zonDump(zonGetRoot(file), fuzz::FileOf({}, 3));
    zonClose(&again);
  }
  zonClose(&file);
  zonGetErrorGlb();
  return 0;
}
