// The commands unset, add and rename. All nodes are found before the first one changes, so every path is
// that of the file as it was.
#include <algorithm>
#include <new>
#include <string>
#include <unordered_set>
#include <vector>

#include <zon.h>
#include <zonclasses.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/editedfile.h"
#include "tool/paths.h"
#include "tool/values.h"
#include "tool/valuetext.h"

namespace tool {
namespace {

// The nodes of a path, which are of a kind up to `last`, but not the root.
Status FindNodes(EditedFile& file, const std::string& path, int last, std::vector<void*>* nodes) {
  Status worst = kFine;
  for (const std::string& one : Expand(file.File(), path)) {
    void* node = nullptr;
    int status = Find(file.File(), one, &node);
    if (status == ZONX_OK) {
      const int kind = zonxGetKind(node);
      if (kind == ZONX_FILE || kind > last) status = ZONX_WRONG_KIND;
    }
    if (status == ZONX_OK) {
      nodes->push_back(node);
    } else {
      worst = std::max(worst, file.ReportPath(one, status));
    }
  }
  return worst;
}

void* OwnerOf(void* node) {
  return static_cast<CzonNode*>(static_cast<CzonBase*>(node))->GetOwner();
}

// Removes each node once; the nodes below a removed one go with it.
void RemoveAll(const std::vector<void*>& nodes) {
  std::unordered_set<void*> all(nodes.begin(), nodes.end());
  std::vector<void*> outermost;
  for (void* node : all) {
    void* owner = OwnerOf(node);
    while (owner != nullptr && all.count(owner) == 0) owner = OwnerOf(owner);
    if (owner == nullptr) outermost.push_back(node);
  }
  for (void* node : outermost) CheckMemory(zonxRemove(node, ""));
}

// Adds a section or a keyword to one parent.
class Adder {
 public:
  Adder(void* parent, bool isSection, const std::string& name)
      : parent_(parent), isSection_(isSection), name_(name) {}

  // False if out of memory.
  bool Insert(const std::string& values) {
    const unsigned int position = PositionAfterLast();
    if (isSection_) return zoneInsertNewSection(parent_, name_.c_str(), position) != nullptr;
    if (position == 0) {
      const std::string next = name_ + ":" + std::to_string(count_ + 1);
      return zonxSetText(parent_, next.c_str(), values.c_str()) == ZONX_OK;
    }
    void* const keyword = zoneInsertNewKeyword(parent_, name_.c_str(), position);
    return keyword != nullptr && zonxSetText(keyword, "", values.c_str()) == ZONX_OK;
  }

 private:
  void* Child(unsigned int n) const {
    return isSection_ ? zonSectionByNum(parent_, n) : zonKeywordByNum(parent_, n);
  }

  // The position behind the last one of the name; 0 if it is the end.
  unsigned int PositionAfterLast() {
    void* first = nullptr;
    const std::string path = isSection_ ? name_ + "/" : name_;
    if (Find(parent_, path, &first) != ZONX_OK ||
        (zonxGetKind(first) == ZONX_SECTION) != isSection_)
      return 0;
    count_ = zonGetNoInstances(first);
    void* last = first;
    Find(parent_, name_ + ":" + std::to_string(count_) + (isSection_ ? "/" : ""), &last);
    unsigned int n = 1;
    while (Child(n) != nullptr && Child(n) != last) ++n;
    return Child(n + 1) != nullptr ? n + 1 : 0;
  }

  void* const parent_;
  const bool isSection_;
  const std::string& name_;
  int count_ = 0;  // of the nodes of that name
};

// What the command line says is to be added.
class Addition {
 public:
  explicit Addition(const AddOptions& options) : options_(options) {
    name_ = options.path;
    isSection_ = !name_.empty() && name_.back() == '/';
    if (isSection_) name_.pop_back();
    const std::size_t slash = name_.rfind('/');
    if (slash == std::string::npos) return;
    parent_ = name_.substr(0, slash + 1);
    name_.erase(0, slash + 1);
  }

  // Checks name and values. False, with a message, if they cannot be added to any file.
  bool Prepare() {
    ValueText values;
    if (!values.IsName(name_)) return Refuse("`" + name_ + "` is no name of a new node");
    if (isSection_ && !options_.values.empty()) return Refuse("a section has no values");
    if (!isSection_ && parent_.empty()) return Refuse("a keyword must be in a section");
    const int kind = options_.type == "filename" ? ZONX_FILENAME : ZONX_STRING;
    for (std::size_t at = 0; at < options_.values.size(); ++at) {
      const std::string& value = options_.values[at];
      const auto quoted = values.Quoted(kind, value);
      const bool isWritten = options_.type.empty();
      if (isWritten ? values.Count(value) == 0 : !quoted) return RefuseValue(value);
      text_ += (at > 0 ? ", " : "") + (isWritten ? value : *quoted);
    }
    return true;
  }

  Status AddTo(EditedFile& file) const {
    std::vector<void*> parents;
    Status status = kFine;
    if (parent_.empty()) {
      parents.push_back(zonGetRoot(file.File()));
    } else {
      status = FindNodes(file, parent_, ZONX_SECTION, &parents);
    }
    if (status != kFine) return status;
    for (void* parent : parents) {
      if (!Adder(parent, isSection_, name_).Insert(text_)) throw std::bad_alloc();
    }
    return kFine;
  }

 private:
  static bool Refuse(const std::string& message) {
    PrintMessage(message);
    return false;
  }
  static bool RefuseValue(const std::string& value) {
    return Refuse("`" + value +
                  "` is no value as a file has it; --type string sets a text without quotes");
  }

  const AddOptions& options_;
  std::string parent_;  // ends with "/", or is empty
  std::string name_;
  bool isSection_ = false;
  std::string text_;
};

}  // namespace

Status Unset(const std::string& file, const std::vector<std::string>& paths,
             const EditOptions& options) {
  return EditFile(file, options, [&](EditedFile& edited) {
    std::vector<void*> nodes;
    Status status = kFine;
    for (const std::string& path : paths) {
      status = std::max(status, FindNodes(edited, path, ZONX_CLOB, &nodes));
    }
    if (status == kFine) RemoveAll(nodes);
    return status;
  });
}

Status Add(const AddOptions& options) {
  Addition addition(options);
  if (!addition.Prepare()) return kTrouble;
  return EditFile(options.file, options.edit,
                  [&](EditedFile& file) { return addition.AddTo(file); });
}

Status Rename(const std::string& file, const std::string& path, const std::string& name,
              const EditOptions& options) {
  if (!ValueText().IsName(name)) {
    PrintMessage("`" + name + "` is no name of a section or keyword");
    return kTrouble;
  }
  return EditFile(file, options, [&](EditedFile& edited) {
    std::vector<void*> nodes;
    const Status status = FindNodes(edited, path, ZONX_KEYWORD, &nodes);
    if (status != kFine) return status;
    for (void* node : nodes) {
      const bool isSection = zonxGetKind(node) == ZONX_SECTION;
      const auto rename = isSection ? zoneRenameSection : zoneRenameKeyword;
      if (rename(node, name.c_str()) != 0) throw std::bad_alloc();
    }
    return kFine;
  });
}

}  // namespace tool
