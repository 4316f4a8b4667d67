#include "tool/addition.h"

#include <zon.h>
#include <zonx.h>

#include "tool/nodes.h"
#include "tool/paths.h"
#include "tool/values.h"
#include "tool/valuetext.h"

namespace tool {

Addition::Addition(const std::string& path, const std::vector<std::string>& values,
                   const std::string& type)
    : name_(path) {
  isSection_ = !name_.empty() && name_.back() == '/';
  if (isSection_) name_.pop_back();
  const std::size_t slash = name_.rfind('/');
  if (slash != std::string::npos) {
    parent_ = name_.substr(0, slash + 1);
    name_.erase(0, slash + 1);
  }
  Prepare(values, type);
}

void Addition::Prepare(const std::vector<std::string>& values, const std::string& type) {
  ValueText text;
  if (name_ == "()" && !isSection_) name_.clear();
  if (!(name_.empty() && !isSection_ && !parent_.empty()) && !text.IsName(name_)) {
    fault_ = "`" + name_ + "` is no name of a new node";
  } else if (isSection_ && !values.empty()) {
    fault_ = "a section has no values";
  } else if (!isSection_ && parent_.empty()) {
    fault_ = "a keyword must be in a section";
  }
  const int kind = type == "filename" ? ZONX_FILENAME : ZONX_STRING;
  for (std::size_t at = 0; fault_.empty() && at < values.size(); ++at) {
    const std::string& value = values[at];
    const auto quoted = text.Quoted(kind, value);
    const bool isWritten = type.empty();
    if (isWritten ? text.Count(value) == 0 : !quoted) {
      fault_ =
          "`" + value + "` is no value as a file has it; --type string sets a text without quotes";
    } else {
      text_ += (at > 0 ? ", " : "") + (isWritten ? value : *quoted);
    }
  }
}

Status Addition::AddTo(EditedFile& file, const std::string& next) const {
  std::vector<void*> parents;
  Status status = kFine;
  if (parent_.empty()) {
    parents.push_back(zonGetRoot(file.File()));
  } else {
    status = FindNodes(file, parent_, ZONX_SECTION, &parents);
  }
  for (std::size_t at = 0; status == kFine && at < parents.size(); ++at) {
    void* sibling = nullptr;
    if (!next.empty()) status = FindSibling(file, next, parents[at], isSection_, &sibling);
    if (status == kFine) InsertNode(parents[at], isSection_, name_, text_, sibling);
  }
  return status;
}

Status FindSibling(EditedFile& file, const std::string& path, void* parent, bool isSection,
                   void** node) {
  const int status = Find(file.File(), path, node);
  if (status != ZONX_OK) return file.ReportPath(path, status);
  const int kind = zonxGetKind(*node);
  if (kind == (isSection ? ZONX_SECTION : ZONX_KEYWORD) && OwnerOf(*node) == parent) return kFine;
  return file.Refuse(*node, "`" + path + "` is no sibling of the same kind", "");
}

}  // namespace tool
