/** @file
 * The flat interface of zon: reads, queries, builds, edits and writes parameter files. C99 and
 * C++17.
 *
 * Handles. A file handle is returned by zonLoadFile and zonCreate and is closed by zonClose. A node
 * handle refers to one node of a file's tree: the root, a section, a keyword, a default definition
 * or a value. The tree owns its nodes: a node handle is valid until its file handle is closed or
 * the node is deleted or replaced. Every function accepts null for a handle and reports it as an
 * error, except where the process ends. A closed handle, or a pointer that this library did not
 * return, must not be passed.
 *
 * Errors. Every function checks its handle. A bad file handle (null, or a handle of another kind)
 * stores code 1005, a bad node 1006, and the function passes a text to MessageHook and returns the
 * failure value stated in its comment. Nothing else changes. There is one pending code for the
 * process. A code is stored only if none is pending; zonGetErrorGlb returns and clears it,
 * zonLoadFile, zonFileCopy and zonCreate clear it when they start. If out of memory, a function
 * stores the code of a bad handle, passes "No memory" to MessageHook, and returns its failure
 * value; to a builder call this is also a refusal. No function throws.
 *
 * Hooks. The host can define functions that receive messages and reports (see Hooks). A hook or
 * visitor may query, load files, and build on other handles. A load or zonCreate inside it clears
 * the pending code of the call that runs. It must not close or change the handle of that call. An
 * exception that it throws ends the call: the failure value is returned with the code of a bad
 * handle (1002 for zonLoadFile), unless a code is pending already.
 *
 * Texts. A null text argument counts as the empty text. A null output pointer is not written. All
 * texts are zero-terminated. A text that is passed is copied. A text that is returned is owned by
 * the library and is valid as long as the node or handle that it was queried from, or shorter if
 * the function says so. A text of a value also ends with a change of that value (zoneModify...,
 * zonSetFilename), a name with a renaming, and both with zonCopy onto the node or a node around it.
 *
 * Numbers of sections, keywords, values and instances start at 1. If there is no such node, the
 * functions that find nodes return null without a code and without a message. Null is a bad node to
 * the next call, so a chain of calls reports a missing node as 1006. Names are compared without
 * regard to the case of A to Z.
 *
 * Threads. Different handles may be used in different threads at the same time. A handle with its
 * nodes and texts is used by one thread at a time, also if a call only queries it or compares with
 * it. The pending code is one for the process: the first error of any thread is stored, and any
 * thread can receive it and clear it. A host with several threads rather judges by the values that
 * are returned. Hooks may be called by several threads at once. What a comment says to belong to a
 * thread ends with the thread.
 */
#ifndef ZON_API_ZON_H
#define ZON_API_ZON_H

/** The version of this header and of the library that was installed with it. @{ */
#define ZON_VERSION_MAJOR 0
#define ZON_VERSION_MINOR 1
#define ZON_VERSION_PATCH 0
/** @} */

/** Marks what the shared library exports. Define ZON_STATIC before the include to compile the
 *  library itself, or to link to a static one, without exports. */
#ifndef ZON_API
#if defined(ZON_STATIC)
#define ZON_API
#else
#define ZON_API __attribute__((visibility("default")))
#endif
#endif

#ifdef __cplusplus
class CString;
class CzonNode;
extern "C" {
#else
typedef struct CzonNode CzonNode;
#endif

/* ---- Hooks --------------------------------------------------------------------------------------
 * The four functions through which the library reports to its host. The library's own versions do
 * nothing. A host replaces one by defining a function with the same name and signature, with C
 * linkage, that the dynamic linker can see: in a program not static, and linked with -rdynamic if
 * the linker does not export it by itself.
 *
 * A hook may do what is said above. It is called in the thread of the call that reports, so several
 * may run at once. The reporting call may have stored its code before: read it
 * before a load or zonCreate inside the hook clears it. To record a report, store it and return. */

/** Receives one message: a failed check of a handle or node, a builder call that was refused, or
 *  "Function invalid in this context" for a query that this kind of node cannot answer.
 *  @param text  zero-terminated, valid during the call only. Print it as it is: it is no format. */
ZON_API void MessageHook(const char* text);

/** Receives a report about a file.
 *  @param pattern    text in which each '%' is a placeholder for the next word of `arguments`. A
 *      report without words (arguments is null) can contain names of the file: print it as it is.
 *      Valid during the call only.
 *  @param severity   1 from loading, 17 from the comparison with a template
 *  @param arguments  the words, as ReportArgString and ReportArgInt returned them, the word of
 *      the first placeholder outermost; null if the host does not define these two. Valid during
 *      the call only. */
ZON_API void ReportHook(const char* pattern, int severity, void* arguments);

/** Adds a text to the front of the words of a report. The words are made from the last to the
 *  first.
 *  @param text  valid until ReportHook returns
 *  @param rest  the words after this one, as returned by the last call; null for the last word
 *  @return the words with this one in front, in a form that the host chooses; the library only
 *      passes it on. The library's own version returns null. */
ZON_API void* ReportArgString(const char* text, void* rest);

/** Adds a number to the front of the words of a report, otherwise as ReportArgString.
 *  @return the words; null from the library's own version */
ZON_API void* ReportArgInt(int value, void* rest);

/* ---- Loading and closing --------------------------------------------------------------------- */

/** Reads a parameter file into a tree. The file is closed again before the function returns.
 *  @param fileName  of any length; stored as given, as the name of the parameter file (see File
 *      names)
 *  @param quiet     not 0: nothing is passed to ReportHook
 *  @return a file handle, to be closed by zonClose, or null. If the file has a syntax error, the
 *      handle has no tree. If the scanner fails after a complete top-level section, the handle has
 *      the sections before the error and no code is stored: zonGetSyntaxErr reports it.
 *  @errors
 *  - 1001: the file cannot be opened; null; report "Open error: %"
 *  - 1002: the file cannot be read to its end, or out of memory; null
 *  - 1003: syntax error; a handle; report "Error: %\n in % near line % position %" */
ZON_API void* zonLoadFile(const char* fileName, int quiet);

/** Closes a file handle, frees its tree, and sets *handle to null.
 *  @errors handle is null or *handle is no file handle: 1005, "Invalid zonHandle (CzonData)";
 *      *handle is unchanged */
ZON_API void zonClose(void** handle);

/** Loads a parameter file, replaces each file name in it by its path, and appends the tree to the
 *  target as zonWrite does. The paths are written relative to the target.
 *  Compatibility: existing files are in that form. It counts the target's own name as a folder, so
 *  a name that shares a folder with the target reads back one folder too high.
 *  @return 1; 0 if loading the source stored a code, or the target could not be written
 *  @errors 1001, 1002 and 1003 with the reports of zonLoadFile; none for the target */
ZON_API int zonFileCopy(const char* source, const char* target);

/** Returns the first error of a loaded file. The library keeps no later errors.
 *  @param line      receives the line, from 1, where the error was noticed; 0 if there is no error
 *  @param position  receives how many bytes of that line had been read; 0 if there is no error
 *  @param message   receives the text that is returned
 *  @return a text such as "syntax error" or "Bad string"; empty if there is no error. Valid until
 *      the handle is closed.
 *  @errors no handle from zonLoadFile: 1005, "Invalid zonHandle (CzonLoad)"; the empty text,
 *      line and position 0 */
ZON_API const char* zonGetSyntaxErr(void* handle, unsigned int* line, unsigned int* position,
                                    const char** message);

/** Counters of a load: bytes read; number of the last line; comments, where each nested comment
 *  counts.
 *  @errors no handle from zonLoadFile: 1005, "Invalid zonHandle (CzonLoad)"; 0 @{ */
ZON_API unsigned int zonNoChars(void* handle);
ZON_API unsigned int zonNoLines(void* handle);
ZON_API unsigned int zonNoComments(void* handle);
/** @} */

/* ---- Errors and versions --------------------------------------------------------------------- */

/** Return the pending error code, 0 if there is none. zonGetErrorGlb clears it, zonPeekErrorGlb
 *  does not. @{ */
ZON_API int zonGetErrorGlb(void);
ZON_API int zonPeekErrorGlb(void);
/** @} */

/** Returns the text of an error code.
 *  @param code  1000 to 1014; the text of any other is "unknown error code"
 *  @return the text, which belongs to the calling thread; valid until its next call of this
 *      function */
ZON_API const char* zonGetErrorMessageFromErrorCode(int code);

/** Returns the text of the last builder call that was refused on this handle, empty if none was.
 *  Nothing clears it. Valid until the next refusal.
 *  @errors bad handle: 1005, no message; null */
ZON_API const char* zonGetErrorFromZonData(void* handle);

/** Return the date and time of the build ("Dec  8 2021 06:06:36"), the version, and the name of
 *  the library. The texts are valid as long as the process runs. @{ */
ZON_API const char* zonGetVersion(void);
ZON_API const char* zonGetBuildVersion(void);
ZON_API const char* zonGetDLLid(void);
/** @} */

/** Copy the same texts.
 *  @param size  room in `buffer` in bytes, including the terminating zero
 *  @return 0 if the text was copied; -1 if `buffer` is null or has no room for the whole
 *      text, and then it is unchanged; -2 if there is no text @{ */
ZON_API int zonGetVersion2(char* buffer, int size);
ZON_API int zonGetBuildVersion2(char* buffer, int size);
ZON_API int zonGetDLLid2(char* buffer, int size);
/** @} */

/* ---- From a file to its nodes ---------------------------------------------------------------- */

/** Returns the root of the tree. Null without a message if the file has no tree.
 *  @errors bad handle: 1005, no message; null */
ZON_API void* zonGetRoot(void* handle);

/** The number of top-level sections; the n-th one; the n-th one with that name. Null if there is
 *  none.
 *  @errors bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid
 *      zonNode"; 0 or null @{ */
ZON_API int zonGetNoTargets(void* handle);
ZON_API void* zonTargetByNum(void* handle, unsigned int n);
ZON_API void* zonTargetByNameNum(void* handle, const char* name, unsigned int n);
/** @} */

/** Calls `visit` for every section, keyword, default definition and value in file order, a node
 *  before its children. The root is not visited.
 *  @param visit  may query and add nodes. It must not delete nodes or close the handle. Null:
 *      nothing is visited.
 *  @errors bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid zonNode";
 *      nothing is visited */
ZON_API void zonExplore(void* handle, void (*visit)(CzonNode*));

/** Finds a section by a path of names separated by '/' or '.', such as "Model/Grid:2". ":n" after a
 *  name selects its n-th instance; without it, the first. Null if there is no such section, and for
 *  an empty path.
 *  @errors bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid zonNode";
 *      null */
ZON_API void* zonFindSectionByHandle(void* handle, const char* path);

/** The same, starting at a section. An empty path returns the section itself.
 *  Compatibility: '.' separates names, so ".." is no step up. "../A" finds the section A below the
 *  node, as "A" does.
 *  @errors bad node: 1006, "Invalid zonNode"; null */
ZON_API void* zonFindSectionByNode(void* node, const char* path);

/** Cuts a path element at its first ':' and stores the number after it.
 *  @param element   changed in place; null: nothing happens
 *  @param instance  receives the number, limited to the range of int; unchanged if there is no
 *      colon or no number after it */
ZON_API void splitElement(char* element, int* instance);

/* ---- From node to node --------------------------------------------------------------------------
 * These functions return null if there is no such node. A question that this kind of node cannot
 * answer, such as the keywords of a value, also passes "Function invalid in this context" to
 * MessageHook; no code is stored.
 * Errors: bad node: 1006, "Invalid zonNode"; null */

/** The n-th section of the root or of a section; the n-th keyword of a section; the n-th value of
 *  a keyword or default definition; the n-th child of any kind. For a default placeholder
 *  zonParamByNum returns the default value, if there is one, and zonNodeByNum the placeholder.
 *  @{ */
ZON_API void* zonSectionByNum(void* node, unsigned int n);
ZON_API void* zonKeywordByNum(void* node, unsigned int n);
ZON_API void* zonParamByNum(void* node, unsigned int n);
ZON_API void* zonNodeByNum(void* node, unsigned int n);
/** @} */

/** The n-th section or keyword with that name. @{ */
ZON_API void* zonSectionByNameNum(void* node, const char* name, unsigned int n);
ZON_API void* zonKeywordByNameNum(void* node, const char* name, unsigned int n);
/** @} */

/** The section or root that contains a section or keyword; for a value, the section that contains
 *  its keyword. Null for the root. A bad node is reported three times. */
ZON_API void* zonGetParentSection(void* node);

/** For a default placeholder: the default value, or the placeholder itself if there is none. Null
 *  without a message for any other node. */
ZON_API void* zonFindDefault(void* node);

/* ---- What a node is -----------------------------------------------------------------------------
 * Errors: bad node: 1006, "Invalid zonNode", and the failure value in parentheses */

/** Depth in the tree: 0 for the root, 1 for a top-level section. (-1) */
ZON_API int zonGetLevel(void* node);

/** The kind of node. (0)
 *   1  root                    6  integer                  11  default placeholder
 *   2  section                 7  real                     12  substitution
 *   3  keyword                 8  boolean                  14  unknown value (a remark only)
 *   4  default definition      9  string                   15  undefined value (empty place)
 *   5  CLOB                   10  file name or date-time
 *  Of class 10, a file name is the node for which zonIsFilename returns 1. */
ZON_API int zonGetSyntaxClass(void* node);

/** zonGetName returns the name of a section, keyword or default definition; empty for other nodes.
 *  zonGetNameGlb returns the name of a section or keyword with the names of its sections before it,
 *  as in "Model.Grid.depth"; empty for other nodes. It is composed by the first call: renaming a
 *  node later does not change it. (empty text) @{ */
ZON_API const char* zonGetName(void* node);
ZON_API const char* zonGetNameGlb(void* node);
/** @} */

/** How many siblings have the name of this node, itself included, and its place among them, from 1.
 *  For a value: how many values the keyword has, and its place among them. (0) @{ */
ZON_API int zonGetNoInstances(void* node);
ZON_API int zonGetInstanceNo(void* node);
/** @} */

/** The number of children: of any kind; values; keywords; sections. 0 for a node that has no such
 *  children. (-1) @{ */
ZON_API int zonGetNoNodes(void* node);
ZON_API int zonGetNoParams(void* node);
ZON_API int zonGetNoKeywords(void* node);
ZON_API int zonGetNoSections(void* node);
/** @} */

/** Return 1 if the node is of that kind, else 0. (0)
 *  zonIsTarget          top-level section
 *  zonIsSection         section or root
 *  zonIsKeyword         keyword or default definition
 *  zonIsParam           value
 *  zonIsNumeric         integer or real
 *  zonIsInt             number whose value is whole and within 64 bits
 *  zonIsFloat           number that has a single-precision value
 *  zonIsDouble          number that has a double-precision value
 *  zonNumericIsIntType  integer (class 6)
 *  A loaded number answers zonIsFloat and zonIsDouble, an integer all three. A reference to a
 *  variable answers only for the type of its variable. @{ */
ZON_API int zonIsTarget(void* node);
ZON_API int zonIsSection(void* node);
ZON_API int zonIsKeyword(void* node);
ZON_API int zonIsParam(void* node);
ZON_API int zonIsNumeric(void* node);
ZON_API int zonIsInt(void* node);
ZON_API int zonIsFloat(void* node);
ZON_API int zonIsDouble(void* node);
ZON_API int zonIsBool(void* node);
ZON_API int zonIsString(void* node);
ZON_API int zonIsFilename(void* node);
ZON_API int zonIsUndefinedPar(void* node);
ZON_API int zonIsDefaultPar(void* node);
ZON_API int zonNumericIsIntType(void* node);
/** @} */

/* ---- Values -------------------------------------------------------------------------------------
 * For a node without such a value they return 0 or the empty text, and pass "Function invalid in
 * this context" to MessageHook; no code is stored. Query the kind first: 0 and the empty text are
 * values too.
 *
 * On a CLOB, zonGetInt, zonGetDouble, zonGetFloat, zonGetBool and zonGetString read the item at the
 * cursor and advance the cursor, as zonGetClobInt and so on do. A wrong kind of item, the end, or
 * malformed content stores 1003 and returns the failure value.
 *
 * There is no getter here for the text of a date-time or a substitution. A date-time has class 10
 * and zonIsFilename 0, a substitution class 12; C++ hosts read the text with CzonParam::GetText of
 * zonclasses.h.
 * Errors: bad node: 1006, "Invalid zonNode", and the failure value in parentheses */

/** The low 32 bits of an integer; also of a real that is whole and within 64 bits. For any other
 *  real it is 0 without a message. (-1) */
ZON_API int zonGetInt(void* node);

/** The value of an integer or real, in double precision (-1.0) and in single precision (-1.0). In
 *  single precision a value beyond the range of a float is the largest float of its sign, and one
 *  below the smallest normal float is 0. @{ */
ZON_API double zonGetDouble(void* node);
ZON_API float zonGetFloat(void* node);
/** @} */

/** Store the same values in *out, for callers that cannot receive a floating-point result. A bad
 *  node stores -1.0. @{ */
ZON_API void zonPasGetDoubleProc(void* node, double* out);
ZON_API void zonPasGetFloatProc(void* node, float* out);
/** @} */

/** 1 for true, 0 for false. For a reference, the value of the variable. (0) */
ZON_API int zonGetBool(void* node);

/** The text of a string, without its quotes. Valid until the value changes or goes; for a
 *  reference, until the next call of zonGetString on that value. (empty text) */
ZON_API const char* zonGetString(void* node);

/** Copy the texts of zonGetName, zonGetNameGlb and zonGetString.
 *  @param size  room in `buffer` in bytes, including the terminating zero
 *  @return 0 if the text was copied; -1 if `buffer` is null or has no room, and then it is
 *      unchanged. A bad node copies the empty text and returns 0. @{ */
ZON_API int zonGetName2(void* node, char* buffer, int size);
ZON_API int zonGetNameGlb2(void* node, char* buffer, int size);
ZON_API int zonGetString2(void* node, char* buffer, int size);
/** @} */

/* ---- File names ---------------------------------------------------------------------------------
 * A file name is stored as written. To make its path, '\' becomes '/', and a name that does not
 * begin with '/' is joined to the folder of the parameter file and normalised. The name of the
 * parameter file is the one given to zonLoadFile, zonWrite or zonSetAnchorFilename; if relative, it
 * is joined to the working directory at the time of the query.
 * Errors: bad node: 1006, "Invalid zonNode" */

/** Returns the path of a file-name value.
 *  @return the path, of any length, in a writable buffer with room for at least 260 characters,
 *      including the terminating zero. Valid until the next call on this value, and until the
 *      value changes or goes. Null with "Function invalid in this context" if the node is no
 *      file name. A bad node: the empty text, in a buffer that belongs to the calling thread. */
ZON_API char* zonGetFilename(void* node);

/** Returns a file name as written. Valid until the value changes or goes. Null with "Function
 *  invalid in this context" if the node is no file name. A bad node: the empty text. */
ZON_API const char* zonGetFilenameString(void* node);

/** Replaces the text of a file name. Any other node is unchanged, without a message. */
ZON_API void zonSetFilename(void* node, const char* text);

/** Replaces the text of a file name by its path. Any other node is unchanged, without a message.
 *  For use in a visitor of zonExplore. */
ZON_API void zonFileCopyCallBack(void* node);

/** The name of the parameter file. zonGetAnchorFilename returns it for the root only, and the empty
 *  text for any other node; zonGetZonFileName returns it for any node of the tree. Empty if the top
 *  of the tree is not the root of a file. Valid until the name changes. A bad node: the empty text,
 *  but zonGetZonFileName ends the process. @{ */
ZON_API const char* zonGetAnchorFilename(void* node);
ZON_API const char* zonGetZonFileName(void* node);
/** @} */

/** Sets the name of the parameter file for the tree of a node. Ends the process if the top of the
 *  tree is not the root of a file. */
ZON_API void zonSetAnchorFilename(void* node, const char* name);

/** Copy the texts of zonGetAnchorFilename and zonGetFilename.
 *  @param size  room in `buffer` in bytes, including the terminating zero
 *  @return 0 if the text was copied; -1 if `buffer` is null or has no room; -2 if the node is
 *      no file name. After -1 and -2 the buffer is unchanged. A bad node copies the empty
 *      text and returns 0. @{ */
ZON_API int zonGetAnchorFilename2(void* node, char* buffer, int size);
ZON_API int zonGetFilename2(void* node, char* buffer, int size);
/** @} */

/* ---- Building -----------------------------------------------------------------------------------
 * The builder appends to a tree. It has a current section, a current keyword and a current CLOB:
 * a section or keyword is added to the current section, a value to the current keyword. It works on
 * loaded files too, where at first nothing is current. Names and texts are not checked.
 *
 * A call that lacks its current section or keyword is refused: nothing changes, and a text is
 * passed to MessageHook and kept for zonGetErrorFromZonData. No process-wide code is stored.
 * Errors: bad handle: 1005, "Invalid zonHandle (CzonData)"
 *
 * Each function has a twin with an S at the end of its name. It returns 0, or 2000 if this call was
 * refused, or if an earlier call was refused and no twin has returned 2000 since. A bad handle
 * returns and stores 1005 without a message. A call of a twin also stops the refusals of all later
 * builder calls on this handle from being passed to MessageHook. */

/** Makes an empty file in memory. Clears the pending code.
 *  @return a file handle, to be closed by zonClose; null if out of memory (1002) */
ZON_API void* zonCreate(void);

/** Adds a top-level section and makes it current. Refused while a section is current ("Previous
 *  section was not completed") and on a handle without a tree ("Missing list"). @{ */
ZON_API void zonAddTarget(void* handle, const char* name);
ZON_API int zonAddTargetS(void* handle, const char* name);
/** @} */

/** Adds a section to the current section and makes it current. Refused without a current section:
 *  "Missing current section". @{ */
ZON_API void zonAddSection(void* handle, const char* name);
ZON_API int zonAddSectionS(void* handle, const char* name);
/** @} */

/** Makes the section around the current section current, or none after a top-level section.
 *  Refused without a current section: "Missing current section". @{ */
ZON_API void zonEndSection(void* handle);
ZON_API int zonEndSectionS(void* handle);
/** @} */

/** Adds a keyword to the current section and makes it current. Refused without a current section:
 *  "Missing current section". @{ */
ZON_API void zonAddKeyword(void* handle, const char* name);
ZON_API int zonAddKeywordS(void* handle, const char* name);
/** @} */

/** Add a value to the current keyword. Refused without one: "Missing current keyword". A boolean is
 *  true for any number but 0. zonAddUndefinedPar adds an empty place. @{ */
ZON_API void zonAddInt(void* handle, int value);
ZON_API int zonAddIntS(void* handle, int value);
ZON_API void zonAddFloat(void* handle, float value);
ZON_API int zonAddFloatS(void* handle, float value);
ZON_API void zonAddDouble(void* handle, double value);
ZON_API int zonAddDoubleS(void* handle, double value);
ZON_API void zonAddBool(void* handle, int value);
ZON_API int zonAddBoolS(void* handle, int value);
ZON_API void zonAddString(void* handle, const char* text);
ZON_API int zonAddStringS(void* handle, const char* text);
ZON_API void zonAddFilename(void* handle, const char* text);
ZON_API int zonAddFilenameS(void* handle, const char* text);
ZON_API void zonAddUndefinedPar(void* handle);
ZON_API int zonAddUndefinedParS(void* handle);
/** @} */

/** Add a reference: a value that is read from a variable of the host by every query and write.
 *  Refused as zonAddInt. Copying a keyword with a string reference (zonCopy, zonInsert) ends the
 *  process.
 *  @param variable  must be valid as long as the tree; for zonAddStringRef a buffer with the
 *      zero-terminated text. Null reads as 0, false or the empty text. @{ */
ZON_API void zonAddIntRef(void* handle, int* variable);
ZON_API int zonAddIntRefS(void* handle, int* variable);
ZON_API void zonAddFloatRef(void* handle, float* variable);
ZON_API int zonAddFloatRefS(void* handle, float* variable);
ZON_API void zonAddDoubleRef(void* handle, double* variable);
ZON_API int zonAddDoubleRefS(void* handle, double* variable);
ZON_API void zonAddStringRef(void* handle, char* variable);
ZON_API int zonAddStringRefS(void* handle, char* variable);
ZON_API void zonAddBoolRef(void* handle, int* variable);
ZON_API int zonAddBoolRefS(void* handle, int* variable);
/** @} */

/* Definitions, for templates. The handle must come from zonCreate.
 * Errors: any other handle: 1005, "Invalid zonHandle (CzonCreate)" */

/** Adds a section to the current section and makes it current. Refused without a current section:
 *  "Missing current section". A top-level section of a template is added by zonAddTarget.
 *  @param multi   not 0: a candidate may have several sections of this name. Written as "()" after
 *      the name, and set again when that file is loaded.
 *  @param mandat  not 0: a candidate must have such a section. Only zonEquivalent and the
 *      functions like it use it, and only on this tree: a file cannot express it. @{ */
ZON_API void zonAddSectionDef(void* handle, const char* name, int multi, int mandat);
ZON_API int zonAddSectionDefS(void* handle, const char* name, int multi, int mandat);
/** @} */

/** Adds a keyword with one definition for each character of `codes` and makes it current. Refused
 *  without a current section: "Missing current section".
 *  @param codes   B boolean, D double, F float, I integer, N file name, S string, in either case.
 *      Any other is skipped and reported: "Invalid parameter definition code: 'x'".
 *  @param multi   as for zonAddSectionDef
 *  @param mandat  stored, but no function checks it: a candidate may lack the keyword
 *  @param flag    not 0: a candidate may have any number of further values of the kind of the
 *      last one. A file cannot express it. @{ */
ZON_API void zonAddKeywordDef(void* handle, const char* name, const char* codes, int multi,
                              int mandat, int flag);
ZON_API int zonAddKeywordDefS(void* handle, const char* name, const char* codes, int multi,
                              int mandat, int flag);
/** @} */

/** Add one definition to the current keyword. Refused without one: "Missing current keyword". @{ */
ZON_API void zonAddIntDef(void* handle);
ZON_API int zonAddIntDefS(void* handle);
ZON_API void zonAddFloatDef(void* handle);
ZON_API int zonAddFloatDefS(void* handle);
ZON_API void zonAddDoubleDef(void* handle);
ZON_API int zonAddDoubleDefS(void* handle);
ZON_API void zonAddStringDef(void* handle);
ZON_API int zonAddStringDefS(void* handle);
ZON_API void zonAddFilenameDef(void* handle);
ZON_API int zonAddFilenameDefS(void* handle);
ZON_API void zonAddBoolDef(void* handle);
ZON_API int zonAddBoolDefS(void* handle);
/** @} */

/* ---- Writing --------------------------------------------------------------------------------- */

/** Append the tree to a file as the text of a parameter file. The two functions are the same: what
 *  the file holds already is not removed. The file is created if it does not exist.
 *
 *  `fileName` becomes the name of the parameter file (see File names), also if writing fails.
 *  Result settings that are set are first added to the tree as a section SYSTEM, again by every
 *  write. While a section is current they are not added, and the refusal "Previous section was not
 *  completed" is reported.
 *
 *  Failure. The text is composed in memory and appended in one call where the system accepts it in
 *  one. If that fails (no room, a quota, the limit on file sizes), a regular file is cut back to
 *  its old length, unless another process appended to it meanwhile. SIGXFSZ does not end the host.
 *  No code is stored for a file that cannot be opened or written. If the host is killed during the
 *  write, the file can end with the beginning of the new text, after its old content. A pipe that
 *  has no reader raises SIGPIPE.
 *
 *  What the format cannot express is written without a message and is not read back as it was:
 *    in the tree                                        in the file
 *    infinity or NaN of a double                        a word; the file does not load
 *    a name that is no name, a bar or line end in a     other text; the file does not load, or
 *      file name                                          holds something else
 *    a substitution, such as %cores or %1               cores, which does not load, or an integer
 *    a string that begins "<CLOB:" (in any letter       the same text, which is read as a CLOB
 *      case) and ends ">"
 *    a double from 1e15 on that is not whole            rounded to an integer
 *    a float printed without point or exponent: 3       an integer
 *    digits of a double beyond 16, of a float beyond 6  rounded
 *    a keyword without values, an unknown value, a      one empty place
 *      default placeholder
 *    an absolute file name                              relative, with one ".." too many
 *    remarks; the flags `mandat` and `flag`             left out
 *  @errors bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid zonNode" @{ */
ZON_API void zonWrite(void* handle, const char* fileName);
ZON_API void zonAppend(void* handle, const char* fileName);
/** @} */

/** Writes a listing for debugging, one line for each node. The old content of the file is replaced.
 *  If the listing cannot be written, the file is left empty.
 *  @param handleOrNode  a node, whose subtree is listed, or a file handle
 *  @errors 1006 for anything but a node. Compatibility: hosts expect it for a good file handle
 *      too, which is listed. Neither a node nor a handle with a tree: "zonDump: bad argument" */
ZON_API void zonDump(void* handleOrNode, const char* fileName);

/* ---- Result folders -----------------------------------------------------------------------------
 * The result folder of a parameter file is, in this order:
 *  - its custom folder, if it is in use and not empty, as stored;
 *  - if a result root is set: the root, directly followed by the name of the parameter file and
 *    " - Result Files/"; '/' is put before a name that has no folder;
 *  - that name and " - Result Files/", joined to the working directory if it is relative.
 * No function creates a folder or tests whether one exists.
 *
 * A function without a 2 copies a path of any length to a buffer whose size it does not know: use
 * the function with a 2.
 * Errors: bad handle: 1005, "Invalid zonHandle (CzonData)"; bad node: 1006, "Invalid zonNode". If
 *         the top of a node's tree is not the root of a file, the process ends. */

/** Set and return the result root of a file, null or "" for none. The text is valid until the root
 *  is set again. A bad node: the empty text. @{ */
ZON_API void zonSetProjectResultRoot(void* handle, const char* root);
ZON_API const char* zonGetProjectResultRoot(void* node);
/** @} */

/** Set and return the custom folder of a file, and whether it is in use (not 0).
 *  The function with a 2 also has `size`, the room in `folder` in bytes, including the terminating
 *  zero. It returns 0; -1 if `folder` is null or has no room for the text: `use` is stored,
 *  `folder` is unchanged; -2 for a bad node: both are unchanged. @{ */
ZON_API void zonSetCustomResultFolder(void* handle, int use, const char* folder);
ZON_API void zonGetCustomResultFolder(void* node, int* use, char* folder);
ZON_API int zonGetCustomResultFolder2(void* node, int* use, char* folder, int size);
/** @} */

/** Copies the result folder of the file of a node. It is empty if the node is a string that begins
 *  with '/' and neither a custom folder is in use nor a result root is set. If neither is, a node
 *  that is no string also causes "Function invalid in this context". A bad node ends the process.
 *  The function with a 2 also has `size`, the room in `path` in bytes, including the terminating
 *  zero. It returns 0; -1 if `path` is null or has no room, and then it is unchanged; -2 if out of
 *  memory. @{ */
ZON_API void zonGetResultFolderPath(void* node, char* path);
ZON_API int zonGetResultFolderPath2(void* node, char* path, int size);
/** @} */

/** Adds the name of a result file to the current keyword: as a file name if it begins with '/', or
 *  else as a string, which is relative to the result folder. Refusals and the twin as zonAddString.
 *  @{ */
ZON_API void zonAddResultFilename(void* handle, const char* name);
ZON_API int zonAddResultFilenameS(void* handle, const char* name);
/** @} */

/** Returns the name of a result file: of a string its text, valid as that of zonGetString; of any
 *  other node what zonGetFilename returns. Null for null, without a code. */
ZON_API const char* zonGetResultFilename(void* node);

/** Copies the path of a result file: of a string the result folder and its text; of a file name its
 *  path. The function with a 2 also has `size`, the room in `path` in bytes, including the
 *  terminating zero. It returns 0; -1 if `path` is null or has no room; -2 if the node is null (no
 *  code) or neither a string nor a file name. After -1 and -2 `path` is unchanged.
 *  @errors a handle that is no node: 1006; the empty text is copied, and 0 is returned @{ */
ZON_API void zonGetResultFilenamePath(void* node, char* path);
ZON_API int zonGetResultFilenamePath2(void* node, char* path, int size);
/** @} */

/* ---- One keyword in one call --------------------------------------------------------------------
 * Reading finds a keyword of a section by name and instance and a value of it by number. It returns
 * 1 if something was stored, 0 if there is no such keyword or value. A value of the wrong kind is
 * no failure: 0, 0.0, false, an empty CString or a null pointer is stored, 1 is returned, and
 * MessageHook receives "Function invalid in this context". Query the kind first where it matters.
 * On a CLOB, zonGetParam reads the item at the cursor (see Values).
 *
 * Writing adds a keyword with one value to the current section. It returns 1; 0 for a bad handle or
 * if out of memory (1005 both). If out of memory the keyword may have been added without its value.
 *
 * Success is judged by the process-wide code only. While an earlier code is pending, also of
 * another thread, reading stores nothing and returns 0, and writing adds the keyword without its
 * value and returns 0: call zonGetErrorGlb first. A builder refusal (no current section) stores no
 * code, so writing returns 1: see zonGetErrorFromZonData.
 * Errors: bad handle: 1005; bad node: 1006; 0 */

/** Add a keyword with a file name, or with the name of a result file as zonAddResultFilename. @{ */
ZON_API int zonPutParamFilename(void* handle, const char* keyword, const char* value);
ZON_API int zonPutParamResultFilename(void* handle, const char* keyword, const char* name);
/** @} */

/** Adds a keyword with one value for each character of `format`: i reads an int argument, f a
 *  double that is stored as a float, d a double, b an int that is stored as a boolean. Any other
 *  character adds nothing and reads no argument.
 *    zonPutListParam(file, "grid", "iid", 40, 60, 2.5); */
ZON_API int zonPutListParam(void* handle, const char* keyword, const char* format, ...);

/** Stores value k of a keyword through the next pointer, by the k-th character of `format`: i int*,
 *  f float*, d double*, b bool* (one byte). Any other character skips a value and reads no
 *  argument.
 *  @return 1; 0 at the first value that is missing: the values before it are stored. Further
 *      values of the keyword are ignored. */
ZON_API int zonGetListParam(void* section, const char* keyword, int instance, const char* format,
                            ...);

/* ---- Editing ------------------------------------------------------------------------------------
 * Each function does all of its work or none. A position is counted from 1 among the siblings of
 * the same kind; the new node is placed directly before the node at that position. 0, and one past
 * the last, append at the end. Names are not checked. Afterwards order, numbers and names are those
 * of a file loaded with this content, but a global name that was already queried stays. Before a
 * node is deleted, the builder's current section and keyword are moved off it. The memory of loaded
 * and built nodes is freed when the file is closed, that of inserted nodes at once.
 *
 * Insertions return the new node, or null. The others return 0, or the code. A failure stores its
 * code and passes a text to MessageHook.
 * Errors:
 * - 1006, "Invalid zonNode": bad node
 * - 1007, "Invalid zonNode (CzonKeyword)": no keyword, or there is no such keyword
 * - 1009, "Invalid zonNode (CzonSection)": no section, or there is no such section
 * - 1011, "Invalid zonNode (CzonTargetList)": neither root nor section
 * - 1012, "Invalid zonNode (CzonParam)": there is no such value */

/** Insert an empty section into the root or a section; an empty keyword into a section. @{ */
ZON_API void* zoneInsertNewSection(void* parent, const char* name, unsigned int position);
ZON_API void* zoneInsertNewKeyword(void* section, const char* name, unsigned int position);
/** @} */

/** Insert a value into a keyword or default definition. Undefined inserts an empty place, Default a
 *  placeholder, which the format cannot express: it is written as an empty place. @{ */
ZON_API void* zoneInsertParameterInt(void* keyword, unsigned int position, int value);
ZON_API void* zoneInsertParameterFloat(void* keyword, unsigned int position, float value);
ZON_API void* zoneInsertParameterDouble(void* keyword, unsigned int position, double value);
ZON_API void* zoneInsertParameterBool(void* keyword, unsigned int position, int value);
ZON_API void* zoneInsertParameterString(void* keyword, unsigned int position, const char* value);
ZON_API void* zoneInsertParameterFilename(void* keyword, unsigned int position, const char* value);
ZON_API void* zoneInsertParameterUndefined(void* keyword, unsigned int position);
ZON_API void* zoneInsertParameterDefault(void* keyword, unsigned int position);
/** @} */

/** Delete the n-th section, keyword or value, or the n-th of a name. A placeholder counts as
 *  itself, not as its default value. @{ */
ZON_API int zoneDeleteSectionByNum(void* parent, unsigned int n);
ZON_API int zoneDeleteSectionByNameNum(void* parent, const char* name, unsigned int n);
ZON_API int zoneDeleteKeywordByNum(void* section, unsigned int n);
ZON_API int zoneDeleteKeywordByNameNum(void* section, const char* name, unsigned int n);
ZON_API int zoneDeleteParameterByNum(void* keyword, unsigned int n);
/** @} */

/** Deletes a section, keyword, default definition or value. The root cannot be deleted: 1009. */
ZON_API int zoneDeleteNode(void* node);

/** Change the name of a section, or of a keyword or default definition. The node keeps its place
 *  and its handle. The text that zonGetName returned for it is no longer valid. @{ */
ZON_API int zoneRenameSection(void* section, const char* name);
ZON_API int zoneRenameKeyword(void* keyword, const char* name);
/** @} */

/** Change the n-th value of a keyword or default definition. A value of the same kind keeps its
 *  node handle; texts returned for it are no longer valid. A loaded real accepts a float or a
 *  double. Any other value (also a reference, a placeholder, a CLOB) is replaced by a new node, and
 *  its old handle and texts are no longer valid. A placeholder itself changes, never its default
 *  value. @{ */
ZON_API int zoneModifyParameterInt(void* keyword, unsigned int n, int value);
ZON_API int zoneModifyParameterFloat(void* keyword, unsigned int n, float value);
ZON_API int zoneModifyParameterDouble(void* keyword, unsigned int n, double value);
ZON_API int zoneModifyParameterBool(void* keyword, unsigned int n, int value);
ZON_API int zoneModifyParameterString(void* keyword, unsigned int n, const char* value);
ZON_API int zoneModifyParameterFilename(void* keyword, unsigned int n, const char* value);
/** @} */

/** Makes the target a deep copy of the source, with its name and flags. Both are sections, or both
 *  are keywords, or both are default definitions; they may belong to different files, and one may
 *  contain the other. The target keeps its place and its handle. The nodes below it are new: the
 *  old handles below it, and all texts of the target and of those nodes, are no longer valid. A
 *  keyword with a string reference in the source ends the process.
 *  @return 1; also if source and target are the same node, and then nothing changes. 0 on failure.
 *  @errors bad node: 1006, "Invalid zonNode"; any other pair (the root is no section): no code,
 *      "zonCopy:\n\tsection/section or\n\tkeyword/keyword required" */
ZON_API int zonCopy(void* source, void* target);

/** Inserts a deep copy of a section or keyword as a sibling of another section or keyword, which
 *  may belong to another file: before it, or after it if `after` is not 0. A keyword with a string
 *  reference in the source ends the process.
 *  @return the copy; null on failure
 *  @errors bad node: 1006, "Invalid zonNode"; neither section nor keyword, or a keyword for the
 *      root: 1009, "Invalid zonNode (CzonSection)" */
ZON_API void* zonInsert(void* source, void* reference, int after);

/* ---- CLOB values --------------------------------------------------------------------------------
 * A CLOB is a list of items, each with its kind, in one quoted string:
 *     k = '<CLOB:Integer:-5,Double:2.5,String:"say ""hi""",Filename:"out\a.dat">'
 * A CLOB has a cursor. Reading returns the item at the cursor and advances the cursor. The content
 * is parsed as a whole by the first read: one malformed item, and none can be read.
 * Errors: no CLOB: 1006, "Invalid CLOB object", and the failure value in parentheses */

/** zonAddClob adds an empty CLOB to the current keyword and makes it current; the others append an
 *  item to the current CLOB. Refused without a current keyword ("Missing current keyword"), without
 *  a current CLOB ("Missing current CLOB"), and for infinity and NaN ("Invalid CLOB value").
 *  @errors bad handle: 1005, "Invalid zonHandle (CzonData)". The twins with an S return 0,
 *      2000 or 1005, as described under Building. @{ */
ZON_API void zonAddClob(void* handle);
ZON_API int zonAddClobS(void* handle);
ZON_API void zonAddClobBool(void* handle, int value);
ZON_API int zonAddClobBoolS(void* handle, int value);
ZON_API void zonAddClobInt(void* handle, int value);
ZON_API int zonAddClobIntS(void* handle, int value);
ZON_API void zonAddClobFloat(void* handle, float value);
ZON_API int zonAddClobFloatS(void* handle, float value);
ZON_API void zonAddClobDouble(void* handle, double value);
ZON_API int zonAddClobDoubleS(void* handle, double value);
ZON_API void zonAddClobString(void* handle, const char* text);
ZON_API int zonAddClobStringS(void* handle, const char* text);
ZON_API void zonAddClobFilename(void* handle, const char* text);
ZON_API int zonAddClobFilenameS(void* handle, const char* text);
/** @} */

/** 1 if the value is a CLOB, else 0.
 *  @errors bad node: 1006, "Invalid zonNode"; 0 */
ZON_API int zonIsClob(void* node);

/** The number of items. Malformed content: -1, and 1003 is stored. (-1) */
ZON_API int zonGetClobNoItems(void* node);

/** 1 if the cursor is after the last item, and for malformed content, so that a loop ends. (1) */
ZON_API int zonIsClobEnd(void* node);

/** 1 if the item at the cursor is of that kind; 0 if not, and at the end. (0) @{ */
ZON_API int zonIsClobBool(void* node);
ZON_API int zonIsClobInt(void* node);
ZON_API int zonIsClobFloat(void* node);
ZON_API int zonIsClobDouble(void* node);
ZON_API int zonIsClobString(void* node);
ZON_API int zonIsClobFilename(void* node);
/** @} */

/** Read the item at the cursor and advance the cursor. An Integer can be read as Float or Double, a
 *  Float as Double. zonGetClobFilename returns the path, as zonGetFilename does,
 *  zonGetClobFilenameString the name as written.
 *  @return the item. A text, a path included, is valid until the CLOB changes or goes. On failure
 *      0, -1, -1.0, -1.0 and the empty text, in the order of the functions.
 *  @errors another kind of item, the end, or malformed content: 1003; the cursor does not
 *      move, and zonGetErrorFromZonClob returns the details @{ */
ZON_API int zonGetClobBool(void* node);
ZON_API int zonGetClobInt(void* node);
ZON_API float zonGetClobFloat(void* node);
ZON_API double zonGetClobDouble(void* node);
ZON_API const char* zonGetClobString(void* node);
ZON_API const char* zonGetClobFilename(void* node);
ZON_API const char* zonGetClobFilenameString(void* node);
/** @} */

/** Moves the cursor to the first item and clears the error text. */
ZON_API void zonClobReset(void* node);

/** Returns the details of the last read of this CLOB that failed: "CLOB item 2: String found,
 *  Integer wanted", "CLOB item 3: no more items", "CLOB position 17: value expected" (the position
 *  is counted from 1 after "<CLOB:"). Empty if no read failed since zonClobReset. Valid until the
 *  CLOB changes. (null) */
ZON_API const char* zonGetErrorFromZonClob(void* node);

/* ---- Checking against a template ----------------------------------------------------------------
 * A template is a tree that states which sections and keywords a file may have, which may repeat
 * (the flag `multi`), which sections must be present (`mandat`), and the kind of each value. A
 * keyword without a name describes all keywords that the template does not name. The check ends at
 * the first mismatch and passes it to ReportHook with severity 17 and without argument words. Its
 * text contains names of the file: print it as it is, never as a format. A template too is used by
 * one thread at a time: each thread loads its own. */

/** Check whether a section conforms to a section of a template, or a keyword to a keyword. If
 *  `quiet` is not 0, nothing is passed to ReportHook or MessageHook. It belongs to the calling
 *  thread and also applies to its later calls of zonEqvSection and zonEqvKeyword. zonEquivalent
 *  sets it to 0.
 *  @param third  ignored
 *  @return 1 if it conforms, else 0. A mismatch stores no code.
 *  @errors bad node: 1006, "Invalid zonNode"; not two sections or two keywords: no code,
 *      "Conflicting zonNode types"; 0 @{ */
ZON_API int zonEquivalent(void* templateNode, void* candidateNode, void* third);
ZON_API int zonEquivalentExt(void* templateNode, void* candidateNode, void* third, int quiet);
/** @} */

/** The `quiet` of the last call of zonEquivalentExt in this thread; 0 after zonEquivalent, and
 *  before the first call. */
ZON_API int zonIsEqvQuiet(void);

/** The same check of two sections (not the root) or of two keywords, without the check of handles.
 *  @param t  of the template, or null
 *  @param c  of the candidate, or null
 *  @return 1 if c conforms to t, else 0; null never conforms @{ */
ZON_API int zonEqvSection(CzonNode* t, CzonNode* c);
ZON_API int zonEqvKeyword(CzonNode* t, CzonNode* c);
/** @} */

/* ---- Reading token by token ---------------------------------------------------------------------
 * Reads a file of any size in constant memory, one token at a time, without a tree. It is stricter
 * than zonLoadFile: there are no templates, default lines, date-times or substitutions, remarks are
 * skipped, and EndSect, true and false must be written exactly so. The process-wide code is neither
 * read nor stored. */

/** Opens a file and stores a reader, to be freed by zontDispose.
 *  @return 0; 1001 if the file cannot be opened; 1004 if out of memory. After 1001 and 1004
 *      *reader is unchanged. */
ZON_API int zontLoadFile(const char* fileName, void** reader);

/** Reads the next token. Reading can continue after an error; 0 is always reached.
 *  @return  0  end of file         1000  empty place    1021  real
 *           100  section header      1010  true           1030  string
 *           101  EndSect             1011  false          1200  file name
 *           200  keyword             1020  integer
 *           -1  error, or out of memory: see zontGetError
 *           -2  the reader is null */
ZON_API int zontNextToken(void* reader);

/** The text of the last token: the name of a section or keyword, a number as written, the content
 *  of a string or file name; empty for other tokens. Valid until the next call of zontNextToken. A
 *  null reader: "Handle is NULL". */
ZON_API const char* zontGetTokenString(void* reader);

/** The text, line (from 1) and position of the last error; empty, 0 and 0 if there was none. Valid
 *  until the next error. A null reader: "Handle is NULL", and all bits of line and position are
 *  set. */
ZON_API const char* zontGetError(void* reader, unsigned int* line, unsigned int* position);

/** Frees a reader. The caller's pointer is unchanged. Null, or a pointer to null, is ignored. */
ZON_API void zontDispose(void** reader);

/* ---- For older hosts ----------------------------------------------------------------------------
 * Functions that new hosts do not need. Compatibility: existing hosts link to these names. */

/** Does nothing. */
ZON_API void zonConstructResultFolderPathName(void);

/** The number of token texts in memory. It is always 0 after zonLoadFile.
 *  @errors no handle from zonLoadFile: 1005, "Invalid zonHandle (CzonLoad)"; 0 */
ZON_API unsigned int zonNoTokens(void* handle);

/** Finds a value as zonGetParam does and stores the first eight bytes of its result path in *path
 *  as if they were an address. *path must not be dereferenced: use zonGetResultFilenamePath2.
 *  @return 1; 0 as zonGetParam
 *  @errors bad node: 1006, "Invalid zonNode"; 0 */
ZON_API int zonGetParamResultFilePath(void* node, const char* keyword, const char** path,
                                      int keywordInstance, int paramIndex);

#ifdef __cplusplus
}

/** Read value `paramNo` of a keyword by the type of `out`, as described under "One keyword in one
 *  call". A CString receives a copy of the text.
 *  @return 1; 0 if there is no such keyword or value, or a code is pending, and then `out` is
 *      unchanged. A value of the wrong kind stores 0, false or the empty text and returns 1. @{ */
ZON_API int zonGetParam(void* section, const char* keyword, int* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, float* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, double* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, bool* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, CString* out, int instance,
                        int paramNo);
/** @} */

/** Read the path of a file-name value. The pointer is that of zonGetFilename and valid as long; a
 *  CString receives a copy.
 *  @return 1 or 0 as zonGetParam. For a value that is no file name, null or the empty CString
 *      is stored and 1 is returned: test the pointer. @{ */
ZON_API int zonGetParamFilename(void* section, const char* keyword, const char** out, int instance,
                                int paramNo);
ZON_API int zonGetParamFilename(void* section, const char* keyword, CString* out, int instance,
                                int paramNo);
/** @} */

/** Read the name of a result file. The pointer is that of zonGetResultFilename and valid as long; a
 *  CString receives a copy.
 *  @return 1 or 0 as zonGetParam. For a value that is neither a string nor a file name, null
 *      or the empty CString is stored and 1 is returned. @{ */
ZON_API int zonGetParamResultFilename(void* node, const char* keyword, const char** name,
                                      int keywordInstance, int paramIndex);
ZON_API int zonGetParamResultFilename(void* node, const char* keyword, CString* name,
                                      int keywordInstance, int paramIndex);
/** @} */

/** Add a keyword with one value, by its type, as described under "One keyword in one call".
 *  @return 1, or 0 @{ */
ZON_API int zonPutParam(void* handle, const char* keyword, int value);
ZON_API int zonPutParam(void* handle, const char* keyword, float value);
ZON_API int zonPutParam(void* handle, const char* keyword, double value);
ZON_API int zonPutParam(void* handle, const char* keyword, bool value);
ZON_API int zonPutParam(void* handle, const char* keyword, const char* value);
ZON_API int zonPutParam(void* handle, const char* keyword, CString value);
#endif
/** @} */

#endif
