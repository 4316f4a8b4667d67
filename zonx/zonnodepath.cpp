#include "zonx/zonnodepath.h"

#include <climits>
#include <cstring>
#include <string>

#include "api/zonfilehandle.h"
#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "base/zonnumberscan.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace zon {
namespace {

// A zero-terminated name, which the operations of nodes need. Short ones take no memory.
class NameText {
 public:
  explicit NameText(std::string_view name) {
    if (name.size() < sizeof room_) {
      std::memcpy(room_, name.data(), name.size());
      room_[name.size()] = '\0';
      chars_ = room_;
    } else {
      long_ = name;
      chars_ = long_.c_str();
    }
  }
  NameText(const NameText&) = delete;
  NameText& operator=(const NameText&) = delete;

  const char* Chars() const { return chars_; }

 private:
  char room_[64];
  std::string long_;
  const char* chars_;
};

CzonNode* FindChild(const CzonNode& node, const PathStep& step, bool mayBeSection) {
  const NameText name(step.name);
  if (!step.isSection) {
    CzonNode* keyword = node.KeywordByNameNum(name.Chars(), step.instance);
    if (keyword != nullptr || !mayBeSection) return keyword;
  }
  return step.name.empty() ? nullptr : node.SectionByNameNum(name.Chars(), step.instance);
}

}  // namespace

bool PathReader::Fail() {
  isMalformed_ = true;
  return false;
}

unsigned int PathReader::ReadNumber(char after) {
  rest_.remove_prefix(1);
  std::size_t size = 0;
  unsigned long long number = 0;
  for (; size < rest_.size() && IsDigit(rest_[size]); ++size) {
    if (number <= INT_MAX) number = number * 10 + static_cast<unsigned>(rest_[size] - '0');
  }
  if (size == 0 || number == 0) Fail();
  rest_.remove_prefix(size);
  if (after != '\0') {
    if (rest_.empty() || rest_.front() != after) {
      Fail();
    } else {
      rest_.remove_prefix(1);
    }
  }
  return number > INT_MAX ? UINT_MAX : static_cast<unsigned int>(number);
}

bool PathReader::ReadStep(PathStep* step) {
  if (rest_.empty() || rest_.front() == '[' || isMalformed_) return false;
  *step = PathStep();
  const std::size_t end = std::min(rest_.find_first_of("/:["), rest_.size());
  step->name = rest_.substr(0, end);
  if (end == 0) return Fail();
  rest_.remove_prefix(end);
  if (step->name == "()") step->name.remove_suffix(2);  // not null: the name is copied
  if (!rest_.empty() && rest_.front() == ':') {
    step->instance = ReadNumber('\0');
    step->hasInstance = true;
    if (!rest_.empty() && rest_.front() != '/' && rest_.front() != '[') Fail();
  }
  if (!rest_.empty() && rest_.front() == '/') {
    step->isSection = true;
    rest_.remove_prefix(1);
    if (!rest_.empty() && (rest_.front() == '/' || rest_.front() == '[')) Fail();
  }
  return !isMalformed_;
}

unsigned int PathReader::ReadValueNumber() {
  if (isMalformed_ || rest_.empty() || rest_.front() != '[') return 0;
  const unsigned int number = ReadNumber(']');
  if (!rest_.empty()) Fail();
  return number;
}

CzonNode* ValueOf(const CzonNode& keyword, unsigned int n) {
  return keyword.NodeByNum(n);
}

FoundNode FindNode(void* fileOrNode, const char* path) {
  FoundNode found{ZONX_BAD_ARGUMENT, nullptr, nullptr, {}, 0};
  if (fileOrNode == nullptr || path == nullptr) return found;
  CzonNode* node = CastHandle<CzonNode>(fileOrNode);
  if (node == nullptr) {
    const auto* data = CastHandle<CzonData>(fileOrNode);
    if (data == nullptr) return found;
    node = data->GetRoot();
  }
  PathReader reader(path);
  PathStep step;
  bool isMissing = node == nullptr;
  found.deepest = node;
  const bool hasChildren = node == nullptr || node->IsSection();
  // The path is read to its end also if a name is missing: a malformed path is one in any tree.
  while (reader.ReadStep(&step)) {
    if (!hasChildren) return found;
    if (isMissing) continue;
    const bool isLast = reader.IsAtEnd();
    CzonNode* child = node->IsSection() ? FindChild(*node, step, isLast) : nullptr;
    if (child == nullptr) {
      isMissing = true;
      found.missing = step;
    } else {
      node = found.deepest = child;
    }
  }
  found.valueNumber = reader.ReadValueNumber();
  if (reader.IsMalformed() || !reader.IsAtEnd()) return found;
  found.status = ZONX_MISSING;
  if (isMissing) return found;
  if (found.valueNumber != 0) {
    if (!node->IsKeyword() && !node->IsDefaultDef()) {
      found.status = ZONX_BAD_ARGUMENT;
      return found;
    }
    node = ValueOf(*node, found.valueNumber);
    if (node == nullptr) return found;
    found.deepest = node;
  }
  found.node = node;
  found.status = ZONX_OK;
  return found;
}

}  // namespace zon
