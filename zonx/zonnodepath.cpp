// The path is read and followed step by step. It is read to its end also after a name that is
// missing, because a malformed path is one in any tree.
#include "zonx/zonnodepath.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <string>
#include <typeinfo>
#include <vector>

#include "api/zonfilehandle.h"
#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "base/zonchars.h"
#include "base/zonlexeme.h"
#include "base/zonnumberscan.h"
#include "tree/zonkeyword.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace zon {

// The usual handles of files are recognised first: a cast to another class is slow.
bool FindStart(void* fileOrNode, CzonNode** node) {
  const std::type_info* type = &typeid(*static_cast<const CzonBase*>(fileOrNode));
  const bool isFile = type == &typeid(CzonLoad) || type == &typeid(CzonCreate);
  *node = isFile ? nullptr : CastHandle<CzonNode>(fileOrNode);
  if (*node != nullptr) return true;
  const auto* data = CastHandle<CzonData>(fileOrNode);
  if (data != nullptr) *node = data->GetRoot();
  return data != nullptr;
}

CzonNode* FindKeyword(const CzonNode& node, const PathStep& step) {
  if (NodeAccess::IsSection(node)) {
    const auto& section = static_cast<const CzonSection&>(node);
    if (NodeAccess::IsOfLibrary(section)) {
      return NodeAccess::FindKeyword(section, step.name, step.instance);
    }
  }
  return node.KeywordByNameNum(std::string(step.name).c_str(), step.instance);
}

CzonNode* FindSection(const CzonNode& node, const PathStep& step) {
  if (step.name.empty()) return nullptr;
  if (NodeAccess::IsList(node)) {
    const auto& list = static_cast<const CzonTargetList&>(node);
    if (NodeAccess::IsOfLibrary(list)) {
      return NodeAccess::FindSection(list, step.name, step.instance);
    }
  }
  return node.SectionByNameNum(std::string(step.name).c_str(), step.instance);
}

unsigned int InstanceOf(const CzonNamedNode& node) {
  if (node.GetInstanceNo() == 0 && node.GetOwner() != nullptr) {
    NodeAccess::RestoreNumbers(const_cast<CzonNamedNode&>(node));
  }
  return static_cast<unsigned int>(std::max(node.GetInstanceNo(), 1));
}

namespace {

CzonNode* FindChild(const CzonNode& node, const PathStep& step, bool mayBeSection) {
  if (!step.isSection) {
    CzonNode* keyword = FindKeyword(node, step);
    if (keyword != nullptr || !mayBeSection) return keyword;
  }
  return FindSection(node, step);
}

// Appends a name, or at most so many characters of its end, with its number; or the number of a
// value.
void AppendStep(std::string* text, const CzonNode& node, std::size_t longest = SIZE_MAX) {
  const std::string number = std::to_string(node.GetInstanceNo());
  if (!NodeAccess::IsNamed(node)) {
    *text += "[" + number + "]";
    return;
  }
  if (!text->empty()) *text += '/';
  const std::string& name = node.GetName();
  text->append(name, name.size() > longest ? name.size() - longest : 0);
  if (name.empty()) *text += "()";
  if (node.GetInstanceNo() > 1) *text += ":" + number;
}

}  // namespace

bool PathReader::Fail() {
  isMalformed_ = true;
  return false;
}

// After ":" or "[".
unsigned int PathReader::ReadNumber() {
  const char* const digits = ++at_;
  unsigned long long number = 0;
  for (; IsDigit(*at_); ++at_) {
    if (number <= INT_MAX) number = number * 10 + static_cast<unsigned>(*at_ - '0');
  }
  if (at_ == digits || number == 0) Fail();
  return number > INT_MAX ? UINT_MAX : static_cast<unsigned int>(number);
}

bool PathReader::ReadStep(PathStep* step) {
  if (*at_ == '\0' || *at_ == '[' || isMalformed_) return false;
  step->instance = 1;
  step->isSection = false;
  step->hasInstance = false;
  step->isRead = true;
  const char* const name = at_;
  const char* end = name;
  while (IsClass(*end, kWord)) ++end;
  while (*end != '\0' && *end != '/' && *end != ':' && *end != '[') ++end;
  at_ = end;
  if (end == name) return Fail();
  step->name = TextBetween(name, at_);
  if (*name == '(' && step->name == "()") step->name = step->name.substr(0, 0);
  if (*at_ == ':') {
    step->instance = ReadNumber();
    step->hasInstance = true;
    if (*at_ != '\0' && *at_ != '/' && *at_ != '[') Fail();
  }
  if (*at_ == '/') {
    step->isSection = true;
    ++at_;
    if (*at_ == '/' || *at_ == '[') Fail();
  }
  return !isMalformed_;
}

unsigned int PathReader::ReadValueNumber() {
  if (isMalformed_ || *at_ != '[') return 0;
  const unsigned int number = ReadNumber();
  if (at_[0] != ']' || at_[1] != '\0') Fail();
  at_ += *at_ == ']' ? 1 : 0;
  return number;
}

FoundNode FindNode(void* fileOrNode, const char* path) {
  FoundNode found{ZONX_BAD_ARGUMENT, nullptr, nullptr, {}, 0};
  if (fileOrNode == nullptr || path == nullptr) return found;
  CzonNode* node = nullptr;
  if (!FindStart(fileOrNode, &node)) return found;
  PathReader reader(path);
  PathStep step;
  bool isMissing = node == nullptr;
  found.deepest = node;
  const bool hasChildren = node == nullptr || node->IsSection();
  // The path is read to its end also if a name is missing: a malformed path is one in any tree.
  while (reader.ReadStep(&step)) {
    if (!hasChildren) return found;
    if (isMissing) continue;
    CzonNode* child = FindChild(*node, step, reader.IsAtEnd());
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
    node = node->NodeByNum(found.valueNumber);
    if (node == nullptr) return found;
    found.deepest = node;
  }
  found.node = node;
  found.status = ZONX_OK;
  return found;
}

std::string PathOf(const CzonNode& node) {
  std::vector<const CzonNode*> path;
  for (const CzonNode* at = &node; at->GetOwner() != nullptr; at = at->GetOwner()) {
    path.push_back(at);
  }
  std::string text;
  for (; !path.empty(); path.pop_back()) AppendStep(&text, *path.back());
  return text;
}

std::string ShortPathOf(const CzonNode& node) {
  constexpr std::size_t kLongest = 200;
  std::string text;
  for (const CzonNode* at = &node; at->GetOwner() != nullptr; at = at->GetOwner()) {
    std::string longer;
    AppendStep(&longer, *at, kLongest);
    if (!text.empty() && text.front() != '[') longer += '/';
    text.insert(0, longer);
    if (text.size() < kLongest) continue;
    text = "..." + text.substr(text.size() - kLongest);
    break;
  }
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
  return text;
}

}  // namespace zon
