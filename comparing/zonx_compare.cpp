// Exported functions: comparing and merging. Tested by tests/zonxdiff_test.cpp.
#include <cmath>
#include <string>

#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "comparing/zonmerging.h"
#include "comparing/zontreedifference.h"
#include "paths/zonfilepath.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonstatus.h"

namespace zon {
namespace {

// A file or section that is compared.
struct Comparand {
  int status = ZONX_BAD_ARGUMENT;
  bool isFile = false;
  const CzonNamedNode* top = nullptr;
  std::string fileName;  // absolute; empty for none
};

std::string FileNameOf(const CzonNode& section, const CzonData* handle) {
  const LoadedFile* file = handle != nullptr ? HandleAccess::GetFile(*handle) : nullptr;
  if (file != nullptr) return file->path;
  const auto* root = dynamic_cast<const CzonTargetList*>(section.GetTopNode());
  if (root == nullptr || root->GetOwnFilename().empty()) return {};
  return AbsoluteAnchor(root->GetOwnFilename());
}

Comparand FindComparand(void* handleOrNode) {
  Comparand found;
  CzonNode* node = nullptr;
  if (handleOrNode == nullptr || !FindStart(handleOrNode, &node)) return found;
  if (node != nullptr && !NodeAccess::IsList(*node)) return found;
  found.isFile = node == nullptr || !NodeAccess::IsSection(*node);
  found.status = ZONX_FAULTY;
  if (node == nullptr) return found;
  const CzonData* handle = HandleAccess::OfTree(*node);
  if (handle != nullptr && !HandleAccess::IsSound(*handle)) return found;
  found.status = ZONX_OK;
  found.top = static_cast<const CzonNamedNode*>(node);
  found.fileName = FileNameOf(*node, handle);
  return found;
}

// A tolerance is a number that is not negative.
bool IsTolerance(double value) {
  return value >= 0.0;
}

}  // namespace
}  // namespace zon

extern "C" {

int zonxDiffByKey(void* before, void* after, const char* key, const zonxCompare* options,
                  void (*visitor)(const zonxDifference* difference, void* context), void* context,
                  size_t* count) {
  return zon::WithStatus([&]() -> int {
    const zonxCompare exact{0.0, 0.0};
    const zonxCompare& rules = options != nullptr ? *options : exact;
    const zon::Comparand from = zon::FindComparand(before);
    const zon::Comparand to = zon::FindComparand(after);
    const bool isBad = from.status == ZONX_BAD_ARGUMENT || to.status == ZONX_BAD_ARGUMENT ||
                       from.isFile != to.isFile || !zon::IsTolerance(rules.relative) ||
                       !zon::IsTolerance(rules.absolute);
    if (isBad) return ZONX_BAD_ARGUMENT;
    if (from.status != ZONX_OK) return from.status;
    if (to.status != ZONX_OK) return to.status;
    size_t found = 0;
    if (from.top != to.top) {
      const bool resolvesNames = !zon::AreInOneFolder(from.fileName, to.fileName);
      found = zon::VisitDifferences(
          {from.top, to.top},
          {rules.relative, rules.absolute, resolvesNames, {from.fileName, to.fileName}}, key,
          {visitor, context});
    }
    if (count != nullptr) *count = found;
    return ZONX_OK;
  });
}

int zonxMerge(void* target, void* overlay) {
  return zon::WithStatus([&]() -> int {
    auto* data = zon::CastHandle<CzonData>(target);
    const auto* from = zon::CastHandle<CzonData>(overlay);
    if (data == nullptr || from == nullptr) return ZONX_BAD_ARGUMENT;
    if (!zon::HandleAccess::IsSound(*data) || !zon::HandleAccess::IsSound(*from)) {
      return ZONX_FAULTY;
    }
    if (data == from) return ZONX_OK;
    const zon::NodeCopier copier(zon::FileNameOf(*from->GetRoot(), from),
                                 zon::FileNameOf(*data->GetRoot(), data));
    zon::MergeTree(*data, *from->GetRoot(), copier);
    return ZONX_OK;
  });
}

int zonxDiff(void* before, void* after, const zonxCompare* options,
             void (*visitor)(const zonxDifference* difference, void* context), void* context,
             size_t* count) {
  return zonxDiffByKey(before, after, nullptr, options, visitor, context, count);
}

}  // extern "C"
