// From the opaque pointers of the interface to objects, and from exceptions to failure values:
// every exported function goes through here.
#ifndef ZON_API_ZONCHECK_H
#define ZON_API_ZONCHECK_H

#include <cxxabi.h>

#include <cstdint>
#include <cstring>
#include <new>

#include "api/zonfilehandle.h"
#include "base/zonassert.h"
#include "base/zonerror.h"
#include "base/zonhook.h"
#include "tree/zonclob.h"
#include "tree/zonsection.h"

namespace zon {

// What a failed check tells.
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

// The object as a T; null for a null pointer and for an object of another class. A class that the
// general cast has once passed is known again by its table of virtual operations.
template <class T>
T* CastHandle(void* handle) {
  constexpr std::size_t kRemembered = 64;
  static const void* remembered[kRemembered];
  if (handle == nullptr) return nullptr;
  auto* base = static_cast<CzonBase*>(handle);
  const void* table;
  std::memcpy(&table, handle, sizeof table);
  const void*& known = remembered[(reinterpret_cast<std::uintptr_t>(table) >> 5) % kRemembered];
  if (known == table) return static_cast<T*>(base);
  T* object = dynamic_cast<T*>(base);
  // A class of the host may have its T beside the base; then only the general cast finds it.
  if (object != nullptr && static_cast<CzonBase*>(object) == base) known = table;
  return object;
}

template <class T>
void ReportInvalid() {
  RaiseError(HandleKind<T>::kCode);
  MessageHook(HandleKind<T>::kText);
}

// The same with a report.
template <class T>
T* Require(void* handle) {
  T* object = CastHandle<T>(handle);
  if (object == nullptr) ReportInvalid<T>();
  return object;
}

inline constexpr char kNoMemory[] = "No memory";  // short enough to be kept without any

// Runs `body` and returns true. If it is out of memory, `outOfMemory` runs instead; for any other
// exception, which only a hook of the host can throw, `hookThrew` runs. Both return false. The
// cancellation of a thread is not an exception to be caught: it passes through.
template <class Body, class OutOfMemory, class HookThrew>
bool RunGuarded(Body&& body, OutOfMemory&& outOfMemory, HookThrew&& hookThrew) {
  try {
    try {
      body();
      return true;
    } catch (const std::bad_alloc&) {
      outOfMemory();
    }
  } catch (const abi::__forced_unwind&) {
    throw;
  } catch (...) {
    hookThrew();
  }
  return false;
}

// Runs the body of an exported function. No exception leaves it: if out of memory, or if a hook of
// the host throws, `code` is stored and `failure` returned.
template <class R, class F>
R Guarded(int code, R failure, F&& body) {
  R result = failure;
  RunGuarded([&] { result = body(); },
             [&] {
               RaiseError(code);
               MessageHook(kNoMemory);
             },
             [&] { RaiseError(code); });
  return result;
}

// Checks the handle and asks the object.
template <class T, class R, class F>
R Query(void* handle, R failure, F&& question) {
  return Guarded(HandleKind<T>::kCode, failure, [&]() -> R {
    T* object = Require<T>(handle);
    return object != nullptr ? question(*object) : failure;
  });
}

template <class T, class F>
void Update(void* handle, F&& body) {
  Query<T>(handle, 0, [&](T& object) {
    body(object);
    return 0;
  });
}

// The root of a file handle, checked as a node; null after a report.
inline CzonTargetList* RequireRoot(CzonData& data) {
  if (data.GetRoot() == nullptr) ReportInvalid<CzonNode>();
  return data.GetRoot();
}

// The root of the tree that the node is in. What is no file root at the top of a tree ends the
// process.
inline CzonTargetList& RootOfTree(CzonNode& node) {
  CzonNode* pOwner = node.GetTopNode();
  auto* root = dynamic_cast<CzonTargetList*>(pOwner);
  ZON_ASSERT_TEXT(root != nullptr, "zondll", "dynamic_cast<CzonTargetList*>(pOwner) != 0");
  return *root;
}

// The resolved path of a file name; the empty text for a bad node, after a report.
inline const char* CheckedFilename(void* node) {
  auto* n = Require<CzonNode>(node);
  return n != nullptr ? n->GetFilename() : "";
}

// A null text counts as the empty text.
inline const char* TextOf(const char* text) {
  return text != nullptr ? text : "";
}

// Copies a text into the buffer of a caller, as the functions with a 2 at their end do: 0, or -1 if
// there is no room for it, or -2 if there is no text.
inline int CopyOut(const char* text, char* buffer, int size) {
  if (text == nullptr) return -2;
  const std::size_t length = std::strlen(text);
  if (buffer == nullptr || size <= 0 || length >= static_cast<std::size_t>(size)) return -1;
  std::memcpy(buffer, text, length + 1);
  return 0;
}

}  // namespace zon

#endif
