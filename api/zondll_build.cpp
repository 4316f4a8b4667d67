// Exported functions: the builder. Each call is implemented once, in the first part; its two
// exported forms differ in how a refusal reaches the host. Tested by tests/build_test.cpp.
#include "api/zon.h"
#include "api/zonbuilder.h"
#include "base/zonnumber.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreference.h"

using zon::AddNewParam;
using zon::Build;
using zon::BuildS;
using zon::TextOf;

namespace {

void AddTarget(CzonData& data, const char* name) {
  data.AddTarget(TextOf(name));
}
void AddSection(CzonData& data, const char* name) {
  data.AddSection(TextOf(name));
}
void EndSection(CzonData& data) {
  data.EndSection();
}
void AddKeyword(CzonData& data, const char* name) {
  data.AddKeyword(TextOf(name));
}

void AddInt(CzonData& data, int value) {
  AddNewParam<CzonInt>(
      data, [&](CzonInt& p, zon::Arena* arena) { zon::NodeAccess::SetValue(p, value, arena); });
}
void AddFloat(CzonData& data, float value) {
  AddNewParam<CzonFloat>(
      data, [&](CzonFloat& p, zon::Arena* arena) { zon::NodeAccess::SetValue(p, value, arena); });
}
void AddDouble(CzonData& data, double value) {
  AddNewParam<CzonDouble>(
      data, [&](CzonDouble& p, zon::Arena* arena) { zon::NodeAccess::SetValue(p, value, arena); });
}
void AddBool(CzonData& data, int value) {
  AddNewParam<CzonBool>(data, [&](CzonBool& p, zon::Arena* arena) {
    zon::NodeAccess::SetValue(p, value != 0, arena);
  });
}
void AddString(CzonData& data, const char* text) {
  AddNewParam<CzonString>(data, [&](CzonString& p, zon::Arena* arena) {
    zon::NodeAccess::SetText(p, TextOf(text), arena);
  });
}
void AddFilename(CzonData& data, const char* text) {
  AddNewParam<CzonFilename>(data, [&](CzonFilename& p, zon::Arena* arena) {
    zon::NodeAccess::SetText(p, TextOf(text), arena);
  });
}
void AddUndefinedPar(CzonData& data) {
  AddNewParam<CzonUndefinedPar>(data, [](CzonUndefinedPar&, zon::Arena*) {});
}

// The references without memory of their own.
template <class Reference, class Variable>
void AddReference(CzonData& data, Variable* variable) {
  if (!zon::HandleAccess::HasKeyword(data)) return;
  data.AddParam(zon::NodeAccess::Make<Reference>(zon::HandleAccess::GetArena(data), variable));
}
void AddIntRef(CzonData& data, int* variable) {
  AddReference<CzonIntRef>(data, variable);
}
void AddFloatRef(CzonData& data, float* variable) {
  AddReference<CzonFloatRef>(data, variable);
}
void AddDoubleRef(CzonData& data, double* variable) {
  AddReference<CzonDoubleRef>(data, variable);
}
void AddBoolRef(CzonData& data, int* variable) {
  AddReference<CzonBoolRef>(data, variable);
}

// Not made in the arena: the reference owns memory, so it would need its destructor there too.
void AddStringRef(CzonData& data, char* variable) {
  if (!zon::HandleAccess::HasKeyword(data)) return;
  std::unique_ptr<CzonParam> reference(CzonStringRef::OfBuffer(variable));
  data.AddParam(reference.get());
  static_cast<void>(reference.release());  // owned by the tree
}

void AddSectionDef(CzonCreate& data, const char* name, int multi, int mandat) {
  data.AddSectionDef(TextOf(name), multi, mandat);
}
void AddKeywordDef(CzonCreate& data, const char* name, const char* codes, int multi, int mandat,
                   int flag) {
  data.AddKeywordDef(TextOf(name), TextOf(codes), multi, mandat, flag);
}

// Adds a definition by its code in AddKeywordDef.
template <char kCode>
void AddDefinition(CzonCreate& data) {
  if (zon::HandleAccess::HasKeyword(data))
    data.AddParam(zon::MakeDefinition(kCode, zon::HandleAccess::GetArena(data)));
}

}  // namespace

extern "C" {

void* zonCreate(void) {
  zonGetErrorGlb();  // clears the pending code
  return zon::Guarded<void*>(zon::kErrFileInit, nullptr,
                             [] { return static_cast<CzonBase*>(new CzonCreate); });
}

void zonAddTarget(void* handle, const char* name) {
  Build<CzonData>(handle, AddTarget, name);
}
int zonAddTargetS(void* handle, const char* name) {
  return BuildS<CzonData>(handle, AddTarget, name);
}
void zonAddSection(void* handle, const char* name) {
  Build<CzonData>(handle, AddSection, name);
}
int zonAddSectionS(void* handle, const char* name) {
  return BuildS<CzonData>(handle, AddSection, name);
}
void zonEndSection(void* handle) {
  Build<CzonData>(handle, EndSection);
}
int zonEndSectionS(void* handle) {
  return BuildS<CzonData>(handle, EndSection);
}
void zonAddKeyword(void* handle, const char* name) {
  Build<CzonData>(handle, AddKeyword, name);
}
int zonAddKeywordS(void* handle, const char* name) {
  return BuildS<CzonData>(handle, AddKeyword, name);
}
void zonAddInt(void* handle, int value) {
  Build<CzonData>(handle, AddInt, value);
}
int zonAddIntS(void* handle, int value) {
  return BuildS<CzonData>(handle, AddInt, value);
}
void zonAddFloat(void* handle, float value) {
  Build<CzonData>(handle, AddFloat, value);
}
int zonAddFloatS(void* handle, float value) {
  return BuildS<CzonData>(handle, AddFloat, value);
}
void zonAddDouble(void* handle, double value) {
  Build<CzonData>(handle, AddDouble, value);
}
int zonAddDoubleS(void* handle, double value) {
  return BuildS<CzonData>(handle, AddDouble, value);
}
void zonAddBool(void* handle, int value) {
  Build<CzonData>(handle, AddBool, value);
}
int zonAddBoolS(void* handle, int value) {
  return BuildS<CzonData>(handle, AddBool, value);
}
void zonAddString(void* handle, const char* text) {
  Build<CzonData>(handle, AddString, text);
}
int zonAddStringS(void* handle, const char* text) {
  return BuildS<CzonData>(handle, AddString, text);
}
void zonAddFilename(void* handle, const char* text) {
  Build<CzonData>(handle, AddFilename, text);
}
int zonAddFilenameS(void* handle, const char* text) {
  return BuildS<CzonData>(handle, AddFilename, text);
}
void zonAddUndefinedPar(void* handle) {
  Build<CzonData>(handle, AddUndefinedPar);
}
int zonAddUndefinedParS(void* handle) {
  return BuildS<CzonData>(handle, AddUndefinedPar);
}
void zonAddIntRef(void* handle, int* variable) {
  Build<CzonData>(handle, AddIntRef, variable);
}
int zonAddIntRefS(void* handle, int* variable) {
  return BuildS<CzonData>(handle, AddIntRef, variable);
}
void zonAddFloatRef(void* handle, float* variable) {
  Build<CzonData>(handle, AddFloatRef, variable);
}
int zonAddFloatRefS(void* handle, float* variable) {
  return BuildS<CzonData>(handle, AddFloatRef, variable);
}
void zonAddDoubleRef(void* handle, double* variable) {
  Build<CzonData>(handle, AddDoubleRef, variable);
}
int zonAddDoubleRefS(void* handle, double* variable) {
  return BuildS<CzonData>(handle, AddDoubleRef, variable);
}
void zonAddStringRef(void* handle, char* variable) {
  Build<CzonData>(handle, AddStringRef, variable);
}
int zonAddStringRefS(void* handle, char* variable) {
  return BuildS<CzonData>(handle, AddStringRef, variable);
}
void zonAddBoolRef(void* handle, int* variable) {
  Build<CzonData>(handle, AddBoolRef, variable);
}
int zonAddBoolRefS(void* handle, int* variable) {
  return BuildS<CzonData>(handle, AddBoolRef, variable);
}
void zonAddSectionDef(void* handle, const char* name, int multi, int mandat) {
  Build<CzonCreate>(handle, AddSectionDef, name, multi, mandat);
}
int zonAddSectionDefS(void* handle, const char* name, int multi, int mandat) {
  return BuildS<CzonCreate>(handle, AddSectionDef, name, multi, mandat);
}
void zonAddKeywordDef(void* handle, const char* name, const char* codes, int multi, int mandat,
                      int flag) {
  Build<CzonCreate>(handle, AddKeywordDef, name, codes, multi, mandat, flag);
}
int zonAddKeywordDefS(void* handle, const char* name, const char* codes, int multi, int mandat,
                      int flag) {
  return BuildS<CzonCreate>(handle, AddKeywordDef, name, codes, multi, mandat, flag);
}
void zonAddIntDef(void* handle) {
  Build<CzonCreate>(handle, AddDefinition<'I'>);
}
int zonAddIntDefS(void* handle) {
  return BuildS<CzonCreate>(handle, AddDefinition<'I'>);
}
void zonAddFloatDef(void* handle) {
  Build<CzonCreate>(handle, AddDefinition<'F'>);
}
int zonAddFloatDefS(void* handle) {
  return BuildS<CzonCreate>(handle, AddDefinition<'F'>);
}
void zonAddDoubleDef(void* handle) {
  Build<CzonCreate>(handle, AddDefinition<'D'>);
}
int zonAddDoubleDefS(void* handle) {
  return BuildS<CzonCreate>(handle, AddDefinition<'D'>);
}
void zonAddStringDef(void* handle) {
  Build<CzonCreate>(handle, AddDefinition<'S'>);
}
int zonAddStringDefS(void* handle) {
  return BuildS<CzonCreate>(handle, AddDefinition<'S'>);
}
void zonAddFilenameDef(void* handle) {
  Build<CzonCreate>(handle, AddDefinition<'N'>);
}
int zonAddFilenameDefS(void* handle) {
  return BuildS<CzonCreate>(handle, AddDefinition<'N'>);
}
void zonAddBoolDef(void* handle) {
  Build<CzonCreate>(handle, AddDefinition<'B'>);
}
int zonAddBoolDefS(void* handle) {
  return BuildS<CzonCreate>(handle, AddDefinition<'B'>);
}

}  // extern "C"
