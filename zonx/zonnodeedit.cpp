// What is missing is made aside, with its values, and filed by one last step. Values of a keyword
// that exists are changed in three steps: all changes are prepared, room is made for more values,
// and then nothing can fail.
#include "zonx/zonnodeedit.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "api/zonx.h"
#include "base/zonchars.h"
#include "editing/zonedit.h"
#include "tree/zonkeyword.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace zon {

std::uint32_t PlaceForNew(const CzonTargetList& section, bool isKeyword) {
  const CzonNode* last = isKeyword
                             ? NodeAccess::LastKeyword(static_cast<const CzonSection&>(section))
                             : NodeAccess::LastSection(section);
  const std::uint32_t end = NodeAccess::Children(section).Size();
  if (last == nullptr) return isKeyword ? 0 : end;
  return std::min(NodeAccess::PlaceOf(section, *last) + 1, end);
}

namespace {

// What a path consists of.
struct PathShape {
  bool isMalformed = false;
  unsigned int names = 0;
  bool endsInSection = false;  // with "/"
  unsigned int valueNumber = 0;
};

PathShape ShapeOf(const char* path) {
  PathShape shape;
  PathReader reader(path);
  for (PathStep step; reader.ReadStep(&step); ++shape.names) shape.endsInSection = step.isSection;
  shape.valueNumber = reader.ReadValueNumber();
  shape.isMalformed = !reader.IsAtEnd();
  return shape;
}

// Whether the lexer reads the text as a name.
bool IsName(std::string_view text) {
  if (text.empty() || !IsClass(text.front(), kAlpha)) return false;
  for (const char c : text) {
    if (!IsClass(c, kWord)) return false;
  }
  for (const char* word : {"true", "false", "endsect", "default"}) {
    if (EqualNoCase(text, word)) return false;
  }
  return true;
}

CzonNode* FindStep(const CzonNode& owner, const PathStep& step, bool isKeyword) {
  return isKeyword ? FindKeyword(owner, step) : FindSection(owner, step);
}

// Whether the step leads to one instance more than there are.
bool IsNext(const CzonNode& owner, PathStep step, bool isKeyword) {
  return --step.instance == 0 || FindStep(owner, step, isKeyword) != nullptr;
}

// The status of a place with nodes that are to be made.
int CheckMissing(const SetPlace& place) {
  PathReader reader = place.missing;
  bool isMissing = place.valueNumber > 1;
  PathStep step;
  for (unsigned int n = 1; n <= place.count; ++n) {
    reader.ReadStep(&step);
    if (!IsName(step.name)) return ZONX_BAD_ARGUMENT;
    const bool isNext =
        n == 1 ? IsNext(*place.section, step, place.count == 1) : step.instance == 1;
    isMissing = isMissing || !isNext;
  }
  return isMissing ? ZONX_MISSING : ZONX_OK;
}

// The status of a place in a keyword that exists.
int CheckNumber(const SetPlace& place) {
  const std::uint32_t count = NodeAccess::Children(*place.keyword).Size();
  return place.valueNumber > count && place.valueNumber - count > 1 ? ZONX_MISSING : ZONX_OK;
}

// From a keyword or value there is no name to follow.
SetPlace FindFromLeaf(CzonNode& node, const PathShape& shape) {
  SetPlace place;
  if (shape.names != 0) return place;
  place.valueNumber = shape.valueNumber;
  CzonNode* keyword = &node;
  if (!NodeAccess::IsKeyword(node)) {
    keyword = node.GetOwner();
    if (keyword == nullptr || !NodeAccess::IsKeyword(*keyword) || shape.valueNumber != 0) {
      return place;
    }
    const auto& owner = static_cast<const CzonNamedNode&>(*keyword);
    place.valueNumber = NodeAccess::PlaceOf(owner, node) + 1;
  }
  place.keyword = static_cast<CzonNamedNode*>(keyword);
  place.status = CheckNumber(place);
  return place;
}

SetPlace FindFromSection(CzonNode& start, const char* path, const PathShape& shape) {
  SetPlace place;
  PathReader reader(path);
  PathStep step;
  CzonNode* node = &start;
  place.valueNumber = shape.valueNumber;
  for (unsigned int left = shape.names; left > 0; --left) {
    place.missing = reader;
    place.count = left;
    reader.ReadStep(&step);
    CzonNode* child = FindStep(*node, step, left == 1);
    if (child == nullptr) {
      place.section = static_cast<CzonTargetList*>(node);
      place.status = CheckMissing(place);
      return place;
    }
    node = child;
  }
  place.keyword = static_cast<CzonNamedNode*>(node);
  place.status = CheckNumber(place);
  return place;
}

std::unique_ptr<CzonKeyword> MakeKeyword(std::string_view name, NewValues values) {
  auto keyword = std::make_unique<CzonKeyword>(std::string(name), 0, 0);
  NodeAccess::ReserveChildren(*keyword, static_cast<std::uint32_t>(values.size()));
  for (NewValue& value : values) keyword->AddParam(value.release());
  return keyword;
}

// Makes the keyword with its values, and the sections around it.
void MakeMissing(const SetPlace& place, NewValues values) {
  PathReader reader = place.missing;
  PathStep step;
  std::unique_ptr<CzonNamedNode> outermost;
  CzonSection* innermost = nullptr;
  for (unsigned int left = place.count; left > 1; --left) {
    reader.ReadStep(&step);
    auto section = std::make_unique<CzonSection>(std::string(step.name), 0, 0);
    CzonSection* const made = section.get();
    if (innermost == nullptr) {
      outermost = std::move(section);
    } else {
      innermost->AddSection(made);
      static_cast<void>(section.release());  // owned by the section around it
    }
    innermost = made;
  }
  reader.ReadStep(&step);
  std::unique_ptr<CzonKeyword> keyword = MakeKeyword(step.name, std::move(values));
  if (innermost == nullptr) {
    outermost = std::move(keyword);
  } else {
    innermost->AddKeyword(keyword.get());
    static_cast<void>(keyword.release());
  }
  NodeAccess::FileAt(*place.section, outermost.get(),
                     PlaceForNew(*place.section, place.count == 1));
  static_cast<void>(outermost.release());
}

// Puts the values in the places from `first` on, which is at most one past the last.
void PutValues(CzonNamedNode& keyword, std::uint32_t first, NewValues values) {
  const std::uint32_t size = NodeAccess::Children(keyword).Size();
  std::vector<ValueChange> changes;
  std::size_t next = 0;
  for (std::uint32_t at = first; at < size && next < values.size(); ++at) {
    changes.emplace_back(*NodeAccess::Children(keyword)[at], std::move(values[next++]));
  }
  NodeAccess::ReserveChildren(keyword, static_cast<std::uint32_t>(values.size() - next));
  // From here on nothing can fail.
  for (ValueChange& change : changes) change.Apply();
  for (; next < values.size(); ++next) {
    NodeAccess::FileAt(keyword, values[next].release(), NodeAccess::Children(keyword).Size());
  }
}

}  // namespace

SetPlace FindSetPlace(void* fileOrNode, const char* path) {
  CzonNode* node = nullptr;
  if (fileOrNode == nullptr || path == nullptr || !FindStart(fileOrNode, &node)) return {};
  const PathShape shape = ShapeOf(path);
  if (shape.isMalformed) return {};
  if (node != nullptr && !NodeAccess::IsList(*node)) return FindFromLeaf(*node, shape);
  // The root has sections only.
  const bool isInSection = node != nullptr && NodeAccess::IsSection(*node);
  if (shape.endsInSection || shape.names < (isInSection ? 1 : 2)) return {};
  if (node != nullptr) return FindFromSection(*node, path, shape);
  SetPlace place;
  place.status = ZONX_MISSING;
  return place;
}

void SetValue(const SetPlace& place, NewValue value) {
  NewValues values;
  values.push_back(std::move(value));
  if (place.keyword == nullptr) return MakeMissing(place, std::move(values));
  PutValues(*place.keyword, std::max(place.valueNumber, 1U) - 1, std::move(values));
}

void SetAllValues(const SetPlace& place, NewValues values) {
  if (place.keyword == nullptr) return MakeMissing(place, std::move(values));
  CzonNamedNode& keyword = *place.keyword;
  const std::size_t count = values.size();
  PutValues(keyword, 0, std::move(values));
  while (NodeAccess::Children(keyword).Size() > count) {
    const NodeSpan left = NodeAccess::Children(keyword);
    DeleteNode(*left[left.Size() - 1]);
  }
}

int RemoveNode(CzonNode& node) {
  try {
    DeleteNode(node);
    return ZONX_OK;
  } catch (const Refusal&) {
    return ZONX_BAD_ARGUMENT;
  }
}

}  // namespace zon
