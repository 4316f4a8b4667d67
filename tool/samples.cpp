// Each sample is traversed once, with a list of its open sections; sections of a name are merged,
// so the memory depends on the number of names, and on the length of the longest list of each
// keyword.
// Tested by tests/template.t and tests/template.py.
#include "tool/samples.h"

#include <algorithm>

#include <zon.h>
#include <zonclasses.h>

#include "tool/conditions.h"
#include "tool/values.h"

namespace tool {
namespace {

constexpr std::size_t kFewTexts = 4;
constexpr std::size_t kShortText = 30;

bool IsNumber(int kind) {
  return kind == ZONX_INTEGER || kind == ZONX_REAL;
}

bool IsShown(const std::string& text) {
  return text.size() <= kShortText && std::none_of(text.begin(), text.end(), IsControl);
}

void AddText(PlaceSummary& place, void* value) {
  if (place.hasOtherTexts) return;
  const std::string text = zonGetString(value);
  const auto isSame = [&](void* other) { return text == zonGetString(other); };
  if (std::any_of(place.texts.begin(), place.texts.end(), isSame)) return;
  place.hasOtherTexts = place.texts.size() == kFewTexts || !IsShown(text);
  place.texts.push_back(value);
}

void AddNumber(PlaceSummary& place, void* value) {
  const double number = zonGetDouble(value);
  if (place.low == nullptr || number < zonGetDouble(place.low)) place.low = value;
  if (place.high == nullptr || number > zonGetDouble(place.high)) place.high = value;
}

// False if the value is of a kind that does not conform.
bool AddValue(PlaceSummary& place, const SampleValue& value) {
  const int kind = zonxGetKind(value.value);
  if (place.kind == 0) {
    place.kind = kind;
    place.first = value;
  }
  if (!HaveSameKind(kind, place.kind)) return false;
  if (kind == ZONX_REAL) place.kind = kind;
  if (IsNumber(kind)) AddNumber(place, value.value);
  if (kind == ZONX_STRING) AddText(place, value.value);
  return true;
}

}  // namespace

std::string SmallLetters(const char* name) {
  std::string small = name;
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return small;
}

// All numbers conform to each other, and date-times to file names.
bool HaveSameKind(int first, int second) {
  const auto general = [](int kind) {
    if (kind == ZONX_REAL) return static_cast<int>(ZONX_INTEGER);
    return kind == ZONX_DATETIME ? static_cast<int>(ZONX_FILENAME) : kind;
  };
  return general(first) == general(second);
}

void RemarkSummary::Add(const std::string& remark) {
  if (remark.empty()) return;
  if (!isKnown) text = remark;
  if (text != remark) text.clear();
  isKnown = true;
}

void Samples::Add(const LoadedFile& file) {
  struct Open {
    void* node;
    std::size_t section;
    unsigned int child;
  };
  ++sections_.front().instances;
  std::vector<Open> open{{file.Root(), 0, 0}};
  while (!open.empty()) {
    Open& innermost = open.back();
    void* const node = zonNodeByNum(innermost.node, ++innermost.child);
    const int kind = zonxGetKind(node);
    if (node == nullptr) {
      open.pop_back();
    } else if (kind == ZONX_SECTION) {
      open.push_back({node, AddSection(innermost.section, node), 0});
    } else if (kind == ZONX_KEYWORD) {
      AddKeyword(sections_[innermost.section], node);
    }
  }
  ++sample_;
}

std::size_t Samples::AddSection(std::size_t owner, void* node) {
  const auto [found, isNew] =
      sections_[owner].sectionsByName.try_emplace(SmallLetters(zonGetName(node)), sections_.size());
  const std::size_t number = found->second;
  if (isNew) {
    sections_[owner].sections.push_back(number);
    sections_.emplace_back().name = zonGetName(node);
  }
  SectionSummary& section = sections_[number];
  ++section.instances;
  if (zonGetInstanceNo(node) <= 1) ++section.present;
  section.isMulti = section.isMulti || zonGetNoInstances(node) > 1 || HasMultiFlag(node);
  section.remark.Add(RemarkOf(node));
  return number;
}

void Samples::AddKeyword(SectionSummary& owner, void* node) {
  const auto [found, isNew] =
      owner.keywordsByName.try_emplace(SmallLetters(zonGetName(node)), owner.keywords.size());
  if (isNew) owner.keywords.emplace_back().name = zonGetName(node);
  KeywordSummary& keyword = owner.keywords[found->second];
  if (zonGetInstanceNo(node) <= 1) ++keyword.present;
  keyword.isMulti = keyword.isMulti || zonGetNoInstances(node) > 1 || HasMultiFlag(node);
  keyword.remark.Add(RemarkOf(node));
  AddValues(keyword, node);
}

void Samples::AddValues(KeywordSummary& keyword, void* node) {
  const auto count = static_cast<std::size_t>(zonGetNoParams(node));
  const bool isFirst = keyword.places.empty();
  keyword.least = isFirst ? count : std::min(keyword.least, count);
  keyword.most = std::max(keyword.most, count);
  if (keyword.places.size() < count) keyword.places.resize(count);
  for (std::size_t n = 0; n < count; ++n) {
    const SampleValue value{zonParamByNum(node, static_cast<unsigned int>(n + 1)), sample_};
    PlaceSummary& place = keyword.places[n];
    if (!AddValue(place, value) && !keyword.conflict.IsReal())
      keyword.conflict = {place.first, value};
  }
}

}  // namespace tool
