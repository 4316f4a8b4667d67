/* The four functions through which the library reports to its host.
 *
 * The library's own versions do nothing. A host replaces one by defining a function with the same
 * name and signature, with C linkage, that the dynamic linker can see (in a program: not static;
 * link with -rdynamic where the linker does not export it by itself).
 *
 * A hook may query any tree, load files, and build or edit on other handles than that of the
 * reporting call. A load, or zonCreate, inside a hook clears the pending error code, also the one
 * that the reporting call has just stored: read the code first if it is needed. A hook must not
 * close or change the handle of the reporting call. An exception thrown by a hook does not reach
 * the host: the reporting call ends and returns its failure value. To record a report, store it and
 * return. */
#ifndef ZON_BASE_ZONHOOK_H
#define ZON_BASE_ZONHOOK_H

#include "base/zonexport.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Receives one message: a failed check of a handle or node, a builder call that was refused, or
 *  "Function invalid in this context" for a query that this kind of node cannot answer.
 *  text  zero-terminated, valid during the call only. Print it as it is: it is no format. */
ZON_API void MessageHook(const char* text);

/** Receives a report about a file.
 *  pattern    text in which each '%' is a placeholder for the next word of `arguments`. A report
 *             without words (arguments is null) can contain names of the file: print it as it is.
 *             Valid during the call only.
 *  severity   1 from loading, 17 from the comparison with a template
 *  arguments  the words, as ReportArgString and ReportArgInt returned them, the word of the first
 *             placeholder outermost; null if the host does not define these two. Valid during the
 *             call only. */
ZON_API void ReportHook(const char* pattern, int severity, void* arguments);

/** Adds a text to the front of the words of a report. The words are made from the last to the
 *  first.
 *  text     valid until ReportHook returns
 *  rest     the words after this one, as returned by the last call; null for the last word
 *  returns  the words with this one in front, in a form that the host chooses; the library only
 *           passes it on. The library's own version returns null. */
ZON_API void* ReportArgString(const char* text, void* rest);

/** Adds a number to the front of the words of a report, otherwise as ReportArgString. */
ZON_API void* ReportArgInt(int value, void* rest);

#ifdef __cplusplus
}
#endif

#endif
