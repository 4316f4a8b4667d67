/* The four functions through which the library speaks to its host.
 *
 * The library's own versions do nothing. A host hears the library by defining a function of the
 * same name and signature with C linkage: the dynamic linker then prefers the host's. A hook may
 * query trees, load files and call the builder on other handles; it must not close the handle that
 * the reporting call works on. */
#ifndef ZON_BASE_ZONHOOK_H
#define ZON_BASE_ZONHOOK_H

#include "base/zonexport.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Receives one message: a failed check of a handle or node, a refusal of the builder, or
 *  "Function invalid in this context" for a query that the kind of node does not support.
 *  text  zero-terminated, valid during the call only. It is a text, not a format. */
ZON_API void MessageHook(const char* text);

/** Receives a report whose words are still apart from its pattern.
 *  pattern    text in which each '%' stands for the next word of `arguments`. Reports without words
 *             (arguments null) may hold names taken from a file: print them as they are.
 *  severity   1 from the loader, 17 from the comparison with a template
 *  arguments  chain made by ReportArgString and ReportArgInt, the first placeholder's word at its
 *             head; null when the host does not define those two. Valid during the call only. */
ZON_API void ReportHook(const char* pattern, int severity, void* arguments);

/** Makes the argument word of a text. `text` is valid until ReportHook returns; `rest` is the chain
 *  of the words that follow, null behind the last. Returns the chain with this word in front; the
 *  library's own version returns null. */
ZON_API void* ReportArgString(const char* text, void* rest);

/** Makes the argument word of a number, otherwise as ReportArgString. */
ZON_API void* ReportArgInt(int value, void* rest);

#ifdef __cplusplus
}
#endif

#endif
