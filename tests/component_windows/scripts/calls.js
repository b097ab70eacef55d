// Calls the component by name, as an application's scripts do. Its argument is the server's address.
function say(text) { WScript.Echo(text); }

function unsigned(number) { return (number < 0 ? number + 4294967296 : number).toString(16); }

// A node as an application has them: an object of its own with Name, Value and Nodes.
function OwnNode(name, value, children) {
  this.Name = name;
  this.Value = value;
  this.Nodes = new OwnNodes(children || []);
}
function OwnNodes(children) {
  this.children = children;
  this.Count = children.length;
  this.Item = function (index) { return this.children[index]; };
}

var server = WScript.Arguments(0);

say(new ActiveXObject("BVConn.BVMethods").GetInvoice);

var invoices = new ActiveXObject("BVConn.BVInvoiceConnector");
var invoice = invoices.GetInvoice(server, "ANNA", "INV-1001");
say(invoice.Nodes(0).Name + " = " + invoice.Nodes(0).Value);
var count = 0;
for (var each = new Enumerator(invoice.Nodes); !each.atEnd(); each.moveNext()) {
  if (each.item().Name != "") ++count;
}
say("enumerated all: " + (count > 1 && count == invoice.Nodes.Count));

var node = new ActiveXObject("BVConn.SoapNode");
node.Name = "Order";
node.Nodes.Create("Tags", ["a", 1, true]);
say(node.Nodes(0).Nodes.Count + " " + node.Nodes(0).Nodes(0).Value);
node.Nodes.Append(new OwnNode("Own", null, [new OwnNode("Inner", "text"), new OwnNode("Sum", 2.5)]));
say(node.Nodes(1).Name + " " + node.Nodes(1).Nodes.Count);
say(node.Nodes(1).Nodes(0).Name + " = " + node.Nodes(1).Nodes(0).Value);
say(node.Nodes(1).Nodes(1).Name + " = " + node.Nodes(1).Nodes(1).Value);

function number_of(action) {
  try {
    action();
    return "no error";
  } catch (error) {
    return unsigned(error.number);
  }
}

say(number_of(function () { invoices.GetInvoice(server, "ANNA", "NOPE"); }));
say(number_of(function () { node.Nodes.Append(null); }));
say(number_of(function () { node.Nodes.Item(9); }));
// Its text would be "[object Object]".
say(number_of(function () { invoices.GetInvoice(server, "ANNA", { key: "INV-1001" }); }));

say("END");
