// The command set. Every value becomes a text as a file has it, which the library then sets.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>

#include <zon.h>
#include <zonx.h>

#include "tool/addition.h"
#include "tool/changes.h"
#include "tool/commands.h"
#include "tool/editedfile.h"
#include "tool/nodes.h"
#include "tool/paths.h"
#include "tool/values.h"
#include "tool/valuetext.h"

namespace tool {
namespace {

// What a path leads to.
struct Target {
  void* keyword = nullptr;  // null: it is to be made
  unsigned int count = 0;   // of its values
  unsigned int number = 0;  // of "[n]", at most one past the last; 0: none
};

// The "[n]" at the end of a path that the library found well-formed; 0 if there is none.
unsigned int NumberOf(const std::string& path) {
  const std::size_t bracket = path.rfind('[');
  if (bracket == std::string::npos) return 0;
  const unsigned long long number = std::strtoull(path.c_str() + bracket + 1, nullptr, 10);
  return static_cast<unsigned int>(std::min(number, 0xFFFFFFFFULL));
}

class Setter {
 public:
  Setter(EditedFile& file, const std::string& type) : file_(file), type_(type) {}

  Status Apply(const Change& change) {
    switch (change.verb) {
      case Change::Verb::kSet:
        return ApplySet(change);
      case Change::Verb::kAdd:
        return Addition(change.path, change.values, "").AddTo(file_, change.next);
      case Change::Verb::kUnset:
        return ApplyUnset(change.path);
      default:
        return ApplyMove(change);
    }
  }

 private:
  Status ApplyUnset(const std::string& path) {
    std::vector<void*> nodes;
    const Status status = FindNodes(file_, path, ZONX_CLOB, &nodes);
    if (status == kFine) RemoveAll(nodes);
    return status;
  }

  Status ApplyMove(const Change& change) {
    std::vector<void*> nodes;
    Status status = FindNodes(file_, change.path, ZONX_KEYWORD, &nodes);
    if (status != kFine) return status;
    void* next = nullptr;
    const bool isSection = zonxGetKind(nodes.front()) == ZONX_SECTION;
    if (!change.next.empty()) {
      status = FindSibling(file_, change.next, OwnerOf(nodes.front()), isSection, &next);
    }
    if (status == kFine) MoveNode(nodes.front(), next);
    return status;
  }

  Status ApplySet(const Change& change) {
    Status worst = kFine;
    for (const std::string& path : Expand(file_.File(), change.path)) {
      Target target;
      Status status = FindTarget(path, &target);
      if (status == kFine) status = SetValues(path, target, change);
      worst = std::max(worst, status);
    }
    return worst;
  }

  // A keyword may be missing, but not its section: a mistyped path would add both.
  Status FindTarget(const std::string& path, Target* target) {
    void* node = nullptr;
    const int status = Find(file_.File(), path, &node);
    if (status == ZONX_OK) {
      const int kind = zonxGetKind(node);
      if (kind <= ZONX_SECTION) return file_.ReportPath(path, ZONX_WRONG_KIND);
      target->keyword = kind == ZONX_KEYWORD ? node : OwnerOf(node);
    } else if (status != ZONX_MISSING || !FindPlaceForNew(path, target)) {
      return file_.ReportPath(path, status);
    }
    target->number = NumberOf(path);
    if (target->keyword != nullptr)
      target->count = static_cast<unsigned int>(zonGetNoParams(target->keyword));
    return kFine;
  }

  // Whether the path leads to one value more than its keyword has, or to a keyword that its section
  // can get.
  bool FindPlaceForNew(const std::string& path, Target* target) {
    void* node = nullptr;
    const std::string keyword = path.substr(0, path.find('['));
    if (keyword.size() != path.size() && Find(file_.File(), keyword, &node) == ZONX_OK) {
      target->keyword = node;
      return zonxGetKind(node) == ZONX_KEYWORD &&
             static_cast<unsigned int>(zonGetNoParams(node)) + 1 == NumberOf(path);
    }
    const std::size_t slash = keyword.rfind('/');
    return NumberOf(path) <= 1 && slash != std::string::npos && slash + 1 < keyword.size() &&
           Find(file_.File(), keyword.substr(0, slash + 1), &node) == ZONX_OK;
  }

  Status SetValues(const std::string& path, const Target& target, const Change& change) {
    const bool isWhole = change.isLine ? target.number == 0 : change.values.size() > 1;
    if (isWhole && target.number != 0) {
      return RefuseValue(target, target.number, "`" + path + "` selects one value",
                         "a path without [n] selects all of them");
    }
    const unsigned int first = std::max(target.number, 1U);
    std::string text;
    for (std::size_t at = 0; at < change.values.size(); ++at) {
      const unsigned int number = first + static_cast<unsigned int>(at);
      const int kind = KindAt(target, number, change);
      const auto value = TextOf(change.values[at], kind);
      if (!value) return RefuseKind(path, target, number, change.values[at], kind);
      text += (at > 0 ? ", " : "") + *value;
    }
    if (target.keyword == nullptr) return SetNew(path, text);
    if (!isWhole && values_.Count(text) == 1) {
      if (values_.SetAlone(target.keyword, first, text)) return kFine;
      text = WithOthers(target, first, text);
    }
    return Check(path, zonxSetText(target.keyword, "", text.c_str()));
  }

  // The kind that a value keeps; 0 for any. A value after the last has the kind of the last.
  int KindAt(const Target& target, unsigned int number, const Change& change) const {
    if (type_ == "string") return ZONX_STRING;
    if (type_ == "filename") return ZONX_FILENAME;
    if (change.isLine || type_ == "text" || target.count == 0) return 0;
    const int kind = zonxGetKind(zonParamByNum(target.keyword, std::min(number, target.count)));
    const bool isKept = (kind >= ZONX_INTEGER && kind <= ZONX_FILENAME) || kind == ZONX_DATETIME ||
                        kind == ZONX_CLOB;
    return isKept ? kind : 0;
  }

  std::optional<std::string> TextOf(const std::string& given, int kind) {
    if (!type_.empty() && kind != 0) return values_.Quoted(kind, given);
    if (kind != 0) return values_.OfKind(kind, given);
    return values_.Count(given) > 0 ? std::optional<std::string>(given) : std::nullopt;
  }

  // All values of the keyword, with the one of this number replaced. The library leaves those that
  // are equal as they are.
  std::string WithOthers(const Target& target, unsigned int number, const std::string& text) const {
    std::string all;
    for (unsigned int n = 1; n <= std::max(number, target.count); ++n) {
      if (n > 1) all += ", ";
      all += n == number ? text : TextForm(zonParamByNum(target.keyword, n));
    }
    return all;
  }

  Status SetNew(const std::string& path, const std::string& text) {
    file_.WarnOfNewName(path);
    const std::string keyword = path.substr(0, path.find('['));
    return Check(path, zonxSetText(file_.File(), keyword.c_str(), text.c_str()));
  }

  Status Check(const std::string& path, int status) {
    return CheckMemory(status) == ZONX_OK ? kFine : file_.ReportPath(path, status);
  }

  Status RefuseKind(const std::string& path, const Target& target, unsigned int number,
                    const std::string& given, int kind) {
    if (kind != 0 && type_.empty()) {
      return RefuseValue(
          target, number,
          "`" + path + "` is " + KindWithArticle(kind) + ", and `" + given + "` is none",
          "--type text sets a value of another kind");
    }
    if (kind != 0) {
      return RefuseValue(target, number,
                         "`" + given + "` cannot be written as " + KindWithArticle(kind), "");
    }
    return RefuseValue(target, number, "`" + given + "` is no value as a file has it",
                       "--type string sets a text without quotes");
  }

  Status RefuseValue(const Target& target, unsigned int number, const std::string& message,
                     const std::string& hint) {
    if (target.keyword == nullptr) return file_.Refuse(file_.File(), message, hint);
    const bool hasValue = number <= target.count;
    return file_.Refuse(hasValue ? zonParamByNum(target.keyword, number) : target.keyword, message,
                        hint);
  }

  EditedFile& file_;
  const std::string& type_;
  ValueText values_;
};

}  // namespace

Status Set(const SetOptions& options) {
  std::vector<Change> changes;
  for (const auto& group : options.groups) {
    Change change;
    change.path = group.front();
    change.values.assign(group.begin() + 1, group.end());
    changes.push_back(std::move(change));
  }
  if (!options.changes.empty()) {
    const Status status = ReadChanges(options.changes, &changes);
    if (status != kFine) return status;
  }
  Status worst = kFine;
  for (const std::string& name : options.files) {
    const auto change = [&](EditedFile& file) {
      Setter setter(file, options.type);
      Status status = kFine;
      for (const Change& one : changes) status = std::max(status, setter.Apply(one));
      return status;
    };
    worst = std::max(worst, EditFile(name, options.edit, change));
    if (!std::cout) break;
  }
  return worst;
}

}  // namespace tool
