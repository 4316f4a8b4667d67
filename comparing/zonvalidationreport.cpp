// The cost is linear in the number of problems: a message has a part of its node's path that does
// not grow with the depth, and the search for similar names ends after a fixed number of
// comparisons.
// Tested by tests/zonxvalidate_test.cpp.
#include "comparing/zonvalidationreport.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "api/zonx.h"
#include "base/zonnearest.h"
#include "reader/zonmistake.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonvalue.h"

namespace zon {
namespace {

// "`Quay:2/Length`", "the file"
std::string PathInQuotes(const CzonNode& node) {
  const std::string path = ShortPathOf(node);
  return path.empty() ? "the file" : "`" + path + "`";
}

// The keyword itself if it has one value.
std::string ValueInQuotes(const CzonNode& keyword, unsigned int number) {
  const std::string path = ShortPathOf(keyword);
  const bool isOnly = keyword.GetNoParams() == 1;
  return "`" + path + (isOnly ? "" : "[" + std::to_string(number) + "]") + "`";
}

std::string TextInQuotes(const CzonNode& value) {
  std::string text;
  return ReadText(value, &text) == ZONX_OK ? Quoted(text) : KindText(KindOf(value));
}

// A path of the system, at most so much of it that a message can have.
std::string EndOf(const std::string& path) {
  constexpr std::size_t kLongest = 300;
  std::string end = path.size() > kLongest ? "..." + path.substr(path.size() - kLongest) : path;
  std::replace_if(
      end.begin(), end.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
  return end;
}

// Conditions can be long.
std::string StartInQuotes(std::string_view text) {
  return Quoted(text.substr(0, 100));
}

// What a value of the template demands. A number of a file accepts any number.
const char* WantedText(const CzonNode& expected) {
  if (expected.IsNumeric() == 0) return KindText(KindOf(expected));
  return expected.IsDouble() != 0 || expected.IsFloat() != 0 ? "a number" : "a whole number";
}

// The range that is marked: the node, or else the closest node around it that has a place.
Span NearestPlace(const CzonNode* node, const FileText* text) {
  Span place;
  for (int step = 0; step < 3 && text != nullptr && node != nullptr; ++step) {
    place = PlaceOf(*node, *text);
    if (place.begin != nullptr) break;
    node = node->GetOwner();
  }
  return place;
}

const CzonNode* ValueOf(const CzonNode& keyword, unsigned int number) {
  const CzonNode* value = number > 0 ? keyword.NodeByNum(number) : nullptr;
  return value != nullptr ? value : &keyword;
}

class ProblemReporter {
 public:
  ProblemReporter(const NodeFile& candidate, const NodeFile& definition, Reporter& reporter)
      : candidate_(candidate), definition_(definition), reporter_(reporter) {
    reporter_.SetRelatedFile(definition.text, definition.name);
  }

  void Locate(Problem& problem) {
    const CzonNode* node = problem.candidate;
    if (problem.rule != Rule::kMissingValue) node = ValueOf(*node, problem.number);
    if (node != located_) place_ = NearestPlace(node, candidate_.text);
    located_ = node;
    problem.place = place_;
  }

  void Report(const Problem& problem) {
    Finding finding;
    finding.place = problem.place;
    const CzonNode* related = problem.definition;
    finding.relatedMessage = "the template defines it here";
    switch (problem.rule) {
      case Rule::kUnknownSection:
      case Rule::kUnknownKeyword:
        DescribeUnknown(problem, finding);
        break;
      case Rule::kSurplusSection:
      case Rule::kSurplusKeyword:
        DescribeSurplus(problem, finding);
        break;
      case Rule::kMissingSection:
      case Rule::kMissingKeyword:
        DescribeMissing(problem, finding);
        break;
      case Rule::kRange:
      case Rule::kChoice:
      case Rule::kFile:
        DescribeBroken(problem, finding);
        break;
      default:
        DescribeValue(problem, finding);
        related = ValueOf(*related, std::min(problem.number, related->GetNoNodes()));
    }
    finding.related = RelatedPlace(*related);
    reporter_.Report(candidate_.text, finding);
  }

 private:
  void DescribeUnknown(const Problem& problem, Finding& finding) {
    const bool isSection = problem.rule == Rule::kUnknownSection;
    finding.rule = isSection ? "unknown-section" : "unknown-keyword";
    finding.message = PathInQuotes(*problem.candidate) +
                      (isSection ? " is no section" : " is no keyword") + " of the template";
    finding.relatedMessage = "the section of the template";
    const std::string nearest = NearestName(*problem.definition, *problem.candidate, isSection);
    if (!nearest.empty()) finding.hint = "did you mean " + nearest + "?";
  }

  static void DescribeSurplus(const Problem& problem, Finding& finding) {
    const bool isSection = problem.rule == Rule::kSurplusSection;
    finding.rule = isSection ? "surplus-section" : "surplus-keyword";
    finding.message = PathInQuotes(*problem.candidate) +
                      (isSection ? " repeats a section" : " repeats a keyword") +
                      " that the template allows once";
  }

  static void DescribeMissing(const Problem& problem, Finding& finding) {
    const bool isSection = problem.rule == Rule::kMissingSection;
    finding.rule = isSection ? "missing-section" : "missing-keyword";
    finding.message = PathInQuotes(*problem.candidate) + " has no " +
                      (isSection ? "section " : "keyword ") +
                      Quoted(problem.definition->GetName()) + ", which the template requires";
  }

  static void DescribeValue(const Problem& problem, Finding& finding) {
    const CzonNode& keyword = *problem.candidate;
    const std::string has = PathInQuotes(keyword) + " has ";
    const unsigned int wanted = problem.definition->GetNoParams();
    switch (problem.rule) {
      case Rule::kMissingValue:
        finding.rule = "missing-value";
        finding.message =
            has + Count(keyword.GetNoParams()) + ", the template wants " + std::to_string(wanted);
        return;
      case Rule::kSurplusValue:
        finding.rule = "surplus-value";
        finding.message =
            has + Count(keyword.GetNoParams()) + ", the template wants " + std::to_string(wanted);
        return;
      case Rule::kUnresolved:
        finding.rule = "unresolved-default";
        finding.message =
            ValueInQuotes(keyword, problem.number) + " is a placeholder without a default value";
        return;
      default:
        DescribeKind(problem, finding);
    }
  }

  static void DescribeKind(const Problem& problem, Finding& finding) {
    const CzonNode& keyword = *problem.candidate;
    const unsigned int last = problem.definition->GetNoParams();
    const CzonNode* expected = problem.definition->ParamByNum(std::min(problem.number, last));
    const CzonNode* value = keyword.ParamByNum(problem.number);
    finding.rule = "value-kind";
    finding.message = ValueInQuotes(keyword, problem.number) + " is " +
                      KindText(value != nullptr ? KindOf(*value) : 0);
    if (expected != nullptr) {
      finding.message += std::string(", the template wants ") + WantedText(*expected);
    }
  }

  static void DescribeBroken(const Problem& problem, Finding& finding) {
    const CzonNode& keyword = *problem.candidate;
    const CzonNode* value = keyword.ParamByNum(problem.number);
    const std::string name = ValueInQuotes(keyword, problem.number);
    finding.relatedMessage = "the condition is here";
    std::string path;
    if (value == nullptr) return;
    if (problem.rule == Rule::kFile && ReadFilename(*value, &path) == ZONX_OK) {
      finding.rule = "missing-file";
      finding.message = name + (path.empty() ? " names no file"
                                             : " names a file that does not exist: " + EndOf(path));
      return;
    }
    finding.rule = problem.rule == Rule::kRange ? "value-range" : "value-choice";
    finding.message = name + " is " + TextInQuotes(*value) + ", the template wants " +
                      StartInQuotes(problem.condition);
  }

  Span RelatedPlace(const CzonNode& node) {
    if (definition_.text == nullptr) return {};
    const auto [place, isNew] = related_.try_emplace(&node);
    if (isNew) place->second = PlaceOf(node, *definition_.text);
    return place->second;
  }

  static std::string Count(unsigned int values) {
    return std::to_string(values) + (values == 1 ? " value" : " values");
  }

  // The name of the template that is most like that of the node; empty for none.
  std::string NearestName(const CzonNode& definition, const CzonNode& node, bool isSection) {
    zon::NearestName nearest(NodeAccess::GetNameView(static_cast<const CzonNamedNode&>(node)));
    for (unsigned int n = 1; comparisons_ > 0; ++n, --comparisons_) {
      const CzonNamedNode* named = nullptr;
      if (isSection) {
        named = definition.SectionByNum(n);
      } else {
        named = definition.KeywordByNum(n);
      }
      if (named == nullptr) break;
      nearest.Offer(NodeAccess::GetNameView(*named));
    }
    return std::string(nearest.Name());
  }

  const NodeFile& candidate_;
  const NodeFile& definition_;
  Reporter& reporter_;
  unsigned int comparisons_ = 100000;  // of names that are still made

  // Names can be long, and many problems can be at one of them.
  const CzonNode* located_ = nullptr;
  Span place_;
  std::unordered_map<const CzonNode*, Span> related_;
};

}  // namespace

void ReportProblems(std::vector<Problem> problems, const NodeFile& candidate,
                    const NodeFile& definition, Reporter& reporter) {
  ProblemReporter texts(candidate, definition, reporter);
  for (Problem& problem : problems) texts.Locate(problem);
  std::stable_sort(problems.begin(), problems.end(), [](const Problem& a, const Problem& b) {
    return a.place.begin < b.place.begin;
  });
  for (const Problem& problem : problems) texts.Report(problem);
}

void ReportFaults(std::vector<TemplateFault> faults, const NodeFile& definition,
                  Reporter& reporter) {
  std::vector<std::pair<Span, TemplateFault>> placed;
  for (TemplateFault& fault : faults) {
    placed.emplace_back(NearestPlace(fault.node, definition.text), std::move(fault));
  }
  std::stable_sort(placed.begin(), placed.end(), [](const auto& a, const auto& b) {
    return std::less<>()(a.first.begin, b.first.begin);
  });
  for (const auto& [place, fault] : placed) {
    Finding finding;
    finding.rule = fault.rule;
    finding.message = fault.message;
    finding.hint = fault.hint;
    finding.place = place;
    if (fault.first != nullptr && definition.text != nullptr) {
      finding.related = PlaceOf(*fault.first, *definition.text);
      finding.relatedMessage = "the first one is here";
    }
    reporter.Report(definition.text, finding);
  }
}

}  // namespace zon
