// Exported functions: CLOB values. Tested by tests/clob_test.cpp.
#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "api/zon.h"
#include "api/zonbuilder.h"
#include "base/zonemptytext.h"
#include "paths/zonfilepath.h"
#include "tree/zonclob.h"
#include "tree/zonnodeaccess.h"

using zon::Build;
using zon::BuildS;
using zon::EmpSt;
using zon::Query;
using zon::QueryValue;
using zon::TextOf;

namespace {

void AddClob(CzonData& data) {
  if (zon::HandleAccess::HasKeyword(data))
    data.AddParam(zon::NodeAccess::Make<CzonClob>(zon::HandleAccess::GetArena(data)));
}

// Adds an item to the current CLOB; without one the call is refused.
template <class F>
void AddItem(CzonData& data, F&& add) {
  CzonClob* clob = data.GetCurrentClob();
  if (clob == nullptr) return data.Error("Missing current CLOB");
  add(*clob);
}

void AddBool(CzonData& data, int value) {
  AddItem(data, [&](CzonClob& clob) { clob.AddBool(value != 0); });
}
void AddInt(CzonData& data, int value) {
  AddItem(data, [&](CzonClob& clob) { clob.AddInt(value); });
}
// An infinity and a NaN have no form that the reader of CLOBs accepts.
void AddFloat(CzonData& data, float value) {
  AddItem(data, [&](CzonClob& clob) {
    if (!std::isfinite(value)) return data.Error("Invalid CLOB value");
    clob.AddFloat(value);
  });
}
void AddDouble(CzonData& data, double value) {
  AddItem(data, [&](CzonClob& clob) {
    if (!std::isfinite(value)) return data.Error("Invalid CLOB value");
    clob.AddDouble(value);
  });
}
void AddString(CzonData& data, const char* text) {
  AddItem(data, [&](CzonClob& clob) { clob.AddText(CzonClobKind::kString, TextOf(text)); });
}
void AddFilename(CzonData& data, const char* text) {
  AddItem(data, [&](CzonClob& clob) { clob.AddText(CzonClobKind::kFilename, TextOf(text)); });
}

int IsKind(void* node, CzonClobKind kind) {
  return Query<CzonClob>(node, 0, [&](CzonClob& clob) { return clob.IsKind(kind); });
}

}  // namespace

extern "C" {

void zonAddClob(void* handle) {
  Build<CzonData>(handle, AddClob);
}
int zonAddClobS(void* handle) {
  return BuildS<CzonData>(handle, AddClob);
}
void zonAddClobBool(void* handle, int value) {
  Build<CzonData>(handle, AddBool, value);
}
int zonAddClobBoolS(void* handle, int value) {
  return BuildS<CzonData>(handle, AddBool, value);
}
void zonAddClobInt(void* handle, int value) {
  Build<CzonData>(handle, AddInt, value);
}
int zonAddClobIntS(void* handle, int value) {
  return BuildS<CzonData>(handle, AddInt, value);
}
void zonAddClobFloat(void* handle, float value) {
  Build<CzonData>(handle, AddFloat, value);
}
int zonAddClobFloatS(void* handle, float value) {
  return BuildS<CzonData>(handle, AddFloat, value);
}
void zonAddClobDouble(void* handle, double value) {
  Build<CzonData>(handle, AddDouble, value);
}
int zonAddClobDoubleS(void* handle, double value) {
  return BuildS<CzonData>(handle, AddDouble, value);
}
void zonAddClobString(void* handle, const char* text) {
  Build<CzonData>(handle, AddString, text);
}
int zonAddClobStringS(void* handle, const char* text) {
  return BuildS<CzonData>(handle, AddString, text);
}
void zonAddClobFilename(void* handle, const char* text) {
  Build<CzonData>(handle, AddFilename, text);
}
int zonAddClobFilenameS(void* handle, const char* text) {
  return BuildS<CzonData>(handle, AddFilename, text);
}

int zonIsClob(void* node) {
  return Query<CzonNode>(node, 0, [](CzonNode& n) { return n.IsClob(); });
}
int zonGetClobNoItems(void* node) {
  return Query<CzonClob>(node, -1, [](CzonClob& clob) { return clob.GetNoItems(); });
}
int zonIsClobEnd(void* node) {
  return Query<CzonClob>(node, 1, [](CzonClob& clob) { return clob.IsEnd(); });
}
int zonIsClobBool(void* node) {
  return IsKind(node, CzonClobKind::kBoolean);
}
int zonIsClobInt(void* node) {
  return IsKind(node, CzonClobKind::kInteger);
}
int zonIsClobFloat(void* node) {
  return IsKind(node, CzonClobKind::kFloat);
}
int zonIsClobDouble(void* node) {
  return IsKind(node, CzonClobKind::kDouble);
}
int zonIsClobString(void* node) {
  return IsKind(node, CzonClobKind::kString);
}
int zonIsClobFilename(void* node) {
  return IsKind(node, CzonClobKind::kFilename);
}

int zonGetClobBool(void* node) {
  return QueryValue<CzonClob>(node, 0, [](CzonClob& clob) { return clob.GetBool(); });
}
int zonGetClobInt(void* node) {
  return QueryValue<CzonClob>(node, -1, [](CzonClob& clob) { return clob.GetInt(); });
}
float zonGetClobFloat(void* node) {
  return QueryValue<CzonClob>(node, -1.0F, [](CzonClob& clob) { return clob.GetFloat(); });
}
double zonGetClobDouble(void* node) {
  return QueryValue<CzonClob>(node, -1.0, [](CzonClob& clob) { return clob.GetDouble(); });
}
const char* zonGetClobString(void* node) {
  return QueryValue<CzonClob, const char*>(node, EmpSt(),
                                           [](CzonClob& clob) { return clob.GetString().c_str(); });
}
const char* zonGetClobFilenameString(void* node) {
  return QueryValue<CzonClob, const char*>(
      node, EmpSt(), [](CzonClob& clob) { return clob.GetClobFilename().c_str(); });
}
const char* zonGetClobFilename(void* node) {
  return QueryValue<CzonClob, const char*>(node, EmpSt(), [](CzonClob& clob) -> const char* {
    // Resolved before GetClobFilename moves the cursor: it must not move if out of memory.
    const char* path = EmpSt();
    if (clob.IsKind(CzonClobKind::kFilename)) {
      path =
          zon::NodeAccess::Keep(clob, zon::ResolveFilename(clob.PeekText(), clob.GetZonFilename()))
              .c_str();
    }
    clob.GetClobFilename();
    return path;
  });
}

void zonClobReset(void* node) {
  zon::Update<CzonClob>(node, [](CzonClob& clob) { clob.Reset(); });
}

const char* zonGetErrorFromZonClob(void* node) {
  return Query<CzonClob, const char*>(node, nullptr,
                                      [](CzonClob& clob) { return clob.GetErrorText().c_str(); });
}

}  // extern "C"
