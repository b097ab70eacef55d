' Calls the component by name, as an application's scripts do. Its argument is the server's address.
Option Explicit
Dim server, invoices, invoice, node, methods, count, tags

' An object that stands for its value, as a database's field does.
Class Field
  Public Default Property Get Value
    Value = "INV-1001"
  End Property
End Class

Sub Say(text)
  WScript.Echo text
End Sub

' What the statement before ended with.
Sub SayError
  Say Hex(Err.Number)
  Err.Clear
End Sub

server = WScript.Arguments(0)

Set methods = CreateObject("BVConn.BVMethods")
Say methods.GetInvoice
Set methods = CreateObject("BVConnector.BVMethods")
Say methods.getinvoice

Set invoices = CreateObject("BVConn.BVInvoiceConnector")
Set invoice = invoices.GetInvoice(server, "ANNA", "INV-1001")
Say invoice.Nodes.ItemByName("InvoiceNumber").Value
Say invoice.Nodes(0).Name & " = " & invoice.Nodes(0).Value
Say invoice.Nodes.Item(1).Name & " = " & invoice.Nodes.Item(1).Value
Say invoices.GetInvoice(server, "ANNA", New Field).Nodes(0).Value
Say TypeName(invoice.Nodes.ItemByName("Total").Value)
Say TypeName(invoice.Nodes.ItemByName("InvoiceDate").Value)
count = 0
For Each node In invoice.Nodes
  count = count + 1
Next
Say "enumerated all: " & (count > 1 And count = invoice.Nodes.Count)

Set node = CreateObject("BVConn.SoapNode")
node.Name = "Order"
node.Nodes.Create "Number", "4711"
node.Nodes.Create "Quantity", 12
node.Nodes.Create "Price", 2.5, , "double"
node.Nodes.Create "Tags", Array("a", 1, True)
node.Nodes.Create "Nothing"
Say node.Nodes.Count & " " & node.Nodes(1).Name & " " & TypeName(node.Nodes(1).Value)
Say node.Nodes(2).Type & " [" & node.Nodes(2).Namespace & "]"
tags = node.Nodes(3).Value
Say UBound(tags) & " " & tags(0) & " " & tags(1) & " " & tags(2)
Say "nil: " & node.Nodes(4).nil

On Error Resume Next
invoices.GetInvoice server, "ANNA", "NOPE"
Say Hex(Err.Number) & " | " & Err.Source & " | " & Err.Description
Err.Clear
invoices.GetInvoice server, "ANNA"
SayError
invoices.GetNothing
SayError
node.Nodes.Append Nothing
SayError
node.Nodes.Item 9
SayError
node.Nodes.Item "no number"
SayError
On Error GoTo 0

Say "END"
