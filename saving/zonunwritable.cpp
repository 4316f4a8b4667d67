#include "saving/zonunwritable.h"

#include <memory>
#include <string>
#include <vector>

#include "api/zonx.h"
#include "reader/zonload.h"
#include "saving/zonsavedtree.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodepath.h"

namespace zon {
namespace {

std::unique_ptr<CzonParser> LoadText(const std::string& text) {
  auto copy = std::make_shared<FileText>();
  copy->Assign(text);
  Loading loading = Load(copy, "");
  return loading.IsSound() ? std::move(loading.parser) : nullptr;
}

// The only section that a text has; null if it has none or more.
const CzonNamedNode* OnlySection(const CzonParser* parser) {
  if (parser == nullptr) return nullptr;
  const SectionParts parts(*parser->GetRoot());
  return parts.sections.size() == 1 ? parts.sections.front() : nullptr;
}

bool HasWritableHead(const CzonNamedNode& section) {
  std::string text = "[";
  AppendName(&text, section);
  text += "]";
  AppendRemark(&text, section);
  const auto parser = LoadText(text + "\nEndSect\n");
  const CzonNamedNode* loaded = OnlySection(parser.get());
  return loaded != nullptr && IsSameHead(section, *loaded) &&
         NodeAccess::Children(*loaded).Size() == 0;
}

// The only line of the only section of a text.
const CzonNamedNode* OnlyLine(const CzonParser* parser) {
  const CzonNamedNode* section = OnlySection(parser);
  if (section == nullptr || NodeAccess::Children(*section).Size() != 1) return nullptr;
  const SectionParts parts(*section);
  return parts.lines.empty() ? nullptr : parts.lines.front();
}

bool IsWritableValue(const CzonNode& value) {
  const bool isDefault = value.GetOwner()->IsDefaultDef() != 0;
  std::string text = isDefault ? "[a]\ndefault (b) = " : "[a]\nb = ";
  AppendValue(&text, value);
  const bool isUnknown = KindOf(value) == ZONX_UNKNOWN;
  if (!value.GetRemark().empty() || isUnknown) text += "{" + value.GetRemark() + "}";
  const auto parser = LoadText(text + "\nEndSect\n");
  const CzonNamedNode* line = OnlyLine(parser.get());
  if (line == nullptr || NodeAccess::Children(*line).Size() != 1) return false;
  const CzonNode& loaded = *NodeAccess::Children(*line)[0];
  return IsSameValue(value, loaded) && value.GetRemark() == loaded.GetRemark();
}

bool IsWritableLine(const CzonNamedNode& keyword) {
  std::string text = "[a]\n";
  AppendLine(&text, keyword);
  const auto parser = LoadText(text + "\nEndSect\n");
  const CzonNamedNode* line = OnlyLine(parser.get());
  return line != nullptr && IsSameHead(keyword, *line) && HasSameValues(keyword, *line);
}

bool HasWritableName(const CzonNamedNode& keyword) {
  std::string text = "[a]\n";
  AppendName(&text, keyword);
  AppendRemark(&text, keyword);
  const auto parser = LoadText(text + " =\nEndSect\n");
  const CzonNamedNode* line = OnlyLine(parser.get());
  return line != nullptr && IsSameHead(keyword, *line);
}

// How many sections can be in each other.
std::size_t DeepestLevel() {
  std::size_t most = 1;
  for (std::size_t step = 64; step > 0; step /= 2) {
    const std::size_t levels = most + step;
    std::string text;
    for (std::size_t n = 0; n < levels; ++n) text += "[a] ";
    for (std::size_t n = 0; n < levels; ++n) text += "EndSect ";
    if (LoadText(text) != nullptr) most = levels;
  }
  return most;
}

class UnwritableFinder {
 public:
  explicit UnwritableFinder(Reporter& reporter) : reporter_(reporter), deepest_(DeepestLevel()) {}

  void Visit(const CzonTargetList& root) {
    open_.push_back({&root, 0});
    while (!open_.empty()) {
      const Level level = open_.back();
      open_.pop_back();
      VisitParts(*level.section, level.depth);
    }
    // Names that repeat and names that declare repetition exclude each other.
    for (const CzonNamedNode* node :
         hasRepeated_ ? declared_ : std::vector<const CzonNamedNode*>()) {
      Report(*node, "declares that its name repeats, in a file in which names repeat");
    }
    if (!hasReported_) Report(root, "would not load as it is");
  }

 private:
  struct Level {
    const CzonNamedNode* section;
    std::size_t depth;
  };

  void VisitParts(const CzonNamedNode& section, std::size_t depth) {
    const SectionParts parts(section);
    if (parts.hasOthers) Report(section, "has nodes that are no keywords and no sections");
    for (const CzonNamedNode* line : parts.lines) VisitLine(*line);
    for (const CzonNamedNode* inner : parts.sections) {
      Note(*inner);
      if (!HasWritableHead(*inner))
        Report(*inner, "has a name, a flag or a remark that no file has");
      if (depth + 1 > deepest_) {
        Report(*inner, "is nested too deep");
      } else {
        open_.push_back({inner, depth + 1});
      }
    }
  }

  void VisitLine(const CzonNamedNode& line) {
    Note(line);
    if (IsWritableLine(line)) return;
    bool isReported = !HasWritableName(line);
    if (isReported) Report(line, "has a name, a flag or a remark that no file has");
    for (const CzonNode* value : SavedValues(line)) {
      if (value == nullptr || IsWritableValue(*value)) continue;
      isReported = true;
      Report(*value, std::string("is ") + KindText(KindOf(*value)) + " that no file can have");
    }
    if (!isReported) Report(line, "has values that no file can have together");
  }

  void Note(const CzonNamedNode& node) {
    if ((node.GetFlags() & CzonNamedNode::kMulti) != 0) declared_.push_back(&node);
    if (node.GetInstanceNo() > 1) hasRepeated_ = true;
  }

  void Report(const CzonNode& node, const std::string& what) {
    hasReported_ = true;
    Finding finding;
    finding.rule = "unwritable";
    const std::string path = PathOf(node);
    finding.message = (path.empty() ? "the file" : "`" + path + "`") + " " + what;
    reporter_.Report(nullptr, finding);
  }

  Reporter& reporter_;
  const std::size_t deepest_;
  bool hasReported_ = false;
  bool hasRepeated_ = false;
  std::vector<const CzonNamedNode*> declared_;
  std::vector<Level> open_;
};

}  // namespace

void ReportUnwritable(const CzonTargetList& root, Reporter& reporter) {
  if (reporter.IsOn()) UnwritableFinder(reporter).Visit(root);
}

}  // namespace zon
