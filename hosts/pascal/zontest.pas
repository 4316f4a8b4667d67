{ Tests of the unit Zon: zontest FOLDER, a folder with a copy of examples/. }
program zontest;

{$mode objfpc}{$H+}

uses
  Math, SysUtils, Types, Zon;

const
  Text =
    '[Run] // settings'#10 +
    '   Cells = 40, -3, 9223372036854775807'#10 +
    '   Depth = 2.5, 1e39, 7, 3.4028235e38'#10 +
    '   Title = ''North  '''#10 +
    '   On = true, false'#10 +
    '   Names = ''a'', ''long'', '''''#10 +
    '   Holes = 1, , 3'#10 +
    '   Empty ='#10 +
    '   Chart = |maps\east.map|'#10 +
    '   Date = #2031-02-14 00:00:00#'#10 +
    'EndSect'#10 +
    '[Quay] Length = 1 EndSect [Quay] Length = 2 [Berth] EndSect EndSect'#10;

  Largest = Single(3.4028234663852886e38);

type
  TCall = procedure;

var
  Folder: string;
  Failures: Integer = 0;
  F: TZonFile;  // of the test that runs

procedure Check(IsGood: Boolean; const Name: string);
begin
  if IsGood then Exit;
  Inc(Failures);
  WriteLn('FAILED: ', Name);
end;

procedure Open(const Content: string; const Name: string = 'run.zon');
begin
  FreeAndNil(F);
  F := TZonFile.CreateFromText(Content, Name);
end;

{ A call raises EZon with this status, and the report contains a text. }
procedure CheckError(Call: TCall; Status: Integer; const Part: string);
begin
  try
    Call;
    Check(False, 'not raised: ' + Part);
  except
    on E: EZon do
      Check((E.Status = Status) and (Pos(Part, E.Message) > 0),
        Format('status %d %s, not %d %s', [E.Status, E.Message, Status, Part]));
  end;
end;

{ ---- Reading ------------------------------------------------------------------------------------------------------- }

procedure ReadString; begin F.GetInt('Run/Title', 1); end;
procedure ReadLarge; begin F.GetInt('Run/Cells[3]', 1); end;
procedure ReadSingle; begin F.GetSingle('Run/Depth[2]', 1); end;
procedure ReadMissing; begin F.GetInt('Rum/Cells'); end;
procedure ReadMissingString; begin F.GetString('Run/Tilte'); end;
procedure ReadZero; begin F.GetInt('Run/Cells'#0); end;
procedure ReadMalformed; begin F.GetInt('Run//Cells'); end;
procedure ReadInts; begin F.GetIntArray('Run/Cells', nil); end;
procedure ReadHoles; begin F.GetDoubleArray('Run/Holes', nil); end;
procedure ReadStringsOfInts; begin F.GetStringArray('Run/Cells'); end;
procedure RaiseOwn; begin raise F.Error('Run/Cells[2]', 'too few', 'use 1 or more'); end;
procedure RaiseMissing; begin raise F.Error('Run/Steps', 'too long'); end;
procedure ReadNames; begin F.KeywordNames('Rum'); end;
procedure ReadRemark; begin F.Remark('Rum'); end;
procedure ReadUnread; begin F.Unread; end;

procedure TestValues;
begin
  Open(Text);
  Check(F.Ints['run/cells'] = 40, 'integer');
  Check(F.Int64s['Run/Cells[3]'] = High(Int64), '64-bit integer');
  Check(F.Doubles['Run/Depth'] = 2.5, 'real');
  Check(F.Doubles['Run/Depth[3]'] = 7, 'an integer as a real');
  Check(F.Singles['Run/Depth[4]'] = Largest, 'the largest Single');
  Check(F.Bools['Run/On'] and not F.Bools['Run/On[2]'], 'boolean');
  Check(F.Strings['Run/Title'] = 'North  ', 'string');
  Check(Pos('maps/east.map', F.FileNames['Run/Chart']) > 0, 'file name');
  Check(F.Texts['Run/Date'] = '#2031-02-14 00:00:00#', 'text of a date');
  Check((F.GetInt('Run/X', 7) = 7) and (F.GetInt64('Run/Empty', 8) = 8) and (F.GetDouble('No/X', 1.5) = 1.5) and
    (F.GetSingle('X/', 2) = 2) and F.GetBool('Run/Off', True) and (F.GetString('Run/X', 'y') = 'y') and
    (F.GetFileName('Run/X', 'z') = 'z'), 'defaults');
  CheckError(@ReadString, ZONX_WRONG_KIND, 'run.zon:4:12: error: `Run/Title` is a string');
  CheckError(@ReadLarge, ZONX_OUT_OF_RANGE, 'run.zon:2:20: error: ');
  CheckError(@ReadSingle, ZONX_OUT_OF_RANGE, 'run.zon:3:17: error: ');
  CheckError(@ReadMissing, ZONX_MISSING, 'did you mean Run?');
  CheckError(@ReadMissingString, ZONX_MISSING, 'did you mean Title?');
  CheckError(@ReadZero, ZONX_BAD_ARGUMENT, 'zero byte');
  CheckError(@ReadMalformed, ZONX_BAD_ARGUMENT, 'Run//Cells');
  CheckError(@RaiseOwn, ZONX_OUT_OF_RANGE, 'run.zon:2:16: error: too few'#10);
  CheckError(@RaiseOwn, ZONX_OUT_OF_RANGE, 'hint: use 1 or more');
  CheckError(@RaiseMissing, ZONX_OUT_OF_RANGE, 'run.zon:1:1: error: too long');
  try
    RaiseOwn;
  except
    on E: EZon do
      Check((E.FileName = 'run.zon') and (E.Line = 2) and (E.Column = 16) and (E.Reports[0].Hint = 'use 1 or more') and
        (E.Reports[0].Place.EndColumn = 18), 'the place of an error');
  end;
end;

procedure TestArrays;
var
  Cells: TIntegerDynArray;
  Names: TStringDynArray;
  Flags: TBooleanDynArray;
  I: Integer;
begin
  Open(Text);
  Check((Length(F.GetInt64Array('Run/Cells')) = 3) and (F.GetInt64Array('Run/Cells')[2] = High(Int64)), 'integers');
  Check((Length(F.GetDoubleArray('Run/Depth')) = 4) and (F.GetDoubleArray('Run/Depth')[2] = 7), 'reals');
  Flags := F.GetBoolArray('Run/On');
  Check((Length(Flags) = 2) and Flags[0] and not Flags[1], 'booleans');
  Names := F.GetStringArray('Run/Names');
  Check((Length(Names) = 3) and (Names[1] = 'long') and (Names[2] = ''), 'strings');
  Check((Length(F.GetIntArray('Run/X', [1, 2])) = 2) and (F.GetDoubleArray('Run/Empty', nil) = nil) and
    (F.GetStringArray('Run/X', ['y'])[0] = 'y') and (Length(F.GetBoolArray('Run/X', [True])) = 1), 'defaults');
  CheckError(@ReadInts, ZONX_OUT_OF_RANGE, 'run.zon:2:20: error: ');
  CheckError(@ReadHoles, ZONX_MISSING, 'run.zon:7:14: error: ');
  CheckError(@ReadStringsOfInts, ZONX_WRONG_KIND, 'run.zon:2:12: error: ');
  Cells := nil;
  SetLength(Cells, 100000);
  for I := 0 to High(Cells) do
    Cells[I] := I;
  F.SetIntArray('Run/Cells', Cells);
  Cells := F.GetIntArray('Run/Cells');
  Check((Length(Cells) = 100000) and (Cells[99999] = 99999), 'many integers');
end;

procedure TestFinding;
var
  Path: string;
  N: Integer = 0;
begin
  Open(Text);
  Check(F.Has('Run/') and F.Has('Run/Cells[3]') and not F.Has('Run/Cells[4]') and not F.Has('//'), 'has');
  Check((F.Count('Quay') = 2) and (F.Count('Quay/Berth') = 0) and (F.Count('Run/Cells[1]') = 3), 'count');
  for Path in F.Instances('Quay') do
  begin
    Inc(N);
    Check(F.Ints[Path + '/Length'] = N, 'a loop');
  end;
  Check(N = 2, 'the end of a loop');
  Check((F.Kind('Run') = ZONX_SECTION) and (F.Kind('Run/Date[1]') = ZONX_DATETIME) and (F.Kind('Run/X') = 0), 'kinds');
  Check((F.Place('Run/Cells[2]').Column = 16) and (F.Place('Run').FileName = 'run.zon'), 'places');
  F.Texts['Run/Empty'] := '5 {new}';
  Check((F.Place('Run/Empty[1]').FileName = '') and (F.Remark('Run/Empty[1]') = 'new') and (F.Remark('Run') = ''),
    'no place, and a remark');
  CheckError(@ReadRemark, ZONX_MISSING, 'did you mean Run?');
  F.Remove('Run/Empty');
  Check((Length(F.SectionNames('')) = 3) and (F.SectionNames('')[0] = 'Run') and (F.SectionNames('Run') = nil),
    'names of sections');
  Check((Length(F.KeywordNames('Run')) = 8) and (F.KeywordNames('Run')[7] = 'Date'), 'names of keywords');
  CheckError(@ReadNames, ZONX_MISSING, 'did you mean Run?');
  CheckError(@ReadUnread, ZONX_MISSING, 'not watched');
  F.Watch;
  F.GetInt('Quay/Length');
  Check((Length(F.Unread) = 9) and (F.Unread[0].Severity = ZONX_WARNING), 'unread');
end;

{ ---- Changing ------------------------------------------------------------------------------------------------------ }

procedure SetInfinite; begin F.Doubles['Run/Step'] := Infinity; end;
procedure SetNoNumber; begin F.SetDoubleArray('Run/Step', [0, NaN]); end;
procedure SetZero; begin F.Strings['Run/Title'] := 'a'#0'b'; end;
procedure SetZeros; begin F.SetStringArray('Run/Names', ['ab', #0]); end;
procedure SetFault; begin F.Texts['Run/Step'] := '1, EndSect'; end;
procedure SetNowhere; begin F.Ints['Step'] := 1; end;
procedure RemoveMissing; begin F.Remove('Run/Steps'); end;

procedure TestSetting;
var
  Before: string;
begin
  Open('[Run]'#10'   Step = 60 // seconds'#10'EndSect'#10);
  F.Ints['Run/Step'] := 5;
  F.Int64s['Run/Large'] := High(Int64);
  F.Singles['Run/Single'] := 0.1;
  F.Singles['Run/Most'] := Largest;
  F.Singles['Run/Least'] := 1.5e-45;
  F.Doubles['Run/Double'] := 0.1;
  F.Bools['Run/On'] := True;
  F.Strings['Run/Title'] := 'it''s  ';
  F.FileNames['Run/Chart'] := 'maps/a';
  F.Texts['Run/Point'] := '1, 2.5 {m}';
  F.SetIntArray('Run/Cells', [1, -2]);
  F.SetInt64Array('Run/Longs', [3]);
  F.SetDoubleArray('Run/Doubles', [1e300]);
  F.SetBoolArray('Run/Flags', [True, False]);
  F.SetStringArray('Run/Names', ['a ', 'long']);
  F.SetIntArray('Run/None', []);
  F.Ints['Run/Part/Depth'] := 1;
  Before := F.ToText;
  Check(Before = '[Run]'#10'   Step = 5 // seconds'#10'   Large = 9223372036854775807'#10'   Single = 0.1'#10 +
    '   Most = 3.4028235e+38'#10'   Least = 1.4013e-45'#10'   Double = 0.1'#10'   On = true'#10 +
    '   Title = ''it''''s  '''#10'   Chart = |maps/a|'#10'   Point = 1, 2.5 {m}'#10'   Cells = 1, -2'#10 +
    '   Longs = 3'#10'   Doubles = 1e+300'#10'   Flags = true, false'#10'   Names = ''a '', ''long'''#10 +
    '   None = '#10'   [Part]'#10'      Depth = 1'#10'   EndSect  // Part'#10'EndSect'#10, 'what is set: ' + Before);
  CheckError(@SetInfinite, ZONX_OUT_OF_RANGE, 'Run/Step');
  CheckError(@SetNoNumber, ZONX_OUT_OF_RANGE, 'Run/Step');
  CheckError(@SetZero, ZONX_BAD_ARGUMENT, 'zero byte');
  CheckError(@SetZeros, ZONX_BAD_ARGUMENT, 'zero byte');
  CheckError(@SetFault, ZONX_FAULTY, 'Run/Step');
  CheckError(@SetNowhere, ZONX_BAD_ARGUMENT, 'Step');
  CheckError(@RemoveMissing, ZONX_MISSING, 'did you mean Step?');
  Check(F.ToText = Before, 'unchanged after each error');
  F.Remove('Run/Step');
  Check(not F.Has('Run/Step'), 'removed');
end;

{ ---- Loading, saving, comparing ------------------------------------------------------------------------------------ }

procedure LoadMissing; begin TZonFile.Create('missing.zon').Free; end;
procedure LoadZero; begin TZonFile.Create('a'#0).Free; end;
procedure LoadFaulty; begin TZonFile.Create(Folder + '/harbour-faulty.zon').Free; end;
procedure ParseZero; begin TZonFile.CreateFromText('[Run] A = 1 EndSect'#0).Free; end;
procedure SaveOther; begin F.Save(Folder + '/harbour.zon'); end;
procedure SaveNew; begin F.Save(Folder + '/harbour.zon', [zsNew]); end;
procedure SaveNowhere; begin F.Save(Folder + '/no/folder.zon'); end;
procedure SaveZero; begin F.Save('a'#0); end;
procedure SaveNameless; begin F.Save; end;
procedure ReadClosed; begin F.GetInt('Run/Cells', 1); end;
procedure SaveClosed; begin F.Save; end;
procedure ValidateNothing; begin F.Validate(nil); end;
procedure DiffNegative; begin F.Diff(F, '', -1); end;
procedure MergeNothing; begin F.Merge(nil); end;

procedure TestLoading;
begin
  CheckError(@LoadMissing, ZONX_CANNOT_OPEN, 'missing.zon');
  CheckError(@LoadZero, ZONX_BAD_ARGUMENT, 'zero byte');
  CheckError(@LoadFaulty, ZONX_FAULTY, 'harbour-faulty.zon:9:24: error: ');
  CheckError(@ParseZero, ZONX_FAULTY, '0x00');
  Check((TZonFile.Check(Folder + '/harbour-faulty.zon')[0].Related.Line = 10) and
    (TZonFile.Check(Folder + '/harbour-plain.zon') = nil), 'the reports of a file');
  Open('[A] K = 3000000000 EndSect');
  Check((Length(F.Warnings) = 1) and (F.Warnings[0].Place.Line = 1) and (F.Warnings[0].Place.Column = 9), 'a warning');
  F.Close;
  CheckError(@ReadClosed, ZONX_BAD_ARGUMENT, 'the file was closed');
  CheckError(@SaveClosed, ZONX_BAD_ARGUMENT, 'the file was closed');
end;

procedure TestSaving;
var
  Name, Before: string;
  Again: TZonFile;
begin
  Name := Folder + '/harbour-plain.zon';
  FreeAndNil(F);
  F := TZonFile.Create(Name);
  Before := F.ToText;
  F.Doubles['Quay/Length'] := 415;
  F.Save('', [zsBackup]);
  Again := TZonFile.Create(Name);
  Check(Again.ToText = StringReplace(Before, '412.5', '415.0', []), 'one number is changed');
  Again.Free;
  Check(FileExists(Name + '~'), 'the backup');
  CheckError(@SaveOther, ZONX_CHANGED, 'harbour.zon');
  CheckError(@SaveNew, ZONX_EXISTS, 'harbour.zon');
  CheckError(@SaveNowhere, ZONX_CANNOT_WRITE, 'folder.zon');
  CheckError(@SaveZero, ZONX_BAD_ARGUMENT, 'zero byte');
  FreeAndNil(F);
  F := TZonFile.CreateEmpty;
  CheckError(@SaveNameless, ZONX_BAD_ARGUMENT, 'it has no name yet');
  F.Ints['A/K'] := 1;
  F.Save(Folder + '/empty.zon', [zsOverwrite]);
  Check(Length(TZonFile.Check(Folder + '/empty.zon')) = 0, 'a file from nothing');
end;

procedure ValidateOther;
var
  Template: TZonFile;
begin
  Template := TZonFile.CreateFromText('[A()] K {>= 2} = 1.0 EndSect');
  try
    F.Validate(Template);
  finally
    Template.Free;
  end;
end;

procedure TestComparing;
var
  Other: TZonFile;
  Differences: TZonDifferences;
begin
  Open('[A] K = 1 L = 5 EndSect [A] K = 2 L = 6 EndSect');
  Other := TZonFile.CreateFromText('[A] K = 2 L = 7 EndSect [A] K = 1 L = 5 EndSect');
  Differences := F.Diff(Other, 'K');
  Check((Length(Differences) = 2) and (Differences[0].Path = 'A/L[1]') and (Differences[1].Change = zcMoved),
    'differences by a key');
  Other.Free;
  Open('[A] K = 2.0 // two'#10'EndSect');
  Other := TZonFile.CreateFromText('[A] K = 2.5 L = 1 EndSect');
  ValidateOther;
  Differences := F.Diff(Other);
  Check((Length(Differences) = 2) and (Differences[0].Change = zcDifferent) and (Differences[0].Before = '2.0') and
    (Differences[0].After = '2.5') and (Differences[1].Path = 'A/L') and (Differences[1].After = ''),
    'two differences');
  Differences := F.Diff(Other, '', 0, 0.5);
  Check((Length(Differences) = 1) and (Differences[0].Change = zcAdded), 'a tolerance');
  CheckError(@DiffNegative, ZONX_BAD_ARGUMENT, 'not compared');
  F.Merge(Other);
  Check(F.ToText = '[A] K = 2.5 // two'#10'L = 1'#10'EndSect', 'merged: ' + F.ToText);
  Other.Free;
  CheckError(@MergeNothing, ZONX_BAD_ARGUMENT, 'not merged');
  CheckError(@ValidateNothing, ZONX_BAD_ARGUMENT, 'not compared');
  F.Doubles['A/K'] := 1;
  CheckError(@ValidateOther, ZONX_MISMATCH, 'run.zon:');
end;

{ Methods compute with any numbers while the program lets no operation pass, and the functions of C with the mask that
  programs begin with. }
procedure TestFloatingPoint;
const
  Floats: array[1..6] of Single = (Largest, -Largest, 0, 0, 0.1, 1.2345679e29);
var
  Mask: TFPUExceptionMask;
  IsKept: Boolean;
  Content: string;
  Value: Pointer;
  N: Integer;
begin
  Mask := SetExceptionMask([]);
  try
    Open('[A] K = 1e400, -1e400, 1e-400, 4.9e-324, 0.1, 123456789012345678901234567890 EndSect');
    F.GetText('A/K');
    F.GetInt('A/K[4]', 1);
  except
    on EZon do;
  end;
  F.GetDouble('A/K[4]');
  F.GetSingle('A/K[5]');
  F.Doubles['A/L'] := F.GetDouble('A/K[4]');
  F.Diff(F);
  F.Merge(F);
  Content := F.ToText;
  F.Save(Folder + '/numbers.zon', [zsOverwrite]);
  IsKept := GetExceptionMask = [];
  SetExceptionMask(Mask);
  Check(IsKept, 'the mask is restored');
  for N := 1 to 6 do
  begin
    Value := zonParamByNum(zonKeywordByNum(zonTargetByNum(F.Handle, 1), 1), N);
    zonIsInt(Value);
    zonGetInt(Value);
    Check((zonGetFloat(Value) = Floats[N]) and (IsInfinite(zonGetDouble(Value)) = (N < 3)), 'a number without the class');
  end;
  Check(Pos('L = 5e-324', Content) > 0, 'the least number: ' + Content);
end;

{ Functions and types of C without the class: a chain of nodes, a record that is filled by the library, a list with a
  variable number of arguments. }
procedure TestInterfaceOfC;
var
  Quay: Pointer;
  Place: TZonxPlace;
  Handle: Pointer;
  Length: Double;
begin
  Open(Text);
  Quay := zonTargetByNameNum(F.Handle, 'quay', 2);
  Check(zonGetInt(zonParamByNum(zonKeywordByNum(Quay, 1), 1)) = 2, 'a chain of nodes');
  Place := Default(TZonxPlace);
  Check((zonxWhere(Quay, @Place) = ZONX_OK) and (Place.fileName = 'run.zon') and (Place.line = 12) and
    (Place.column = 27) and (Place.endColumn = 33) and (Place.length = 6), 'a place');
  Handle := zonCreate;
  zonAddTarget(Handle, 'A');
  zonPutListParam(Handle, 'K', 'id', 3, Double(2.5));
  Length := 0;
  Check((zonxGetDouble(Handle, 'A/K[2]', @Length) = ZONX_OK) and (Length = 2.5), 'a variable number of arguments');
  zonClose(@Handle);
  Check((Handle = nil) and (zonxGetVersion = ZONX_VERSION), 'closed');
end;

begin
  Folder := ParamStr(1);
  TestValues;
  TestArrays;
  TestFinding;
  TestSetting;
  TestLoading;
  TestSaving;
  TestComparing;
  TestFloatingPoint;
  TestInterfaceOfC;
  F.Free;
  Folder := '';
  if Failures > 0 then Halt(1);
  WriteLn('no failures');
end.
