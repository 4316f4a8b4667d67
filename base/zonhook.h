// The hooks, for folders that are below api/. Hosts find them in api/zon.h, with their description.
// A source that includes both does not compile if the declarations differ.
#ifndef ZON_BASE_ZONHOOK_H
#define ZON_BASE_ZONHOOK_H

#include "base/zonexport.h"

extern "C" {

ZON_API void MessageHook(const char* text);
ZON_API void ReportHook(const char* pattern, int severity, void* arguments);
ZON_API void* ReportArgString(const char* text, void* rest);
ZON_API void* ReportArgInt(int value, void* rest);

}  // extern "C"

#endif
