#include "tool/nodes.h"

#include <algorithm>
#include <new>
#include <unordered_set>

#include <zon.h>

#include "tool/paths.h"
#include "tool/values.h"

namespace tool {
namespace {

void* CheckNode(void* node) {
  if (node == nullptr) throw std::bad_alloc();
  return node;
}

// A copy is inserted beside the other node, and the original removed.
void* MoveBeside(void* node, void* other, bool isAfter) {
  void* const moved = CheckNode(zonInsert(node, other, isAfter ? 1 : 0));
  CheckMemory(zonxRemove(node, ""));
  return moved;
}

}  // namespace

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

void* LastOfName(void* parent, bool isSection, const std::string& name) {
  const auto byNumber = isSection ? zonSectionByNameNum : zonKeywordByNameNum;
  void* const first = byNumber(parent, name.c_str(), 1);
  if (first == nullptr) return nullptr;
  return byNumber(parent, name.c_str(), static_cast<unsigned int>(zonGetNoInstances(first)));
}

void* InsertNode(void* parent, bool isSection, const std::string& name, const std::string& values,
                 void* next) {
  void* const last = next == nullptr ? LastOfName(parent, isSection, name) : nullptr;
  void* node = CheckNode(isSection ? zoneInsertNewSection(parent, name.c_str(), 0)
                                   : zoneInsertNewKeyword(parent, name.c_str(), 0));
  if (next != nullptr || last != nullptr)
    node = MoveBeside(node, next != nullptr ? next : last, next == nullptr);
  if (!isSection) CheckMemory(zonxSetText(node, "", values.c_str()));
  return node;
}

void* MoveNode(void* node, void* next) {
  if (next != nullptr) return next == node ? node : MoveBeside(node, next, false);
  const bool isSection = zonxGetKind(node) == ZONX_SECTION;
  void* const owner = OwnerOf(node);
  const auto count =
      static_cast<unsigned int>(isSection ? zonGetNoSections(owner) : zonGetNoKeywords(owner));
  void* const last = isSection ? zonSectionByNum(owner, count) : zonKeywordByNum(owner, count);
  return last == node ? node : MoveBeside(node, last, true);
}

}  // namespace tool
