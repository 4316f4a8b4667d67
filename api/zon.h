/* The flat interface of zon: reads, queries, builds and writes parameter files. C99 and C++17.
 *
 * Handles. A file handle (made by zonLoadFile or zonCreate, ended by zonClose) stands for one
 * parameter file; a node handle for one node of its tree: the root, a section, a keyword or a
 * value. Node handles are borrowed: they are valid until their file handle is closed or the node is
 * deleted. A pointer that was closed, or never came from here, must not be passed.
 *
 * Errors. Every function checks its handle. A bad file handle (null, or of another kind) stores
 * code 1005, a bad node 1006, and passes a text to MessageHook; then the failure value named at the
 * function comes back and nothing changes. The code is process-wide; the first error stays until
 * zonGetErrorGlb takes it. For want of memory the failure value comes back with the same code and
 * the text "No memory". No function throws.
 *
 * Texts. A null text argument counts as the empty text; a null output pointer is not written
 * through. Texts returned belong to the library and live as long as the node or handle they come
 * from, unless the function says otherwise.
 *
 * Numbers of sections, keywords, values and instances count from 1; 0 or a number past the end
 * gives null without a message. Names are found regardless of letter case (A to Z).
 *
 * Threads. The library takes no locks: a host with several threads makes its calls one at a time.
 */
#ifndef ZON_API_ZON_H
#define ZON_API_ZON_H

#include "base/zonexport.h"
#include "base/zonhook.h"

#ifdef __cplusplus
class CzonNode;
extern "C" {
#else
struct CzonNode;
#endif

/* ---- Loading and closing ------------------------------------------------------------------------
 */

/** Reads a parameter file into a tree.
 *  fileName  any length; kept as it is, as the anchor that file names in the file count from
 *  quiet     not 0: nothing is passed to ReportHook
 *  returns   a file handle, to be closed by zonClose; null if there is none. A file with a syntax
 * error gives a handle without a tree. An error behind a complete top-level section that the
 *            grammar does not see gives the sections before it and no code: ask zonGetSyntaxErr.
 *  errors    the pending code is cleared first. 1001 the file does not open (report "Open error:
 * %"); 1002 it cannot be read to its end, or no memory; 1003 syntax error, with a handle (report
 *            "Error: %\n in % near line % position %"). */
ZON_API void* zonLoadFile(const char* fileName, int quiet);

/** Ends a file handle with its tree and sets the caller's pointer to null.
 *  errors  *handle is no file handle: 1005, "Invalid zonHandle (CzonData)", pointer unchanged */
ZON_API void zonClose(void** handle);

/** The first error of a loaded file.
 *  line, position  where it was noticed: the line from 1, and how many characters of it were read
 *  message         the text that is returned as well
 *  returns         "syntax error" and its kin; the empty text with line and position 0 if there was
 * no error. Lives as long as the handle. errors          no handle of a loaded file: 1005, "Invalid
 * zonHandle (CzonLoad)", empty text */
ZON_API const char* zonGetSyntaxErr(void* handle, unsigned int* line, unsigned int* position,
                                    const char** message);

/** What was counted while a file was loaded: characters; the number of the last line; comments,
 * each nested one for itself; and token texts still kept, which after zonLoadFile is 0. errors  no
 * handle of a loaded file: 1005, "Invalid zonHandle (CzonLoad)", 0 */
ZON_API unsigned int zonNoChars(void* handle);
ZON_API unsigned int zonNoLines(void* handle);
ZON_API unsigned int zonNoComments(void* handle);
ZON_API unsigned int zonNoTokens(void* handle);

/* ---- Errors and versions ------------------------------------------------------------------------
 */

/** The pending error code, 0 for none. zonGetErrorGlb clears it, zonPeekErrorGlb does not. */
ZON_API int zonGetErrorGlb(void);
ZON_API int zonPeekErrorGlb(void);

/** The text of an error code: of 1000 to 1014, else "unknown error code". Valid until the next
 * call. */
ZON_API const char* zonGetErrorMessageFromErrorCode(int code);

/** The text of the last refusal of the builder on this handle, empty if there was none. Valid until
 * the next refusal. errors  bad handle: 1005 without a message, null */
ZON_API const char* zonGetErrorFromZonData(void* handle);

/** The text of the last failure of this CLOB value, empty if there was none.
 *  errors  no CLOB: 1006, "Invalid CLOB object", null */
ZON_API const char* zonGetErrorFromZonClob(void* node);

/** Date and time of the build ("Dec  8 2021 06:06:36"), the version, and the name of the library.
 * The texts live as long as the process. */
ZON_API const char* zonGetVersion(void);
ZON_API const char* zonGetBuildVersion(void);
ZON_API const char* zonGetDLLid(void);

/** The same, copied into the caller's buffer.
 *  size     room in `buffer` in bytes, the terminating zero included
 *  returns  0 copied; -1 no room (or no buffer): the buffer is untouched; -2 there is no text */
ZON_API int zonGetVersion2(char* buffer, int size);
ZON_API int zonGetBuildVersion2(char* buffer, int size);
ZON_API int zonGetDLLid2(char* buffer, int size);

/* ---- From a file to its nodes -------------------------------------------------------------------
 */

/** The root of the tree; null for a file without a tree.
 *  errors  bad handle: 1005 without a message, null */
ZON_API void* zonGetRoot(void* handle);

/** How many top-level sections there are; the n-th of them; the n-th of that name. Null for a miss.
 *  errors  bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid zonNode"; then
 * 0 or null */
ZON_API int zonGetNoTargets(void* handle);
ZON_API void* zonTargetByNum(void* handle, unsigned int n);
ZON_API void* zonTargetByNameNum(void* handle, const char* name, unsigned int n);

/** Calls `visit` on every section, keyword, default definition and value in the order of the file,
 * a node before what it holds; the root is left out. The visitor may query and may add nodes; it
 * must not delete any, nor close the handle. errors  as zonGetNoTargets; nothing is visited */
ZON_API void zonExplore(void* handle, void (*visit)(struct CzonNode*));

/** The section at the end of a path such as "Model/Grid:2": names separated by '/' or '.', each
 * with
 *  ":n" for its n-th instance. Null for a miss and for an empty path.
 *  errors  as zonGetNoTargets; null */
ZON_API void* zonFindSectionByHandle(void* handle, const char* path);

/** The same from a section downwards; an empty path gives the section itself. As '.' separates,
 * ".." is no step up but nothing: "../A" is "A". errors  bad node: 1006, "Invalid zonNode", null */
ZON_API void* zonFindSectionByNode(void* node, const char* path);

/** Cuts a path element at its first ':' and stores the number behind it as the instance; without a
 *  colon or a number `instance` stays. */
ZON_API void splitElement(char* element, int* instance);

/* ---- From node to node --------------------------------------------------------------------------
 * Null for a miss. What a kind of node cannot have (the keywords of a value) is told through
 * MessageHook, "Function invalid in this context", with null and without a code.
 * errors  bad node: 1006, "Invalid zonNode", null */

/** The n-th section of the root or a section; the n-th keyword of a section; the n-th value of a
 *  keyword, where a placeholder gives the default value it stands for; the n-th child of any kind.
 */
ZON_API void* zonSectionByNum(void* node, unsigned int n);
ZON_API void* zonKeywordByNum(void* node, unsigned int n);
ZON_API void* zonParamByNum(void* node, unsigned int n);
ZON_API void* zonNodeByNum(void* node, unsigned int n);

/** The n-th section or keyword of that name. */
ZON_API void* zonSectionByNameNum(void* node, const char* name, unsigned int n);
ZON_API void* zonKeywordByNameNum(void* node, const char* name, unsigned int n);

/** The section (or root) around a section or keyword; for a value the section of its keyword. Null
 * for the root. */
ZON_API void* zonGetParentSection(void* node);

/** For a default placeholder the value it stands for, or itself if there is none; null for any
 * other node. */
ZON_API void* zonFindDefault(void* node);

/* ---- What a node is
 * ------------------------------------------------------------------------------ errors  bad node:
 * 1006, "Invalid zonNode", and the failure value named in brackets */

/** Depth: 0 the root, 1 a top-level section. (-1) */
ZON_API int zonGetLevel(void* node);

/** The kind as a number (0): 1 root, 2 section, 3 keyword, 4 default definition, 5 other value or
 * CLOB, 6 integer, 7 real, 8 boolean, 9 string, 10 file name or date-time, 11 default placeholder,
 *  12 substitution, 14 unknown value, 15 undefined value. */
ZON_API int zonGetSyntaxClass(void* node);

/** The name of a section, keyword or default definition; the same with the names around it, as in
 *  "Model.Grid.depth", as it was when first asked for. Empty for other nodes. (empty text) */
ZON_API const char* zonGetName(void* node);
ZON_API const char* zonGetNameGlb(void* node);

/** How many siblings have this name (of a value: how many values the keyword has), and which of
 * them this is, from 1. (0) */
ZON_API int zonGetNoInstances(void* node);
ZON_API int zonGetInstanceNo(void* node);

/** How many children a node has: of any kind, values, keywords, sections. (-1) */
ZON_API int zonGetNoNodes(void* node);
ZON_API int zonGetNoParams(void* node);
ZON_API int zonGetNoKeywords(void* node);
ZON_API int zonGetNoSections(void* node);

/** 1 if the node is of that kind, else 0. (0) The root counts as a section. zonIsTarget: a
 * top-level section. zonIsInt, zonIsFloat, zonIsDouble: a number whose value is whole, fits a
 * float, is set as a double; an integer is all three. zonNumericIsIntType: a value of an integer
 * class. */
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

/* ---- What a value is
 * ----------------------------------------------------------------------------- A node that has no
 * such value gives 0 or the empty text, and "Function invalid in this context" through MessageHook,
 * without a code. errors  bad node: 1006, "Invalid zonNode", and the failure value named in
 * brackets */

/** The integer; of a real its whole value (0 if it is not whole), the low 32 bits of it. (-1) */
ZON_API int zonGetInt(void* node);

/** The value in double precision (-1.0), and in single precision (-1.0): beyond the range of a
 * float the largest float, below it 0. */
ZON_API double zonGetDouble(void* node);
ZON_API float zonGetFloat(void* node);

/** The same stored through `out`, for callers that cannot take a floating result. */
ZON_API void zonPasGetDoubleProc(void* node, double* out);
ZON_API void zonPasGetFloatProc(void* node, float* out);

/** 1 or 0 for true and false; of a reference the number in the variable. (0) */
ZON_API int zonGetBool(void* node);

/** The text between the quotes. Of a reference it is valid until the next call. (empty text) */
ZON_API const char* zonGetString(void* node);

/** Copies of the texts, as zonGetVersion2. A bad node gives a copy of the empty text and 0. */
ZON_API int zonGetName2(void* node, char* buffer, int size);
ZON_API int zonGetNameGlb2(void* node, char* buffer, int size);
ZON_API int zonGetString2(void* node, char* buffer, int size);

/* ---- File names ---------------------------------------------------------------------------------
 * A file name is kept as it was written. Asked for as a path, '\' becomes '/' and a relative name
 * counts from the directory of the parameter file, whose own name counts from the working
 * directory. errors  bad node: 1006, "Invalid zonNode" */

/** The path of a file-name value, any length. Valid until the next call on this value. Null with
 *  "Function invalid in this context" for any other node; bad node: the empty text. */
ZON_API char* zonGetFilename(void* node);

/** The file name as it was written, otherwise as zonGetFilename. Valid until the value changes. */
ZON_API const char* zonGetFilenameString(void* node);

/** Replaces a file name. Any other node is left alone without a message. */
ZON_API void zonSetFilename(void* node, const char* text);

/** Replaces a file name by its path, so that it no longer depends on where the parameter file lies.
 * Any other node is left alone. A visitor for zonExplore as well. */
ZON_API void zonFileCopyCallBack(void* node);

/** The name of the parameter file: of the root itself, empty for any other node; and of any node in
 * its tree. Valid until the name changes. Bad node: the empty text, but zonGetZonFileName ends the
 * process, as it does where the top of the tree is no file root. */
ZON_API const char* zonGetAnchorFilename(void* node);
ZON_API const char* zonGetZonFileName(void* node);

/** Sets the name of the parameter file for the tree that the node is in. Ends the process where the
 * top of the tree is no file root. */
ZON_API void zonSetAnchorFilename(void* node, const char* name);

/** Copies of the texts, as zonGetVersion2. */
ZON_API int zonGetAnchorFilename2(void* node, char* buffer, int size);
ZON_API int zonGetFilename2(void* node, char* buffer, int size);

/* ---- Building -----------------------------------------------------------------------------------
 * A file is described from top to bottom: a section is open until zonEndSection, keywords go into
 * the section that is open, values to the keyword that came last. Names are not checked.
 *
 * A call out of order is refused: nothing changes, the text of the refusal goes to MessageHook and
 * can be read by zonGetErrorFromZonData; no process-wide code is set. errors  bad handle: 1005,
 * "Invalid zonHandle (CzonData)"
 *
 * Each function has a twin with an S at its end. It silences the refusals of this handle, for good,
 * and tells how it went: 0, 2000 after a refusal (of this call or of an earlier one whose code
 * nobody has read), or 1005 for a bad handle, which is stored but not passed to MessageHook. */

/** Makes an empty file in memory. Clears the pending error code.
 *  returns  a file handle, to be closed by zonClose; null for want of memory (1002) */
ZON_API void* zonCreate(void);

/** Opens a top-level section. Refused while a section is open: "Previous section was not
 * completed", and without a tree: "Missing list". */
ZON_API void zonAddTarget(void* handle, const char* name);
ZON_API int zonAddTargetS(void* handle, const char* name);

/** Opens a section in the one that is open. Refused without one: "Missing current section". */
ZON_API void zonAddSection(void* handle, const char* name);
ZON_API int zonAddSectionS(void* handle, const char* name);

/** Closes the section; the one around it is open again. Refused without one: "Missing current
 *  section". */
ZON_API void zonEndSection(void* handle);
ZON_API int zonEndSectionS(void* handle);

/** Adds a keyword to the section. Refused without one: "Missing current section". */
ZON_API void zonAddKeyword(void* handle, const char* name);
ZON_API int zonAddKeywordS(void* handle, const char* name);

/** Add a value to the keyword. Refused without one: "Missing current keyword". A boolean is true
 * for any number but 0; texts are copied; a file name is kept as it is. */
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

/** Add a value that lives in a variable of the host: it is read whenever the value is asked for or
 *  written. The variable must live as long as the tree. For a string it is the buffer with the
 *  zero-terminated text. A null variable reads as 0, false or the empty text. A keyword that holds
 * a string reference cannot be copied. */
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

/* Definitions, for templates. The handle must come from zonCreate.
 * errors  any other handle: 1005, "Invalid zonHandle (CzonCreate)" */

/** Opens a section in the one that is open. multi: it may occur more than once; mandat: it must
 * occur. Refused as zonAddSection. A top-level section of a template is opened by zonAddTarget. */
ZON_API void zonAddSectionDef(void* handle, const char* name, int multi, int mandat);
ZON_API int zonAddSectionDefS(void* handle, const char* name, int multi, int mandat);

/** Adds a keyword with a definition for each character of `codes`: B boolean, D double, F float,
 *  I integer, N file name, S string, in either case. flag: the last value may repeat. Refused
 * without a section; any other code is told ("Invalid parameter definition code: 'x'") and passed
 * over. */
ZON_API void zonAddKeywordDef(void* handle, const char* name, const char* codes, int multi,
                              int mandat, int flag);
ZON_API int zonAddKeywordDefS(void* handle, const char* name, const char* codes, int multi,
                              int mandat, int flag);

/** Add one definition to the keyword. Refused without one: "Missing current keyword". */
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

#ifdef __cplusplus
}
#endif

#endif
