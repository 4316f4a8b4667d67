// A template and a candidate, separated by a zero byte, compared by the library and by a naive
// checker; and validated, which agrees with the comparison of each section.
#include <zonx.h>

#include "equiv_model.h"
#include "fuzz.h"

namespace {

using model::Has;

// Sets flags that a file cannot: sections with an M are mandatory, keywords with an O have open
// lists.
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

bool hasRemark;

// Whether each section of a file conforms by itself, and none is missing.
bool ConformSections(void* wanted, void* file) {
  bool conforms = true;
  for (unsigned n = 1; void* section = zonTargetByNum(file, n); ++n) {
    void* definition = zonTargetByNameNum(wanted, zonGetName(section), 1);
    conforms =
        conforms && definition != nullptr && zonEquivalentExt(definition, section, nullptr, 1) != 0;
  }
  for (unsigned n = 1; void* section = zonTargetByNum(wanted, n); ++n) {
    const bool isMandat =
        Has(*static_cast<CzonNode*>(static_cast<CzonBase*>(section)), CzonNamedNode::kMandat);
    if (isMandat && zonTargetByNameNum(file, zonGetName(section), 1) == nullptr) conforms = false;
  }
  return conforms;
}

void Validate(void* wanted, void* file) {
  const unsigned long before = fuzz::messages;
  int reports = 0;
  const auto count = [](const zonxReport* report, void* context) {
    ++*static_cast<int*>(context);
    char text[400];
    zonxFormatReport(report, text, sizeof text);
  };
  const int status = zonxValidate(wanted, file, count, &reports);
  fuzz::Check((status == ZONX_OK) == (reports == 0), "reports of a validation");
  fuzz::Check(zonxValidate(wanted, file, nullptr, nullptr) == status, "without a reporter");
  fuzz::Check(fuzz::messages == before, "no hook is called");
  const auto isWhole = [](void* handle) {
    return *zonGetSyntaxErr(handle, nullptr, nullptr, nullptr) == '\0';
  };
  if (!isWhole(wanted) || !isWhole(file)) {
    fuzz::Check(status == ZONX_FAULTY, "a part of a file was validated");
    return;
  }
  hasRemark = false;  // a remark can be a condition
  zonExplore(wanted, [](CzonNode* node) { hasRemark = hasRemark || !node->GetRemark().empty(); });
  if (hasRemark) return;
  fuzz::Check((status == ZONX_OK) == ConformSections(wanted, file), "validated otherwise");
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
    for (void* file : files) Validate(files[0], file);
  }
  for (void*& file : files) zonClose(&file);
  zonGetErrorGlb();
  return loaded ? 0 : -1;
}
