#include "api/zonwatch.h"

#include "api/zonhandleaccess.h"
#include "tree/zonnodeaccess.h"

namespace zon {
namespace {

constexpr std::size_t kMostMissing = 1000;

}  // namespace

std::atomic<int> watchedFiles{0};

void MarkRead(const CzonNode& node) {
  const CzonNode* keyword = NodeAccess::IsKeyword(node) ? &node : node.GetOwner();
  if (keyword != nullptr && NodeAccess::IsKeyword(*keyword)) {
    NodeAccess::SetRead(*const_cast<CzonNode*>(keyword), true);
  }
}

void RecordMissing(const CzonNode& node, std::string_view name) {
  if (name.empty()) return;
  const CzonData* data = HandleAccess::OfTree(node);
  Watch* watch = data != nullptr ? HandleAccess::GetWatch(*data) : nullptr;
  if (watch == nullptr || watch->missing.size() >= kMostMissing) return;
  if (watch->missing.find(name) == watch->missing.end()) watch->missing.emplace(name);
}

}  // namespace zon
