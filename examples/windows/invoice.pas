{ Reads an invoice by name from Pascal (Free Pascal here), where BVConn.dll is registered:
    invoice.exe http://server:8080/soap session-1 INV-1001 }
program Invoice;

{$mode objfpc}{$H+}

uses
  ActiveX, ComObj, SysUtils, Variants;

procedure Run(const Server, Session, Key: WideString);
var
  Invoices, Answer: OleVariant;
begin
  Invoices := CreateOleObject('BVConn.BVInvoiceConnector');
  { Arguments may go by their names, in any order. }
  Answer := Invoices.GetInvoice(Server, strInvoiceUID := Key, aSessionID := Session);
  WriteLn('InvoiceNumber: ', Answer.Nodes.ItemByName('InvoiceNumber').Value);

  { An error has a number, a source and a message, which may be empty. }
  try
    Invoices.GetInvoice(Server, Session, 'no such key');
  except
    on Error: EOleException do
      WriteLn('Error ', IntToHex(LongWord(Error.ErrorCode), 8), ' of ', Error.Source);
  end;
end;

begin
  OleCheck(CoInitialize(nil));
  { The objects are gone when Run is done, before the library is. }
  Run(WideString(ParamStr(1)), WideString(ParamStr(2)), WideString(ParamStr(3)));
  CoUninitialize;
end.
