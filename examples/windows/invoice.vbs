' Reads an invoice by name from VBScript, where BVConn.dll is registered:
'   cscript //nologo invoice.vbs http://server:8080/soap session-1 INV-1001
Option Explicit
Dim invoices, invoice

Set invoices = CreateObject("BVConn.BVInvoiceConnector")
Set invoice = invoices.GetInvoice(WScript.Arguments(0), WScript.Arguments(1), WScript.Arguments(2))
WScript.Echo "InvoiceNumber: " & invoice.Nodes.ItemByName("InvoiceNumber").Value

' An error has a number, a source and a description, which may be empty.
On Error Resume Next
invoices.GetInvoice WScript.Arguments(0), WScript.Arguments(1), "no such key"
WScript.Echo "Error " & Hex(Err.Number) & " of " & Err.Source
