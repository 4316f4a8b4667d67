// Exported functions: finding nodes and reading values. Tested by tests/zonx_test.cpp.
#include <string>
#include <type_traits>

#include "api/zonhandlecheck.h"
#include "api/zonwatch.h"
#include "api/zonx.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonnodeplace.h"
#include "zonx/zonreporter.h"
#include "zonx/zonstatus.h"
#include "zonx/zonvalue.h"

namespace zon {
namespace {

// The n-th value of a keyword; of a placeholder the default value, if there is one.
const CzonNode* ResolvedValue(const CzonNode& keyword, unsigned int n) {
  return keyword.ParamByNum(n);
}

// A node that a path leads to; a name that is missing is noted.
FoundNode Find(void* fileOrNode, const char* path) {
  const FoundNode found = FindNode(fileOrNode, path);
  if (found.status == ZONX_MISSING && found.deepest != nullptr) {
    NoteMissing(*found.deepest, found.missing.name);
  }
  return found;
}

// The value that is read of a node: the value itself, or the first one of a keyword. Null if there
// is none.
const CzonNode* ValueToRead(const CzonNode& node) {
  if (NodeAccess::IsKeyword(node)) return ResolvedValue(node, 1);
  if (!node.IsDefaultPar() || node.GetOwner() == nullptr) return &node;
  return ResolvedValue(*node.GetOwner(), static_cast<unsigned int>(node.GetInstanceNo()));
}

// Reads the value that a path leads to by `read`. A value that is returned counts as read.
template <class Read>
int ReadAt(void* fileOrNode, const char* path, Read&& read) {
  const FoundNode found = Find(fileOrNode, path);
  if (found.status != ZONX_OK) return found.status;
  const CzonNode* value = ValueToRead(*found.node);
  if (value == nullptr) return ZONX_MISSING;
  const int status = read(*value);
  if (status == ZONX_OK) NoteRead(*found.node);
  return status;
}

template <class T, class Out, class Store>
int Get(void* fileOrNode, const char* path, Out* out, Store&& store) {
  if (out == nullptr) return ZONX_BAD_ARGUMENT;
  return WithStatus([&]() -> int {
    return ReadAt(fileOrNode, path, [&](const CzonNode& value) {
      T read{};
      const int status = ReadValue(value, &read);
      if (status == ZONX_OK) *out = store(read);
      return status;
    });
  });
}

template <class T>
int Get(void* fileOrNode, const char* path, T* out) {
  return Get<T>(fileOrNode, path, out, [](const T& read) { return read; });
}

// A text that is kept for the thread until the next one.
template <class Read>
int GetKept(void* fileOrNode, const char* path, const char** out, std::string& kept, Read&& read) {
  if (out == nullptr) return ZONX_BAD_ARGUMENT;
  return WithStatus([&]() -> int {
    return ReadAt(fileOrNode, path, [&](const CzonNode& value) {
      std::string text;
      const int status = read(value, &text);
      if (status != ZONX_OK) return status;
      kept.swap(text);
      *out = kept.c_str();
      return status;
    });
  });
}

// Finds the keyword whose values are wanted.
int FindList(void* fileOrNode, const char* path, CzonNamedNode** keyword) {
  const FoundNode found = Find(fileOrNode, path);
  if (found.status != ZONX_OK) return found.status;
  if (found.valueNumber != 0) return ZONX_BAD_ARGUMENT;
  if (!found.node->IsKeyword() && !found.node->IsDefaultDef()) return ZONX_WRONG_KIND;
  *keyword = static_cast<CzonNamedNode*>(found.node);
  return ZONX_OK;
}

template <class T, class Out>
int ReadNodes(const CzonNode& keyword, Out* out, std::size_t room, std::size_t* count) {
  const unsigned int size = keyword.GetNoParams();
  for (unsigned int at = 0; at < size; ++at) {
    T read{};
    const CzonNode* value = ResolvedValue(keyword, at + 1);
    const int status = value != nullptr ? ReadValue(*value, &read) : ZONX_MISSING;
    if (status != ZONX_OK) {
      *count = at + 1;
      return status;
    }
    if (at < room) out[at] = static_cast<Out>(read);
  }
  *count = size;
  return ZONX_OK;
}

// Numbers are read from the text of values that have no nodes yet.
template <class T, class Out>
int ReadList(const CzonNamedNode& keyword, Out* out, std::size_t room, std::size_t* count) {
  if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
    const std::string_view list = NodeAccess::DeferredText(keyword);
    if (!list.empty()) return ReadPlainValues(list, out, room, count);
  }
  return ReadNodes<T>(keyword, out, room, count);
}

template <class T, class Out>
int GetList(void* fileOrNode, const char* path, Out* out, std::size_t room, std::size_t* count) {
  if (count == nullptr || (out == nullptr && room > 0)) return ZONX_BAD_ARGUMENT;
  return WithStatus([&]() -> int {
    CzonNamedNode* keyword = nullptr;
    int status = FindList(fileOrNode, path, &keyword);
    if (status == ZONX_OK) status = ReadList<T>(*keyword, out, room, count);
    if (status == ZONX_OK) NoteRead(*keyword);
    return status;
  });
}

}  // namespace
}  // namespace zon

using zon::CastHandle;
using zon::WithStatus;

extern "C" {

int zonxGetKind(void* node) {
  int kind = 0;
  WithStatus([&]() -> int {
    const auto* object = CastHandle<CzonNode>(node);
    if (object != nullptr) {
      kind = zon::KindOf(*object);
    } else if (CastHandle<CzonData>(node) != nullptr) {
      kind = ZONX_FILE;
    }
    return ZONX_OK;
  });
  return kind;
}

int zonxFind(void* fileOrNode, const char* path, void** node) {
  if (node == nullptr) return ZONX_BAD_ARGUMENT;
  return WithStatus([&]() -> int {
    const zon::FoundNode found = zon::FindNode(fileOrNode, path);
    if (found.status == ZONX_OK) *node = zon::HandleOf(found.node);
    return found.status;
  });
}

int zonxWhere(void* node, zonxPlace* place) {
  if (place == nullptr) return ZONX_BAD_ARGUMENT;
  return WithStatus([&]() -> int {
    const auto* object = CastHandle<CzonNode>(node);
    if (object == nullptr) return ZONX_BAD_ARGUMENT;
    const zon::NodeFile file = zon::FileOf(*object);
    if (file.text == nullptr) return ZONX_MISSING;
    const zon::Span span = zon::PlaceOf(*object, *file.text);
    if (span.begin == nullptr) return ZONX_MISSING;
    *place = zon::MakePlace(*file.text, file.name, span);
    return ZONX_OK;
  });
}

int zonxGetRemark(void* node, const char** out) {
  if (out == nullptr) return ZONX_BAD_ARGUMENT;
  return WithStatus([&]() -> int {
    const auto* object = CastHandle<CzonNode>(node);
    if (object == nullptr) return ZONX_BAD_ARGUMENT;
    const std::string& remark = object->GetRemark();
    if (remark.empty()) return ZONX_MISSING;
    *out = remark.c_str();
    return ZONX_OK;
  });
}

int zonxGetInt(void* fileOrNode, const char* path, int* out) {
  return zon::Get(fileOrNode, path, out);
}
int zonxGetInt64(void* fileOrNode, const char* path, long long* out) {
  return zon::Get(fileOrNode, path, out);
}
int zonxGetDouble(void* fileOrNode, const char* path, double* out) {
  return zon::Get(fileOrNode, path, out);
}
int zonxGetBool(void* fileOrNode, const char* path, int* out) {
  return zon::Get<bool>(fileOrNode, path, out, [](bool read) { return read ? 1 : 0; });
}
int zonxGetString(void* fileOrNode, const char* path, const char** out) {
  return zon::Get(fileOrNode, path, out);
}

int zonxGetFilename(void* fileOrNode, const char* path, const char** out) {
  thread_local std::string kept;
  return zon::GetKept(fileOrNode, path, out, kept, zon::ReadFilename);
}
int zonxGetText(void* fileOrNode, const char* path, const char** out) {
  thread_local std::string kept;
  return zon::GetKept(fileOrNode, path, out, kept, zon::ReadText);
}

int zonxGetInts(void* fileOrNode, const char* path, int* out, size_t room, size_t* count) {
  return zon::GetList<int>(fileOrNode, path, out, room, count);
}
int zonxGetInt64s(void* fileOrNode, const char* path, long long* out, size_t room, size_t* count) {
  return zon::GetList<long long>(fileOrNode, path, out, room, count);
}
int zonxGetDoubles(void* fileOrNode, const char* path, double* out, size_t room, size_t* count) {
  return zon::GetList<double>(fileOrNode, path, out, room, count);
}
int zonxGetBools(void* fileOrNode, const char* path, int* out, size_t room, size_t* count) {
  return zon::GetList<bool>(fileOrNode, path, out, room, count);
}
int zonxGetStrings(void* fileOrNode, const char* path, const char** out, size_t room,
                   size_t* count) {
  return zon::GetList<const char*>(fileOrNode, path, out, room, count);
}

}  // extern "C"
