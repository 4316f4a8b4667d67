// From handles to objects: checks of the arguments of exported functions.
//
// A handle is the address of a CzonBase. CastHandle checks it without a report; Require reports a
// failure. Query and Update are the frame of most exported functions: require the handle, run the
// body, turn exceptions into the failure value. Tested by tests/handles_test.cpp.
#ifndef ZON_API_ZONHANDLECHECK_H
#define ZON_API_ZONHANDLECHECK_H

#include <cstdint>
#include <cstring>

#include "api/zonfilehandle.h"
#include "api/zonguard.h"
#include "base/zonassert.h"
#include "base/zonerror.h"
#include "base/zonhook.h"
#include "tree/zonsection.h"

namespace zon {

// The error code and the message of a failed check for a T.
template <class T>
struct HandleKind;

template <>
struct HandleKind<CzonData> {
  static constexpr int kCode = kErrHandle;
  static constexpr char kText[] = "Invalid zonHandle (CzonData)";
};
template <>
struct HandleKind<CzonLoad> {
  static constexpr int kCode = kErrHandle;
  static constexpr char kText[] = "Invalid zonHandle (CzonLoad)";
};
template <>
struct HandleKind<CzonCreate> {
  static constexpr int kCode = kErrHandle;
  static constexpr char kText[] = "Invalid zonHandle (CzonCreate)";
};
template <>
struct HandleKind<CzonNode> {
  static constexpr int kCode = kErrNode;
  static constexpr char kText[] = "Invalid zonNode";
};
template <>
struct HandleKind<CzonClob> {
  static constexpr int kCode = kErrNode;
  static constexpr char kText[] = "Invalid CLOB object";
};

inline void* HandleOf(CzonBase* object) {
  return object;
}

// Returns the object as a T; null if the handle is null or its object is of another class. Caches
// the vtables for which dynamic_cast<T*> succeeded.
template <class T>
T* CastHandle(void* handle) {
  constexpr std::size_t kCacheSize = 64;
  static const void* cache[kCacheSize];
  if (handle == nullptr) return nullptr;
  auto* base = static_cast<CzonBase*>(handle);
  const void* vtable;
  std::memcpy(&vtable, handle, sizeof vtable);
  const void*& known = cache[(reinterpret_cast<std::uintptr_t>(vtable) >> 5) % kCacheSize];
  if (known == vtable) return static_cast<T*>(base);
  T* object = dynamic_cast<T*>(base);
  // A class of the host can inherit from T and CzonBase separately: only dynamic_cast finds its T.
  if (object != nullptr && static_cast<CzonBase*>(object) == base) known = vtable;
  return object;
}

template <class T>
void ReportInvalid() {
  RaiseError(HandleKind<T>::kCode);
  MessageHook(HandleKind<T>::kText);
}

// As CastHandle; a failure is reported.
template <class T>
T* Require(void* handle) {
  T* object = CastHandle<T>(handle);
  if (object == nullptr) ReportInvalid<T>();
  return object;
}

// Requires the handle and returns what `question` returns for its object; `failure` if the handle is
// bad or the question throws.
template <class T, class R, class F>
R Query(void* handle, R failure, F&& question) {
  return Guarded(HandleKind<T>::kCode, failure, [&]() -> R {
    T* object = Require<T>(handle);
    return object != nullptr ? static_cast<R>(question(*object)) : failure;
  });
}

// Requires the handle and runs `body` on its object.
template <class T, class F>
void Update(void* handle, F&& body) {
  Query<T>(handle, 0, [&](T& object) {
    body(object);
    return 0;
  });
}

// Returns the root of a file handle; null, and reports a bad node, if it has none.
inline CzonTargetList* RequireRoot(CzonData& data) {
  if (data.GetRoot() == nullptr) ReportInvalid<CzonNode>();
  return data.GetRoot();
}

// Returns the root of the tree that contains the node. Aborts if the top is not the root of a file.
inline CzonTargetList& RootOfTree(CzonNode& node) {
  CzonNode* pOwner = node.GetTopNode();
  auto* root = dynamic_cast<CzonTargetList*>(pOwner);
  ZON_ASSERT_TEXT(root != nullptr, "zondll", "dynamic_cast<CzonTargetList*>(pOwner) != 0");
  return *root;
}

// A null text argument counts as the empty text.
inline const char* TextOf(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace zon

#endif
