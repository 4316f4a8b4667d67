// The pairs of sections are collected from the outside to the inside and changed from the inside to
// the outside, because a node that is moved is replaced by a copy. In a section the children of a
// kind are brought into order from the last to the first: what follows a child is in its final
// order then, so a child that is added or moved needs only the child that it comes before.
// Tested by tool/tests/diff.t and tool/tests/changes.py.
#include "tool/changewriter.h"

#include <filesystem>
#include <iostream>

#include <zon.h>

#include "tool/nodes.h"
#include "tool/paths.h"
#include "tool/values.h"

namespace tool {
namespace {

bool IsNamed(int kind) {
  return kind >= ZONX_SECTION && kind <= ZONX_DEFINITION;
}

// Backslashes separate folders too.
bool IsAbsolute(const std::string& name) {
  return !name.empty() && (name[0] == '/' || name[0] == '\\');
}

std::filesystem::path FolderOf(const LoadedFile& file) {
  return std::filesystem::absolute(file.GetInput().Name()).parent_path().lexically_normal();
}

}  // namespace

void ChangeWriter::Add(const zonxDifference& difference) {
  void* const node = difference.after != nullptr ? difference.after : difference.before;
  const int kind = zonxGetKind(node);
  const bool isFlag = IsNamed(kind) && difference.change == ZONX_DIFFERENT;
  if (kind == ZONX_DEFINITION || isFlag) return Refuse(difference.path);
  if (!IsNamed(kind)) {
    for (void* value : {difference.before, difference.after}) {
      if (value != nullptr) changedKeywords_.insert(OwnerOf(value));
    }
  } else if (difference.change == ZONX_MOVED) {
    moved_[difference.before] = difference.after;
    movedAfter_.insert(difference.after);
  } else {
    (difference.before != nullptr ? removed_ : added_).insert(node);
  }
}

Status ChangeWriter::Print() {
  if (status_ != kFine) return status_;
  if (FolderOf(before_) != FolderOf(after_)) folder_ = FolderOf(before_);
  std::vector<Pair> sections{{before_.Root(), after_.Root()}};
  for (std::size_t at = 0; at < sections.size(); ++at) {
    for (const Pair& pair : PairChildren(sections[at], true)) sections.push_back(pair);
  }
  for (; !sections.empty(); sections.pop_back()) PrintSection(sections.back());
  return status_;
}

std::vector<void*> ChangeWriter::Children(void* section, bool isSection) {
  std::vector<void*> children;
  const auto byNumber = isSection ? zonSectionByNum : zonKeywordByNum;
  if (!isSection && zonxGetKind(section) != ZONX_SECTION) return children;
  for (unsigned int n = 1; void* child = byNumber(section, n); ++n) children.push_back(child);
  return children;
}

// The moved ones and, in their order, those that neither came nor went nor moved.
std::vector<ChangeWriter::Pair> ChangeWriter::PairChildren(const Pair& parent,
                                                           bool isSection) const {
  std::vector<Pair> pairs;
  std::vector<void*> after;
  for (void* child : Children(parent.after, isSection)) {
    if (added_.count(child) == 0 && movedAfter_.count(child) == 0) after.push_back(child);
  }
  std::size_t next = 0;
  for (void* child : Children(parent.before, isSection)) {
    if (removed_.count(child) != 0) continue;
    const auto moved = moved_.find(child);
    pairs.push_back({child, moved != moved_.end() ? moved->second : after.at(next++)});
  }
  return pairs;
}

void ChangeWriter::PrintSection(const Pair& pair) {
  const std::vector<Pair> keywords = PairChildren(pair, false);
  const std::vector<Pair> sections = PairChildren(pair, true);
  for (const Pair& keyword : keywords) {
    if (changedKeywords_.count(keyword.after) + changedKeywords_.count(keyword.before) != 0) {
      PrintValues(keyword.before, keyword.after);
    }
  }
  PrintOrder(pair, false, keywords);
  PrintOrder(pair, true, sections);
}

void ChangeWriter::PrintOrder(const Pair& parent, bool isSection, const std::vector<Pair>& pairs) {
  std::vector<void*> removed;
  for (void* child : Children(parent.before, isSection)) {
    if (removed_.count(child) != 0) removed.push_back(child);
  }
  for (; !removed.empty(); removed.pop_back()) {
    std::cout << "unset " << PathOf(removed.back()) << '\n';
    RemoveAll({removed.back()});
  }
  std::unordered_map<void*, void*> beforeOf;
  for (const Pair& pair : pairs) beforeOf[pair.after] = pair.before;
  const std::vector<void*> after = Children(parent.after, isSection);
  void* next = nullptr;
  for (auto child = after.rbegin(); child != after.rend(); ++child) {
    const auto former = beforeOf.find(*child);
    if (former == beforeOf.end()) {
      next = PrintAddition(parent.before, *child, next);
    } else {
      next = movedAfter_.count(*child) != 0 ? PrintMove(former->second, next) : former->second;
    }
  }
}

void* ChangeWriter::PrintAddition(void* parent, void* model, void* next) {
  struct Waiting {
    void* parent;
    void* model;
  };
  std::vector<Waiting> waiting;
  const auto addContent = [&](void* section, void* content) {
    const std::vector<void*> inner = Children(content, true);
    for (auto child = inner.rbegin(); child != inner.rend(); ++child) {
      waiting.push_back({section, *child});
    }
    for (void* keyword : Children(content, false)) PrintNode(section, keyword, nullptr);
  };
  void* const first = PrintNode(parent, model, next);
  if (zonxGetKind(model) == ZONX_SECTION) addContent(first, model);
  while (!waiting.empty()) {
    const Waiting section = waiting.back();
    waiting.pop_back();
    addContent(PrintNode(section.parent, section.model, nullptr), section.model);
  }
  return first;
}

void* ChangeWriter::PrintNode(void* parent, void* model, void* next) {
  const bool isSection = zonxGetKind(model) == ZONX_SECTION;
  const std::string name = zonGetName(model);
  const std::string path = PathOf(parent) + (name.empty() ? "()" : name) + (isSection ? "/" : "");
  const std::string values = isSection ? "" : ValuesOf(model);
  std::cout << "add " << path;
  if (next != nullptr) std::cout << " before " << PathOf(next);
  if (!isSection) std::cout << " = " << values;
  std::cout << '\n';
  void* const node = InsertNode(parent, isSection, name, values, next);
  return next == nullptr ? PrintMove(node, nullptr) : node;  // it follows the last of its name
}

void* ChangeWriter::PrintMove(void* node, void* next) {
  const std::string path = PathOf(node);
  const std::string place = next != nullptr ? " before " + PathOf(next) : " last";
  void* const moved = MoveNode(node, next);
  if (moved != node) std::cout << "move " << path << place << '\n';
  return moved;
}

void ChangeWriter::PrintValues(void* keyword, void* after) {
  const std::string values = ValuesOf(after);
  std::cout << PathOf(keyword) << " = " << values << '\n';
}

std::string ChangeWriter::ValuesOf(void* keyword) {
  std::string text;
  for (unsigned int n = 1; void* value = zonNodeByNum(keyword, n); ++n) {
    text += (n > 1 ? ", " : "") + ValueOf(value);
  }
  return text;
}

// A relative file name is written for the folder of the file that is changed.
std::string ChangeWriter::ValueOf(void* value) const {
  const char* resolved = nullptr;
  if (!folder_.empty() && zonxGetKind(value) == ZONX_FILENAME &&
      !IsAbsolute(zonGetFilenameString(value)) &&
      CheckMemory(zonxGetFilename(value, "", &resolved)) == ZONX_OK) {
    return '|' + std::filesystem::path(resolved).lexically_relative(folder_).string() + '|';
  }
  const char* text = nullptr;
  return CheckMemory(zonxGetText(value, "", &text)) == ZONX_OK ? text : WrittenForm(value);
}

void ChangeWriter::Refuse(const std::string& path) {
  PrintMessage("a line of changes cannot express the difference of `" + path + "`");
  status_ = kTrouble;
}

}  // namespace tool
