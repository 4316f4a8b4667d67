// The hooks as they are when the host defines none: silent. Weak and alone in this source, so that
// neither the compiler nor link-time optimisation binds a call inside the library to these bodies;
// every call goes through the dynamic linker, which prefers the host's function.
#include "base/zonhook.h"

extern "C" {

__attribute__((weak)) void MessageHook(const char*) {}

__attribute__((weak)) void ReportHook(const char*, int, void*) {}

__attribute__((weak)) void* ReportArgString(const char*, void*) {
  return nullptr;
}

__attribute__((weak)) void* ReportArgInt(int, void*) {
  return nullptr;
}

}  // extern "C"
