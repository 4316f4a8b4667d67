// Exported functions: result folders and result files.
//
// The result folder of a node is that of the first rule that applies:
//   1. the custom folder, if its use flag is set and its name is not empty
//   2. the folder by the result root of the file
//   3. none, if the text of the node is an absolute path
//   4. the folder by the name of the parameter file and the working directory
//
// A function with a 2 at its end copies to a buffer of a stated size. Its older form copies without
// a limit. Tested by tests/results_test.cpp.
#include <algorithm>
#include <cstring>
#include <string>

#include "api/zon.h"
#include "api/zonconvenience.h"
#include "api/zoncopyout.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "base/zonemptytext.h"
#include "paths/zonfilepath.h"
#include "paths/zonresultfolder.h"
#include "text/cstring.h"
#include "tree/zonclob.h"

using zon::Query;
using zon::TextOf;
using zon::Update;

namespace {

// A text for a buffer of the caller; `exists` is false if there is no text.
struct Result {
  bool exists = false;
  std::string text;
};

void CopyUnbounded(const Result& result, char* out) {
  if (result.exists && out != nullptr) {
    std::memcpy(out, result.text.c_str(), result.text.size() + 1);
  }
}

int CopyBounded(const Result& result, char* out, int size) {
  return zon::CopyOut(result.exists ? result.text.c_str() : nullptr, out, size);
}

// Returns the root of the tree that contains the node; null after a report.
CzonTargetList* RequireRootOf(void* node) {
  auto* n = zon::Require<CzonNode>(node);
  return n != nullptr ? &zon::RootOfTree(*n) : nullptr;
}

Result CustomFolder(void* node, int* use) {
  Result folder;
  if (const CzonTargetList* root = RequireRootOf(node)) {
    root->GetCustomResultFolder(use, &folder.text);
    folder.exists = true;
  }
  return folder;
}

// Returns the text that decides whether there is a folder. For a CLOB that is the item at the
// cursor. PeekText does not consume it: a path must not move the cursor, nor fail because of the
// content.
const char* TextOfNode(void* node) {
  if (const auto* clob = zon::CastHandle<CzonClob>(node)) {
    return clob->IsKind(CzonClobKind::kString) ? clob->PeekText().c_str() : "";
  }
  return zonGetString(node);
}

Result ResultFolder(void* node) {
  zon::ReadFolderTemplate();
  int use = 0;
  Result folder = CustomFolder(node, &use);
  if (use != 0 && !folder.text.empty()) return folder;
  const auto* found = zon::Require<CzonNode>(node);
  ZON_ASSERT_TEXT(found != nullptr, "zondll", "pOwner != 0");
  const CzonTargetList& root = *RequireRootOf(node);
  if (!root.GetResultRoot().empty()) return {true, zon::ResultFolderByRoot(root)};
  if (zon::IsAbsolutePath(TextOfNode(node))) return {true, {}};
  return {true, zon::ResultFolderByAnchor(root.GetZonFilename())};
}

Result ResultPath(void* node) {
  if (node == nullptr) return {};
  if (!zonIsString(node)) {
    const auto* n = zon::Require<CzonNode>(node);
    const char* path = n != nullptr ? n->GetFilename() : "";
    return path != nullptr ? Result{true, path} : Result{};
  }
  Result path = ResultFolder(node);
  path.text += zonGetString(node);
  return path;
}

// Passes the result of `query` to `copy` and returns what that returns; -2 if out of memory.
template <class F, class G>
int CopyResult(F&& query, G&& copy) {
  return zon::Guarded(zon::kErrNode, -2, [&] { return copy(query()); });
}

}  // namespace

extern "C" {

void zonSetProjectResultRoot(void* handle, const char* root) {
  Update<CzonData>(handle, [&](CzonData& data) {
    if (CzonTargetList* list = zon::RequireRoot(data)) list->SetResultRoot(root);
  });
}

const char* zonGetProjectResultRoot(void* node) {
  return Query<CzonNode, const char*>(
      node, zon::EmpSt(), [](CzonNode& n) { return zon::RootOfTree(n).GetResultRoot().c_str(); });
}

void zonSetCustomResultFolder(void* handle, int use, const char* folder) {
  Update<CzonData>(handle, [&](CzonData& data) {
    if (CzonTargetList* list = zon::RequireRoot(data)) list->SetCustomResultFolder(use, folder);
  });
}

void zonGetCustomResultFolder(void* node, int* use, char* folder) {
  CopyResult([&] { return CustomFolder(node, use); },
             [&](const Result& result) { return CopyUnbounded(result, folder), 0; });
}

int zonGetCustomResultFolder2(void* node, int* use, char* folder, int size) {
  return CopyResult([&] { return CustomFolder(node, use); },
                    [&](const Result& result) { return CopyBounded(result, folder, size); });
}

void zonGetResultFolderPath(void* node, char* path) {
  CopyResult([&] { return ResultFolder(node); },
             [&](const Result& result) { return CopyUnbounded(result, path), 0; });
}

int zonGetResultFolderPath2(void* node, char* path, int size) {
  return CopyResult([&] { return ResultFolder(node); },
                    [&](const Result& result) { return CopyBounded(result, path, size); });
}

void zonConstructResultFolderPathName(void) {}

void zonAddResultFilename(void* handle, const char* name) {
  const bool absolute = zon::IsAbsolutePath(TextOf(name));
  absolute ? zonAddFilename(handle, name) : zonAddString(handle, name);
}

int zonAddResultFilenameS(void* handle, const char* name) {
  const bool absolute = zon::IsAbsolutePath(TextOf(name));
  return absolute ? zonAddFilenameS(handle, name) : zonAddStringS(handle, name);
}

const char* zonGetResultFilename(void* node) {
  if (node == nullptr) return nullptr;
  return zonIsString(node) ? zonGetString(node) : zonGetFilename(node);
}

void zonGetResultFilenamePath(void* node, char* path) {
  CopyResult([&] { return ResultPath(node); },
             [&](const Result& result) { return CopyUnbounded(result, path), 0; });
}

int zonGetResultFilenamePath2(void* node, char* path, int size) {
  return CopyResult([&] { return ResultPath(node); },
                    [&](const Result& result) { return CopyBounded(result, path, size); });
}

int zonPutParamResultFilename(void* handle, const char* keyword, const char* name) {
  return zon::PutParam(handle, keyword, [&] { zonAddResultFilename(handle, name); });
}

int zonGetParamResultFilePath(void* node, const char* keyword, const char** path,
                              int keywordInstance, int paramIndex) {
  return zon::GetParam(node, keyword, keywordInstance, paramIndex, path, [](void* param) {
    // Compatibility: the pointer is made of the first eight bytes of the path; it was never usable.
    char buffer[264] = {};
    CopyResult([&] { return ResultPath(param); },
               [&](const Result& result) {
                 std::copy_n(result.text.data(), std::min(result.text.size(), sizeof buffer),
                             buffer);
                 return 0;
               });
    const char* address;
    std::memcpy(&address, buffer, sizeof address);
    return address;
  });
}

}  // extern "C"

int zonGetParamResultFilename(void* node, const char* keyword, const char** name,
                              int keywordInstance, int paramIndex) {
  return zon::GetParam(node, keyword, keywordInstance, paramIndex, name, zonGetResultFilename);
}

int zonGetParamResultFilename(void* node, const char* keyword, CString* name, int keywordInstance,
                              int paramIndex) {
  return zon::GetParam(node, keyword, keywordInstance, paramIndex, name, zonGetResultFilename);
}
