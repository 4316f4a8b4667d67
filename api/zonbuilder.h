// The frame of the builder functions. Each builder call has two forms: the plain one reports a
// refusal through MessageHook, the one with an S at its end returns it. Tested by
// tests/build_test.cpp.
#ifndef ZON_API_ZONBUILDER_H
#define ZON_API_ZONBUILDER_H

#include "api/zonguard.h"
#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "tree/zonnodeaccess.h"

namespace zon {

// Runs the body on the object of a handle. If out of memory, the call is refused and the error code
// is stored as well: it stops a caller that adds a keyword and then its value.
template <class T, class F, class... Arguments>
void RunBuilder(T& data, F body, Arguments... arguments) {
  RunGuarded([&] { body(data, arguments...); },
             [&] {
               RaiseError(kErrHandle);
               data.Error(kNoMemory);
             },
             [] { RaiseError(kErrHandle); });
}

// The plain form.
template <class T, class F, class... Arguments>
void Build(void* handle, F body, Arguments... arguments) {
  T* data = Guarded<T*>(kErrHandle, nullptr, [&] { return Require<T>(handle); });
  if (data != nullptr) RunBuilder(*data, body, arguments...);
}

// The form with an S. Returns the code of the refusal or of the bad handle, 0 if there is none.
template <class T, class F, class... Arguments>
int BuildS(void* handle, F body, Arguments... arguments) {
  T* data = CastHandle<T>(handle);
  if (data == nullptr) {
    RaiseError(HandleKind<T>::kCode);
    return HandleKind<T>::kCode;
  }
  data->SetQuiet();
  RunBuilder(*data, body, arguments...);
  return data->GetErrorCode();
}

// Makes a value in the arena of the tree, sets it by `fill` and adds it to the current keyword.
template <class T, class F>
void AddNewParam(CzonData& data, F&& fill) {
  if (!HandleAccess::HasKeyword(data)) return;
  Arena& arena = HandleAccess::GetArena(data);
  T* param = NodeAccess::Make<T>(arena);
  fill(*param, &arena);
  data.AddParam(param);
}

}  // namespace zon

#endif
