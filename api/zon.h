/** @file
 * The flat interface of zon: reads, queries, builds and writes parameter files. C99 and C++17.
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
 * the text "No memory"; to the builder that is a refusal like others, which stores 1005 as well. No
 * function throws; what a hook of the host throws ends there, with the failure value and the code.
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
class CString;
class CzonNode;
extern "C" {
#else
typedef struct CzonNode CzonNode;
#endif

/* ---- Loading and closing --------------------------------------------------------------------- */

/** Reads a parameter file into a tree.
 *  fileName  any length; kept as it is, as the anchor that file names in the file count from
 *  quiet     not 0: nothing is passed to ReportHook
 *  returns   a file handle, to be closed by zonClose; null if there is none. A file with a syntax
 *            error gives a handle without a tree. An error behind a complete top-level section that
 *            the grammar does not see gives the sections before it and no code: ask
 *            zonGetSyntaxErr.
 *  errors    the pending code is cleared first
 *            1001  the file does not open, null: report "Open error: %"
 *            1002  it cannot be read to its end, or no memory; null
 *            1003  syntax error, with a handle: report "Error: %\n in % near line % position %" */
ZON_API void* zonLoadFile(const char* fileName, int quiet);

/** Ends a file handle with its tree and sets the caller's pointer to null.
 *  errors  *handle is no file handle: 1005, "Invalid zonHandle (CzonData)", pointer unchanged */
ZON_API void zonClose(void** handle);

/** Copies a parameter file behind whatever the target holds, its file names resolved against the
 *  source and written relative to the target. Kept: that form counts the target's own name as a
 *  folder, so a name that shares a folder with the target leads one folder too high when it is
 *  read.
 *  returns  1; 0 if loading the source set a code, or the target could not be written
 *  errors   1001, 1002 and 1003 as zonLoadFile, with its reports */
ZON_API int zonFileCopy(const char* source, const char* target);

/** The first error of a loaded file.
 *  line, position  where it was noticed: the line from 1, and how many characters of it were read
 *  message         the text that is returned as well
 *  returns         "syntax error" and its kin; the empty text with line and position 0 if there was
 *                  no error. Lives as long as the handle.
 *  errors          no handle of a loaded file: 1005, "Invalid zonHandle (CzonLoad)", empty text */
ZON_API const char* zonGetSyntaxErr(void* handle, unsigned int* line, unsigned int* position,
                                    const char** message);

/** What was counted while a file was loaded: characters; the number of the last line; comments,
 *  each nested one for itself; and token texts still kept, which after zonLoadFile is 0.
 *  errors  no handle of a loaded file: 1005, "Invalid zonHandle (CzonLoad)", 0 */
ZON_API unsigned int zonNoChars(void* handle);
ZON_API unsigned int zonNoLines(void* handle);
ZON_API unsigned int zonNoComments(void* handle);
ZON_API unsigned int zonNoTokens(void* handle);

/* ---- Errors and versions --------------------------------------------------------------------- */

/** The pending error code, 0 for none. zonGetErrorGlb clears it, zonPeekErrorGlb does not. */
ZON_API int zonGetErrorGlb(void);
ZON_API int zonPeekErrorGlb(void);

/** The text of an error code: of 1000 to 1014, else "unknown error code". Valid until the next
 *  call. */
ZON_API const char* zonGetErrorMessageFromErrorCode(int code);

/** The text of the last refusal of the builder on this handle, empty if there was none. Valid until
 *  the next refusal.
 *  errors  bad handle: 1005 without a message, null */
ZON_API const char* zonGetErrorFromZonData(void* handle);

/** Date and time of the build ("Dec  8 2021 06:06:36"), the version, and the name of the library.
 *  The texts live as long as the process. */
ZON_API const char* zonGetVersion(void);
ZON_API const char* zonGetBuildVersion(void);
ZON_API const char* zonGetDLLid(void);

/** The same, copied into the caller's buffer.
 *  size     room in `buffer` in bytes, the terminating zero included
 *  returns  0 copied; -1 no room (or no buffer): the buffer is untouched; -2 there is no text */
ZON_API int zonGetVersion2(char* buffer, int size);
ZON_API int zonGetBuildVersion2(char* buffer, int size);
ZON_API int zonGetDLLid2(char* buffer, int size);

/* ---- From a file to its nodes ---------------------------------------------------------------- */

/** The root of the tree; null for a file without a tree.
 *  errors  bad handle: 1005 without a message, null */
ZON_API void* zonGetRoot(void* handle);

/** How many top-level sections there are; the n-th of them; the n-th of that name. Null for a miss.
 *  errors  bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid zonNode"; then
 *          0 or null */
ZON_API int zonGetNoTargets(void* handle);
ZON_API void* zonTargetByNum(void* handle, unsigned int n);
ZON_API void* zonTargetByNameNum(void* handle, const char* name, unsigned int n);

/** Calls `visit` on every section, keyword, default definition and value in the order of the file,
 *  a node before what it holds; the root is left out. The visitor may query and may add nodes; it
 *  must not delete any, nor close the handle. A null visitor visits nothing.
 *  errors  1005 and 1006 as zonGetNoTargets; nothing is visited */
ZON_API void zonExplore(void* handle, void (*visit)(CzonNode*));

/** The section at the end of a path such as "Model/Grid:2": names separated by '/' or '.', each
 *  with ":n" for its n-th instance. Null for a miss and for an empty path.
 *  errors  1005 and 1006 as zonGetNoTargets; null */
ZON_API void* zonFindSectionByHandle(void* handle, const char* path);

/** The same from a section downwards; an empty path gives the section itself. As '.' separates,
 *  ".." is no step up but nothing: "../A" is "A".
 *  errors  bad node: 1006, "Invalid zonNode", null */
ZON_API void* zonFindSectionByNode(void* node, const char* path);

/** Cuts a path element at its first ':' and stores the number behind it as the instance, at most
 *  the nearest int; without a colon or a number `instance` stays. Null is ignored.
 *  element   zero-terminated, changed in place
 *  instance  receives the number */
ZON_API void splitElement(char* element, int* instance);

/* ---- From node to node --------------------------------------------------------------------------
 * Null for a miss. What a kind of node cannot have (the keywords of a value) is told through
 * MessageHook, "Function invalid in this context", with null and without a code.
 * errors  bad node: 1006, "Invalid zonNode", null */

/** The n-th section of the root or a section; the n-th keyword of a section; the n-th value of a
 *  keyword, where a placeholder gives the default value it stands for; the n-th child of any
 *  kind. */
ZON_API void* zonSectionByNum(void* node, unsigned int n);
ZON_API void* zonKeywordByNum(void* node, unsigned int n);
ZON_API void* zonParamByNum(void* node, unsigned int n);
ZON_API void* zonNodeByNum(void* node, unsigned int n);

/** The n-th section or keyword of that name. */
ZON_API void* zonSectionByNameNum(void* node, const char* name, unsigned int n);
ZON_API void* zonKeywordByNameNum(void* node, const char* name, unsigned int n);

/** The section (or root) around a section or keyword; for a value the section of its keyword. Null
 *  for the root. A bad node is told three times. */
ZON_API void* zonGetParentSection(void* node);

/** For a default placeholder the value it stands for, or itself if there is none; null for any
 *  other node. */
ZON_API void* zonFindDefault(void* node);

/* ---- What a node is -----------------------------------------------------------------------------
 * errors  bad node: 1006, "Invalid zonNode", and the failure value named in brackets */

/** Depth: 0 the root, 1 a top-level section. (-1) */
ZON_API int zonGetLevel(void* node);

/** The kind as a number. (0)
 *   1  root                    6  integer                  11  default placeholder
 *   2  section                 7  real                     12  substitution
 *   3  keyword                 8  boolean                  14  unknown value
 *   4  default definition      9  string                   15  undefined value
 *   5  other value, or CLOB   10  file name or date-time */
ZON_API int zonGetSyntaxClass(void* node);

/** The name of a section, keyword or default definition, empty for other nodes; the name of a
 *  section or keyword with the names around it, as in "Model.Grid.depth", as it was when first
 *  asked for, empty for other nodes. (empty text) */
ZON_API const char* zonGetName(void* node);
ZON_API const char* zonGetNameGlb(void* node);

/** How many siblings have this name (of a value: how many values the keyword has), and which of
 *  them this is, from 1. (0) */
ZON_API int zonGetNoInstances(void* node);
ZON_API int zonGetInstanceNo(void* node);

/** How many children a node has: of any kind, values, keywords, sections. (-1) */
ZON_API int zonGetNoNodes(void* node);
ZON_API int zonGetNoParams(void* node);
ZON_API int zonGetNoKeywords(void* node);
ZON_API int zonGetNoSections(void* node);

/** 1 if the node is of that kind, else 0. (0) The root counts as a section.
 *  zonIsTarget          a top-level section
 *  zonIsInt             a number whose value is whole
 *  zonIsFloat           a number whose value fits a float
 *  zonIsDouble          a number whose value is set as a double; an integer is all three
 *  zonNumericIsIntType  a value of an integer class */
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

/* ---- What a value is ----------------------------------------------------------------------------
 * A node that has no such value gives 0 or the empty text, and "Function invalid in this context"
 * through MessageHook, without a code.
 * errors  bad node: 1006, "Invalid zonNode", and the failure value named in brackets */

/** The integer; of a real its whole value (0 if it is not whole), the low 32 bits of it. (-1) */
ZON_API int zonGetInt(void* node);

/** The value in double precision (-1.0), and in single precision (-1.0): beyond the range of a
 *  float the largest float, below it 0. */
ZON_API double zonGetDouble(void* node);
ZON_API float zonGetFloat(void* node);

/** The same stored through `out`, for callers that cannot take a floating result. */
ZON_API void zonPasGetDoubleProc(void* node, double* out);
ZON_API void zonPasGetFloatProc(void* node, float* out);

/** 1 or 0 for true and false; of a reference the number in the variable. (0) */
ZON_API int zonGetBool(void* node);

/** The text between the quotes. Of a reference it is valid until the next call. (empty text) */
ZON_API const char* zonGetString(void* node);

/** Copies of the texts, as zonGetVersion2: 0, or -1 without room. A bad node gives a copy of the
 *  empty text and 0. */
ZON_API int zonGetName2(void* node, char* buffer, int size);
ZON_API int zonGetNameGlb2(void* node, char* buffer, int size);
ZON_API int zonGetString2(void* node, char* buffer, int size);

/* ---- File names ---------------------------------------------------------------------------------
 * A file name is kept as it was written. Asked for as a path, '\' becomes '/' and a relative name
 * counts from the directory of the parameter file, whose own name counts from the working
 * directory.
 * errors  bad node: 1006, "Invalid zonNode" */

/** The path of a file-name value, any length, in a buffer with room for at least 260 characters, so
 *  that a host may append to it. Valid until the next call on this value. Null with "Function
 *  invalid in this context" for any other node; bad node: the empty text. */
ZON_API char* zonGetFilename(void* node);

/** The file name as it was written. Valid until the value changes. Null with "Function invalid in
 *  this context" for any other node; bad node: the empty text. */
ZON_API const char* zonGetFilenameString(void* node);

/** Replaces a file name. Any other node is left alone without a message. */
ZON_API void zonSetFilename(void* node, const char* text);

/** Replaces a file name by its path, so that it no longer depends on where the parameter file lies.
 *  Any other node is left alone. Made to be called on each node by a visitor of zonExplore. */
ZON_API void zonFileCopyCallBack(void* node);

/** The name of the parameter file: of the root itself, empty for any other node; and of any node in
 *  its tree, empty where the top of the tree is no file root. Valid until the name changes. Bad
 *  node: the empty text, but zonGetZonFileName ends the process. */
ZON_API const char* zonGetAnchorFilename(void* node);
ZON_API const char* zonGetZonFileName(void* node);

/** Sets the name of the parameter file for the tree that the node is in. Ends the process where the
 *  top of the tree is no file root. */
ZON_API void zonSetAnchorFilename(void* node, const char* name);

/** Copies of the texts, as zonGetVersion2: 0, -1 without room, -2 where there is no text. */
ZON_API int zonGetAnchorFilename2(void* node, char* buffer, int size);
ZON_API int zonGetFilename2(void* node, char* buffer, int size);

/* ---- Building -----------------------------------------------------------------------------------
 * A file is described from top to bottom: a section is open until zonEndSection, keywords go into
 * the section that is open, values to the keyword that came last. Names are not checked.
 *
 * A call out of order is refused: nothing changes, the text of the refusal goes to MessageHook and
 * can be read by zonGetErrorFromZonData; no process-wide code is set.
 * errors  bad handle: 1005, "Invalid zonHandle (CzonData)"
 *
 * Each function has a twin with an S at its end. It silences the refusals of this handle, for good,
 * and tells how it went: 0, 2000 after a refusal (of this call or of an earlier one whose code
 * nobody has read), or 1005 for a bad handle, which is stored but not passed to MessageHook. */

/** Makes an empty file in memory. Clears the pending error code.
 *  returns  a file handle, to be closed by zonClose; null for want of memory (1002) */
ZON_API void* zonCreate(void);

/** Opens a top-level section. Refused while a section is open: "Previous section was not
 *  completed", and without a tree: "Missing list". */
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
 *  for any number but 0; texts are copied; a file name is kept as it is. */
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
 *  a string reference cannot be copied. */
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
 *  occur. Refused as zonAddSection. A top-level section of a template is opened by zonAddTarget. */
ZON_API void zonAddSectionDef(void* handle, const char* name, int multi, int mandat);
ZON_API int zonAddSectionDefS(void* handle, const char* name, int multi, int mandat);

/** Adds a keyword with a definition for each character of `codes`: B boolean, D double, F float, I
 *  integer, N file name, S string, in either case. flag: the last value may repeat. Refused without
 *  a section; any other code is told ("Invalid parameter definition code: 'x'") and passed over. */
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

/* ---- Writing --------------------------------------------------------------------------------- */

/** Writes the tree as a parameter file behind whatever the file holds; the two are one. The name
 *  becomes the name of the parameter file. Result settings are written as a section SYSTEM, which
 *  is added to the tree, and again by each write; while a section is open it is left out (and told
 *  as the refusal "Previous section was not completed"). A file that cannot be opened or written
 *  stays as it was, a new one empty; no code tells of it. A host that is killed meanwhile leaves
 *  there all of the text or nothing: a longer one is handed over by a short-lived process, of whose
 *  end the host hears nothing. A pipe that nobody reads raises SIGPIPE.
 *  What the format cannot hold is written all the same and does not load again as it was: an
 *  infinite or undefined number, a substitution (without its %), a name that is none, a bar in a
 *  file name.
 *  errors  bad handle: 1005, "Invalid zonHandle (CzonData)"; no tree: 1006, "Invalid zonNode" */
ZON_API void zonWrite(void* handle, const char* fileName);
ZON_API void zonAppend(void* handle, const char* fileName);

/** Writes a listing for debugging, one line for each node, over whatever the file holds; a listing
 *  that cannot be written leaves the file empty.
 *  handleOrNode  a node, whose subtree is listed, or a file handle
 *  errors        1006, also (Kept) for a good file handle; neither of the two, or a file without a
 *                tree: "zonDump: bad argument" */
ZON_API void zonDump(void* handleOrNode, const char* fileName);

/* ---- Result folders -----------------------------------------------------------------------------
 * The result folder of a parameter file is its custom folder, if that is set and in use; else the
 * result root, if one is set, followed directly by the name of the file with " - Result Files/";
 * else that name alone, behind the working directory if it is relative. A name without a folder
 * has a '/' put in front of it. Nothing looks whether a folder exists.
 *
 * The functions that copy without knowing the room need a buffer for the whole path, of any length,
 * and its terminating zero: prefer those with a 2.
 * errors  bad handle: 1005, "Invalid zonHandle (CzonData)"; bad node: 1006, "Invalid zonNode". What
 *         is no file root at the top of a node's tree ends the process. */

/** The result root of a file: set (null or "" for none), and as a text that lives until it is set
 *  again. Bad node: the empty text. */
ZON_API void zonSetProjectResultRoot(void* handle, const char* root);
ZON_API const char* zonGetProjectResultRoot(void* node);

/** The custom folder of a file, and whether it is in use. The getters store both; a bad node leaves
 *  the outputs as they are (-2). The form with a 2 gives 0, or -1 if the folder has no room. */
ZON_API void zonSetCustomResultFolder(void* handle, int use, const char* folder);
ZON_API void zonGetCustomResultFolder(void* node, int* use, char* folder);
ZON_API int zonGetCustomResultFolder2(void* node, int* use, char* folder, int size);

/** The result folder of the file that the node is in. Empty if the node is a string that begins
 *  with '/' and there is neither a custom folder in use nor a result root. Where there is neither,
 *  a node that is no string is told, "Function invalid in this context". A bad node ends the
 *  process. The form with a 2 gives 0, or -1 if the path has no room. */
ZON_API void zonGetResultFolderPath(void* node, char* path);
ZON_API int zonGetResultFolderPath2(void* node, char* path, int size);

/** Does nothing. */
ZON_API void zonConstructResultFolderPathName(void);

/** Adds the name of a result file to the current keyword: one that begins with '/' as a file name,
 *  any other as a string, relative to the result folder. Refusals and the form with an S as for
 *  zonAddString. */
ZON_API void zonAddResultFilename(void* handle, const char* name);
ZON_API int zonAddResultFilenameS(void* handle, const char* name);

/** The name of a result file: the text of a string, else as zonGetFilename; null for null. */
ZON_API const char* zonGetResultFilename(void* node);

/** The path of a result file: a string behind its result folder, else as zonGetFilename. Null, or a
 *  node that is neither, leaves the output as it is (-2). The form with a 2 gives 0, or -1 if the
 *  path has no room. */
ZON_API void zonGetResultFilenamePath(void* node, char* path);
ZON_API int zonGetResultFilenamePath2(void* node, char* path, int size);

/** Kept: finds the value as zonGetParam does and stores the first eight bytes of its result path as
 *  if they were an address. Not of use; call zonGetResultFilenamePath2. Returns 1, or 0 as
 *  zonGetParam. */
ZON_API int zonGetParamResultFilePath(void* node, const char* keyword, const char** path,
                                      int keywordInstance, int paramIndex);

/* ---- One keyword in one call --------------------------------------------------------------------
 * Reading finds a keyword of a section by name and instance, and its value by number. It gives 1
 * when the value was stored, 0 when there is none. Writing adds a keyword with one value to the
 * section that is open and gives 1, or 0 for a bad handle and for want of memory (1005 both; for
 * want of memory the keyword may stand without its value, never a value at another keyword).
 *
 * Success is judged by the process-wide code alone. While an older error is pending, reading stores
 * nothing and gives 0, and writing adds the keyword without its value and gives 0: call
 * zonGetErrorGlb first. A refusal of the builder (no open section) sets no such code, so writing
 * gives 1: see zonGetErrorFromZonData. The codes are those of the functions for keywords and
 * values: 1006 for a bad node, 1005 for a bad handle. */

/** Add a keyword with a file name, or with the name of a result file as zonAddResultFilename. */
ZON_API int zonPutParamFilename(void* handle, const char* keyword, const char* value);
ZON_API int zonPutParamResultFilename(void* handle, const char* keyword, const char* name);

/** Adds a keyword with a value for each character of `format`: i takes an int, f a double and
 *  stores a float, d a double, b an int and stores a boolean. Any other adds nothing and takes no
 *  argument.
 *    zonPutListParam(file, "grid", "iid", 40, 60, 2.5); */
ZON_API int zonPutListParam(void* handle, const char* keyword, const char* format, ...);

/** Stores value k of the keyword by the k-th character of `format` through the next pointer: i
 *  int*, f float*, d double*, b bool* (one byte). Any other passes over a value and takes no
 *  argument. 0 at the first value that is missing; those before it are stored. */
ZON_API int zonGetListParam(void* section, const char* keyword, int instance, const char* format,
                            ...);

/* ---- Editing ------------------------------------------------------------------------------------
 * Each function does the whole of its work or nothing. Positions count from 1 among the siblings of
 * the kind; 0, or one past the last, is the very end; the new node stands directly before the
 * sibling whose place it takes. Names are not checked. Afterwards order, numbers and names are as
 * if the file had been loaded so; global names that were asked for stay. Before a node is deleted
 * the cursor of the builder leaves it. Nodes that were loaded or built give their memory back when
 * the file is closed, inserted ones at once.
 *
 * Insertions give the new node, or null; the others 0, or the code. A failure stores its code and
 * passes a text to MessageHook:
 * errors  bad node: 1006, "Invalid zonNode"
 *         neither root nor section where one is needed: 1011, "Invalid zonNode (CzonTargetList)"
 *         no section, or no such one: 1009, "Invalid zonNode (CzonSection)"
 *         no keyword, or no such one: 1007, "Invalid zonNode (CzonKeyword)"
 *         no such value: 1012, "Invalid zonNode (CzonParam)" */

/** Insert an empty section into the root or a section; an empty keyword into a section. */
ZON_API void* zoneInsertNewSection(void* parent, const char* name, unsigned int position);
ZON_API void* zoneInsertNewKeyword(void* section, const char* name, unsigned int position);

/** Insert a value into a keyword or default definition; Undefined an empty place, Default a
 *  placeholder. */
ZON_API void* zoneInsertParameterInt(void* keyword, unsigned int position, int value);
ZON_API void* zoneInsertParameterFloat(void* keyword, unsigned int position, float value);
ZON_API void* zoneInsertParameterDouble(void* keyword, unsigned int position, double value);
ZON_API void* zoneInsertParameterBool(void* keyword, unsigned int position, int value);
ZON_API void* zoneInsertParameterString(void* keyword, unsigned int position, const char* value);
ZON_API void* zoneInsertParameterFilename(void* keyword, unsigned int position, const char* value);
ZON_API void* zoneInsertParameterUndefined(void* keyword, unsigned int position);
ZON_API void* zoneInsertParameterDefault(void* keyword, unsigned int position);

/** Delete the n-th section, keyword or value; the n-th of a name. Values are counted as stored. */
ZON_API int zoneDeleteSectionByNum(void* parent, unsigned int n);
ZON_API int zoneDeleteSectionByNameNum(void* parent, const char* name, unsigned int n);
ZON_API int zoneDeleteKeywordByNum(void* section, unsigned int n);
ZON_API int zoneDeleteKeywordByNameNum(void* section, const char* name, unsigned int n);
ZON_API int zoneDeleteParameterByNum(void* keyword, unsigned int n);

/** Deletes a section, keyword, default definition or value. The root cannot be deleted: 1009. */
ZON_API int zoneDeleteNode(void* node);

/** Gives a section, or a keyword or default definition, another name; it keeps its place. Texts of
 *  the old name are no longer valid. */
ZON_API int zoneRenameSection(void* section, const char* name);
ZON_API int zoneRenameKeyword(void* keyword, const char* name);

/** Gives the n-th value of a keyword another value. One of the same kind keeps its node; a real
 *  that was loaded takes a float or a double; any other (also a reference, a placeholder, a CLOB)
 *  is replaced by a new node. A placeholder itself changes, never the default it stands for. */
ZON_API int zoneModifyParameterInt(void* keyword, unsigned int n, int value);
ZON_API int zoneModifyParameterFloat(void* keyword, unsigned int n, float value);
ZON_API int zoneModifyParameterDouble(void* keyword, unsigned int n, double value);
ZON_API int zoneModifyParameterBool(void* keyword, unsigned int n, int value);
ZON_API int zoneModifyParameterString(void* keyword, unsigned int n, const char* value);
ZON_API int zoneModifyParameterFilename(void* keyword, unsigned int n, const char* value);

/** Makes a section a deep copy of another, or a keyword of a keyword, name and flags included; it
 *  keeps its place and its handle, the nodes below it are new. One may lie in the other. A default
 *  definition goes with a default definition alone. A keyword with a string reference ends the
 *  process.
 *  returns  1, also for source and target the same (nothing happens); 0 on failure
 *  errors   bad node: 1006, "Invalid zonNode"; any other pair (the root is no section): no code,
 *           "zonCopy:\n\tsection/section or\n\tkeyword/keyword required" */
ZON_API int zonCopy(void* source, void* target);

/** Files a deep copy of a section or keyword as a sibling of another, of any tree: before it, or
 *  behind it if `after` is not 0.
 *  returns  the copy; null on failure
 *  errors   bad node: 1006, "Invalid zonNode"; neither section nor keyword, or a keyword for the
 *           root: 1009, "Invalid zonNode (CzonSection)" */
ZON_API void* zonInsert(void* source, void* reference, int after);

/* ---- CLOB values --------------------------------------------------------------------------------
 * A CLOB packs a list of items, each of a kind, into one quoted string:
 *     k = '<CLOB:Integer:-5,Double:2.5,String:"say ""hi""",Filename:"out\a.dat">'
 * Its items are read one after the other: a read gives the item at the cursor and steps to the
 * next.
 * errors  no CLOB: 1006, "Invalid CLOB object", and the failure value named in brackets */

/** Add an empty CLOB to the current keyword; then items to the CLOB that was added last. Refusals
 *  as for zonAddInt, and "Missing current CLOB" without one, and "Invalid CLOB value" for infinity
 *  and NaN. A bad handle: 1005, "Invalid zonHandle (CzonData)". With an S: 0, 2000 or 1005. */
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

/** 1 if the value is a CLOB, else 0. A bad node: 1006, "Invalid zonNode", 0. */
ZON_API int zonIsClob(void* node);

/** How many items there are; -1, and 1003, if the content cannot be taken apart. (-1) */
ZON_API int zonGetClobNoItems(void* node);

/** 1 when the cursor stands behind the last item, and for bad content, so that a loop ends. (1) */
ZON_API int zonIsClobEnd(void* node);

/** 1 if the item at the cursor is of that kind; 0 at the end. (0) */
ZON_API int zonIsClobBool(void* node);
ZON_API int zonIsClobInt(void* node);
ZON_API int zonIsClobFloat(void* node);
ZON_API int zonIsClobDouble(void* node);
ZON_API int zonIsClobString(void* node);
ZON_API int zonIsClobFilename(void* node);

/** Read an item: 0, -1, -1.0 or the empty text on failure, which is another kind, the end, or
 *  content that cannot be taken apart: 1003 is stored, zonGetErrorFromZonClob says what was wrong,
 *  and the cursor stays. An Integer may be read as Float or Double, a Float as Double.
 *  zonGetClobFilename gives the path as zonGetFilename does, zonGetClobFilenameString the name as
 *  it was written. Texts live until the CLOB changes. */
ZON_API int zonGetClobBool(void* node);
ZON_API int zonGetClobInt(void* node);
ZON_API float zonGetClobFloat(void* node);
ZON_API double zonGetClobDouble(void* node);
ZON_API const char* zonGetClobString(void* node);
ZON_API const char* zonGetClobFilename(void* node);
ZON_API const char* zonGetClobFilenameString(void* node);

/** Puts the cursor on the first item and forgets the error text. */
ZON_API void zonClobReset(void* node);

/** What the last failed read of this CLOB found: "CLOB item 2: String found, Integer wanted", "CLOB
 *  item 3: no more items", "CLOB position 17: value expected" (counted from 1 behind "<CLOB:").
 *  Empty if none failed since the reset. Valid until the CLOB changes. (null) */
ZON_API const char* zonGetErrorFromZonClob(void* node);

/* ---- Checking against a template ----------------------------------------------------------------
 * A template says which sections and keywords a file may hold, which may repeat, which sections
 * must occur, and of which kind each value is; its unnamed keyword stands for all that it does not
 * name. The first mismatch ends the check and goes to ReportHook with severity 17 and no words:
 * print the pattern as it is, for it holds names. */

/** Whether a section conforms to a section of a template, or a keyword to a keyword: 1 or 0.
 *  third   not used
 *  quiet   not 0: neither ReportHook nor MessageHook hears of it; stays in force for zonEqvSection
 *          and zonEqvKeyword until the next call. zonEquivalent is never quiet.
 *  errors  bad node: 1006, "Invalid zonNode"; not two sections or two keywords: "Conflicting
 *          zonNode types" without a code; then 0 */
ZON_API int zonEquivalent(void* templateNode, void* candidateNode, void* third);
ZON_API int zonEquivalentExt(void* templateNode, void* candidateNode, void* third, int quiet);

/** What `quiet` was in the last call of zonEquivalentExt. */
ZON_API int zonIsEqvQuiet(void);

/** The check of two sections (not the root) or two keywords, without the check of handles: t of the
 *  template, c of the candidate. 1 or 0; null is no section and no keyword. */
ZON_API int zonEqvSection(CzonNode* t, CzonNode* c);
ZON_API int zonEqvKeyword(CzonNode* t, CzonNode* c);

/* ---- Reading token by token ---------------------------------------------------------------------
 * A second way to read a file, of any size in constant memory: no tree, one token a call. It is
 * stricter than zonLoadFile: no remarks, templates, defaults, date-times or substitutions, and
 * EndSect, true and false are spelled just so. The process-wide error code is not touched. */

/** Opens a file and stores a reader for it.
 *  returns  0; 1001 the file does not open; 1004 no memory. Nothing is stored then. */
ZON_API int zontLoadFile(const char* fileName, void** reader);

/** Gives the next token:
 *     0  end of file         1000  empty place    1021  real
 *   100  section header      1010  true           1030  string
 *   101  EndSect             1011  false          1200  file name
 *   200  keyword             1020  integer
 *    -1  error, also for want of memory: see zontGetError
 *    -2  the reader is null
 *  Reading may go on after an error: 0 always comes. */
ZON_API int zontNextToken(void* reader);

/** The text of the token: the name of a section or keyword, a number as it stands, the contents of
 *  a string or file name, else empty. Valid until the next call. Null reader: "Handle is NULL". */
ZON_API const char* zontGetTokenString(void* reader);

/** The last error with its line, from 1, and position; empty, 0 and 0 before any. Valid until the
 *  next error. Null reader: "Handle is NULL", all bits of line and position set. */
ZON_API const char* zontGetError(void* reader, unsigned int* line, unsigned int* position);

/** Ends a reader; null, or a pointer to null, is ignored. The caller's pointer stays. */
ZON_API void zontDispose(void** reader);

#ifdef __cplusplus
}

/** For C++, by the type of the value: as told under "One keyword in one call". Reads value
 *  `paramNo` of the keyword; a CString receives a copy of the text. 1, or 0: then `out` stays as it
 *  is. */
ZON_API int zonGetParam(void* section, const char* keyword, int* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, float* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, double* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, bool* out, int instance, int paramNo);
ZON_API int zonGetParam(void* section, const char* keyword, CString* out, int instance,
                        int paramNo);

/** The path of a file-name value, as zonGetFilename gives it and valid as long; a CString receives
 *  a copy. 1, or 0 as zonGetParam. */
ZON_API int zonGetParamFilename(void* section, const char* keyword, const char** out, int instance,
                                int paramNo);
ZON_API int zonGetParamFilename(void* section, const char* keyword, CString* out, int instance,
                                int paramNo);

/** The name of a result file, as zonGetResultFilename gives it and valid as long; a CString
 *  receives a copy. 1, or 0 as zonGetParam. */
ZON_API int zonGetParamResultFilename(void* node, const char* keyword, const char** name,
                                      int keywordInstance, int paramIndex);
ZON_API int zonGetParamResultFilename(void* node, const char* keyword, CString* name,
                                      int keywordInstance, int paramIndex);

/** For C++, by the type of the value: adds a keyword with that value. 1, or 0. */
ZON_API int zonPutParam(void* handle, const char* keyword, int value);
ZON_API int zonPutParam(void* handle, const char* keyword, float value);
ZON_API int zonPutParam(void* handle, const char* keyword, double value);
ZON_API int zonPutParam(void* handle, const char* keyword, bool value);
ZON_API int zonPutParam(void* handle, const char* keyword, const char* value);
ZON_API int zonPutParam(void* handle, const char* keyword, CString value);
#endif

#endif
