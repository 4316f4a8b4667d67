// Exported functions: navigation in a tree, and what a node is. Tested by tests/handles_test.cpp
// and tests/load_test.cpp.
#include <climits>
#include <cstring>
#include <string>

#include "api/zon.h"
#include "api/zoncopyout.h"
#include "api/zonhandlecheck.h"
#include "base/zonemptytext.h"
#include "base/zonlexeme.h"
#include "base/zonnumber.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"

using zon::CastHandle;
using zon::CopyOut;
using zon::EmpSt;
using zon::HandleOf;
using zon::Query;
using zon::TextOf;

namespace {

// As Query, for the root of a file handle.
template <class T, class F>
T QueryRoot(void* handle, T failure, F&& question) {
  return Query<CzonData>(handle, failure, [&](CzonData& data) {
    CzonTargetList* root = zon::RequireRoot(data);
    return root != nullptr ? static_cast<T>(question(*root)) : failure;
  });
}

template <class F>
void* FindNode(void* node, F&& question) {
  return Query<CzonNode, void*>(node, nullptr, [&](CzonNode& n) { return HandleOf(question(n)); });
}

// The child that was looked up by its name. If it is missing, the name is noted.
template <class T>
T* Noted(const CzonNode& of, const char* name, T* child) {
  if (child == nullptr) zon::NoteMissing(of, TextOf(name));
  return child;
}

template <class F>
const char* TextOfNode(void* node, F&& question) {
  return Query<CzonNode, const char*>(node, EmpSt(),
                                      [&](CzonNode& n) { return question(n).c_str(); });
}

// Calls `step` for each element of the path, on the node that the call before returned. Returns the
// last node, `start` for an empty path, null once a step returns null.
template <class F>
void* FollowPath(void* start, const char* path, F&& step) {
  std::string rest = TextOf(path);
  void* node = start;
  for (std::size_t at = rest.find_first_not_of("/."); at != std::string::npos;) {
    const std::size_t end = rest.find_first_of("/.", at);
    std::string element = rest.substr(at, end - at);
    int instance = 1;
    splitElement(element.data(), &instance);
    node = step(node, element.c_str(), static_cast<unsigned int>(instance));
    if (node == nullptr) return nullptr;
    at = rest.find_first_not_of("/.", end);
  }
  return node;
}

}  // namespace

extern "C" {

void* zonGetRoot(void* handle) {
  auto* data = CastHandle<CzonData>(handle);
  if (data != nullptr) return HandleOf(data->GetRoot());
  zon::RaiseError(zon::kErrHandle);
  return nullptr;
}

int zonGetNoTargets(void* handle) {
  return QueryRoot(handle, 0, [](CzonTargetList& root) { return root.GetNoSections(); });
}
void* zonTargetByNum(void* handle, unsigned int n) {
  return QueryRoot<void*>(handle, nullptr,
                          [&](CzonTargetList& root) { return HandleOf(root.SectionByNum(n)); });
}
void* zonTargetByNameNum(void* handle, const char* name, unsigned int n) {
  return QueryRoot<void*>(handle, nullptr, [&](CzonTargetList& root) {
    return HandleOf(Noted(root, name, root.SectionByNameNum(TextOf(name), n)));
  });
}

void zonExplore(void* handle, void (*visit)(CzonNode*)) {
  QueryRoot(handle, 0, [&](CzonTargetList& root) {
    if (visit != nullptr) root.Explore(visit);
    return 0;
  });
}

void* zonFindSectionByHandle(void* handle, const char* path) {
  return QueryRoot<void*>(handle, nullptr, [&](CzonTargetList& root) {
    void* top = HandleOf(&root);
    void* found = FollowPath(top, path, zonSectionByNameNum);
    return found != top ? found : nullptr;
  });
}

void* zonFindSectionByNode(void* node, const char* path) {
  return Query<CzonNode, void*>(node, nullptr, [&](CzonNode& start) {
    return FollowPath(HandleOf(&start), path, zonSectionByNameNum);
  });
}

void splitElement(char* element, int* instance) {
  char* colon = element != nullptr ? std::strchr(element, ':') : nullptr;
  if (colon == nullptr) return;
  *colon = '\0';
  const char* number = colon + 1;
  const char* digits = zon::SkipSpace(number, number + std::strlen(number));
  if (*digits == '-' || *digits == '+') ++digits;
  if (!zon::IsClass(*digits, zon::kDigit)) return;
  const long value = zon::TextToLong(number);
  if (instance != nullptr) {
    *instance = static_cast<int>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
  }
}

void* zonSectionByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.SectionByNum(n); });
}
void* zonKeywordByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.KeywordByNum(n); });
}
void* zonParamByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.ParamByNum(n); });
}
void* zonNodeByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.NodeByNum(n); });
}
void* zonSectionByNameNum(void* node, const char* name, unsigned int n) {
  return FindNode(
      node, [&](CzonNode& of) { return Noted(of, name, of.SectionByNameNum(TextOf(name), n)); });
}
void* zonKeywordByNameNum(void* node, const char* name, unsigned int n) {
  return FindNode(
      node, [&](CzonNode& of) { return Noted(of, name, of.KeywordByNameNum(TextOf(name), n)); });
}

void* zonGetParentSection(void* node) {
  // Compatibility: each of the three tests reports a bad node.
  if (zonIsSection(node) || zonIsKeyword(node)) {
    return HandleOf(CastHandle<CzonNode>(node)->GetOwner());
  }
  if (!zonIsParam(node)) return nullptr;
  const CzonNamedNode* keyword = CastHandle<CzonNode>(node)->GetOwner();
  return keyword != nullptr ? HandleOf(keyword->GetOwner()) : nullptr;
}

void* zonFindDefault(void* node) {
  if (!zonIsDefaultPar(node)) return nullptr;
  return Query<CzonNode, void*>(node, nullptr, [&](CzonNode& placeholder) {
    CzonNamedNode* keyword = placeholder.GetOwner();
    if (keyword == nullptr) return HandleOf(&placeholder);
    CzonNode* value = keyword->FindDefault(&placeholder, keyword->GetName(),
                                           static_cast<unsigned int>(placeholder.GetInstanceNo()));
    return HandleOf(value != nullptr ? value : &placeholder);
  });
}

int zonGetLevel(void* node) {
  return Query<CzonNode>(node, -1, [](CzonNode& n) { return n.GetLevel(); });
}
int zonGetSyntaxClass(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.GetSyntaxClass(); });
}
const char* zonGetName(void* node) {
  return TextOfNode(
      node, [](CzonNode & n) -> auto& { return n.GetName(); });
}
const char* zonGetNameGlb(void* node) {
  return TextOfNode(
      node, [](CzonNode & n) -> auto& { return n.GetNameGlb(); });
}
int zonGetNoInstances(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.GetNoInstances(); });
}
int zonGetInstanceNo(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.GetInstanceNo(); });
}
int zonGetNoNodes(void* node) {
  return Query<CzonNode>(node, -1, [](CzonNode& n) { return n.GetNoNodes(); });
}
int zonGetNoParams(void* node) {
  return Query<CzonNode>(node, -1, [](CzonNode& n) { return n.GetNoParams(); });
}
int zonGetNoKeywords(void* node) {
  return Query<CzonNode>(node, -1, [](CzonNode& n) { return n.GetNoKeywords(); });
}
int zonGetNoSections(void* node) {
  return Query<CzonNode>(node, -1, [](CzonNode& n) { return n.GetNoSections(); });
}

int zonIsTarget(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) {
    return n.GetOwner() != nullptr && n.GetOwner()->GetOwner() == nullptr;
  });
}
int zonIsSection(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsSection(); });
}
int zonIsKeyword(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsKeyword(); });
}
int zonIsParam(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsParam(); });
}
int zonIsNumeric(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsNumeric(); });
}
int zonIsInt(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsInt(); });
}
int zonIsFloat(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsFloat(); });
}
int zonIsDouble(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsDouble(); });
}
int zonIsBool(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsBool(); });
}
int zonIsString(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsString(); });
}
int zonIsFilename(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsFilename(); });
}
int zonIsUndefinedPar(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsUndefinedPar(); });
}
int zonIsDefaultPar(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsDefaultPar(); });
}
int zonNumericIsIntType(void* node) {
  return Query<CzonNode>(node, 0,
                         [](CzonNode& n) { return dynamic_cast<CzonInt*>(&n) != nullptr; });
}

int zonGetName2(void* node, char* buffer, int size) {
  return CopyOut(zonGetName(node), buffer, size);
}
int zonGetNameGlb2(void* node, char* buffer, int size) {
  return CopyOut(zonGetNameGlb(node), buffer, size);
}

}  // extern "C"
