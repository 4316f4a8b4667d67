// Exported functions: a keyword and its values in one call. Tested by tests/params_test.cpp.
#include "api/zonconvenience.h"

#include <cstdarg>

#include "text/cstring.h"

using zon::GetParam;
using zon::PutParam;

int zonGetParam(void* section, const char* keyword, int* out, int instance, int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out, zonGetInt);
}
int zonGetParam(void* section, const char* keyword, float* out, int instance, int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out, zonGetFloat);
}
int zonGetParam(void* section, const char* keyword, double* out, int instance, int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out, zonGetDouble);
}
int zonGetParam(void* section, const char* keyword, bool* out, int instance, int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out,
                  [](void* param) { return zonGetBool(param) != 0; });
}
int zonGetParam(void* section, const char* keyword, CString* out, int instance, int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out, zonGetString);
}
int zonGetParamFilename(void* section, const char* keyword, const char** out, int instance,
                        int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out, zonGetFilename);
}
int zonGetParamFilename(void* section, const char* keyword, CString* out, int instance,
                        int paramNo) {
  return GetParam(section, keyword, instance, paramNo, out, zonGetFilename);
}

int zonPutParam(void* handle, const char* keyword, int value) {
  return PutParam(handle, keyword, [&] { zonAddInt(handle, value); });
}
int zonPutParam(void* handle, const char* keyword, float value) {
  return PutParam(handle, keyword, [&] { zonAddFloat(handle, value); });
}
int zonPutParam(void* handle, const char* keyword, double value) {
  return PutParam(handle, keyword, [&] { zonAddDouble(handle, value); });
}
int zonPutParam(void* handle, const char* keyword, bool value) {
  return PutParam(handle, keyword, [&] { zonAddBool(handle, value ? 1 : 0); });
}
int zonPutParam(void* handle, const char* keyword, const char* value) {
  return PutParam(handle, keyword, [&] { zonAddString(handle, value); });
}
int zonPutParam(void* handle, const char* keyword, CString value) {
  constexpr int kRoom = 1024;
  return zon::Guarded(zon::kErrHandle, 0, [&] {
    const char* text = value.GetBuffer(kRoom);
    return PutParam(handle, keyword, [&] { zonAddString(handle, text); });
  });
}

extern "C" {

int zonPutParamFilename(void* handle, const char* keyword, const char* value) {
  return PutParam(handle, keyword, [&] { zonAddFilename(handle, value); });
}

int zonPutListParam(void* handle, const char* keyword, const char* format, ...) {
  zonAddKeyword(handle, keyword);
  if (!zon::NoErrorPending()) return 0;
  va_list values;
  va_start(values, format);
  const char* kind = zon::TextOf(format);
  for (; *kind != '\0' && zon::NoErrorPending(); ++kind) {
    switch (*kind) {
      case 'i':
        zonAddInt(handle, va_arg(values, int));
        break;
      case 'f':
        // A float is passed as a double to a function with an ellipsis.
        zonAddFloat(handle, static_cast<float>(va_arg(values, double)));
        break;
      case 'd':
        zonAddDouble(handle, va_arg(values, double));
        break;
      case 'b':
        zonAddBool(handle, va_arg(values, int));
        break;
      default:  // adds nothing and consumes no argument
        break;
    }
  }
  va_end(values);
  return zon::NoErrorPending() ? 1 : 0;
}

int zonGetListParam(void* section, const char* keyword, int instance, const char* format, ...) {
  void* found = zonKeywordByNameNum(section, keyword, static_cast<unsigned int>(instance));
  if (found == nullptr) return 0;
  va_list outputs;
  va_start(outputs, format);
  const char* kind = zon::TextOf(format);
  int stored = 1;
  for (int k = 1; *kind != '\0' && stored; ++kind, ++k) {
    switch (*kind) {
      case 'i':
        stored = zonGetParam(section, keyword, va_arg(outputs, int*), instance, k);
        break;
      case 'f':
        stored = zonGetParam(section, keyword, va_arg(outputs, float*), instance, k);
        break;
      case 'd':
        stored = zonGetParam(section, keyword, va_arg(outputs, double*), instance, k);
        break;
      case 'b':
        stored = zonGetParam(section, keyword, va_arg(outputs, bool*), instance, k);
        break;
      default:  // skips a value
        stored = zonParamByNum(found, static_cast<unsigned int>(k)) != nullptr;
        break;
    }
  }
  va_end(outputs);
  return stored;
}

}  // extern "C"
