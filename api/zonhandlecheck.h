// From handles to objects: checks of the arguments of exported functions.
//
// A handle is the address of a CzonBase. CastHandle checks it without a report; Require reports a
// failure. Query and Update are the frame of most exported functions: require the handle, run the
// body, turn exceptions into the failure value. Tested by tests/handles_test.cpp.
#ifndef ZON_API_ZONHANDLECHECK_H
#define ZON_API_ZONHANDLECHECK_H

#include <typeinfo>

#include "api/zonfilehandle.h"
#include "api/zonguard.h"
#include "api/zonwatch.h"
#include "base/zonassert.h"
#include "base/zonerror.h"
#include "base/zonhooks.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonparam.h"
#include "tree/zonreal.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

namespace zon {

// dynamic_cast<T*> with a shortcut. The cast walks the class hierarchy, so the classes of most
// objects are recognised first, by the address of their type_info. All other objects need the
// dynamic_cast: those of host classes, of rare classes, and with a second copy of a type_info.
// Measured: without the shortcut the time of a look-up doubles.
template <class T, class... Frequent>
T* CastFrequent(CzonBase* object) {
  const std::type_info* const type = &typeid(*object);
  for (const std::type_info* frequent : {&typeid(Frequent)...}) {
    // The hint keeps a branch after each comparison; the most frequent classes come first.
    if (__builtin_expect(type == frequent, 1)) return static_cast<T*>(object);
  }
  return dynamic_cast<T*>(object);
}

// The cast of a handle to a T, and the code and the message if it fails.
template <class T>
struct HandleKind;

template <>
struct HandleKind<CzonData> {
  static constexpr int kCode = kErrHandle;
  static constexpr char kText[] = "Invalid zonHandle (CzonData)";
  static CzonData* Cast(CzonBase* object) {
    return CastFrequent<CzonData, CzonLoad, CzonCreate>(object);
  }
};
template <>
struct HandleKind<CzonLoad> {
  static constexpr int kCode = kErrHandle;
  static constexpr char kText[] = "Invalid zonHandle (CzonLoad)";
  static CzonLoad* Cast(CzonBase* object) { return CastFrequent<CzonLoad, CzonLoad>(object); }
};
template <>
struct HandleKind<CzonCreate> {
  static constexpr int kCode = kErrHandle;
  static constexpr char kText[] = "Invalid zonHandle (CzonCreate)";
  static CzonCreate* Cast(CzonBase* object) { return CastFrequent<CzonCreate, CzonCreate>(object); }
};
template <>
struct HandleKind<CzonNode> {
  static constexpr int kCode = kErrNode;
  static constexpr char kText[] = "Invalid zonNode";
  static CzonNode* Cast(CzonBase* object) {
    return CastFrequent<CzonNode, CzonReal, CzonInt, CzonString, CzonKeyword, CzonSection, CzonBool,
                        CzonFilename, CzonDateTime, CzonTargetList, CzonDouble, CzonFloat,
                        CzonDefaultPar, CzonUndefinedPar>(object);
  }
};
template <>
struct HandleKind<CzonClob> {
  static constexpr int kCode = kErrNode;
  static constexpr char kText[] = "Invalid CLOB object";
  static CzonClob* Cast(CzonBase* object) { return CastFrequent<CzonClob, CzonClob>(object); }
};

inline void* HandleOf(CzonBase* object) {
  return object;
}

// Returns the object as a T; null if the handle is null or its object is of another class.
template <class T>
T* CastHandle(void* handle) {
  return handle != nullptr ? HandleKind<T>::Cast(static_cast<CzonBase*>(handle)) : nullptr;
}

template <class T>
void ReportInvalid() {
  RaiseError(HandleKind<T>::kCode);
  SendMessage(HandleKind<T>::kText);
}

// As CastHandle; a failure is reported.
template <class T>
T* Require(void* handle) {
  T* object = CastHandle<T>(handle);
  if (object == nullptr) ReportInvalid<T>();
  return object;
}

// Requires the handle and returns what `question` returns for its object; `failure` if the handle
// is bad or the question throws.
template <class T, class R, class F>
R Query(void* handle, R failure, F&& question) {
  return Guarded(HandleKind<T>::kCode, failure, [&]() -> R {
    T* object = Require<T>(handle);
    return object != nullptr ? static_cast<R>(question(*object)) : failure;
  });
}

// As Query, for a question about a value: its keyword counts as read.
template <class T, class R, class F>
R QueryValue(void* handle, R failure, F&& question) {
  return Query<T>(handle, failure, [&](T& value) -> R {
    NoteRead(value);
    return static_cast<R>(question(value));
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
  CzonNode* top = node.GetTopNode();
  auto* root = dynamic_cast<CzonTargetList*>(top);
  ZON_ASSERT_TEXT(root != nullptr, "zondll", "dynamic_cast<CzonTargetList*>(pOwner) != 0");
  return *root;
}

// A null text argument counts as the empty text.
inline const char* TextOf(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace zon

#endif
