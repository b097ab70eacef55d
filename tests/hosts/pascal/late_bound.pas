{ late_bound ADDRESS: what Free Pascal's own late binding does with the component. }
program late_bound;

{$mode objfpc}{$H+}

uses
  ActiveX, Classes, ComObj, EventSink, SysUtils, Variants, Windows;

const
  Events: TGUID = '{67B9CEFF-038A-4645-A907-C2C2CF3F9350}';

type
  TListener = class
    Count: Integer;
    procedure Called(Sender: TObject; DispID: Integer; const IID: TGUID; LocaleID: Integer;
      Flags: Word; Params: TDispParams; VarResult, ExcepInfo, ArgErr: Pointer);
  end;

procedure TListener.Called(Sender: TObject; DispID: Integer; const IID: TGUID; LocaleID: Integer;
  Flags: Word; Params: TDispParams; VarResult, ExcepInfo, ArgErr: Pointer);
begin
  Count := Count + 1;
  WriteLn('event ', DispID, ' with ', Params.cArgs, ' arguments');
end;

procedure SayError(const What: string; Error: Exception);
begin
  if Error is EOleException then
    WriteLn(What, ': ', IntToHex(LongWord(EOleException(Error).ErrorCode), 8))
  else if Error is EOleSysError then
    WriteLn(What, ': ', IntToHex(LongWord(EOleSysError(Error).ErrorCode), 8))
  else
    WriteLn(What, ': ', Error.ClassName);
end;

procedure Reads(const Server: WideString);
var
  Invoices, Invoice: OleVariant;
begin
  Invoices := CreateOleObject('BVConn.BVInvoiceConnector');
  Invoice := Invoices.GetInvoice(Server, 'ANNA', 'INV-1001');
  WriteLn(Invoice.Nodes.ItemByName('InvoiceNumber').Value);
  WriteLn('date ', VarType(Invoice.Nodes.ItemByName('InvoiceDate').Value) = varDate);
  WriteLn('double ', VarType(Invoice.Nodes.ItemByName('Total').Value) = varDouble);
  Invoice := Invoices.GetInvoice(strInvoiceUID := 'INV-1002', aSessionID := 'ANNA',
    aServerURL := Server);
  WriteLn('by names ', Invoice.Nodes.ItemByName('InvoiceUID').Value);
  Invoice := Invoices.GetInvoice(Server, strInvoiceUID := 'INV-1003', aSessionID := 'ANNA');
  WriteLn('by some names ', Invoice.Nodes.ItemByName('InvoiceUID').Value);
end;

procedure Builds;
var
  Order, Nodes, Tags: OleVariant;
  Price: Currency;
begin
  Order := CreateOleObject('BVConn.SoapNode');
  Order.Name := 'Order';
  Nodes := Order.Nodes;
  WriteLn(Nodes.Create(value := 12, name := 'Quantity').Value);
  WriteLn(Nodes.Create('Named', namespace := 'urn:x').Namespace);
  WriteLn('omitted [', Nodes.Create('Omitted', EmptyParam, 'urn:y').Namespace, ']');
  Tags := Nodes.Create('Tags', VarArrayOf(['a', 1, True])).Value;
  WriteLn(VarArrayHighBound(Tags, 1), ' ', Tags[0], ' ', Tags[1], ' ', Tags[2]);
  WriteLn(FormatDateTime('yyyy-mm-dd hh:nn', Nodes.Create('Day',
    VarFromDateTime(EncodeDate(2007, 1, 5) + EncodeTime(13, 30, 0, 0))).Value));
  Price := 2.5;
  WriteLn('currency ', VarType(Nodes.Create('Price', Price).Value) = varDouble);
  WriteLn(Order.Nodes.Count, ' ', Order.Nodes.Item(0).Name);
end;

procedure Fails(const Server: WideString);
var
  Invoices, Node: OleVariant;
begin
  Invoices := CreateOleObject('BVConn.BVInvoiceConnector');
  Node := CreateOleObject('BVConn.SoapNode');
  try
    Invoices.GetInvoice(Server, 'ANNA', 'NOPE');
  except
    on Error: EOleException do
    begin
      SayError('unknown invoice of ' + Error.Source, Error);
      WriteLn('described [', Error.Message, ']');
    end;
  end;
  try
    Node.Nodes.Item(9);
  except
    on Error: Exception do SayError('no node', Error);
  end;
  try
    Invoices.GetInvoice(Server, 'ANNA');
  except
    on Error: Exception do SayError('too few', Error);
  end;
  try
    Node.Nodes.Item('no number');
  except
    on Error: Exception do SayError('no number', Error);
  end;
  try
    Invoices.GetNothing(Server);
  except
    on Error: Exception do SayError('no member', Error);
  end;
end;

procedure Listens;
var
  Heart: OleVariant;
  Sink: TEventSink;
  Listener: TListener;
begin
  Heart := CreateOleObject('BVConn.BVHeartBeatConnector');
  Sink := TEventSink.Create(nil);
  Listener := TListener.Create;
  Sink.OnInvoke := @Listener.Called;
  Sink.Connect(Heart, Events);
  Heart.sendHeartBeat('http://127.0.0.1:9/soap', 'ANNA');
  Sink.Disconnect;
  Heart.sendHeartBeat('http://127.0.0.1:9/soap', 'ANNA');
  WriteLn('events ', Listener.Count);
  Sink.Free;
end;

begin
  CoInitialize(nil);
  { Before any reply, since the event tells of a silence. }
  Listens;
  Reads(WideString(ParamStr(1)));
  Builds;
  Fails(WideString(ParamStr(1)));
  WriteLn('END');
end.
