// Reads an invoice by name from JScript, where BVConn.dll is registered:
//   cscript //nologo invoice.js http://server:8080/soap session-1 INV-1001
var words = WScript.Arguments;

var invoices = new ActiveXObject("BVConn.BVInvoiceConnector");
var invoice = invoices.GetInvoice(words(0), words(1), words(2));
WScript.Echo("InvoiceNumber: " + invoice.Nodes.ItemByName("InvoiceNumber").Value);

// An error has a number, with its sign, and a message, which may be empty; JScript shows no source.
try {
  invoices.GetInvoice(words(0), words(1), "no such key");
} catch (error) {
  WScript.Echo("Error " + (error.number + 4294967296).toString(16).toUpperCase());
}
