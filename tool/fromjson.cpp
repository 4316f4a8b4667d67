// The command from-json. The text is written as the document says, then loaded: the library judges
// names, nesting and everything else. The loaded tree is compared with the document node by node,
// so a text that would be read otherwise than it was meant is never printed.
// Tested by tests/json.t and tests/fromjson.py.
#include <algorithm>
#include <cstring>
#include <iostream>
#include <vector>

#include <zon.h>
#include <zonclasses.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/jsontree.h"
#include "tool/source.h"
#include "tool/values.h"
#include "tool/valuetext.h"

namespace tool {
namespace {

constexpr unsigned int kPlaces = kJsonLine | kJsonColumn;
constexpr unsigned int kHead = kJsonKind | kJsonName | kJsonMulti | kJsonRemark | kPlaces;

// The file does not load with sections deeper than this, so a longer indentation is of no use.
constexpr std::size_t kDeepest = 150;

bool IsWhole(const std::string& text) {
  return text.find_first_not_of("-0123456789") == std::string::npos;
}

// What is below the root: a section, a line of values, or a value.
enum class Level { kRoot, kSection, kLine };

// A document that becomes the text of a file.
class Writer {
 public:
  explicit Writer(const JsonTree& tree) : tree_(tree) {}

  // False if the document has not the form of `dump --json`.
  bool Write() {
    if (!Check(tree_.nodes[0], kJsonFile | kJsonSections, kJsonSections)) return false;
    open_.push_back({0, First(0), Level::kRoot});
    while (!open_.empty()) {
      Open& innermost = open_.back();
      if (innermost.child == 0) {
        Close();
        continue;
      }
      const std::size_t child = innermost.child;
      innermost.child = tree_.nodes[child].next;
      Note(child);
      if (!(innermost.level == Level::kLine ? WriteValue(child) : WriteOwner(child))) return false;
    }
    return true;
  }

  const std::string& Text() const { return text_; }
  const std::string& Error() const { return error_; }
  const JsonNode& Culprit() const { return *culprit_; }

  // The node that wrote this part of the text.
  const JsonNode& NodeAt(std::size_t offset) const {
    const auto after = std::upper_bound(
        notes_.begin(), notes_.end(), offset,
        [](std::size_t value, const NodePlace& note) { return value < note.offset; });
    return tree_.nodes[after == notes_.begin() ? 0 : std::prev(after)->node];
  }

 private:
  struct Open {
    std::size_t node;
    std::size_t child;  // the next one; 0: none
    Level level;
  };
  struct NodePlace {
    std::size_t offset;
    std::size_t node;
  };

  std::size_t First(std::size_t node) const { return tree_.nodes[node].firstChild; }

  void Note(std::size_t node) { notes_.push_back({text_.size(), node}); }

  bool Fail(const JsonNode& node, const std::string& error) {
    culprit_ = &node;
    error_ = error;
    return false;
  }

  bool Check(const JsonNode& node, unsigned int allowed, unsigned int required) {
    const unsigned int wrong = (node.members & ~allowed) | (required & ~node.members);
    if (wrong == 0) return true;
    unsigned int first = 1;
    while ((wrong & first) == 0) first <<= 1;
    const bool isMissing = (required & first) != 0;
    return Fail(node, std::string(isMissing ? "the object has no member `"
                                            : "the object cannot have the member `") +
                          NameOf(static_cast<JsonMember>(first)) + "`");
  }

  void Indent() { text_.append(3 * std::min(open_.size() - 1, kDeepest), ' '); }

  void Close() {
    const Open closed = open_.back();
    open_.pop_back();
    if (closed.level == Level::kLine) text_ += '\n';
    if (closed.level != Level::kSection) return;
    Indent();
    text_ += "EndSect  // " + tree_.nodes[closed.node].name + '\n';
  }

  void WriteRemark(const JsonNode& node) {
    if (node.Has(kJsonRemark)) text_ += " {" + node.remark + '}';
  }

  bool WriteOwner(std::size_t number) {
    const JsonNode& node = tree_.nodes[number];
    const bool isSection = node.kind == "section";
    const bool isLine = node.kind == "keyword" || node.kind == "definition";
    if (!isSection && (!isLine || open_.back().level == Level::kRoot))
      return Fail(node, "the kind `" + node.kind + "` is not possible here");
    const unsigned int list = isSection ? kJsonChildren : kJsonValues;
    if (!Check(node, kHead | list, kJsonKind | kJsonName | list)) return false;
    if (open_.back().level == Level::kRoot && !text_.empty()) text_ += '\n';
    Indent();
    const std::string name = node.name + (node.isMulti ? "()" : "");
    if (isSection) {
      text_ += '[' + name + ']';
    } else {
      text_ += node.kind == "keyword" ? name : "default (" + node.name + ')';
    }
    WriteRemark(node);
    text_ += isSection ? "\n" : " =";
    open_.push_back({number, First(number), isSection ? Level::kSection : Level::kLine});
    return true;
  }

  bool WriteValue(std::size_t number) {
    const JsonNode& node = tree_.nodes[number];
    if (!Check(node,
               kJsonKind | kJsonValue | kJsonText | kJsonReal | kJsonItems | kJsonRemark | kPlaces,
               kJsonKind)) {
      return false;
    }
    std::string text;
    if (!MakeText(node, &text))
      return Fail(node, "the members of the value do not fit the kind `" + node.kind + "`");
    text_ += First(open_.back().node) == number ? " " : ", ";
    text_ += text;
    if (node.kind != "unknown") WriteRemark(node);
    return true;
  }

  // False if the members of the value do not fit its kind.
  static bool MakeText(const JsonNode& node, std::string* text) {
    const std::string& kind = node.kind;
    if (kind == "unknown") {
      *text = '{' + node.remark + '}';
    } else if (kind == "integer" || kind == "real") {
      return MakeNumber(node, text);
    } else if (kind == "boolean") {
      const bool* value = std::get_if<bool>(&node.value);
      if (value != nullptr) *text = *value ? "true" : "false";
      return value != nullptr;
    } else if (kind == "list") {
      *text = node.text;
      return node.Has(kJsonText);
    } else if (kind != "undefined" && kind != "default") {
      return MakeMarked(node, text);
    }
    return !node.Has(kJsonValue);
  }

  // The text of a number, if there is one, has digits that its value has not.
  static bool MakeNumber(const JsonNode& node, std::string* text) {
    const auto* value = std::get_if<JsonNumber>(&node.value);
    const bool isWhole = value != nullptr && IsWhole(value->text);
    if (node.Has(kJsonValue) && value == nullptr) return false;
    if (node.Has(kJsonText)) {
      *text = node.text;
    } else if (value == nullptr || (node.kind == "integer" && !isWhole)) {
      return false;
    } else {
      *text = value->text;
      if (node.kind == "real" && isWhole) *text += ".0";
    }
    return true;
  }

  static bool MakeMarked(const JsonNode& node, std::string* text) {
    const auto* value = std::get_if<std::string>(&node.value);
    if (value == nullptr) return false;
    if (node.kind == "substitution") {
      *text = '%' + *value;
    } else if (node.kind == "string") {
      *text = Between('\'', *value);
    } else if (node.kind == "filename" || node.kind == "datetime") {
      *text = Between(node.kind == "filename" ? '|' : '#', *value);
    } else {
      return false;
    }
    return true;
  }

  const JsonTree& tree_;
  std::vector<Open> open_;
  std::vector<NodePlace> notes_;  // in the order of the text
  std::string text_;
  std::string error_;
  const JsonNode* culprit_ = nullptr;
};

// The comparison of a loaded node with that of the document.

bool HasHead(void* loaded, const JsonNode& node) {
  static constexpr const char* kKinds[] = {"section", "keyword", "definition"};
  const int kind = zonxGetKind(loaded);
  if (kind < ZONX_SECTION || kind > ZONX_DEFINITION) return false;
  return node.kind == kKinds[kind - ZONX_SECTION] && node.name == zonGetName(loaded) &&
         HasMultiFlag(loaded) == node.isMulti;
}

// An integer is compared by the view that the document has, and by all its digits without a text.
bool HasNumber(void* loaded, const JsonNode& node) {
  const auto* value = std::get_if<JsonNumber>(&node.value);
  if (node.Has(kJsonReal) && zonGetDouble(loaded) != node.real) return false;
  if (value == nullptr || !node.Has(kJsonText)) return true;
  const double number = node.kind == "integer" ? zonGetInt(loaded) : zonGetDouble(loaded);
  return number == value->number;
}

bool HasValue(void* loaded, const JsonNode& node) {
  if (node.kind != KindOf(loaded)) return false;
  if (node.kind == "integer" || node.kind == "real") return HasNumber(loaded, node);
  if (node.kind == "list") return WrittenForm(loaded) == node.text;
  const auto* value = std::get_if<std::string>(&node.value);
  return value == nullptr || PlainForm(loaded) == *value;
}

bool IsSame(void* loaded, const JsonNode& node) {
  const char* remark = "";
  CheckMemory(zonxGetRemark(loaded, &remark));
  if (node.remark != remark) return false;
  return zonIsParam(loaded) != 0 ? HasValue(loaded, node) : HasHead(loaded, node);
}

// The first node of the document that a loaded tree does not have as it is; null if it has all.
// Children of the loaded tree that the document does not have are a difference of their owner.
const JsonNode* FindDifference(void* root, const std::vector<JsonNode>& nodes) {
  struct Pair {
    void* loaded;
    std::size_t node;
    std::size_t child;
    unsigned int compared;
  };
  std::vector<Pair> open{{root, 0, nodes[0].firstChild, 0}};
  while (!open.empty()) {
    Pair& pair = open.back();
    void* const child = zonNodeByNum(pair.loaded, ++pair.compared);
    if (pair.child == 0) {
      // A line without values is one with an empty place.
      const bool isEmpty = pair.compared == 1 && nodes[pair.node].Has(kJsonValues);
      if (child != nullptr && !isEmpty) return &nodes[pair.node];
      open.pop_back();
      continue;
    }
    const std::size_t node = pair.child;
    if (child == nullptr || !IsSame(child, nodes[node])) return &nodes[node];
    pair.child = nodes[node].next;
    open.push_back({child, node, nodes[node].firstChild, 0});
  }
  return nullptr;
}

class Converter {
 public:
  explicit Converter(const std::string& argument) : input_(argument) {}
  ~Converter() {
    if (file_ != nullptr) zonClose(&file_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  Status Run() {
    if (input_.Path().empty()) return kTrouble;
    if (const int error = ReadFile(input_.Path(), &json_); error != 0) {
      PrintMessage(input_.Name() + ": " + std::strerror(error));
      return kTrouble;
    }
    const JsonTree tree = ReadJsonTree(json_);
    if (!tree.error.empty()) return Refuse(tree.offset, tree.error);
    Writer writer(tree);
    if (!writer.Write()) return Refuse(writer.Culprit().offset, writer.Error());
    if (!Load(writer)) return kTrouble;
    if (const JsonNode* node = FindDifference(zonGetRoot(file_), tree.nodes)) {
      const bool isNumber = node->kind == "integer" || node->kind == "real";
      return Refuse(node->offset, isNumber ? "the members of the number are different numbers"
                                           : "no parameter file can have this " + node->kind);
    }
    std::cout << writer.Text();
    return kFine;
  }

 private:
  // The place is that of the last character before the offset.
  Status Refuse(std::size_t offset, const std::string& message) const {
    const std::size_t at = std::min(offset, json_.size()) - (offset > 0 ? 1 : 0);
    const std::size_t end = std::min(json_.find('\n', at), json_.size());
    const std::size_t start = at == 0 ? 0 : json_.rfind('\n', at - 1) + 1;
    const auto line =
        std::count(json_.begin(), json_.begin() + static_cast<std::ptrdiff_t>(start), '\n') + 1;
    PrintDiagnostic(
        {input_.Name(), static_cast<unsigned int>(line), static_cast<unsigned int>(at - start + 1)},
        message, json_.substr(start, end - start));
    return kTrouble;
  }

  // False, with a message, if the library does not accept the text.
  bool Load(const Writer& writer) {
    struct First {
      std::string message;
      std::size_t offset;
    } first{};
    const auto keep = [](const zonxReport* report, void* context) {
      auto& kept = *static_cast<First*>(context);
      if (report->severity == ZONX_ERROR && kept.message.empty()) {
        kept = {report->message, report->place.offset};
      }
    };
    const std::string& text = writer.Text();
    const int status =
        CheckMemory(zonxLoadText(text.data(), text.size(), "", &file_, keep, &first));
    if (status == ZONX_OK) return true;
    Refuse(writer.NodeAt(first.offset).offset, first.message);
    return false;
  }

  const Input input_;
  std::string json_;
  void* file_ = nullptr;
};

}  // namespace

Status FromJson(const std::string& file) {
  return Converter(file).Run();
}

}  // namespace tool
