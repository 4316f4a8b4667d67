// Exported functions: file names, and the name of the parameter file. Tested by
// tests/paths_test.cpp.
#include <string>

#include "api/zon.h"
#include "api/zoncopyout.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "base/zonassert.h"
#include "base/zonemptytext.h"
#include "paths/zonfilename.h"
#include "paths/zonfilepath.h"

using zon::EmpSt;
using zon::Query;
using zon::QueryValue;
using zon::TextOf;
using zon::Update;

extern "C" {

char* zonGetFilename(void* node) {
  return QueryValue<CzonNode>(node, zon::EmptyPath(), [](CzonNode& n) { return n.GetFilename(); });
}

const char* zonGetFilenameString(void* node) {
  return QueryValue<CzonNode, const char*>(node, EmpSt(),
                                           [](CzonNode& n) { return n.GetFilenameString(); });
}

void zonSetFilename(void* node, const char* text) {
  Update<CzonNode>(node, [&](CzonNode& n) {
    if (auto* filename = dynamic_cast<CzonFilename*>(&n)) filename->SetFilename(TextOf(text));
  });
}

void zonFileCopyCallBack(void* node) {
  Update<CzonNode>(node, [](CzonNode& n) {
    if (auto* filename = dynamic_cast<CzonFilename*>(&n)) {
      filename->SetFilename(zon::PathOf(*filename));
    }
  });
}

const char* zonGetAnchorFilename(void* node) {
  return Query<CzonNode, const char*>(node, EmpSt(), [](CzonNode& n) -> const char* {
    const auto* root = dynamic_cast<CzonTargetList*>(&n);
    const bool isRoot = root != nullptr && root->GetOwner() == nullptr;
    return isRoot ? root->GetZonFilename().c_str() : EmpSt();
  });
}

const char* zonGetZonFileName(void* node) {
  const CzonNode* found =
      Query<CzonNode, const CzonNode*>(node, nullptr, [](CzonNode& n) { return &n; });
  ZON_ASSERT_TEXT(found != nullptr, "zondll", "pOwner != 0");
  return zonGetAnchorFilename(static_cast<CzonBase*>(found->GetTopNode()));
}

void zonSetAnchorFilename(void* node, const char* name) {
  Update<CzonNode>(node, [&](CzonNode& n) { zon::RootOfTree(n).SetZonFilename(TextOf(name)); });
}

int zonGetAnchorFilename2(void* node, char* buffer, int size) {
  return zon::CopyOut(zonGetAnchorFilename(node), buffer, size);
}

int zonGetFilename2(void* node, char* buffer, int size) {
  return zon::Guarded(zon::kErrNode, -2, [&] {
    const auto* n = zon::Require<CzonNode>(node);
    return zon::CopyOut(n != nullptr ? n->GetFilename() : "", buffer, size);
  });
}

}  // extern "C"
