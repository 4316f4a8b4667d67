// The two ways in which every call of the builder comes: plain, where a refusal is reported, and
// with an S at its end, where it is returned.
#ifndef ZON_API_ZONBUILDER_H
#define ZON_API_ZONBUILDER_H

#include "api/zoncheck.h"
#include "tree/zonnodeaccess.h"

namespace zon {

// Runs the body on a handle that has been found good. Want of memory is a refusal like others; that
// it leaves a code as well keeps whoever adds a keyword and then its value from going on.
template <class T, class F, class... Arguments>
void RunBuilder(T& data, F body, Arguments... arguments) {
  RunGuarded([&] { body(data, arguments...); },
             [&] {
               RaiseError(kErrHandle);
               data.Error(kNoMemory);
             },
             [] { RaiseError(kErrHandle); });
}

template <class T, class F, class... Arguments>
void Build(void* handle, F body, Arguments... arguments) {
  T* data = Guarded<T*>(kErrHandle, nullptr, [&] { return Require<T>(handle); });
  if (data != nullptr) RunBuilder(*data, body, arguments...);
}

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

// Makes a value in the store of the tree, fills it and adds it to the current keyword.
template <class T, class F>
void AddNewParam(CzonData& data, F&& fill) {
  if (!data.HasKeyword()) return;
  T* param = NodeAccess::Make<T>(data.GetArena());
  fill(*param, &data.GetArena());
  data.AddParam(param);
}

}  // namespace zon

#endif
