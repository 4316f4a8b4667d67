{ A host in Free Pascal. }
program host;
{$mode objfpc}
uses ctypes;

function zonLoadFile(name: PChar; quiet: cint): Pointer; cdecl; external 'zon';
function zonFindSectionByHandle(f: Pointer; path: PChar): Pointer; cdecl; external 'zon';
function zonKeywordByNameNum(s: Pointer; name: PChar; n: cuint): Pointer; cdecl; external 'zon';
function zonParamByNum(keyword: Pointer; n: cuint): Pointer; cdecl; external 'zon';
function zonGetInt(node: Pointer): cint; cdecl; external 'zon';
procedure zonPasGetDoubleProc(node: Pointer; out value: cdouble); cdecl; external 'zon';
function zonGetString(node: Pointer): PChar; cdecl; external 'zon';
function zonGetFilename(node: Pointer): PChar; cdecl; external 'zon';
function zonGetSyntaxErr(f: Pointer; out line, position: cuint; message: PPChar): PChar; cdecl; external 'zon';
procedure zonClose(var f: Pointer); cdecl; external 'zon';

var
  f: Pointer;
  line, position: cuint;
  length: cdouble;
  message: PChar;

function Value(section, keyword: PChar): Pointer;
begin
  Value := zonParamByNum(zonKeywordByNameNum(zonFindSectionByHandle(f, section), keyword, 1), 1);
end;

begin
  f := zonLoadFile(PChar(ParamStr(1)), 1);
  if f = nil then Halt(1);
  WriteLn(zonGetInt(Value('Harbour', 'Basins')));
  zonPasGetDoubleProc(Value('Quay:2', 'Length'), length);
  WriteLn(length:0:2);
  WriteLn(zonGetString(Value('Quay:2/Berth', 'Foreman')));
  WriteLn(zonGetFilename(Value('Traffic/Ship', 'Papers')));
  zonClose(f);

  f := zonLoadFile(PChar(ParamStr(2)), 1);
  message := zonGetSyntaxErr(f, line, position, nil);
  WriteLn(line, ':', position, ': ', message);
  zonClose(f);
end.
