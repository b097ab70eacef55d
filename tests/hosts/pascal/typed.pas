{ typed ADDRESS: calls by the interfaces that Free Pascal's importer made of the type library. }
program typed;

{$mode delphi}{$H+}

uses
  ActiveX, Classes, ComObj, SysUtils, Variants, BVConnector_1_0_TLB;

type
  TListener = class
    procedure Failed(Sender: TObject);
  end;

procedure TListener.Failed(Sender: TObject);
begin
  WriteLn('the heart beat failed');
end;

procedure Run(const Server: WideString);
var
  Methods: _BVMethods;
  Invoices: _BVInvoiceConnector;
  Invoice, Node, Order: _SoapNode;
  Session: _BVConnectorObject;
  Beats: TEvsBVHeartBeatConnector;
  Listener: TListener;
begin
  { Before any reply, since the event tells of a silence. }
  Beats := TEvsBVHeartBeatConnector.Create(nil);
  Listener := TListener.Create;
  Beats.OnHeartBeatError := Listener.Failed;
  Beats.ComServer.sendHeartBeat('http://127.0.0.1:9/soap', 'ANNA', False);

  Methods := CoBVMethods.Create;
  WriteLn(Methods.GetInvoice);
  Invoices := CoBVInvoiceConnector.Create;
  Invoice := Invoices.GetInvoice(Server, 'ANNA', 'INV-1001');
  Node := Invoice.Nodes.ItemByName('InvoiceNumber', '');
  WriteLn(Node.Name, ' ', Node.Value);

  Order := CoSoapNode.Create;
  Order.Name := 'Order';
  Order.Value := 7;
  WriteLn(Order.Name, ' ', Order.Value, ' ', Order.nil_);

  Session := CoBVConnectorObject.Create;
  WriteLn('by dal ', Session.UsingTorvexDAL);
  Session.AllowDisabledDALMethods := True;
  WriteLn('allowed ', Session.AllowDisabledDALMethods);

  try
    Invoices.GetInvoice(Server, 'ANNA', 'NOPE');
  except
    on Error: EOleException do
      WriteLn(IntToHex(LongWord(Error.ErrorCode), 8), ' of ', Error.Source);
  end;
end;

begin
  CoInitialize(nil);
  Run(WideString(ParamStr(1)));
  WriteLn('END');
end.
