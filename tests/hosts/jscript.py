"""Every operation of the interface as a script in JScript, which prints the lines that the answers of a
batch come to, as far as JScript knows them."""

import json
import re

import every_call
from every_call import LEFT_OUT, SESSION, object_name

FILE = "every_call.js"

PRELUDE = r"""// Creates an object of every class, calls every operation of the interface on each route, and shows
// what comes back, a line for each call. The last line is "done".

// Characters that are no plain ASCII are shown by their number, since hosts print in character sets of
// their own.
function plain(text) {
  var made = "";
  for (var i = 0; i < text.length; ++i) {
    var code = text.charCodeAt(i);
    if (code < 32 || code > 126 || code == 92) {
      made += "\\" + ("000" + code.toString(16).toUpperCase()).slice(-4);
    } else {
      made += text.charAt(i);
    }
  }
  return made;
}

function shown(value) {
  if (value === null || value === undefined) return "none";
  if (typeof value == "boolean" || typeof value == "number") return String(value);
  if (typeof value == "string") return "'" + plain(value) + "'";
  if (typeof value == "date") return "(a date)";
  if (typeof value == "unknown") {
    var items = new VBArray(value).toArray(), made = [];
    for (var i = 0; i < items.length; ++i) made.push(shown(items[i]));
    return "[" + made.join(",") + "]";
  }
  return shownNode(value);
}

// Some hosts of the language know no dates.
function valueOf(node) {
  try {
    return shown(node.Value);
  } catch (error) {
    return "(a date)";
  }
}

function shownNode(node) {
  var count = node.Nodes.Count, made = [];
  for (var i = 0; i < count; ++i) made.push(shownNode(node.Nodes.Item(i)));
  if (count > 0) return node.Name + "{" + made.join(" ") + "}";
  return node.Name + (node.nil ? "=nil" : "=" + valueOf(node));
}

// The language's own small numbers come with what carries them.
function numberOf(error) {
  var number = error.number;
  return (number & 0xFFFF0000) == (0x800A0000 | 0) ? number & 0xFFFF : number;
}

function line(title, action, more) {
  try {
    var text = shown(action());
    WScript.Echo(title + ": " + text + (more ? more() : ""));
  } catch (error) {
    WScript.Echo(title + ": error " + numberOf(error) + " description '" + plain(error.message) + "'");
  }
}

function quietly(action) {
  try {
    action();
  } catch (error) {
    WScript.Echo(error.message);
  }
}

function documentOf(xml) {
  var made = new ActiveXObject("BVConn.XMLDocument");
  if (!made.load(xml)) WScript.Echo("no document: " + xml);
  return made;
}

function node(xml) { return documentOf(xml).documentElement; }

var filled;
function filledText() { return " document '" + plain(filled.xml) + "'"; }

"""


def as_shown(text):
    """What a line of a batch is here: no source of an error, and dates by that name."""
    text = re.sub(r"^(\S+ \S+: error -?\d+) source '.*?' (description )", r"\1 \2", text)
    return re.sub(r"(?<==)\d{4}-\d\d-\d\d \d\d:\d\d:\d\d(?=[ }]|$)", "(a date)", text)


def argument_text(argument, value):
    # The language has no words for an argument that is left out before others.
    if value is LEFT_OUT:
        value = argument["default"]
    if argument["type"] == "SoapNode":
        return f"node({json.dumps(value)})"
    return "filled" if argument["type"] == "XMLDocument" else json.dumps(value)


def call_line(call, route):
    arguments = list(call.arguments)
    while arguments and arguments[-1][1] is LEFT_OUT:
        arguments.pop()
    words = [argument_text(argument, value) for argument, value in arguments]
    action = f"{object_name(call.cls)}.{call.name}({', '.join(words)})"
    make, more = "", ""
    if "filled" in words:
        make, more = 'filled = new ActiveXObject("BVConn.XMLDocument"); ', ", filledText"
    back = "" if call.result == "none" else "return "
    return f'line("{route} {call.title}", function () {{ {make}{back}{action}; }}{more});'


def script(interface, calls, url):
    lines = []
    for each in interface:
        name = each["class"]
        lines.append(f'var {object_name(name)} = new ActiveXObject("BVConn.{name}");')
    for cls, row in every_call.rows(interface):
        lines.append(f'line("{cls}.{row}", function () {{ return {object_name(cls)}.{row}; }});')
    lines += [call_line(call, "soap") for call in calls]
    session = object_name(SESSION)
    lines += [f'quietly(function () {{ {session}.UserName = "anna"; {session}.Password = "secret"; }});',
              f'line("{SESSION}.InitTorvexDAL", function () {{ '
              f'{session}.InitTorvexDAL({json.dumps(url + "/dal")}); }});',
              f'line("{SESSION}.UseTorvexDAL", function () {{ {session}.UseTorvexDAL(); }});']
    lines += [call_line(call, "dal") for call in calls]
    lines.append('WScript.Echo("done");')
    return PRELUDE + "\n".join(lines) + "\n"
