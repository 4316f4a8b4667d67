// The command template. The template is loaded and every sample compared with it before it is
// printed, so the exit status never promises more than zonEquivalent confirms.
// Tested by tests/template.t and tests/template.py.
#include <algorithm>
#include <iostream>
#include <memory>
#include <new>
#include <vector>

#include <zon.h>
#include <zonclasses.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/conditions.h"
#include "tool/loadedfile.h"
#include "tool/samples.h"
#include "tool/templatewalk.h"
#include "tool/values.h"

namespace tool {
namespace {

constexpr std::size_t kShownPlaces = 4;  // of longer lists, one range of all numbers is shown

const char* Example(int kind) {
  switch (kind) {
    case ZONX_INTEGER:
      return "0";
    case ZONX_REAL:
      return "0.0";
    case ZONX_BOOLEAN:
      return "false";
    case ZONX_STRING:
      return "''";
    case ZONX_FILENAME:
      return "||";
    case ZONX_DATETIME:
      return "#2000-01-01 00:00:00#";
    case ZONX_SUBSTITUTION:
      return "%name";
    case ZONX_CLOB:
      return "'<CLOB:>'";
    case ZONX_UNKNOWN:
      return "{unknown}";
    default:
      return "";
  }
}

std::string RangeText(void* low, void* high) {
  const std::string first = TextForm(low);
  return zonGetDouble(low) == zonGetDouble(high) ? first : first + " .. " + TextForm(high);
}

// What was seen in one place.
std::string SeenIn(const PlaceSummary& place) {
  if (place.low != nullptr) return RangeText(place.low, place.high);
  std::vector<std::string> texts;
  if (place.hasOtherTexts) return "";
  for (void* text : place.texts) texts.push_back(TextForm(text));
  return Join(texts, ", ");
}

// The range of all numbers of a list; empty if something else is in it.
std::string RangeOfAll(const std::vector<PlaceSummary>& places) {
  void* low = places.front().low;
  void* high = places.front().high;
  for (const PlaceSummary& place : places) {
    if (place.low == nullptr) return "";
    if (zonGetDouble(place.low) < zonGetDouble(low)) low = place.low;
    if (zonGetDouble(place.high) > zonGetDouble(high)) high = place.high;
  }
  return RangeText(low, high);
}

// Makes the text of a template.
class TemplateText {
 public:
  TemplateText(const Samples& samples, const std::vector<std::unique_ptr<LoadedFile>>& files)
      : samples_(samples), files_(files) {}

  const std::string& Make() {
    open_.push_back({&samples_[0], 0});
    while (!open_.empty()) {
      Open& innermost = open_.back();
      if (innermost.next == innermost.section->sections.size()) {
        End(*innermost.section);
        continue;
      }
      const SectionSummary& around = *innermost.section;
      Begin(samples_[around.sections[innermost.next++]], around.instances);
    }
    return text_;
  }

  bool HasConflicts() const { return hasConflicts_; }

 private:
  struct Open {
    const SectionSummary* section;
    std::size_t next;
  };

  void Indent() { text_.append(3 * (open_.size() - 1), ' '); }

  // Of the remark of the samples, what is no condition: what they state may not hold for all of
  // them.
  std::string RemarkText(bool isRequired, bool isOpen, const RemarkSummary& remark) {
    const Conditions stated = ReadConditions(remark.isUsed() ? remark.text : "", values_);
    const std::string all =
        Join({isRequired ? "required" : "", isOpen ? "open" : "",
              stated.unit.empty() ? "" : "unit " + stated.unit,
              stated.byDefault.empty() ? "" : "default " + stated.byDefault, stated.text},
             "; ");
    return all.empty() ? "" : " {" + all + '}';
  }

  void Begin(const SectionSummary& section, std::size_t possible) {
    if (open_.size() == 1 && !text_.empty()) text_ += '\n';
    Indent();
    text_ += '[' + section.name + (section.isMulti ? "()]" : "]") +
             RemarkText(section.present == possible, false, section.remark) + '\n';
    open_.push_back({&section, 0});
    for (const KeywordSummary& keyword : section.keywords) Write(keyword, section.instances);
  }

  void End(const SectionSummary& section) {
    open_.pop_back();
    if (open_.empty()) return;
    Indent();
    text_ += "EndSect  // " + section.name + '\n';
  }

  void Write(const KeywordSummary& keyword, std::size_t possible) {
    const bool isUnnamed = keyword.name.empty();
    Conflict conflict = keyword.conflict;
    std::vector<std::string> examples;
    for (std::size_t n = 0; n < keyword.least; ++n)
      examples.emplace_back(Example(keyword.places[n].kind));
    for (std::size_t n = keyword.least; n < keyword.most; ++n)
      AddFurther(keyword, n, &examples, &conflict);
    Indent();
    text_ +=
        keyword.name + (keyword.isMulti || isUnnamed ? "()" : "") +
        RemarkText(keyword.present == possible && !isUnnamed, keyword.IsOpen(), keyword.remark) +
        " =";
    std::string values;
    for (const std::string& example : examples)
      values += (&example == &examples.front() ? "" : ", ") + example;
    if (!values.empty()) text_ += ' ' + values.substr(0, values.find_last_not_of(' ') + 1);
    if (const std::string seen = Seen(keyword); !seen.empty()) text_ += "  // " + seen;
    text_ += '\n';
    if (conflict.IsReal()) WriteConflict(conflict);
  }

  // The last value of an open list is the example of all further ones.
  static void AddFurther(const KeywordSummary& keyword, std::size_t n,
                         std::vector<std::string>* examples, Conflict* conflict) {
    const PlaceSummary& last = keyword.places[keyword.least - 1];
    const PlaceSummary& further = keyword.places[n];
    if (HaveSameKind(last.kind, further.kind)) {
      if (further.kind == ZONX_REAL) examples->back() = Example(ZONX_REAL);
    } else if (!conflict->IsReal()) {
      *conflict = {last.first, further.first};
    }
  }

  static std::string Seen(const KeywordSummary& keyword) {
    std::vector<std::string> parts;
    if (keyword.IsOpen()) {
      parts.push_back(std::to_string(keyword.least) + " to " + std::to_string(keyword.most) +
                      " values");
    }
    if (keyword.most > kShownPlaces || keyword.IsOpen()) {
      parts.push_back(RangeOfAll(keyword.places));
    } else {
      for (const PlaceSummary& place : keyword.places) parts.push_back(SeenIn(place));
      const bool isNothing = Join(parts, "").empty();
      for (std::string& part : parts) part = part.empty() && !isNothing ? "-" : part;
    }
    return Join(parts, "; ");
  }

  std::string Where(const SampleValue& value) const {
    return Printable(files_[value.sample]->GetInput().Name()) + ':' +
           std::to_string(PlaceOf(value.value).line);
  }

  void WriteConflict(const Conflict& conflict) {
    hasConflicts_ = true;
    const auto describe = [&](const SampleValue& value) {
      return KindWithArticle(zonxGetKind(value.value)) + " in " + Where(value);
    };
    Indent();
    text_ += "// " + describe(conflict.first) + ", " + describe(conflict.second) + '\n';
    files_[conflict.second.sample]->Report(conflict.second.value, ZONX_ERROR,
                                           "this is " +
                                               KindWithArticle(zonxGetKind(conflict.second.value)) +
                                               ", but " + describe(conflict.first),
                                           "no template allows both");
  }

  const Samples& samples_;
  const std::vector<std::unique_ptr<LoadedFile>>& files_;
  ValueText values_;
  std::vector<Open> open_;
  std::string text_;
  bool hasConflicts_ = false;
};

// A template, loaded to check the samples.
class LoadedTemplate {
 public:
  explicit LoadedTemplate(const std::string& text)
      : status_(CheckMemory(zonxLoadText(text.data(), text.size(), "", &file_, nullptr, nullptr))) {
    if (status_ == ZONX_OK) OpenLists();
  }
  LoadedTemplate(const LoadedTemplate&) = delete;
  LoadedTemplate& operator=(const LoadedTemplate&) = delete;
  ~LoadedTemplate() {
    if (file_ != nullptr) zonClose(&file_);
  }

  bool Allows(const LoadedFile& sample) const {
    if (status_ != ZONX_OK) return false;
    for (unsigned int n = 1; void* section = zonTargetByNum(sample.File(), n); ++n) {
      void* const wanted = zonTargetByNameNum(file_, zonGetName(section), 1);
      if (wanted == nullptr || zonEquivalentExt(wanted, section, nullptr, 1) == 0) return false;
    }
    return true;
  }

 private:
  // zonEquivalent reads flags, not remarks.
  void OpenLists() {
    ValueText values;
    std::vector<void*> sections;
    const auto add = [&](void* section) {
      for (unsigned int n = 1; void* inner = zonSectionByNum(section, n); ++n)
        sections.push_back(inner);
    };
    add(zonGetRoot(file_));
    while (!sections.empty()) {
      void* const section = sections.back();
      sections.pop_back();
      add(section);
      for (unsigned int n = 1; void* keyword = zonKeywordByNum(section, n); ++n) {
        auto* named =
            static_cast<CzonNamedNode*>(static_cast<CzonNode*>(static_cast<CzonBase*>(keyword)));
        if (ReadConditions(RemarkOf(keyword), values).isOpen) named->SetOpenList();
      }
    }
  }

  void* file_ = nullptr;
  const int status_;
};

}  // namespace

Status Template(const std::vector<std::string>& names) {
  std::vector<std::unique_ptr<LoadedFile>> files;
  bool areSound = true;
  for (const std::string& name : names) {
    files.push_back(std::make_unique<LoadedFile>(name));
    areSound = files.back()->IsSound() && areSound;
  }
  if (!areSound) return kTrouble;
  Samples samples;
  for (const auto& file : files) samples.Add(*file);
  TemplateText maker(samples, files);
  const std::string& text = maker.Make();
  const LoadedTemplate made(text);
  Status status = maker.HasConflicts() ? kFindings : kFine;
  for (const auto& file : files) {
    if (status == kFindings || made.Allows(*file)) continue;
    PrintMessage(file->GetInput().Name() + ": does not conform to the template");
    status = kFindings;
  }
  std::cout << text;
  return status;
}

}  // namespace tool
