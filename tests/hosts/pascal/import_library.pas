{ import_library FILE: what Free Pascal makes of a type library, as the unit NAME_TLB.pas in this folder. }
program import_library;

{$mode objfpc}{$H+}

uses
  ActiveX, Classes, TypeLib;

var
  UnitName, Package, Registration, Text: string;
  Others: TStringList;
  Target: TextFile;
begin
  CoInitialize(nil);
  Others := TStringList.Create;
  Text := ImportTypelib(WideString(ParamStr(1)), UnitName, Others, False, False, False, Package,
    Registration);
  WriteLn(UnitName, ' needs ', Others.Count, ' others');
  AssignFile(Target, UnitName + '.pas');
  Rewrite(Target);
  Write(Target, Text);
  CloseFile(Target);
end.
