/** @file
 * The second flat interface of zon: a status from every call, every error of a file in one run with
 * its place and a hint, texts from memory, and values by path, to read and to set. C99 and C++17.
 *
 * Handles and nodes are those of zon.h; a host can use both interfaces on the same handle. A
 * function of this header returns a zonxStatus, calls no hook of zon.h, and neither reads nor sets
 * its code. No function throws. A closed handle, or a pointer that this library did not return,
 * must not be passed; null and a handle or node of the wrong kind are ZONX_BAD_ARGUMENT.
 *
 * Outputs. If the status is not ZONX_OK, outputs are unchanged unless the function says otherwise.
 * A null output is ZONX_BAD_ARGUMENT.
 *
 * Paths. Names of sections and then of a keyword, separated by "/": "Quay:2/Berth/Draught[3]". ":n"
 * selects the n-th of that name and "[n]" the n-th value, both from 1 and 1 if left out. The case
 * of A to Z does not count. The last name is a keyword, or a section if there is no such keyword or
 * if "/" follows. "()" is the keyword without a name of a template; default definitions have no
 * path. From a keyword the path is empty or "[n]", from a value empty; the empty path is the start
 * node itself. A path that is malformed is ZONX_BAD_ARGUMENT, an instance that does not exist,
 * however large its number, ZONX_MISSING.
 *
 * Reports. A function with a reporter passes a report to it for every status but ZONX_OK,
 * ZONX_BAD_ARGUMENT and ZONX_NO_MEMORY. The reporter may be null except where the function says
 * otherwise. It may query the handles of the running call, but not change or close them. An
 * exception that it throws is caught; the call goes on.
 *
 * Texts that are valid until the next call of a function are kept for each thread.
 *
 * Threads. Different handles may be used in different threads at the same time. One handle is used
 * by one thread at a time.
 *
 * @code
 * static void print(const zonxReport* report, void* context) {
 *   char text[2000];
 *   zonxFormatReport(report, text, sizeof text);
 *   fprintf((FILE*)context, "%s\n", text);
 * }
 *
 * int main(void) {
 *   void* file = NULL;
 *   double length = 100.0;
 *   if (zonxLoadFile("harbour.zon", &file, print, stderr) == ZONX_OK) {
 *     int status = zonxGetDouble(file, "Quay:2/Length", &length);
 *     if (status != ZONX_OK) zonxReportPath(file, "Quay:2/Length", status, print, stderr);
 *   }
 *   if (file != NULL) zonClose(&file);
 *   return 0;
 * }
 * @endcode
 */
#ifndef ZON_API_ZONX_H
#define ZON_API_ZONX_H

#include <stddef.h>

/** Marks what the shared library exports, see zon.h. */
#ifndef ZON_API
#if defined(ZON_STATIC)
#define ZON_API
#else
#define ZON_API __attribute__((visibility("default")))
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Status and version ---------------------------------------------------------------------- */

/** What a call returns. The numbers never change. */
typedef enum zonxStatus {
  ZONX_OK = 0,
  ZONX_BAD_ARGUMENT = 1,  /**< null or not a handle or node of the kind that is needed; null output;
                               malformed path */
  ZONX_NO_MEMORY = 2,     /**< out of memory; the call has no effect */
  ZONX_CANNOT_OPEN = 3,   /**< the file does not open; errno is the system's */
  ZONX_CANNOT_READ = 4,   /**< the file cannot be read to its end; errno is the system's */
  ZONX_CANNOT_WRITE = 5,  /**< the file cannot be written; errno is the system's */
  ZONX_FAULTY = 6,        /**< the text has errors; each was reported */
  ZONX_UNWRITABLE = 7,    /**< the tree has what the format cannot express; each was reported */
  ZONX_CHANGED = 8,       /**< the file is not the one that was loaded */
  ZONX_EXISTS = 9,        /**< the file exists and a new one was requested */
  ZONX_MISSING = 10,      /**< no such section, keyword, value or place */
  ZONX_WRONG_KIND = 11,   /**< the value is of another kind */
  ZONX_OUT_OF_RANGE = 12, /**< the value does not fit the type */
  ZONX_MISMATCH = 13      /**< the candidate does not conform to the template; each was reported */
} zonxStatus;

/** Returns a text for a status, such as "no such section, keyword, value or place". Valid for ever;
 *  "unknown status" for any other number. */
ZON_API const char* zonxStatusText(int status);

/** The version of this header. The structs never change; what is added later gets new functions. */
#define ZONX_VERSION 1

/** Returns ZONX_VERSION of the library. */
ZON_API int zonxGetVersion(void);

/* ---- Reports --------------------------------------------------------------------------------- */

/** How serious a report is. */
typedef enum zonxSeverity {
  ZONX_ERROR = 0,
  ZONX_WARNING = 1, /**< does not change the status */
  ZONX_NOTE = 2
} zonxSeverity;

/** A range of a text. Lines and columns count from 1, columns in bytes; 0 is unknown. */
typedef struct zonxPlace {
  const char* file;       /**< as it was given to the load; null: no place is known */
  unsigned int line;      /**< of the first character */
  unsigned int column;    /**< of the first character */
  unsigned int endLine;   /**< after the last character */
  unsigned int endColumn; /**< after the last character */
  size_t offset;          /**< of the first character, in bytes from the start of the text */
  size_t length;          /**< in bytes */
} zonxPlace;

/** One finding. All texts are valid during the call of the reporter only. */
typedef struct zonxReport {
  int severity;               /**< a zonxSeverity */
  const char* rule;           /**< a word that never changes, such as "unclosed-section" */
  const char* message;        /**< one line, without the place */
  const char* hint;           /**< what to do about it; empty if nothing is to be said */
  zonxPlace place;            /**< where the mistake is */
  zonxPlace related;          /**< e.g. the header of the unclosed section; file null: none */
  const char* relatedMessage; /**< empty without a related place */
  const char* sourceLine;     /**< the text of place.line without its line end; null if unknown, and
                                   for a long line after many reports on long lines */
} zonxReport;

/** Receives a report. `context` is what was passed with the function. */
typedef void (*zonxReporter)(const zonxReport* report, void* context);

/** Writes a report as text: "file:line:column: error: message", the source line, a line that marks
 *  the place in it, the related place in the same form, and the hint, with newlines between them. A
 *  line or column of 0, an empty name and a missing source line are left out; a long source line is
 *  shortened to what is around the place.
 *  @param buffer  receives the text, cut off if it does not fit, and a zero; may be null if size is
 *      0
 *  @param size    room in bytes
 *  @return the length of the whole text without the zero, as snprintf; 0 if the report is null, or
 *      out of memory: then the text is empty */
ZON_API size_t zonxFormatReport(const zonxReport* report, char* buffer, size_t size);

/** Passes a report of the host's own about a node to a reporter, with the place of the node, so
 *  that it has the form of the library's.
 *  @param node      a node or a file handle
 *  @param severity  a zonxSeverity
 *  @param rule      null counts as empty, also for message and hint
 *  @return ZONX_OK, also if the node has no place: then the report has the name of the file alone;
 *      ZONX_BAD_ARGUMENT: no node, no such severity, or a null reporter; ZONX_NO_MEMORY */
ZON_API int zonxReportNode(void* node, int severity, const char* rule, const char* message,
                           const char* hint, zonxReporter reporter, void* context);

/** Reports why a getter or setter returned `status` for a path. The report is placed at the deepest
 *  node of the path that exists, and names the nearest name if one is missing.
 *  @param fileOrNode  where the path begins
 *  @return ZONX_OK: reported, or the status is ZONX_OK; ZONX_BAD_ARGUMENT: no file or node, null
 *      path or reporter, no status; ZONX_NO_MEMORY. A malformed path is reported too. */
ZON_API int zonxReportPath(void* fileOrNode, const char* path, int status, zonxReporter reporter,
                           void* context);

/* ---- Loading --------------------------------------------------------------------------------- */

/** Loads a parameter file, or checks it. Accepts exactly what zonLoadFile accepts. Every error is
 *  reported, not only the first, and warnings, which do not change the status. After 100 errors a
 *  note says that reporting stops; after 100 warnings no more are reported.
 *  @param fileName  null is the empty name
 *  @param handle    receives what zonLoadFile would return, to be closed by zonClose: null, also
 *      for ZONX_FAULTY a handle without a tree or with the sections before the error. It is always
 *      set. Null: the text is only checked, which needs no memory for a tree.
 *  @return ZONX_OK; ZONX_FAULTY; ZONX_CANNOT_OPEN and ZONX_CANNOT_READ with errno;
 *      ZONX_NO_MEMORY */
ZON_API int zonxLoadFile(const char* fileName, void** handle, zonxReporter reporter, void* context);

/** The same for a text in memory.
 *  @param text      is copied; may hold zero bytes. Null is allowed if `size` is 0.
 *  @param size      in bytes
 *  @param fileName  names the text in reports; its file names are resolved against it. Null is the
 *      empty name.
 *  @return as zonxLoadFile, and ZONX_BAD_ARGUMENT for a null text with a size */
ZON_API int zonxLoadText(const char* text, size_t size, const char* fileName, void** handle,
                         zonxReporter reporter, void* context);

/** Sets functions that receive what is sent to the hooks of zon.h as well, for hosts that load the
 *  library at run time and cannot define the hooks. Texts of reports have their words filled in,
 *  and all texts are valid during the call only. The setting is process-wide and may be changed
 *  only while no other call of the library runs. The functions may be called from several threads
 *  at once.
 *  @param message  receives what MessageHook receives; null: none
 *  @param report   receives what ReportHook receives; null: none */
ZON_API void zonxSetHooks(void (*message)(const char* text, void* context),
                          void (*report)(const char* text, int severity, void* context),
                          void* context);

/* ---- Finding and reading --------------------------------------------------------------------- */

/** The kinds of nodes. */
typedef enum zonxKind {
  ZONX_FILE = 1, /**< the root of a file */
  ZONX_SECTION = 2,
  ZONX_KEYWORD = 3,
  ZONX_DEFINITION = 4, /**< "default (x) = ..." */
  ZONX_INTEGER = 6,
  ZONX_REAL = 7,
  ZONX_BOOLEAN = 8,
  ZONX_STRING = 9,
  ZONX_FILENAME = 10,
  ZONX_PLACEHOLDER = 11,  /**< an empty place of a default definition */
  ZONX_SUBSTITUTION = 12, /**< "%name" */
  ZONX_DATETIME = 13,
  ZONX_UNKNOWN = 14, /**< a remark alone */
  ZONX_EMPTY = 15,   /**< an empty place */
  ZONX_CLOB = 16
} zonxKind;

/** Returns the zonxKind of a node; a file handle is ZONX_FILE; 0 for anything else. */
ZON_API int zonxGetKind(void* node);

/** Finds a node by its path.
 *  @param node  receives a section, a keyword or, for a path with "[n]", a value
 *  @return ZONX_OK, ZONX_MISSING, ZONX_BAD_ARGUMENT, ZONX_NO_MEMORY */
ZON_API int zonxFind(void* fileOrNode, const char* path, void** node);

/** Returns the place of a section (its header from "[" to "]"), of a keyword (its name) or of a
 *  value (with its sign, quotes or bars), in the text that was loaded. An empty place has length 0.
 *  Places stay right after any edit of other nodes.
 *  @param place  the name in it is valid until the file is closed
 *  @return ZONX_OK; ZONX_MISSING for a node that was not loaded or whose own text has changed;
 *      ZONX_BAD_ARGUMENT; ZONX_NO_MEMORY */
ZON_API int zonxWhere(void* node, zonxPlace* place);

/** Returns the remark of a section, keyword or value, without its braces.
 *  @param out  valid until the next call of this function in this thread
 *  @return ZONX_OK, ZONX_MISSING if there is none, ZONX_BAD_ARGUMENT, ZONX_NO_MEMORY */
ZON_API int zonxGetRemark(void* node, const char** out);

/** Return the first value of a keyword, or the one that "[n]" selects.
 *
 *  An integer can be read as a real; nothing else is converted. A default placeholder is read as
 *  its default value. Integers are exact to 64 bits, and an integer read as a real is rounded to
 *  nearest. zonxGetText returns any value as it is written in a file, with quotes, bars and marks;
 *  zonxGetFilename returns the resolved path.
 *  @return ZONX_OK; ZONX_MISSING: no such value, an empty place, a remark alone, or a placeholder
 *      without default; ZONX_WRONG_KIND; ZONX_OUT_OF_RANGE: a number beyond the type, or infinite;
 *      ZONX_BAD_ARGUMENT; ZONX_NO_MEMORY. The texts of zonxGetString are valid until the value
 *      changes, those of zonxGetFilename and zonxGetText until the next call of the same function
 *      in this thread. @{ */
ZON_API int zonxGetInt(void* fileOrNode, const char* path, int* out);
ZON_API int zonxGetInt64(void* fileOrNode, const char* path, long long* out);
ZON_API int zonxGetDouble(void* fileOrNode, const char* path, double* out);
ZON_API int zonxGetBool(void* fileOrNode, const char* path, int* out); /**< 0 or 1 */
ZON_API int zonxGetString(void* fileOrNode, const char* path, const char** out);
ZON_API int zonxGetFilename(void* fileOrNode, const char* path, const char** out);
ZON_API int zonxGetText(void* fileOrNode, const char* path, const char** out);
/** @} */

/** Return all values of a keyword.
 *
 *  The path ends at a keyword. At most `room` values are stored, and *count receives how many there
 *  are, also if that is more than `room`. If a value cannot be read, *count receives its number,
 *  from 1, and `out` may hold those before it. `out` may be null if `room` is 0. The functions for
 *  numbers make no nodes for values that were not asked for before. Texts of zonxGetStrings are
 *  valid until the value changes.
 *  @return as for one value @{ */
ZON_API int zonxGetInts(void* fileOrNode, const char* path, int* out, size_t room, size_t* count);
ZON_API int zonxGetInt64s(void* fileOrNode, const char* path, long long* out, size_t room,
                          size_t* count);
ZON_API int zonxGetDoubles(void* fileOrNode, const char* path, double* out, size_t room,
                           size_t* count);
ZON_API int zonxGetBools(void* fileOrNode, const char* path, int* out, size_t room, size_t* count);
ZON_API int zonxGetStrings(void* fileOrNode, const char* path, const char** out, size_t room,
                           size_t* count);
/** @} */

/* ---- Changing -------------------------------------------------------------------------------- */

/** Set a value by path: the first one of a keyword, or the one that "[n]" selects.
 *
 *  Sections and the keyword are created if they are missing, each after the last of its kind, a
 *  first keyword before all sections. Of n sections or keywords of a name, n + 1 creates one more.
 *  "[n]" one past the last value appends. The path can also begin at a keyword, and be empty or
 *  "[n]", or at a value, and be empty.
 *
 *  An equal value stays as it is, so it keeps its spelling and its place. A value of the same kind
 *  keeps its node; its text is new. A value of another kind, an empty place and a reference to a
 *  variable of the host are replaced: their handles are no longer valid. Remarks stay. Setting is
 *  not reading, see zonxWatch. A real is written with the fewest digits that are read back as the
 *  same double.
 *
 *  @code
 *  zonxSetDouble(file, "Quay:2/Length", 96.5);
 *  zonxSetString(file, "Quay:2/Berth/Name", "east");   // creates what is missing
 *  zonxSetInt64(file, "Run/Steps[4]", 12);             // appends to three values
 *  @endcode
 *
 *  @param value  is copied; a null text is ZONX_BAD_ARGUMENT. The value of zonxSetFilename is the
 *      name as it is to be written; "/" and "\" in it are equal. 0 is false for zonxSetBool.
 *  @return ZONX_OK; ZONX_MISSING: a number that is more than one past the last, or a handle without
 *      a tree; ZONX_OUT_OF_RANGE: not a number, or infinite; ZONX_BAD_ARGUMENT: null, a malformed
 *      path, one that ends with "/", a keyword that would be in no section, the number 0, or a new
 *      name that the format does not allow; ZONX_NO_MEMORY. If it is not ZONX_OK the tree is as
 *      before. @{ */
ZON_API int zonxSetInt64(void* fileOrNode, const char* path, long long value);
ZON_API int zonxSetDouble(void* fileOrNode, const char* path, double value);
ZON_API int zonxSetBool(void* fileOrNode, const char* path, int value);
ZON_API int zonxSetString(void* fileOrNode, const char* path, const char* value);
ZON_API int zonxSetFilename(void* fileOrNode, const char* path, const char* value);
/** @} */

/** Replaces all values of a keyword by those of a text as it is written in a file: "1, 2.5 {m},
 *  'x'". An empty text leaves one empty place. For the rest as zonxSetInt64, value by value.
 *  @param path  without "[n]"
 *  @param text  is copied. It has values and their remarks only, no comment.
 *  @return ZONX_OK; ZONX_FAULTY: the text is no list of values; otherwise as zonxSetInt64, and
 *      ZONX_BAD_ARGUMENT for a path with "[n]" or that begins at a value; ZONX_MISSING;
 *      ZONX_NO_MEMORY. If it is not ZONX_OK the tree is as before. */
ZON_API int zonxSetText(void* fileOrNode, const char* path, const char* text);

/** Replace all values of a keyword. No values leave one empty place. For the rest as zonxSetInt64,
 *  value by value: values that are equal or of the same kind keep their nodes.
 *  @param path    without "[n]"
 *  @param values  are copied; null is allowed if `count` is 0. A null text among them is
 *      ZONX_BAD_ARGUMENT.
 *  @return ZONX_OK; ZONX_OUT_OF_RANGE: one of them is not a number, or infinite; otherwise as
 *      zonxSetInt64, and ZONX_BAD_ARGUMENT for a path with "[n]" or that begins at a value;
 *      ZONX_MISSING; ZONX_NO_MEMORY. If it is not ZONX_OK the tree is as before. @{ */
ZON_API int zonxSetInt64s(void* fileOrNode, const char* path, const long long* values,
                          size_t count);
ZON_API int zonxSetDoubles(void* fileOrNode, const char* path, const double* values, size_t count);
ZON_API int zonxSetBools(void* fileOrNode, const char* path, const int* values, size_t count);
ZON_API int zonxSetStrings(void* fileOrNode, const char* path, const char* const* values,
                           size_t count);
/** @} */

/** Removes a value, with "[n]", or else a keyword or section, without ":n" the first of its name.
 *  The path is that of zonxFind; the empty path removes the node itself. Handles of what was
 *  removed are no longer valid. A keyword can be left without values.
 *  @return ZONX_OK; ZONX_MISSING: there is none; ZONX_BAD_ARGUMENT: null, a malformed path, or the
 *      root of a file; ZONX_NO_MEMORY */
ZON_API int zonxRemove(void* fileOrNode, const char* path);

/* ---- Saving ---------------------------------------------------------------------------------- */

/** How a tree is saved; 0 or a sum. */
enum {
  ZONX_PLAIN = 1,     /**< in the layout of zonWrite, without comments */
  ZONX_NEW = 2,       /**< only if nothing has the name, also no dangling link */
  ZONX_OVERWRITE = 4, /**< also a file that has changed since it was loaded, and another file */
  ZONX_BACKUP = 8,    /**< the old file stays, as its name and "~", beside the target of a link */
  ZONX_NAMES_AS_WRITTEN = 16 /**< file names stay as they are, also in a file in another folder */
};

/** Saves a tree, however it was changed, so that loading the file gives the tree; this is verified
 *  before anything is replaced.
 *
 *  The text that was loaded or last saved is changed only where the tree differs: comments,
 *  remarks, layout, spelling of numbers and line ends stay byte for byte. A changed value replaces
 *  its own characters. A new keyword gets a line after the last keyword of its section; a removed
 *  one loses its lines with the comments on them. A tree that was built, or ZONX_PLAIN, gives the
 *  layout of zonWrite, without its losses: numbers in full, remarks and all flags. If nothing has
 *  changed, nothing is written.
 *
 *  The file is replaced in one step and keeps its mode, owner and attributes; a symbolic link stays
 *  a link. Files with several hard links, devices and pipes are written in place. Relative file
 *  names in the tree keep their target if the file goes to another folder. Result settings update
 *  the section SYSTEM. Afterwards the handle counts as loaded from that file. On failure tree and
 *  file are as they were.
 *
 *      if (zonxSetDouble(handle, "Quay:2/Length", 97.0) == ZONX_OK) {
 *        status = zonxSave(handle, NULL, 0, reporter, NULL);
 *      }
 *
 *  @param fileName  null: the file that was loaded or last saved, wherever the working directory is
 *      now
 *  @param flags     0 or a sum of ZONX_PLAIN to ZONX_NAMES_AS_WRITTEN. With ZONX_OVERWRITE alone, a
 *      file that has changed since it was loaded keeps its present text where the tree does not
 *      differ; so does another file, if it loads and the loaded one is not there any more as it
 *      was.
 *  @param reporter  receives every failure but ZONX_BAD_ARGUMENT and ZONX_NO_MEMORY; may be null
 *  @return ZONX_OK; ZONX_FAULTY: the handle has no tree, its load met an error, or the file that
 *      was loaded has changed and does not load any more; ZONX_UNWRITABLE: the tree has what the
 *      format cannot express, such as an infinite number; ZONX_CHANGED: the file has another
 *      content than the one that was loaded, was removed, or is another existing file; ZONX_EXISTS;
 *      ZONX_CANNOT_READ and ZONX_CANNOT_WRITE, with errno; ZONX_BAD_ARGUMENT: no file handle,
 *      unknown flags, or no name for a tree that has no file; ZONX_NO_MEMORY */
ZON_API int zonxSave(void* handle, const char* fileName, unsigned int flags, zonxReporter reporter,
                     void* context);

/** Returns the text that zonxSave with a null name would write.
 *  @param text  receives memory that zonxFree releases; a zero follows the text. Unchanged on
 *      failure
 *  @param size  receives the size of the text without that zero; may be null
 *  @return as zonxSave, but for the statuses of files */
ZON_API int zonxText(void* handle, unsigned int flags, char** text, size_t* size,
                     zonxReporter reporter, void* context);

/** Releases memory of zonxText. Null is ignored. */
ZON_API void zonxFree(void* memory);

/* ---- Checking, comparing, merging ------------------------------------------------------------ */

/** Compares a file with a template and reports every mismatch, in the order of the file: its place
 *  in the file, the line of the template as the related place, and for an unknown name the nearest
 *  one as the hint.
 *
 *  The file conforms exactly if zonEquivalent returns 1 for each of its top-level sections and the
 *  template's section of that name, the template has each of these, no mandatory section is
 *  missing, and no condition is broken. Remarks of the template state conditions, separated by ";"
 *  and in any letter case; any other text in a remark is for people:
 *
 *  - required: of a section or keyword, that each section or file which may have it has it; at a
 *    value, the same for its keyword
 *  - open: at a keyword or its last value, that the last value may repeat, as SetOpenList says it
 *  - >= 0, > 0, <= 1, < 100, 0 .. 1: limits of numbers, both ends of ".." included. Integers are
 *    compared exactly, up to 64 bits, reals as the doubles that they are
 *  - one of a, b, 'c, d': numbers by value; strings, file names and date-times as they are written,
 *    letter case included
 *  - exists: a file or folder is at the path of the file name
 *  - unit m, default 5: for people
 *
 *  A condition at a value is one on this value and, in an open list, its repetitions; at a keyword
 *  one on all its values that can have it; at a section only "required" counts. Values of another
 *  kind than the template's are a mismatch and not checked further: so an empty place breaks no
 *  range, and is not what a keyword with a number in the template may have. Conditions are not
 *  checked for the template's own values.
 *
 *  A template is faulty, whatever the file has, if a condition cannot be meant, such as a limit for
 *  a string or two limits that exclude each other. A name that it has twice in a section, without
 *  "()", and a section without a name are faults only if something of the file is compared with
 *  them, as for zonEquivalent. The faults of a template are reported once, all of them, and then no
 *  mismatch is. To find them without a file, pass the handle of the template as both arguments.
 *
 *      if (zonxValidate(wanted, file, reporter, NULL) == ZONX_MISMATCH) return 1;
 *
 *  @param templateHandle   a file handle; it may be the same as the other
 *  @param candidateHandle  a file handle
 *  @param reporter         receives each mismatch as an error; may be null
 *  @return ZONX_OK: the file conforms; ZONX_MISMATCH; ZONX_FAULTY: the template is faulty, or one
 *      of the handles has no tree or its load met an error; ZONX_BAD_ARGUMENT; ZONX_NO_MEMORY */
ZON_API int zonxValidate(void* templateHandle, void* candidateHandle, zonxReporter reporter,
                         void* context);

/** What a difference is. */
typedef enum zonxChange {
  ZONX_ADDED = 0,     /**< a section, keyword or value that only `after` has */
  ZONX_REMOVED = 1,   /**< one that only `before` has */
  ZONX_DIFFERENT = 2, /**< a value has other data, or a section or keyword other flags */
  ZONX_MOVED = 3      /**< a section or keyword has another place among its siblings */
} zonxChange;

/** A difference. All of it lives during the call of the visitor only. */
typedef struct zonxDifference {
  int change; /**< zonxChange */
  /** As zonxFind takes it from `after` or, for what was removed, from `before`. That of a default
   *  definition, and of its values, is the path of the section it is in. */
  const char* path;
  void* before; /**< the section, keyword, default definition or value; null if it was added */
  void* after;  /**< the same; null if it was removed */
} zonxDifference;

/** How reals are compared. Two finite reals a and b are equal if |a - b| is at most `absolute`, or
 *  at most `relative` times the larger of |a| and |b|. Zeroed: exactly. Neither may be negative or
 *  no number. */
typedef struct zonxCompare {
  double relative; /**< of the larger one */
  double absolute; /**< in the unit of the values */
} zonxCompare;

/** Visits the differences of two trees, in the order of `after`: of each section first its
 *  keywords, then its sections; what was removed is visited where it was.
 *
 *  Sections and keywords are paired by name and instance, and values by position. Of several
 *  namesakes those with equal content are paired first, so that one that was inserted, removed or
 *  moved does not shift the others. What was added or removed is visited as a whole, nothing inside
 *  it. If only the order differs, all differences are ZONX_MOVED, for as few nodes as possible; the
 *  order between a keyword and a section does not count. Differences inside what was moved follow
 *  it.
 *
 *  Compared are data and flags, not layout, comments, remarks, letter case of names or spelling of
 *  numbers. 1 and 1.0 differ, 0.0 and -0.0 do not, and a value that is no number is equal to
 *  itself. A float is compared in its precision. A keyword without values has one empty place. File
 *  names in files of different folders are compared as resolved, else by their texts, in which "/"
 *  and "\" are equal; those in CLOBs are part of the text.
 *
 *  @param before   a file handle or a section; of sections, name and place are not compared
 *  @param after    another one of the same kind, or the same one
 *  @param options  null: exactly
 *  @param visitor  may be null. It may query the trees, but not change or close them. An exception
 *      that it throws is caught; the call goes on
 *  @param count    receives the number of differences; may be null
 *  @return ZONX_OK, also if there are differences; ZONX_FAULTY: a handle has no tree, or its load
 *      met an error; ZONX_BAD_ARGUMENT; ZONX_NO_MEMORY: the visitor may have been called */
ZON_API int zonxDiff(void* before, void* after, const zonxCompare* options,
                     void (*visitor)(const zonxDifference* difference, void* context),
                     void* context, size_t* count);

/** As zonxDiff, but sections of a name that occurs more than once in `before` or `after` are paired
 *  by the values of their keyword `key` before anything else: those with equal values, whatever the
 *  tolerance, however else they differ. One whose values no section of the other tree has was added
 *  or removed. A section without the keyword, or with several, with empty places alone, or with
 *  values that another section of that name in its list has too, is paired as by zonxDiff.
 *      zonxDiffByKey(before, after, "Name", NULL, print, stdout, &count);
 *  @param key  the name of a keyword; null or empty: as zonxDiff
 *  @return as zonxDiff */
ZON_API int zonxDiffByKey(void* before, void* after, const char* key, const zonxCompare* options,
                          void (*visitor)(const zonxDifference* difference, void* context),
                          void* context, size_t* count);

/** Merges a file into another one: every keyword of `overlay` is given to `target`, where it
 *  replaces all values of the keyword with that path and instance. Sections and keywords that are
 *  missing are added, after the last of their kind, with their default definitions, flags and
 *  remarks. A default definition replaces the one of that name and number in its section. What the
 *  overlay does not have stays as it is.
 *
 *  A value that has the data already keeps its node, and so its text and its comments when the file
 *  is saved; a value of the same kind keeps its node; any other one is replaced, and its handle is
 *  no longer valid. Remarks of the target stay; sections and keywords get the flags of the overlay
 *  in addition to theirs. A reference to a variable of the host is replaced, never written through.
 *  Relative file names that come from a file in another folder are rewritten, so that they keep
 *  their target; those in CLOBs are texts and stay as they are. If the target has a name with the
 *  flag "()" and the overlay that name several times, or the reverse, the merged tree has both,
 *  which zonxSave refuses.
 *
 *      status = zonxMerge(base, overlay);
 *      if (status == ZONX_OK) status = zonxSave(base, "merged.zon", 0, reporter, NULL);
 *
 *  @param target   the handle that changes
 *  @param overlay  another handle, which stays as it is; `target` itself changes nothing
 *  @return ZONX_OK; ZONX_FAULTY: a handle has no tree, or its load met an error; ZONX_BAD_ARGUMENT:
 *      no file handle; ZONX_NO_MEMORY: the target is as it was */
ZON_API int zonxMerge(void* target, void* overlay);

/* ---- Keywords that nobody read --------------------------------------------------------------- */

/** Starts or stops watching a file. While a file is watched, every value or list that a getter of
 *  either interface returns counts as read; finding, places, kinds and exploring do not. Starting
 *  forgets what was read before. Watching costs nothing while it is off.
 *  @param on  not 0: start
 *  @return ZONX_OK, ZONX_MISSING for a handle without a tree, ZONX_BAD_ARGUMENT, ZONX_NO_MEMORY */
ZON_API int zonxWatch(void* handle, int on);

/** Reports, as warnings, each keyword of which no value was read since watching started, with its
 *  place and the nearest name that was requested but not found. The first 1,000 such names are
 *  kept, and after a million comparisons of names reports have no hint.
 *  @param count  receives how many they are; may be null
 *  @return ZONX_OK, also if there are some; ZONX_MISSING if the file is not watched or has no tree;
 *      ZONX_BAD_ARGUMENT; ZONX_NO_MEMORY */
ZON_API int zonxReportUnread(void* handle, zonxReporter reporter, void* context, size_t* count);

#ifdef __cplusplus
}
#endif

#endif
