{ A host in Free Pascal: loads the settings of a run, changes two values and saves the file with its comments:

      run FILE

  An error of the file ends the program with a report. The errors of the host's own are only printed. The same as
  run.f90 and run.py. }
program run;

{$mode objfpc}{$H+}

uses
  SysUtils, Types, Zon;

procedure Change(F: TZonFile);
var
  Step, Threads: Integer;
  Tolerances: TDoubleDynArray;
  Quay: string;
  Problem: EZon;
begin
  Step := F.GetInt('Run/Step', 30);
  Threads := F.GetInt('Run/Threads', 4);  // the file has none
  Tolerances := F.GetDoubleArray('Run/Tolerance');
  WriteLn(F.GetString('Run/Title', 'untitled'));
  WriteLn('step ', Step, ' s, ', Threads, ' threads');
  WriteLn(Length(Tolerances), ' tolerances, the first ', Tolerances[0]:0:4);

  for Quay in F.Instances('Quay') do
  begin
    WriteLn(F.Strings[Quay + '/Name'], ': ', F.Doubles[Quay + '/Length']:0:1, ' m');
    if F.Doubles[Quay + '/Length'] > 200 then
    begin
      Problem := F.Error(Quay + '/Length', 'longer than 200 m');
      WriteLn(Problem.Message);
      Problem.Free;  // an error that stops would be raised: raise F.Error(...)
    end;
  end;

  F.Ints['Run/Step'] := Step div 2;
  F.Doubles['Quay:2/Length'] := 98.25;
  F.Save;
end;

var
  F: TZonFile = nil;

begin
  try
    try
      F := TZonFile.Create(ParamStr(1));
      Change(F);
    finally
      F.Free;
    end;
  except
    on E: EZon do
    begin
      WriteLn(StdErr, E.Message);
      Halt(1);
    end;
  end;
end.
