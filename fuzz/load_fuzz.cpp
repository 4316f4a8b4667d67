// Any bytes as a file. It loads, or fails with one of the known messages. The tree with deferred
// values equals the tree of a parse that makes every value at once, of one that reads the file in
// small pieces, and of one whose characters come from a source of the host.
#include <algorithm>
#include <climits>
#include <iterator>
#include <sstream>

#include "../tests/files.h"
#include "fuzz.h"

namespace {

using fuzz::Check;

constexpr const char* kMessages[] = {"",
                                     "syntax error",
                                     "Missing |",
                                     "Missing #",
                                     "Missing }",
                                     "Bad string",
                                     "Bad comment",
                                     "Expecting digit",
                                     "Bad scale factor",
                                     "Template: ambiguous identifier",
                                     "Data: invalid use of ()",
                                     "yacc stack overflow"};

// Makes the deferred values by one of several operations.
void QueryFirst(void* file, std::size_t choice) {
  std::ostringstream out;
  CzonTargetList copy;
  CzonNode* root = fuzz::RootOf(file);
  void* section = zonTargetByNum(file, 1);
  if (choice == 0) zonExplore(file, [](CzonNode* node) { zonGetNoNodes(node); });
  if (choice == 1) root->Write(out);
  if (choice == 2) copy.Copy(root);
  if (choice == 3) zonEquivalentExt(section, section, nullptr, 1);
}

void Compare(void* file, CzonParser& parser, int keep, unsigned queried, const char* name) {
  const int failed = parser.Parse(keep);
  unsigned line = 0;
  unsigned position = 0;
  const char* message = zonGetSyntaxErr(file, &line, &position, nullptr);
  Check(parser.GetError() == message, message, parser.GetError());
  Check(parser.GetErrorLine() == line && parser.GetErrorPosition() == position, "place", message);
  Check(parser.GetInput().GetNoChars() == zonNoChars(file), "characters");
  Check(parser.GetInput().GetNoLines() == zonNoLines(file), "lines");
  Check(parser.GetNoComments() == zonNoComments(file), "comments");
  Check((failed != 0) == (zonGetRoot(file) == nullptr), "tree");
  if (failed != 0) return;
  parser.GetRoot()->SetZonFilename(name);
  fuzz::ExpectSame(fuzz::RootOf(file), parser.GetRoot(), fuzz::kNothing, queried);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::TextOf(data, size);
  const char* name = fuzz::FileOf(text);
  void* file = zonLoadFile(name, 1);
  Check(file != nullptr, "no handle");
  const std::string message = zonGetSyntaxErr(file, nullptr, nullptr, nullptr);
  const auto* known = std::find(std::begin(kMessages), std::end(kMessages), message);
  Check(known != std::end(kMessages), "unknown message:", message);
  Check(zonGetErrorGlb() == (zonGetRoot(file) != nullptr ? 0 : 1003), "code");
  if (zonGetRoot(file) != nullptr) {
    QueryFirst(file, size % 6);
    const auto newlines = static_cast<unsigned>(std::count(text.begin(), text.end(), '\n'));
    Check(!message.empty() || (zonNoChars(file) == size && zonNoLines(file) == newlines + 1),
          "counts");
  }
  CzonParser eager(new CyyStream(name));
  Compare(file, eager, 1, UINT_MAX, name);
  for (const std::size_t most : {std::size_t{1}, std::size_t{1} + size % 600}) {
    fuzz::largestRead = most;
    CzonParser pieces(new CyyStream(name));
    Compare(file, pieces, 0, UINT_MAX, name);
    fuzz::largestRead = 0;
  }
  if (size % 4 == 1) {
    CzonParser called(new host::Memory(std::string(text)));
    Compare(file, called, 0, 0, name);
  }
  zonClose(&file);
  return 0;
}
