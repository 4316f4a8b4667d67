// Exported functions: setting and removing by path. Tested by tests/zonxset_test.cpp.
#include <cmath>
#include <new>
#include <utility>

#include "api/zonx.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonnewvalue.h"
#include "zonx/zonnodeedit.h"
#include "zonx/zonnodepath.h"
#include "zonx/zonstatus.h"
#include "zonx/zonvaluetext.h"

namespace zon {
namespace {

// Make a value of what the host passes; null is out of range.
NewValue MakeNew(long long value) {
  return NewInteger(value);
}
NewValue MakeNew(double value) {
  return std::isfinite(value) ? NewReal(value) : nullptr;
}
NewValue MakeNew(int value) {
  return NewBoolean(value != 0);
}
NewValue MakeNew(const char* value) {
  return NewString(value);
}

// Sets one value, which `make` makes.
template <class Make>
int SetOne(void* fileOrNode, const char* path, Make&& make) {
  return WithStatus([&]() -> int {
    const SetPlace place = FindSetPlace(fileOrNode, path);
    if (place.status != ZONX_OK) return place.status;
    NewValue value = make();
    if (value == nullptr) return ZONX_OUT_OF_RANGE;
    SetValue(place, std::move(value));
    return ZONX_OK;
  });
}

// Sets all values of a keyword, which `make` stores.
template <class Make>
int SetAll(void* fileOrNode, const char* path, Make&& make) {
  return WithStatus([&]() -> int {
    const SetPlace place = FindSetPlace(fileOrNode, path);
    if (place.valueNumber != 0) return ZONX_BAD_ARGUMENT;
    if (place.status != ZONX_OK) return place.status;
    NewValues values;
    const int status = make(place.keyword != nullptr && place.keyword->IsDefaultDef(), &values);
    if (status == ZONX_OK) SetAllValues(place, std::move(values));
    return status;
  });
}

template <class T>
bool IsNull(T) {
  return false;
}
bool IsNull(const char* text) {
  return text == nullptr;
}

template <class T>
int SetList(void* fileOrNode, const char* path, const T* values, size_t count) {
  if (values == nullptr && count != 0) return ZONX_BAD_ARGUMENT;
  return SetAll(fileOrNode, path, [&](bool isInDefinition, NewValues* made) {
    if (count > UINT32_MAX) throw std::bad_alloc();
    for (size_t at = 0; at < count; ++at) {
      if (IsNull(values[at])) return ZONX_BAD_ARGUMENT;
      made->push_back(MakeNew(values[at]));
      if (made->back() == nullptr) return ZONX_OUT_OF_RANGE;
    }
    if (count == 0) made->push_back(NewEmpty(isInDefinition));
    return ZONX_OK;
  });
}

}  // namespace
}  // namespace zon

using zon::MakeNew;

extern "C" {

int zonxSetInt64(void* fileOrNode, const char* path, long long value) {
  return zon::SetOne(fileOrNode, path, [&] { return MakeNew(value); });
}
int zonxSetDouble(void* fileOrNode, const char* path, double value) {
  return zon::SetOne(fileOrNode, path, [&] { return MakeNew(value); });
}
int zonxSetBool(void* fileOrNode, const char* path, int value) {
  return zon::SetOne(fileOrNode, path, [&] { return MakeNew(value); });
}
int zonxSetString(void* fileOrNode, const char* path, const char* value) {
  if (value == nullptr) return ZONX_BAD_ARGUMENT;
  return zon::SetOne(fileOrNode, path, [&] { return MakeNew(value); });
}
int zonxSetFilename(void* fileOrNode, const char* path, const char* value) {
  if (value == nullptr) return ZONX_BAD_ARGUMENT;
  return zon::SetOne(fileOrNode, path, [&] { return zon::NewFilename(value); });
}

int zonxSetText(void* fileOrNode, const char* path, const char* text) {
  if (text == nullptr) return ZONX_BAD_ARGUMENT;
  return zon::SetAll(fileOrNode, path, [&](bool isInDefinition, zon::NewValues* values) {
    return zon::ParseValues(text, isInDefinition, values);
  });
}
int zonxSetInt64s(void* fileOrNode, const char* path, const long long* values, size_t count) {
  return zon::SetList(fileOrNode, path, values, count);
}
int zonxSetDoubles(void* fileOrNode, const char* path, const double* values, size_t count) {
  return zon::SetList(fileOrNode, path, values, count);
}
int zonxSetBools(void* fileOrNode, const char* path, const int* values, size_t count) {
  return zon::SetList(fileOrNode, path, values, count);
}
int zonxSetStrings(void* fileOrNode, const char* path, const char* const* values, size_t count) {
  return zon::SetList(fileOrNode, path, values, count);
}

int zonxRemove(void* fileOrNode, const char* path) {
  return zon::WithStatus([&]() -> int {
    const zon::FoundNode found = zon::FindNode(fileOrNode, path);
    return found.status == ZONX_OK ? zon::RemoveNode(*found.node) : found.status;
  });
}

}  // extern "C"
