{ Reads, changes and saves parameter files of zon from Free Pascal: the functions of zon.h and zonx.h, and the class
  TZonFile on top of them.

    F := TZonFile.Create('harbour.zon');
    try
      Cells := F.GetInt('Run/Cells', 40);
      for Quay in F.Instances('Quay') do
        if F.Doubles[Quay + '/Length'] > 200 then
          raise F.Error(Quay + '/Length', 'longer than 200 m');
      F.Ints['Run/Cells'] := 2 * Cells;
      F.Save;
    finally
      F.Free;
    end;

  An error raises EZon, whose message is the report of the library, with its place.

  Floating point. Free Pascal raises exceptions for floating-point operations, which C and C++ code does not expect: it
  may compute an infinite number and compare it. So every method of TZonFile masks these exceptions for its calls and
  restores the mask of the program. A program that calls the functions of C itself can do the same with MaskForC and
  UnmaskAfterC.

  Tested by zontest.pas. }
unit Zon;

{$mode objfpc}{$H+}
{$packrecords c}

interface

uses
  ctypes, Math, SysUtils, Types;

{ ---- The interface in C: made from its headers by declarations.py ------------------------------------------------- }
const
  ZonLibrary = 'zon';
  ZON_VERSION_MAJOR = 0;
  ZON_VERSION_MINOR = 1;
  ZON_VERSION_PATCH = 0;
  ZONX_VERSION = 1;
  ZONX_OK = 0;
  ZONX_BAD_ARGUMENT = 1;
  ZONX_NO_MEMORY = 2;
  ZONX_CANNOT_OPEN = 3;
  ZONX_CANNOT_READ = 4;
  ZONX_CANNOT_WRITE = 5;
  ZONX_FAULTY = 6;
  ZONX_UNWRITABLE = 7;
  ZONX_CHANGED = 8;
  ZONX_EXISTS = 9;
  ZONX_MISSING = 10;
  ZONX_WRONG_KIND = 11;
  ZONX_OUT_OF_RANGE = 12;
  ZONX_MISMATCH = 13;
  ZONX_ERROR = 0;
  ZONX_WARNING = 1;
  ZONX_NOTE = 2;
  ZONX_FILE = 1;
  ZONX_SECTION = 2;
  ZONX_KEYWORD = 3;
  ZONX_DEFINITION = 4;
  ZONX_INTEGER = 6;
  ZONX_REAL = 7;
  ZONX_BOOLEAN = 8;
  ZONX_STRING = 9;
  ZONX_FILENAME = 10;
  ZONX_PLACEHOLDER = 11;
  ZONX_SUBSTITUTION = 12;
  ZONX_DATETIME = 13;
  ZONX_UNKNOWN = 14;
  ZONX_EMPTY = 15;
  ZONX_CLOB = 16;
  ZONX_PLAIN = 1;
  ZONX_NEW = 2;
  ZONX_OVERWRITE = 4;
  ZONX_BACKUP = 8;
  ZONX_NAMES_AS_WRITTEN = 16;
  ZONX_ADDED = 0;
  ZONX_REMOVED = 1;
  ZONX_DIFFERENT = 2;
  ZONX_MOVED = 3;

type
  PZonxPlace = ^TZonxPlace;
  TZonxPlace = record
    fileName: PChar;
    line: cuint;
    column: cuint;
    endLine: cuint;
    endColumn: cuint;
    offset: csize_t;
    length: csize_t;
  end;
  PZonxReport = ^TZonxReport;
  TZonxReport = record
    severity: cint;
    rule: PChar;
    message: PChar;
    hint: PChar;
    place: TZonxPlace;
    related: TZonxPlace;
    relatedMessage: PChar;
    sourceLine: PChar;
  end;
  PZonxDifference = ^TZonxDifference;
  TZonxDifference = record
    change: cint;
    path: PChar;
    before: Pointer;
    after: Pointer;
  end;
  PZonxCompare = ^TZonxCompare;
  TZonxCompare = record
    relative: cdouble;
    absolute: cdouble;
  end;
  TZonxReporter = procedure(report: PZonxReport; context: Pointer); cdecl;
  TZonVisitor = procedure(node: Pointer); cdecl;
  TZonxMessageHook = procedure(text: PChar; context: Pointer); cdecl;
  TZonxReportHook = procedure(text: PChar; severity: cint; context: Pointer); cdecl;
  TZonxVisitor = procedure(difference: PZonxDifference; context: Pointer); cdecl;

function zonLoadFile(fileName: PChar; quiet: cint): Pointer; cdecl; external ZonLibrary;
procedure zonClose(handle: PPointer); cdecl; external ZonLibrary;
function zonFileCopy(source: PChar; target: PChar): cint; cdecl; external ZonLibrary;
function zonGetSyntaxErr(handle: Pointer; line: pcuint; position: pcuint; message: PPChar): PChar; cdecl; external
  ZonLibrary;
function zonNoChars(handle: Pointer): cuint; cdecl; external ZonLibrary;
function zonNoLines(handle: Pointer): cuint; cdecl; external ZonLibrary;
function zonNoComments(handle: Pointer): cuint; cdecl; external ZonLibrary;
function zonGetErrorGlb: cint; cdecl; external ZonLibrary;
function zonPeekErrorGlb: cint; cdecl; external ZonLibrary;
function zonGetErrorMessageFromErrorCode(code: cint): PChar; cdecl; external ZonLibrary;
function zonGetErrorFromZonData(handle: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetVersion: PChar; cdecl; external ZonLibrary;
function zonGetBuildVersion: PChar; cdecl; external ZonLibrary;
function zonGetDLLid: PChar; cdecl; external ZonLibrary;
function zonGetVersion2(buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetBuildVersion2(buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetDLLid2(buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetRoot(handle: Pointer): Pointer; cdecl; external ZonLibrary;
function zonGetNoTargets(handle: Pointer): cint; cdecl; external ZonLibrary;
function zonTargetByNum(handle: Pointer; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonTargetByNameNum(handle: Pointer; name: PChar; n: cuint): Pointer; cdecl; external ZonLibrary;
procedure zonExplore(handle: Pointer; visit: TZonVisitor); cdecl; external ZonLibrary;
function zonFindSectionByHandle(handle: Pointer; path: PChar): Pointer; cdecl; external ZonLibrary;
function zonFindSectionByNode(node: Pointer; path: PChar): Pointer; cdecl; external ZonLibrary;
procedure splitElement(element: PChar; instance: pcint); cdecl; external ZonLibrary;
function zonSectionByNum(node: Pointer; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonKeywordByNum(node: Pointer; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonParamByNum(node: Pointer; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonNodeByNum(node: Pointer; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonSectionByNameNum(node: Pointer; name: PChar; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonKeywordByNameNum(node: Pointer; name: PChar; n: cuint): Pointer; cdecl; external ZonLibrary;
function zonGetParentSection(node: Pointer): Pointer; cdecl; external ZonLibrary;
function zonFindDefault(node: Pointer): Pointer; cdecl; external ZonLibrary;
function zonGetLevel(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetSyntaxClass(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetName(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetNameGlb(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetNoInstances(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetInstanceNo(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetNoNodes(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetNoParams(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetNoKeywords(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetNoSections(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsTarget(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsSection(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsKeyword(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsParam(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsNumeric(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsInt(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsFloat(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsDouble(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsBool(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsString(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsFilename(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsUndefinedPar(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsDefaultPar(node: Pointer): cint; cdecl; external ZonLibrary;
function zonNumericIsIntType(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetInt(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetDouble(node: Pointer): cdouble; cdecl; external ZonLibrary;
function zonGetFloat(node: Pointer): cfloat; cdecl; external ZonLibrary;
procedure zonPasGetDoubleProc(node: Pointer; output: pcdouble); cdecl; external ZonLibrary;
procedure zonPasGetFloatProc(node: Pointer; output: pcfloat); cdecl; external ZonLibrary;
function zonGetBool(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetString(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetName2(node: Pointer; buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetNameGlb2(node: Pointer; buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetString2(node: Pointer; buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetFilename(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetFilenameString(node: Pointer): PChar; cdecl; external ZonLibrary;
procedure zonSetFilename(node: Pointer; text: PChar); cdecl; external ZonLibrary;
procedure zonFileCopyCallBack(node: Pointer); cdecl; external ZonLibrary;
function zonGetAnchorFilename(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetZonFileName(node: Pointer): PChar; cdecl; external ZonLibrary;
procedure zonSetAnchorFilename(node: Pointer; name: PChar); cdecl; external ZonLibrary;
function zonGetAnchorFilename2(node: Pointer; buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonGetFilename2(node: Pointer; buffer: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonCreate: Pointer; cdecl; external ZonLibrary;
procedure zonAddTarget(handle: Pointer; name: PChar); cdecl; external ZonLibrary;
function zonAddTargetS(handle: Pointer; name: PChar): cint; cdecl; external ZonLibrary;
procedure zonAddSection(handle: Pointer; name: PChar); cdecl; external ZonLibrary;
function zonAddSectionS(handle: Pointer; name: PChar): cint; cdecl; external ZonLibrary;
procedure zonEndSection(handle: Pointer); cdecl; external ZonLibrary;
function zonEndSectionS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddKeyword(handle: Pointer; name: PChar); cdecl; external ZonLibrary;
function zonAddKeywordS(handle: Pointer; name: PChar): cint; cdecl; external ZonLibrary;
procedure zonAddInt(handle: Pointer; value: cint); cdecl; external ZonLibrary;
function zonAddIntS(handle: Pointer; value: cint): cint; cdecl; external ZonLibrary;
procedure zonAddFloat(handle: Pointer; value: cfloat); cdecl; external ZonLibrary;
function zonAddFloatS(handle: Pointer; value: cfloat): cint; cdecl; external ZonLibrary;
procedure zonAddDouble(handle: Pointer; value: cdouble); cdecl; external ZonLibrary;
function zonAddDoubleS(handle: Pointer; value: cdouble): cint; cdecl; external ZonLibrary;
procedure zonAddBool(handle: Pointer; value: cint); cdecl; external ZonLibrary;
function zonAddBoolS(handle: Pointer; value: cint): cint; cdecl; external ZonLibrary;
procedure zonAddString(handle: Pointer; text: PChar); cdecl; external ZonLibrary;
function zonAddStringS(handle: Pointer; text: PChar): cint; cdecl; external ZonLibrary;
procedure zonAddFilename(handle: Pointer; text: PChar); cdecl; external ZonLibrary;
function zonAddFilenameS(handle: Pointer; text: PChar): cint; cdecl; external ZonLibrary;
procedure zonAddUndefinedPar(handle: Pointer); cdecl; external ZonLibrary;
function zonAddUndefinedParS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddIntRef(handle: Pointer; variable: pcint); cdecl; external ZonLibrary;
function zonAddIntRefS(handle: Pointer; variable: pcint): cint; cdecl; external ZonLibrary;
procedure zonAddFloatRef(handle: Pointer; variable: pcfloat); cdecl; external ZonLibrary;
function zonAddFloatRefS(handle: Pointer; variable: pcfloat): cint; cdecl; external ZonLibrary;
procedure zonAddDoubleRef(handle: Pointer; variable: pcdouble); cdecl; external ZonLibrary;
function zonAddDoubleRefS(handle: Pointer; variable: pcdouble): cint; cdecl; external ZonLibrary;
procedure zonAddStringRef(handle: Pointer; variable: PChar); cdecl; external ZonLibrary;
function zonAddStringRefS(handle: Pointer; variable: PChar): cint; cdecl; external ZonLibrary;
procedure zonAddBoolRef(handle: Pointer; variable: pcint); cdecl; external ZonLibrary;
function zonAddBoolRefS(handle: Pointer; variable: pcint): cint; cdecl; external ZonLibrary;
procedure zonAddSectionDef(handle: Pointer; name: PChar; multi: cint; mandat: cint); cdecl; external ZonLibrary;
function zonAddSectionDefS(handle: Pointer; name: PChar; multi: cint; mandat: cint): cint; cdecl; external ZonLibrary;
procedure zonAddKeywordDef(handle: Pointer; name: PChar; codes: PChar; multi: cint; mandat: cint; flag: cint); cdecl;
  external ZonLibrary;
function zonAddKeywordDefS(handle: Pointer; name: PChar; codes: PChar; multi: cint; mandat: cint; flag: cint): cint;
  cdecl; external ZonLibrary;
procedure zonAddIntDef(handle: Pointer); cdecl; external ZonLibrary;
function zonAddIntDefS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddFloatDef(handle: Pointer); cdecl; external ZonLibrary;
function zonAddFloatDefS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddDoubleDef(handle: Pointer); cdecl; external ZonLibrary;
function zonAddDoubleDefS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddStringDef(handle: Pointer); cdecl; external ZonLibrary;
function zonAddStringDefS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddFilenameDef(handle: Pointer); cdecl; external ZonLibrary;
function zonAddFilenameDefS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddBoolDef(handle: Pointer); cdecl; external ZonLibrary;
function zonAddBoolDefS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonWrite(handle: Pointer; fileName: PChar); cdecl; external ZonLibrary;
procedure zonAppend(handle: Pointer; fileName: PChar); cdecl; external ZonLibrary;
procedure zonDump(handleOrNode: Pointer; fileName: PChar); cdecl; external ZonLibrary;
procedure zonSetProjectResultRoot(handle: Pointer; root: PChar); cdecl; external ZonLibrary;
function zonGetProjectResultRoot(node: Pointer): PChar; cdecl; external ZonLibrary;
procedure zonSetCustomResultFolder(handle: Pointer; use: cint; folder: PChar); cdecl; external ZonLibrary;
procedure zonGetCustomResultFolder(node: Pointer; use: pcint; folder: PChar); cdecl; external ZonLibrary;
function zonGetCustomResultFolder2(node: Pointer; use: pcint; folder: PChar; size: cint): cint; cdecl; external
  ZonLibrary;
procedure zonGetResultFolderPath(node: Pointer; path: PChar); cdecl; external ZonLibrary;
function zonGetResultFolderPath2(node: Pointer; path: PChar; size: cint): cint; cdecl; external ZonLibrary;
procedure zonAddResultFilename(handle: Pointer; name: PChar); cdecl; external ZonLibrary;
function zonAddResultFilenameS(handle: Pointer; name: PChar): cint; cdecl; external ZonLibrary;
function zonGetResultFilename(node: Pointer): PChar; cdecl; external ZonLibrary;
procedure zonGetResultFilenamePath(node: Pointer; path: PChar); cdecl; external ZonLibrary;
function zonGetResultFilenamePath2(node: Pointer; path: PChar; size: cint): cint; cdecl; external ZonLibrary;
function zonPutParamFilename(handle: Pointer; keyword: PChar; value: PChar): cint; cdecl; external ZonLibrary;
function zonPutParamResultFilename(handle: Pointer; keyword: PChar; name: PChar): cint; cdecl; external ZonLibrary;
function zonPutListParam(handle: Pointer; keyword: PChar; format: PChar): cint; cdecl; varargs; external ZonLibrary;
function zonGetListParam(section: Pointer; keyword: PChar; instance: cint; format: PChar): cint; cdecl; varargs;
  external ZonLibrary;
function zoneInsertNewSection(parent: Pointer; name: PChar; position: cuint): Pointer; cdecl; external ZonLibrary;
function zoneInsertNewKeyword(section: Pointer; name: PChar; position: cuint): Pointer; cdecl; external ZonLibrary;
function zoneInsertParameterInt(keyword: Pointer; position: cuint; value: cint): Pointer; cdecl; external ZonLibrary;
function zoneInsertParameterFloat(keyword: Pointer; position: cuint; value: cfloat): Pointer; cdecl; external
  ZonLibrary;
function zoneInsertParameterDouble(keyword: Pointer; position: cuint; value: cdouble): Pointer; cdecl; external
  ZonLibrary;
function zoneInsertParameterBool(keyword: Pointer; position: cuint; value: cint): Pointer; cdecl; external ZonLibrary;
function zoneInsertParameterString(keyword: Pointer; position: cuint; value: PChar): Pointer; cdecl; external
  ZonLibrary;
function zoneInsertParameterFilename(keyword: Pointer; position: cuint; value: PChar): Pointer; cdecl; external
  ZonLibrary;
function zoneInsertParameterUndefined(keyword: Pointer; position: cuint): Pointer; cdecl; external ZonLibrary;
function zoneInsertParameterDefault(keyword: Pointer; position: cuint): Pointer; cdecl; external ZonLibrary;
function zoneDeleteSectionByNum(parent: Pointer; n: cuint): cint; cdecl; external ZonLibrary;
function zoneDeleteSectionByNameNum(parent: Pointer; name: PChar; n: cuint): cint; cdecl; external ZonLibrary;
function zoneDeleteKeywordByNum(section: Pointer; n: cuint): cint; cdecl; external ZonLibrary;
function zoneDeleteKeywordByNameNum(section: Pointer; name: PChar; n: cuint): cint; cdecl; external ZonLibrary;
function zoneDeleteParameterByNum(keyword: Pointer; n: cuint): cint; cdecl; external ZonLibrary;
function zoneDeleteNode(node: Pointer): cint; cdecl; external ZonLibrary;
function zoneRenameSection(section: Pointer; name: PChar): cint; cdecl; external ZonLibrary;
function zoneRenameKeyword(keyword: Pointer; name: PChar): cint; cdecl; external ZonLibrary;
function zoneModifyParameterInt(keyword: Pointer; n: cuint; value: cint): cint; cdecl; external ZonLibrary;
function zoneModifyParameterFloat(keyword: Pointer; n: cuint; value: cfloat): cint; cdecl; external ZonLibrary;
function zoneModifyParameterDouble(keyword: Pointer; n: cuint; value: cdouble): cint; cdecl; external ZonLibrary;
function zoneModifyParameterBool(keyword: Pointer; n: cuint; value: cint): cint; cdecl; external ZonLibrary;
function zoneModifyParameterString(keyword: Pointer; n: cuint; value: PChar): cint; cdecl; external ZonLibrary;
function zoneModifyParameterFilename(keyword: Pointer; n: cuint; value: PChar): cint; cdecl; external ZonLibrary;
function zonCopy(source: Pointer; target: Pointer): cint; cdecl; external ZonLibrary;
function zonInsert(source: Pointer; reference: Pointer; after: cint): Pointer; cdecl; external ZonLibrary;
procedure zonAddClob(handle: Pointer); cdecl; external ZonLibrary;
function zonAddClobS(handle: Pointer): cint; cdecl; external ZonLibrary;
procedure zonAddClobBool(handle: Pointer; value: cint); cdecl; external ZonLibrary;
function zonAddClobBoolS(handle: Pointer; value: cint): cint; cdecl; external ZonLibrary;
procedure zonAddClobInt(handle: Pointer; value: cint); cdecl; external ZonLibrary;
function zonAddClobIntS(handle: Pointer; value: cint): cint; cdecl; external ZonLibrary;
procedure zonAddClobFloat(handle: Pointer; value: cfloat); cdecl; external ZonLibrary;
function zonAddClobFloatS(handle: Pointer; value: cfloat): cint; cdecl; external ZonLibrary;
procedure zonAddClobDouble(handle: Pointer; value: cdouble); cdecl; external ZonLibrary;
function zonAddClobDoubleS(handle: Pointer; value: cdouble): cint; cdecl; external ZonLibrary;
procedure zonAddClobString(handle: Pointer; text: PChar); cdecl; external ZonLibrary;
function zonAddClobStringS(handle: Pointer; text: PChar): cint; cdecl; external ZonLibrary;
procedure zonAddClobFilename(handle: Pointer; text: PChar); cdecl; external ZonLibrary;
function zonAddClobFilenameS(handle: Pointer; text: PChar): cint; cdecl; external ZonLibrary;
function zonIsClob(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetClobNoItems(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobEnd(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobBool(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobInt(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobFloat(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobDouble(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobString(node: Pointer): cint; cdecl; external ZonLibrary;
function zonIsClobFilename(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetClobBool(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetClobInt(node: Pointer): cint; cdecl; external ZonLibrary;
function zonGetClobFloat(node: Pointer): cfloat; cdecl; external ZonLibrary;
function zonGetClobDouble(node: Pointer): cdouble; cdecl; external ZonLibrary;
function zonGetClobString(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetClobFilename(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonGetClobFilenameString(node: Pointer): PChar; cdecl; external ZonLibrary;
procedure zonClobReset(node: Pointer); cdecl; external ZonLibrary;
function zonGetErrorFromZonClob(node: Pointer): PChar; cdecl; external ZonLibrary;
function zonEquivalent(templateNode: Pointer; candidateNode: Pointer; third: Pointer): cint; cdecl; external ZonLibrary;
function zonEquivalentExt(templateNode: Pointer; candidateNode: Pointer; third: Pointer; quiet: cint): cint; cdecl;
  external ZonLibrary;
function zonIsEqvQuiet: cint; cdecl; external ZonLibrary;
function zonEqvSection(t: Pointer; c: Pointer): cint; cdecl; external ZonLibrary;
function zonEqvKeyword(t: Pointer; c: Pointer): cint; cdecl; external ZonLibrary;
function zontLoadFile(fileName: PChar; reader: PPointer): cint; cdecl; external ZonLibrary;
function zontNextToken(reader: Pointer): cint; cdecl; external ZonLibrary;
function zontGetTokenString(reader: Pointer): PChar; cdecl; external ZonLibrary;
function zontGetError(reader: Pointer; line: pcuint; position: pcuint): PChar; cdecl; external ZonLibrary;
procedure zontDispose(reader: PPointer); cdecl; external ZonLibrary;
procedure zonConstructResultFolderPathName; cdecl; external ZonLibrary;
function zonNoTokens(handle: Pointer): cuint; cdecl; external ZonLibrary;
function zonGetParamResultFilePath(node: Pointer; keyword: PChar; path: PPChar; keywordInstance: cint; paramIndex:
  cint): cint; cdecl; external ZonLibrary;

function zonxStatusText(status: cint): PChar; cdecl; external ZonLibrary;
function zonxGetVersion: cint; cdecl; external ZonLibrary;
function zonxFormatReport(report: PZonxReport; buffer: PChar; size: csize_t): csize_t; cdecl; external ZonLibrary;
function zonxReportNode(node: Pointer; severity: cint; rule: PChar; message: PChar; hint: PChar; reporter:
  TZonxReporter; context: Pointer): cint; cdecl; external ZonLibrary;
function zonxReportPath(fileOrNode: Pointer; path: PChar; status: cint; reporter: TZonxReporter; context: Pointer):
  cint; cdecl; external ZonLibrary;
function zonxLoadFile(fileName: PChar; handle: PPointer; reporter: TZonxReporter; context: Pointer): cint; cdecl;
  external ZonLibrary;
function zonxLoadText(text: PChar; size: csize_t; fileName: PChar; handle: PPointer; reporter: TZonxReporter; context:
  Pointer): cint; cdecl; external ZonLibrary;
procedure zonxSetHooks(message: TZonxMessageHook; report: TZonxReportHook; context: Pointer); cdecl; external
  ZonLibrary;
function zonxGetKind(node: Pointer): cint; cdecl; external ZonLibrary;
function zonxFind(fileOrNode: Pointer; path: PChar; node: PPointer): cint; cdecl; external ZonLibrary;
function zonxWhere(node: Pointer; place: PZonxPlace): cint; cdecl; external ZonLibrary;
function zonxGetRemark(node: Pointer; output: PPChar): cint; cdecl; external ZonLibrary;
function zonxGetInt(fileOrNode: Pointer; path: PChar; output: pcint): cint; cdecl; external ZonLibrary;
function zonxGetInt64(fileOrNode: Pointer; path: PChar; output: pclonglong): cint; cdecl; external ZonLibrary;
function zonxGetDouble(fileOrNode: Pointer; path: PChar; output: pcdouble): cint; cdecl; external ZonLibrary;
function zonxGetBool(fileOrNode: Pointer; path: PChar; output: pcint): cint; cdecl; external ZonLibrary;
function zonxGetString(fileOrNode: Pointer; path: PChar; output: PPChar): cint; cdecl; external ZonLibrary;
function zonxGetFilename(fileOrNode: Pointer; path: PChar; output: PPChar): cint; cdecl; external ZonLibrary;
function zonxGetText(fileOrNode: Pointer; path: PChar; output: PPChar): cint; cdecl; external ZonLibrary;
function zonxGetInts(fileOrNode: Pointer; path: PChar; output: pcint; room: csize_t; count: pcsize_t): cint; cdecl;
  external ZonLibrary;
function zonxGetInt64s(fileOrNode: Pointer; path: PChar; output: pclonglong; room: csize_t; count: pcsize_t): cint;
  cdecl; external ZonLibrary;
function zonxGetDoubles(fileOrNode: Pointer; path: PChar; output: pcdouble; room: csize_t; count: pcsize_t): cint;
  cdecl; external ZonLibrary;
function zonxGetBools(fileOrNode: Pointer; path: PChar; output: pcint; room: csize_t; count: pcsize_t): cint; cdecl;
  external ZonLibrary;
function zonxGetStrings(fileOrNode: Pointer; path: PChar; output: PPChar; room: csize_t; count: pcsize_t): cint; cdecl;
  external ZonLibrary;
function zonxSetInt64(fileOrNode: Pointer; path: PChar; value: clonglong): cint; cdecl; external ZonLibrary;
function zonxSetDouble(fileOrNode: Pointer; path: PChar; value: cdouble): cint; cdecl; external ZonLibrary;
function zonxSetBool(fileOrNode: Pointer; path: PChar; value: cint): cint; cdecl; external ZonLibrary;
function zonxSetString(fileOrNode: Pointer; path: PChar; value: PChar): cint; cdecl; external ZonLibrary;
function zonxSetFilename(fileOrNode: Pointer; path: PChar; value: PChar): cint; cdecl; external ZonLibrary;
function zonxSetText(fileOrNode: Pointer; path: PChar; text: PChar): cint; cdecl; external ZonLibrary;
function zonxSetInt64s(fileOrNode: Pointer; path: PChar; values: pclonglong; count: csize_t): cint; cdecl; external
  ZonLibrary;
function zonxSetDoubles(fileOrNode: Pointer; path: PChar; values: pcdouble; count: csize_t): cint; cdecl; external
  ZonLibrary;
function zonxSetBools(fileOrNode: Pointer; path: PChar; values: pcint; count: csize_t): cint; cdecl; external
  ZonLibrary;
function zonxSetStrings(fileOrNode: Pointer; path: PChar; values: PPChar; count: csize_t): cint; cdecl; external
  ZonLibrary;
function zonxRemove(fileOrNode: Pointer; path: PChar): cint; cdecl; external ZonLibrary;
function zonxSave(handle: Pointer; fileName: PChar; flags: cuint; reporter: TZonxReporter; context: Pointer): cint;
  cdecl; external ZonLibrary;
function zonxText(handle: Pointer; flags: cuint; text: PPChar; size: pcsize_t; reporter: TZonxReporter; context:
  Pointer): cint; cdecl; external ZonLibrary;
procedure zonxFree(memory: Pointer); cdecl; external ZonLibrary;
function zonxValidate(templateHandle: Pointer; candidateHandle: Pointer; reporter: TZonxReporter; context: Pointer):
  cint; cdecl; external ZonLibrary;
function zonxDiff(before: Pointer; after: Pointer; options: PZonxCompare; visitor: TZonxVisitor; context: Pointer;
  count: pcsize_t): cint; cdecl; external ZonLibrary;
function zonxDiffByKey(before: Pointer; after: Pointer; key: PChar; options: PZonxCompare; visitor: TZonxVisitor;
  context: Pointer; count: pcsize_t): cint; cdecl; external ZonLibrary;
function zonxMerge(target: Pointer; overlay: Pointer): cint; cdecl; external ZonLibrary;
function zonxWatch(handle: Pointer; on: cint): cint; cdecl; external ZonLibrary;
function zonxReportUnread(handle: Pointer; reporter: TZonxReporter; context: Pointer; count: pcsize_t): cint; cdecl;
  external ZonLibrary;
{ ---- TZonFile ------------------------------------------------------------------------------------------------------ }

type
  { A range of a text. Columns count bytes; 0 is unknown. }
  TZonPlace = record
    FileName: string;            // '' if no place is known
    Line, Column: Integer;       // of the first character, from 1
    EndLine, EndColumn: Integer; // behind the last character
  end;

  { A report of the library. }
  TZonReport = record
    Severity: Integer;   // ZONX_ERROR, ZONX_WARNING or ZONX_NOTE
    Rule: string;        // a word that never changes, such as 'unclosed-section'
    Message: string;     // one line, without the place
    Hint: string;
    Place: TZonPlace;
    Related: TZonPlace;  // for example the line of the template
    RelatedMessage: string;
    Text: string;        // all of this, as it is printed
  end;
  TZonReports = array of TZonReport;

  { An error. Its message is the text of all reports. }
  EZon = class(Exception)
  private
    FStatus: Integer;
    FReports: TZonReports;
    function GetPlace: TZonPlace;
    function GetFileName: string;
    function GetLine: Integer;
    function GetColumn: Integer;
  public
    constructor Create(AStatus: Integer; const AReports: TZonReports);
    property Status: Integer read FStatus;  // such as ZONX_MISSING
    property Reports: TZonReports read FReports;
    { The place of the first error. }
    property FileName: string read GetFileName;
    property Line: Integer read GetLine;
    property Column: Integer read GetColumn;
  end;

  TZonSaveOption = (
    zsPlain,           // in a uniform layout, without comments
    zsNew,             // only if nothing has the name
    zsOverwrite,       // also a file that has changed since it was loaded, and another file
    zsBackup,          // the old file stays, as its name and '~'
    zsNamesAsWritten); // file names stay as they are, also in a file in another folder
  TZonSaveOptions = set of TZonSaveOption;

  TZonChange = (zcAdded, zcRemoved, zcDifferent, zcMoved);
  TZonDifference = record
    Change: TZonChange;
    Path: string;  // in the second file, or in the first for zcRemoved
    Before, After: string;  // a value as it is written; '' if there is none
  end;
  TZonDifferences = array of TZonDifference;

  { A parameter file. One object is used by one thread at a time. }
  TZonFile = class
  private
    FHandle: Pointer;
    FMask: TFPUExceptionMask;
    FWarnings: TZonReports;
    procedure Enter(const Path: string);
    procedure Leave;
    procedure RaiseFor(Status: Integer; const Path: string);
    procedure RaiseReports(Status: Integer; const Reports: TZonReports; const What: string);
    procedure RequireText(const Path, Text: string);
    procedure Done(Status: Integer; const Path: string);
    function Found(Status: Integer; const Path: string; HasDefault: Boolean): Boolean;
    function FoundList(Status: Integer; const Path: string; Failed: csize_t; HasDefault: Boolean): Boolean;
    procedure Loaded(Status: Integer; const Reports: TZonReports; const What: string);
    function FindNode(const Path: string): Pointer;
    function RequireNode(const Path: string): Pointer;
    function NodeToShow(Path: string): Pointer;
    function NamesOf(const Path: string; WithSections: Boolean): TStringDynArray;
    function ReadSingle(const Path: string; HasDefault: Boolean; out Value: Single): Boolean;
    function ReadIntArray(const Path: string; HasDefault: Boolean; out Values: TIntegerDynArray): Boolean;
    function ReadInt64Array(const Path: string; HasDefault: Boolean; out Values: TInt64DynArray): Boolean;
    function ReadDoubleArray(const Path: string; HasDefault: Boolean; out Values: TDoubleDynArray): Boolean;
    function ReadBoolArray(const Path: string; HasDefault: Boolean; out Values: TBooleanDynArray): Boolean;
    function ReadStringArray(const Path: string; HasDefault: Boolean; out Values: TStringDynArray): Boolean;
    procedure SetInt(const Path: string; Value: Integer);
    procedure SetInt64(const Path: string; Value: Int64);
    procedure SetDouble(const Path: string; Value: Double);
    procedure SetSingle(const Path: string; Value: Single);
    procedure SetBool(const Path: string; Value: Boolean);
    procedure SetString(const Path, Value: string);
    procedure SetFileName(const Path, Value: string);
    procedure SetText(const Path, Value: string);
  public
    { Loads a file. }
    constructor Create(const FileName: string);
    { Loads a text. Its name is for reports, and file names in it are relative to it. }
    constructor CreateFromText(const Text: string; const FileName: string = '');
    { An empty file, to be saved with a name. }
    constructor CreateEmpty;
    destructor Destroy; override;
    { Closes the file. Every later call raises EZon. }
    procedure Close;
    { All errors and warnings of a file. }
    class function Check(const FileName: string): TZonReports;

    { A value. Without a default a keyword that is missing is an error; a value of another kind, or one that does not
      fit the type, always is. An integer can be read as a real, nothing else is converted. A Single is rounded. }
    function GetInt(const Path: string): Integer;
    function GetInt(const Path: string; Default: Integer): Integer;
    function GetInt64(const Path: string): Int64;
    function GetInt64(const Path: string; Default: Int64): Int64;
    function GetDouble(const Path: string): Double;
    function GetDouble(const Path: string; Default: Double): Double;
    function GetSingle(const Path: string): Single;
    function GetSingle(const Path: string; Default: Single): Single;
    function GetBool(const Path: string): Boolean;
    function GetBool(const Path: string; Default: Boolean): Boolean;
    function GetString(const Path: string): string;
    function GetString(const Path, Default: string): string;
    { A file name as its path. }
    function GetFileName(const Path: string): string;
    function GetFileName(const Path, Default: string): string;
    { A value of any kind, as it is written in the file. }
    function GetText(const Path: string): string;

    { The same as properties. What is missing is created when it is set. Texts sets all values of a keyword, as they
      are written in a file: '1, 2.5, ''x'''. }
    property Ints[const Path: string]: Integer read GetInt write SetInt;
    property Int64s[const Path: string]: Int64 read GetInt64 write SetInt64;
    property Doubles[const Path: string]: Double read GetDouble write SetDouble;
    property Singles[const Path: string]: Single read GetSingle write SetSingle;
    property Bools[const Path: string]: Boolean read GetBool write SetBool;
    property Strings[const Path: string]: string read GetString write SetString;
    property FileNames[const Path: string]: string read GetFileName write SetFileName;
    property Texts[const Path: string]: string read GetText write SetText;

    { All values of a keyword. The default is for a keyword that is missing or has one empty place. }
    function GetIntArray(const Path: string): TIntegerDynArray;
    function GetIntArray(const Path: string; const Default: TIntegerDynArray): TIntegerDynArray;
    function GetInt64Array(const Path: string): TInt64DynArray;
    function GetInt64Array(const Path: string; const Default: TInt64DynArray): TInt64DynArray;
    function GetDoubleArray(const Path: string): TDoubleDynArray;
    function GetDoubleArray(const Path: string; const Default: TDoubleDynArray): TDoubleDynArray;
    function GetBoolArray(const Path: string): TBooleanDynArray;
    function GetBoolArray(const Path: string; const Default: TBooleanDynArray): TBooleanDynArray;
    function GetStringArray(const Path: string): TStringDynArray;
    function GetStringArray(const Path: string; const Default: TStringDynArray): TStringDynArray;
    procedure SetIntArray(const Path: string; const Values: array of Integer);
    procedure SetInt64Array(const Path: string; const Values: array of Int64);
    procedure SetDoubleArray(const Path: string; const Values: array of Double);
    procedure SetBoolArray(const Path: string; const Values: array of Boolean);
    procedure SetStringArray(const Path: string; const Values: array of string);

    { Whether there is such a section, keyword or value. }
    function Has(const Path: string): Boolean;
    { How many sections or keywords have this name, 0 if there is none. For a path that ends with [1], the number of
      values of the keyword. }
    function Count(const Path: string): Integer;
    { The paths of all of them: 'Quay:1', 'Quay:2'. }
    function Instances(const Path: string): TStringDynArray;
    { The names of all sections, or keywords, of a section; of the file for ''. }
    function SectionNames(const Path: string): TStringDynArray;
    function KeywordNames(const Path: string): TStringDynArray;
    { The kind of a section or keyword or, with [n], of a value, such as ZONX_REAL; 0 for none. }
    function Kind(const Path: string): Integer;
    { Where it is in the text that was loaded; no place if it was changed since. }
    function Place(const Path: string): TZonPlace;
    { Its remark without the braces; '' if it has none. }
    function Remark(const Path: string): string;
    { Removes a section, a keyword or, with [n], a value. }
    procedure Remove(const Path: string);

    { An error of the program's own, with the place of the value, to be raised. }
    function Error(const Path, Message: string; const Hint: string = ''): EZon;

    { Saves in place, with all comments. '' is the file that was loaded or last saved. }
    procedure Save(const FileName: string = ''; Options: TZonSaveOptions = []);
    { The text that Save would write. }
    function ToText(Options: TZonSaveOptions = []): string;

    { Raises EZon if this file does not conform to a template. }
    procedure Validate(Template: TZonFile);
    { What the other file has changed. Repeated sections are paired by the values of the keyword Key; the other two are
      tolerances of reals. }
    function Diff(Other: TZonFile; const Key: string = ''; Relative: Double = 0; Absolute: Double = 0): TZonDifferences;
    { Gives this file every keyword of another one. }
    procedure Merge(Overlay: TZonFile);
    { Starts or stops to watch which keywords are read; the warnings of those that were not. }
    procedure Watch(IsOn: Boolean = True);
    function Unread: TZonReports;

    { The warnings of the load. }
    property Warnings: TZonReports read FWarnings;
    { For the functions of C. It is closed with the object. }
    property Handle: Pointer read FHandle;
  end;

{ Masks all floating-point exceptions, and restores what was masked before. }
function MaskForC: TFPUExceptionMask;
procedure UnmaskAfterC(Mask: TFPUExceptionMask);

implementation

const
  FirstRoom = 256;  // of lists; a longer one needs a second call
  BeyondSingle = 3.4028235677973366e38;  // doubles from here on are rounded to infinity

type
  { Receives reports or differences; each array has room for more. }
  TCollector = record
    Reports: TZonReports;
    ReportCount: Integer;
    Differences: TZonDifferences;
    DifferenceCount: Integer;
  end;
  PCollector = ^TCollector;

function MaskForC: TFPUExceptionMask;
begin
  Result := GetExceptionMask;
  SetExceptionMask([exInvalidOp, exDenormalized, exZeroDivide, exOverflow, exUnderflow, exPrecision]);
end;

procedure UnmaskAfterC(Mask: TFPUExceptionMask);
begin
  ClearExceptions(False);
  SetExceptionMask(Mask);
end;

function HasZero(const Text: string): Boolean;
begin
  Result := Pos(#0, Text) > 0;
end;

function TextOfReport(Report: PZonxReport): string;
begin
  Result := '';
  SetLength(Result, zonxFormatReport(Report, nil, 0));
  zonxFormatReport(Report, PChar(Result), Length(Result) + 1);
end;

function CopyOf(const Place: TZonxPlace): TZonPlace;
begin
  Result.FileName := Place.fileName;
  Result.Line := Place.line;
  Result.Column := Place.column;
  Result.EndLine := Place.endLine;
  Result.EndColumn := Place.endColumn;
end;

{ A value as it is written; '' for no node, and for a section or keyword. }
function TextOfValue(Node: Pointer): string;
var
  Text: PChar;
begin
  Result := '';
  if (zonxGetKind(Node) >= ZONX_INTEGER) and (zonxGetText(Node, '', @Text) = ZONX_OK) then Result := Text;
end;

{ Called by the library, so it must not raise. }
procedure CollectReport(Report: PZonxReport; Context: Pointer); cdecl;
var
  Collector: PCollector;
begin
  Collector := Context;
  with Collector^ do
  begin
    if ReportCount = Length(Reports) then SetLength(Reports, 2 * ReportCount + 4);
    Reports[ReportCount].Severity := Report^.severity;
    Reports[ReportCount].Rule := Report^.rule;
    Reports[ReportCount].Message := Report^.message;
    Reports[ReportCount].Hint := Report^.hint;
    Reports[ReportCount].Place := CopyOf(Report^.place);
    Reports[ReportCount].Related := CopyOf(Report^.related);
    Reports[ReportCount].RelatedMessage := Report^.relatedMessage;
    Reports[ReportCount].Text := TextOfReport(Report);
    Inc(ReportCount);
  end;
end;

procedure CollectDifference(Difference: PZonxDifference; Context: Pointer); cdecl;
var
  Collector: PCollector;
begin
  Collector := Context;
  with Collector^ do
  begin
    if DifferenceCount = Length(Differences) then SetLength(Differences, 2 * DifferenceCount + 4);
    Differences[DifferenceCount].Change := TZonChange(Difference^.change);
    Differences[DifferenceCount].Path := Difference^.path;
    Differences[DifferenceCount].Before := TextOfValue(Difference^.before);
    Differences[DifferenceCount].After := TextOfValue(Difference^.after);
    Inc(DifferenceCount);
  end;
end;

function ReportsOf(const Collector: TCollector): TZonReports;
begin
  Result := Copy(Collector.Reports, 0, Collector.ReportCount);
end;

function OwnReport(const Message: string): TZonReports;
begin
  Result := nil;
  SetLength(Result, 1);
  Result[0].Severity := ZONX_ERROR;
  Result[0].Message := Message;
  Result[0].Text := 'error: ' + Message;
end;

{ The number with as few digits as a Single needs, so that 0.1 does not become 0.10000000149011612. Six digits always
  survive in a Single, nine are always enough. Called with masked exceptions. }
function Widened(Value: Single): Double;
var
  Digits, Code: Integer;
  Text: string;
begin
  Result := Value;
  if IsNan(Value) or IsInfinite(Value) then Exit;
  for Digits := 6 to 9 do
  begin
    { The width of a number with a sign, a point and an exponent of three digits. }
    Str(Double(Value):Digits + 7, Text);
    Val(Text, Result, Code);
    if (Code = 0) and (Single(Result) = Value) then Exit;
  end;
end;

{ ---- EZon ---------------------------------------------------------------------------------------------------------- }

constructor EZon.Create(AStatus: Integer; const AReports: TZonReports);
var
  Report: TZonReport;
  Text: string;
begin
  Text := '';
  for Report in AReports do
  begin
    if Text <> '' then Text := Text + LineEnding;
    Text := Text + Report.Text;
  end;
  inherited Create(Text);
  FStatus := AStatus;
  FReports := AReports;
end;

function EZon.GetPlace: TZonPlace;
var
  Report: TZonReport;
begin
  for Report in FReports do
    if Report.Severity = ZONX_ERROR then Exit(Report.Place);
  Result := Default(TZonPlace);
end;

function EZon.GetFileName: string;
begin
  Result := GetPlace.FileName;
end;

function EZon.GetLine: Integer;
begin
  Result := GetPlace.Line;
end;

function EZon.GetColumn: Integer;
begin
  Result := GetPlace.Column;
end;

{ ---- Calls --------------------------------------------------------------------------------------------------------- }

{ Begins a call of the library. }
procedure TZonFile.Enter(const Path: string);
begin
  if FHandle = nil then raise EZon.Create(ZONX_BAD_ARGUMENT, OwnReport('the file was closed'));
  if HasZero(Path) then raise EZon.Create(ZONX_BAD_ARGUMENT, OwnReport('the path has a zero byte'));
  FMask := MaskForC;
end;

procedure TZonFile.Leave;
begin
  UnmaskAfterC(FMask);
end;

procedure TZonFile.RequireText(const Path, Text: string);
begin
  if HasZero(Text) then
    raise EZon.Create(ZONX_BAD_ARGUMENT, OwnReport('`' + Path + '`: the text has a zero byte'));
end;

procedure TZonFile.RaiseReports(Status: Integer; const Reports: TZonReports; const What: string);
begin
  if Length(Reports) > 0 then raise EZon.Create(Status, Reports);
  raise EZon.Create(Status, OwnReport(What + ': ' + zonxStatusText(Status)));
end;

procedure TZonFile.RaiseFor(Status: Integer; const Path: string);
var
  Collector: TCollector;
begin
  Collector := Default(TCollector);
  Enter('');
  zonxReportPath(FHandle, PChar(Path), Status, @CollectReport, @Collector);
  Leave;
  RaiseReports(Status, ReportsOf(Collector), '`' + Path + '`');
end;

{ Ends a call with a path. }
procedure TZonFile.Done(Status: Integer; const Path: string);
begin
  Leave;
  if Status <> ZONX_OK then RaiseFor(Status, Path);
end;

{ The same for a value; returns False if the default is to be used. }
function TZonFile.Found(Status: Integer; const Path: string; HasDefault: Boolean): Boolean;
begin
  Leave;
  Result := Status = ZONX_OK;
  if not Result and not (HasDefault and (Status = ZONX_MISSING)) then RaiseFor(Status, Path);
end;

{ The same for a list; Failed is the number of the value that cannot be read. A default is not for a list that has an
  empty place among its values. }
function TZonFile.FoundList(Status: Integer; const Path: string; Failed: csize_t; HasDefault: Boolean): Boolean;
var
  PathOfValue: string;
begin
  Leave;
  Result := Status = ZONX_OK;
  if Result then Exit;
  if HasDefault and (Status = ZONX_MISSING) and not Has(Path + '[2]') then Exit;
  PathOfValue := Format('%s[%d]', [Path, Failed]);
  if Has(PathOfValue) then RaiseFor(Status, PathOfValue) else RaiseFor(Status, Path);
end;

{ ---- Loading and saving -------------------------------------------------------------------------------------------- }

constructor TZonFile.Create(const FileName: string);
var
  Collector: TCollector;
  Status: Integer;
begin
  if HasZero(FileName) then
    raise EZon.Create(ZONX_BAD_ARGUMENT, OwnReport('the name of the file has a zero byte'));
  Collector := Default(TCollector);
  FMask := MaskForC;
  Status := zonxLoadFile(PChar(FileName), @FHandle, @CollectReport, @Collector);
  Loaded(Status, ReportsOf(Collector), FileName);
end;

constructor TZonFile.CreateFromText(const Text: string; const FileName: string);
var
  Collector: TCollector;
  Status: Integer;
begin
  if HasZero(FileName) then
    raise EZon.Create(ZONX_BAD_ARGUMENT, OwnReport('the name of the text has a zero byte'));
  Collector := Default(TCollector);
  FMask := MaskForC;
  Status := zonxLoadText(PChar(Text), Length(Text), PChar(FileName), @FHandle, @CollectReport, @Collector);
  Loaded(Status, ReportsOf(Collector), FileName);
end;

constructor TZonFile.CreateEmpty;
begin
  FMask := MaskForC;
  FHandle := zonCreate;
  Leave;
  if FHandle = nil then RaiseReports(ZONX_NO_MEMORY, nil, 'an empty file');
end;

procedure TZonFile.Loaded(Status: Integer; const Reports: TZonReports; const What: string);
begin
  Leave;
  FWarnings := Reports;
  if Status <> ZONX_OK then RaiseReports(Status, Reports, What);
end;

destructor TZonFile.Destroy;
begin
  Close;
  inherited Destroy;
end;

procedure TZonFile.Close;
begin
  if FHandle = nil then Exit;
  FMask := MaskForC;
  zonClose(@FHandle);
  Leave;
end;

class function TZonFile.Check(const FileName: string): TZonReports;
var
  Collector: TCollector;
  Mask: TFPUExceptionMask;
  Status: Integer;
begin
  if HasZero(FileName) then Exit(OwnReport('the name of the file has a zero byte'));
  Collector := Default(TCollector);
  Mask := MaskForC;
  Status := zonxLoadFile(PChar(FileName), nil, @CollectReport, @Collector);
  UnmaskAfterC(Mask);
  Result := ReportsOf(Collector);
  if (Status <> ZONX_OK) and (Result = nil) then Result := OwnReport(FileName + ': ' + zonxStatusText(Status));
end;

procedure TZonFile.Save(const FileName: string; Options: TZonSaveOptions);
var
  Collector: TCollector;
  Status: Integer;
  Name: PChar;
begin
  RequireText('the name of the file', FileName);
  Name := nil;
  if FileName <> '' then Name := PChar(FileName);
  Collector := Default(TCollector);
  Enter('');
  { The options are numbered as the flags of C are: 1, 2, 4, 8, 16. }
  Status := zonxSave(FHandle, Name, LongWord(Options), @CollectReport, @Collector);
  Leave;
  if Status = ZONX_BAD_ARGUMENT then
    raise EZon.Create(Status, OwnReport('the file is not saved: it has no name yet'));
  if Status <> ZONX_OK then RaiseReports(Status, ReportsOf(Collector), 'the file is not saved');
end;

function TZonFile.ToText(Options: TZonSaveOptions): string;
var
  Collector: TCollector;
  Status: Integer;
  Text: PChar;
  Size: csize_t;
begin
  Result := '';
  Text := nil;
  Size := 0;
  Collector := Default(TCollector);
  Enter('');
  Status := zonxText(FHandle, LongWord(Options), @Text, @Size, @CollectReport, @Collector);
  System.SetString(Result, Text, Size);
  zonxFree(Text);
  Leave;
  if Status <> ZONX_OK then RaiseReports(Status, ReportsOf(Collector), 'the file has no text');
end;

{ ---- Reading ------------------------------------------------------------------------------------------------------- }

function TZonFile.GetInt(const Path: string): Integer;
begin
  Enter(Path);
  Found(zonxGetInt(FHandle, PChar(Path), @Result), Path, False);
end;

function TZonFile.GetInt(const Path: string; Default: Integer): Integer;
begin
  Enter(Path);
  if not Found(zonxGetInt(FHandle, PChar(Path), @Result), Path, True) then Result := Default;
end;

function TZonFile.GetInt64(const Path: string): Int64;
begin
  Enter(Path);
  Found(zonxGetInt64(FHandle, PChar(Path), @Result), Path, False);
end;

function TZonFile.GetInt64(const Path: string; Default: Int64): Int64;
begin
  Enter(Path);
  if not Found(zonxGetInt64(FHandle, PChar(Path), @Result), Path, True) then Result := Default;
end;

function TZonFile.GetDouble(const Path: string): Double;
begin
  Enter(Path);
  Found(zonxGetDouble(FHandle, PChar(Path), @Result), Path, False);
end;

function TZonFile.GetDouble(const Path: string; Default: Double): Double;
begin
  Enter(Path);
  if not Found(zonxGetDouble(FHandle, PChar(Path), @Result), Path, True) then Result := Default;
end;

function TZonFile.ReadSingle(const Path: string; HasDefault: Boolean; out Value: Single): Boolean;
var
  Wide: Double;
  Status: Integer;
begin
  Wide := 0;
  Enter(Path);
  Status := zonxGetDouble(FHandle, PChar(Path), @Wide);
  if Abs(Wide) >= BeyondSingle then Status := ZONX_OUT_OF_RANGE else Value := Wide;
  Result := Found(Status, Path, HasDefault);
end;

function TZonFile.GetSingle(const Path: string): Single;
begin
  ReadSingle(Path, False, Result);
end;

function TZonFile.GetSingle(const Path: string; Default: Single): Single;
begin
  if not ReadSingle(Path, True, Result) then Result := Default;
end;

function TZonFile.GetBool(const Path: string): Boolean;
var
  Number: cint;
begin
  Enter(Path);
  Found(zonxGetBool(FHandle, PChar(Path), @Number), Path, False);
  Result := Number <> 0;
end;

function TZonFile.GetBool(const Path: string; Default: Boolean): Boolean;
var
  Number: cint;
begin
  Enter(Path);
  if Found(zonxGetBool(FHandle, PChar(Path), @Number), Path, True) then Result := Number <> 0 else Result := Default;
end;

function TZonFile.GetString(const Path: string): string;
var
  Text: PChar;
begin
  Enter(Path);
  Found(zonxGetString(FHandle, PChar(Path), @Text), Path, False);
  Result := Text;
end;

function TZonFile.GetString(const Path, Default: string): string;
var
  Text: PChar;
begin
  Enter(Path);
  if Found(zonxGetString(FHandle, PChar(Path), @Text), Path, True) then Result := Text else Result := Default;
end;

function TZonFile.GetFileName(const Path: string): string;
var
  Text: PChar;
begin
  Enter(Path);
  Found(zonxGetFilename(FHandle, PChar(Path), @Text), Path, False);
  Result := Text;
end;

function TZonFile.GetFileName(const Path, Default: string): string;
var
  Text: PChar;
begin
  Enter(Path);
  if Found(zonxGetFilename(FHandle, PChar(Path), @Text), Path, True) then Result := Text else Result := Default;
end;

function TZonFile.GetText(const Path: string): string;
var
  Text: PChar;
begin
  Enter(Path);
  Found(zonxGetText(FHandle, PChar(Path), @Text), Path, False);
  Result := Text;
end;

{ Lists. The first call has room for most; a longer list needs a second one. }

function TZonFile.ReadIntArray(const Path: string; HasDefault: Boolean; out Values: TIntegerDynArray): Boolean;
var
  Size: csize_t;
  Status: Integer;
begin
  Values := nil;
  Size := FirstRoom;
  Enter(Path);
  repeat
    SetLength(Values, Size);
    Status := zonxGetInts(FHandle, PChar(Path), pcint(Values), Length(Values), @Size);
  until (Status <> ZONX_OK) or (Size <= csize_t(Length(Values)));
  Result := FoundList(Status, Path, Size, HasDefault);
  if Result then SetLength(Values, Size);
end;

function TZonFile.GetIntArray(const Path: string): TIntegerDynArray;
begin
  ReadIntArray(Path, False, Result);
end;

function TZonFile.GetIntArray(const Path: string; const Default: TIntegerDynArray): TIntegerDynArray;
begin
  if not ReadIntArray(Path, True, Result) then Result := Default;
end;

function TZonFile.ReadInt64Array(const Path: string; HasDefault: Boolean; out Values: TInt64DynArray): Boolean;
var
  Size: csize_t;
  Status: Integer;
begin
  Values := nil;
  Size := FirstRoom;
  Enter(Path);
  repeat
    SetLength(Values, Size);
    Status := zonxGetInt64s(FHandle, PChar(Path), pclonglong(Values), Length(Values), @Size);
  until (Status <> ZONX_OK) or (Size <= csize_t(Length(Values)));
  Result := FoundList(Status, Path, Size, HasDefault);
  if Result then SetLength(Values, Size);
end;

function TZonFile.GetInt64Array(const Path: string): TInt64DynArray;
begin
  ReadInt64Array(Path, False, Result);
end;

function TZonFile.GetInt64Array(const Path: string; const Default: TInt64DynArray): TInt64DynArray;
begin
  if not ReadInt64Array(Path, True, Result) then Result := Default;
end;

function TZonFile.ReadDoubleArray(const Path: string; HasDefault: Boolean; out Values: TDoubleDynArray): Boolean;
var
  Size: csize_t;
  Status: Integer;
begin
  Values := nil;
  Size := FirstRoom;
  Enter(Path);
  repeat
    SetLength(Values, Size);
    Status := zonxGetDoubles(FHandle, PChar(Path), pcdouble(Values), Length(Values), @Size);
  until (Status <> ZONX_OK) or (Size <= csize_t(Length(Values)));
  Result := FoundList(Status, Path, Size, HasDefault);
  if Result then SetLength(Values, Size);
end;

function TZonFile.GetDoubleArray(const Path: string): TDoubleDynArray;
begin
  ReadDoubleArray(Path, False, Result);
end;

function TZonFile.GetDoubleArray(const Path: string; const Default: TDoubleDynArray): TDoubleDynArray;
begin
  if not ReadDoubleArray(Path, True, Result) then Result := Default;
end;

function TZonFile.ReadBoolArray(const Path: string; HasDefault: Boolean; out Values: TBooleanDynArray): Boolean;
var
  Items: array of cint;
  I: Integer;
  Size: csize_t;
  Status: Integer;
begin
  Values := nil;
  Items := nil;
  Size := FirstRoom;
  Enter(Path);
  repeat
    SetLength(Items, Size);
    Status := zonxGetBools(FHandle, PChar(Path), pcint(Items), Length(Items), @Size);
  until (Status <> ZONX_OK) or (Size <= csize_t(Length(Items)));
  Result := FoundList(Status, Path, Size, HasDefault);
  if not Result then Exit;
  SetLength(Values, Size);
  for I := 0 to High(Values) do
    Values[I] := Items[I] <> 0;
end;

function TZonFile.GetBoolArray(const Path: string): TBooleanDynArray;
begin
  ReadBoolArray(Path, False, Result);
end;

function TZonFile.GetBoolArray(const Path: string; const Default: TBooleanDynArray): TBooleanDynArray;
begin
  if not ReadBoolArray(Path, True, Result) then Result := Default;
end;

function TZonFile.ReadStringArray(const Path: string; HasDefault: Boolean; out Values: TStringDynArray): Boolean;
var
  Items: array of PChar;
  I: Integer;
  Size: csize_t;
  Status: Integer;
begin
  Values := nil;
  Items := nil;
  Size := FirstRoom;
  Enter(Path);
  repeat
    SetLength(Items, Size);
    Status := zonxGetStrings(FHandle, PChar(Path), PPChar(Items), Length(Items), @Size);
  until (Status <> ZONX_OK) or (Size <= csize_t(Length(Items)));
  Result := FoundList(Status, Path, Size, HasDefault);
  if not Result then Exit;
  SetLength(Values, Size);
  for I := 0 to High(Values) do
    Values[I] := Items[I];
end;

function TZonFile.GetStringArray(const Path: string): TStringDynArray;
begin
  ReadStringArray(Path, False, Result);
end;

function TZonFile.GetStringArray(const Path: string; const Default: TStringDynArray): TStringDynArray;
begin
  if not ReadStringArray(Path, True, Result) then Result := Default;
end;

{ ---- Changing ------------------------------------------------------------------------------------------------------ }

procedure TZonFile.SetInt(const Path: string; Value: Integer);
begin
  Enter(Path);
  Done(zonxSetInt64(FHandle, PChar(Path), Value), Path);
end;

procedure TZonFile.SetInt64(const Path: string; Value: Int64);
begin
  Enter(Path);
  Done(zonxSetInt64(FHandle, PChar(Path), Value), Path);
end;

procedure TZonFile.SetDouble(const Path: string; Value: Double);
begin
  Enter(Path);
  Done(zonxSetDouble(FHandle, PChar(Path), Value), Path);
end;

procedure TZonFile.SetSingle(const Path: string; Value: Single);
begin
  Enter(Path);
  Done(zonxSetDouble(FHandle, PChar(Path), Widened(Value)), Path);
end;

procedure TZonFile.SetBool(const Path: string; Value: Boolean);
begin
  Enter(Path);
  Done(zonxSetBool(FHandle, PChar(Path), Ord(Value)), Path);
end;

procedure TZonFile.SetString(const Path, Value: string);
begin
  RequireText(Path, Value);
  Enter(Path);
  Done(zonxSetString(FHandle, PChar(Path), PChar(Value)), Path);
end;

procedure TZonFile.SetFileName(const Path, Value: string);
begin
  RequireText(Path, Value);
  Enter(Path);
  Done(zonxSetFilename(FHandle, PChar(Path), PChar(Value)), Path);
end;

procedure TZonFile.SetText(const Path, Value: string);
begin
  RequireText(Path, Value);
  Enter(Path);
  Done(zonxSetText(FHandle, PChar(Path), PChar(Value)), Path);
end;

procedure TZonFile.SetIntArray(const Path: string; const Values: array of Integer);
var
  Items: TInt64DynArray;
  I: Integer;
begin
  Items := nil;
  SetLength(Items, Length(Values));
  for I := 0 to High(Values) do
    Items[I] := Values[I];
  SetInt64Array(Path, Items);
end;

procedure TZonFile.SetInt64Array(const Path: string; const Values: array of Int64);
begin
  Enter(Path);
  Done(zonxSetInt64s(FHandle, PChar(Path), @Values, Length(Values)), Path);
end;

procedure TZonFile.SetDoubleArray(const Path: string; const Values: array of Double);
begin
  Enter(Path);
  Done(zonxSetDoubles(FHandle, PChar(Path), @Values, Length(Values)), Path);
end;

procedure TZonFile.SetBoolArray(const Path: string; const Values: array of Boolean);
var
  Items: array of cint;
  I: Integer;
begin
  Items := nil;
  SetLength(Items, Length(Values));
  for I := 0 to High(Values) do
    Items[I] := Ord(Values[I]);
  Enter(Path);
  Done(zonxSetBools(FHandle, PChar(Path), pcint(Items), Length(Items)), Path);
end;

procedure TZonFile.SetStringArray(const Path: string; const Values: array of string);
var
  Items: array of PChar;
  I: Integer;
begin
  Items := nil;
  SetLength(Items, Length(Values));
  for I := 0 to High(Values) do
  begin
    RequireText(Path, Values[I]);
    Items[I] := PChar(Values[I]);
  end;
  Enter(Path);
  Done(zonxSetStrings(FHandle, PChar(Path), PPChar(Items), Length(Items)), Path);
end;

procedure TZonFile.Remove(const Path: string);
begin
  Enter(Path);
  Done(zonxRemove(FHandle, PChar(Path)), Path);
end;

{ ---- Finding ------------------------------------------------------------------------------------------------------- }

{ Nil if there is none. }
function TZonFile.FindNode(const Path: string): Pointer;
begin
  Result := nil;
  Enter(Path);
  zonxFind(FHandle, PChar(Path), @Result);
  Leave;
end;

function TZonFile.Has(const Path: string): Boolean;
begin
  Result := FindNode(Path) <> nil;
end;

function TZonFile.Count(const Path: string): Integer;
var
  Node: Pointer;
begin
  Node := FindNode(Path);
  if Node = nil then Result := 0 else Result := zonGetNoInstances(Node);
end;

function TZonFile.Instances(const Path: string): TStringDynArray;
var
  I: Integer;
begin
  Result := nil;
  SetLength(Result, Count(Path));
  for I := 0 to High(Result) do
    Result[I] := Format('%s:%d', [Path, I + 1]);
end;

function TZonFile.RequireNode(const Path: string): Pointer;
begin
  Result := FindNode(Path);
  if Result = nil then RaiseFor(ZONX_MISSING, Path);
end;

function TZonFile.Kind(const Path: string): Integer;
begin
  Result := zonxGetKind(FindNode(Path));
end;

function TZonFile.Place(const Path: string): TZonPlace;
var
  Where: TZonxPlace;
begin
  Where := Default(TZonxPlace);
  zonxWhere(RequireNode(Path), @Where);
  Result := CopyOf(Where);
end;

function TZonFile.Remark(const Path: string): string;
var
  Text: PChar;
begin
  Text := nil;
  zonxGetRemark(RequireNode(Path), @Text);
  Result := Text;
end;

function TZonFile.NamesOf(const Path: string; WithSections: Boolean): TStringDynArray;
var
  Node: Pointer;
  Size, I: Integer;
begin
  Result := nil;
  Node := RequireNode(Path);
  if WithSections then Size := zonGetNoSections(Node) else Size := zonGetNoKeywords(Node);
  SetLength(Result, Size);
  for I := 0 to Size - 1 do
    if WithSections then Result[I] := zonGetName(zonSectionByNum(Node, I + 1))
    else Result[I] := zonGetName(zonKeywordByNum(Node, I + 1));
end;

function TZonFile.SectionNames(const Path: string): TStringDynArray;
begin
  Result := NamesOf(Path, True);
end;

function TZonFile.KeywordNames(const Path: string): TStringDynArray;
begin
  Result := NamesOf(Path, False);
end;

{ The value, or the deepest part of the path that exists. }
function TZonFile.NodeToShow(Path: string): Pointer;
begin
  Result := FindNode(Path + '[1]');
  if Result = nil then Result := FindNode(Path);
  while (Result = nil) and (Pos('/', Path) > 0) do
  begin
    Path := Copy(Path, 1, LastDelimiter('/', Path) - 1);
    Result := FindNode(Path);
  end;
  if Result = nil then Result := FHandle;
end;

function TZonFile.Error(const Path, Message, Hint: string): EZon;
var
  Collector: TCollector;
  Node: Pointer;
begin
  Collector := Default(TCollector);
  Node := NodeToShow(Path);
  Enter(Path);
  zonxReportNode(Node, ZONX_ERROR, 'host', PChar(Message), PChar(Hint), @CollectReport, @Collector);
  Leave;
  Result := EZon.Create(ZONX_OUT_OF_RANGE, ReportsOf(Collector));
end;

{ ---- Comparing ----------------------------------------------------------------------------------------------------- }

function HandleOf(ZonFile: TZonFile): Pointer;
begin
  if ZonFile = nil then Result := nil else Result := ZonFile.Handle;
end;

procedure TZonFile.Validate(Template: TZonFile);
var
  Collector: TCollector;
  Status: Integer;
begin
  Collector := Default(TCollector);
  Enter('');
  Status := zonxValidate(HandleOf(Template), FHandle, @CollectReport, @Collector);
  Leave;
  if Status <> ZONX_OK then
    RaiseReports(Status, ReportsOf(Collector), 'the file is not compared with its template');
end;

function TZonFile.Diff(Other: TZonFile; const Key: string; Relative, Absolute: Double): TZonDifferences;
var
  Collector: TCollector;
  Options: TZonxCompare;
  Status: Integer;
begin
  RequireText('the key', Key);
  Collector := Default(TCollector);
  Options.relative := Relative;
  Options.absolute := Absolute;
  Enter('');
  Status := zonxDiffByKey(FHandle, HandleOf(Other), PChar(Key), @Options, @CollectDifference, @Collector, nil);
  Leave;
  if Status <> ZONX_OK then RaiseReports(Status, nil, 'the files are not compared');
  Result := Copy(Collector.Differences, 0, Collector.DifferenceCount);
end;

procedure TZonFile.Merge(Overlay: TZonFile);
var
  Status: Integer;
begin
  Enter('');
  Status := zonxMerge(FHandle, HandleOf(Overlay));
  Leave;
  if Status <> ZONX_OK then RaiseReports(Status, nil, 'the file is not merged');
end;

procedure TZonFile.Watch(IsOn: Boolean);
begin
  Enter('');
  Done(zonxWatch(FHandle, Ord(IsOn)), '');
end;

function TZonFile.Unread: TZonReports;
var
  Collector: TCollector;
  Status: Integer;
begin
  Collector := Default(TCollector);
  Enter('');
  Status := zonxReportUnread(FHandle, @CollectReport, @Collector, nil);
  Leave;
  if Status <> ZONX_OK then RaiseReports(Status, ReportsOf(Collector), 'the file is not watched');
  Result := ReportsOf(Collector);
end;

end.
