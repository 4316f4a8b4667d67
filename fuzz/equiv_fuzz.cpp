// A template and a candidate, separated by a zero byte, compared by the library and by a naive checker.
#include "equiv_model.h"
#include "fuzz.h"

namespace {

using model::Has;

// Sets flags that a file cannot: sections with an M are mandatory, keywords with an O have open lists.
void SetFlags(CzonNode* node) {
  if (node->IsParam()) return;
  auto* named = static_cast<CzonNamedNode*>(node);
  const bool isMandat = node->GetName().find('M') != std::string::npos;
  if (isMandat) named->SetMultiMandat(Has(*node, CzonNamedNode::kMulti), 1);
  if (node->GetName().find('O') != std::string::npos) named->SetOpenList();
}

void* other;
CzonNode* candidate;
CzonNode* pattern;

void Compare() {
  const bool sections = pattern->IsSection() && candidate->IsSection();
  if (!sections && !(pattern->IsKeyword() && candidate->IsKeyword())) return;
  const unsigned long before = fuzz::messages;
  const int fits = zonEquivalent(pattern, candidate, nullptr);
  const bool naive = sections ? model::SectionFits(*pattern, *candidate)
                              : model::KeywordFits(*pattern, *candidate);
  fuzz::Check((fits != 0) == naive, naive ? "refused" : "accepted", candidate->GetNameGlb());
  fuzz::Check(fuzz::messages - before == (fits != 0 ? 0U : 1U), "one report");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::TextOf(data, size);
  const std::size_t end = text.find('\0');
  if (end == text.npos) return -1;
  void* files[2] = {zonLoadFile(fuzz::FileOf(text.substr(0, end)), 1),
                    zonLoadFile(fuzz::FileOf(text.substr(end + 1), 1), 1)};
  const bool loaded = zonGetRoot(files[0]) != nullptr && zonGetRoot(files[1]) != nullptr;
  if (loaded) {
    other = files[1];
    zonExplore(files[0], SetFlags);
    zonExplore(files[0], [](CzonNode* t) {
      pattern = t;
      zonExplore(other, [](CzonNode* c) {
        candidate = c;
        Compare();
      });
    });
  }
  for (void*& file : files) zonClose(&file);
  zonGetErrorGlb();
  return loaded ? 0 : -1;
}
