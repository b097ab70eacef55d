"""Every operation of the interface as a script in VBScript, which prints the lines that the answers of a
batch come to."""

import every_call
from every_call import LEFT_OUT, SESSION, object_name

FILE = "every_call.vbs"

PRELUDE = """\
' Creates an object of every class, calls every operation of the interface on each route, and shows
' what comes back, a line for each call. The last line is "done".
Option Explicit

' Characters that are no plain ASCII are shown by their number, since hosts print in character sets of
' their own; those of the sandbox's texts are all in Latin 1.
Function CodeOf(c)
  CodeOf = Asc(c)
  If CodeOf < 0 Then CodeOf = CodeOf + 65536
End Function

Function Digits(number, count)
  Digits = Right("000" & CStr(number), count)
End Function

Function Plain(text)
  Dim i, c, code, made
  made = ""
  For i = 1 To Len(text)
    c = Mid(text, i, 1)
    code = CodeOf(c)
    If code < 32 Or code > 126 Or code = 92 Then
      made = made & "\\" & Right("000" & Hex(code), 4)
    Else
      made = made & c
    End If
  Next
  Plain = made
End Function

Function ShownDate(value)
  ShownDate = Year(value) & "-" & Digits(Month(value), 2) & "-" & Digits(Day(value), 2) & " " & _
      Digits(Hour(value), 2) & ":" & Digits(Minute(value), 2) & ":" & Digits(Second(value), 2)
End Function

Function ShownArray(values)
  Dim i, made
  made = ""
  For i = LBound(values) To UBound(values)
    If i > LBound(values) Then made = made & ","
    made = made & Shown(values(i))
  Next
  ShownArray = "[" & made & "]"
End Function

Function Shown(value)
  If IsObject(value) Then
    If value Is Nothing Then
      Shown = "none"
    Else
      Shown = ShownNode(value)
    End If
  ElseIf IsArray(value) Then
    Shown = ShownArray(value)
  Else
    Select Case VarType(value)
      Case vbEmpty, vbNull
        Shown = "none"
      Case vbBoolean
        If value Then Shown = "true" Else Shown = "false"
      Case vbDate
        Shown = ShownDate(value)
      Case vbString
        Shown = "'" & Plain(value) & "'"
      Case Else
        Shown = CStr(value)
    End Select
  End If
End Function

Function ShownNode(node)
  Dim count, i, made
  count = node.Nodes.Count
  made = ""
  If count > 0 Then
    For i = 0 To count - 1
      If i > 0 Then made = made & " "
      made = made & ShownNode(node.Nodes.Item(i))
    Next
    ShownNode = node.Name & "{" & made & "}"
  ElseIf node.nil Then
    ShownNode = node.Name & "=nil"
  Else
    ShownNode = node.Name & "=" & Shown(node.Value)
  End If
End Function

Sub Line(title, result, more)
  If Err.Number <> 0 Then
    WScript.Echo title & ": error " & Err.Number & " source '" & Plain(Err.Source) & _
        "' description '" & Plain(Err.Description) & "'"
    Err.Clear
  Else
    WScript.Echo title & ": " & Shown(result) & more
  End If
End Sub

' A variant may hold an object, which only a parameter takes as well as a value.
Sub Keep(value)
  If IsObject(value) Then
    Set result = value
  Else
    result = value
  End If
End Sub

Function Document(xml)
  Set Document = CreateObject("BVConn.XMLDocument")
  If Not Document.load(xml) Then WScript.Echo "no document: " & xml
End Function

Function Node(xml)
  Set Node = Document(xml).documentElement
End Function

"""


def as_shown(line):
    return line


def text(value):
    return '"' + value.replace('"', '""') + '"'


def literal(value):
    if isinstance(value, bool):
        return "True" if value else "False"
    if isinstance(value, list):
        return "Array(" + ", ".join(map(literal, value)) + ")"
    return text(value) if isinstance(value, str) else str(value)


def argument_text(argument, value):
    if value is LEFT_OUT:
        return ""
    if argument["type"] == "SoapNode":
        return f"Node({text(value)})"
    return "filled" if argument["type"] == "XMLDocument" else literal(value)


def call_lines(call, route):
    words = [argument_text(argument, value) for argument, value in call.arguments]
    while words and words[-1] == "":
        words.pop()
    target = f"{object_name(call.cls)}.{call.name}({', '.join(words)})"
    more = '""'
    if "filled" in words:
        yield 'Set filled = CreateObject("BVConn.XMLDocument")'
        more = '" document \'" & Plain(filled.xml) & "\'"'
    if call.result == "none":
        yield "Call " + target
    elif call.result == "variant":
        yield "Keep " + target
    elif call.result == "SoapNode":
        yield "Set result = " + target
    else:
        yield "result = " + target
    yield f'Line "{route} {call.title}", {"Empty" if call.result == "none" else "result"}, {more}'


def script(interface, calls, url):
    lines = ["On Error Resume Next", "Dim result, filled"]
    names = [each["class"] for each in interface]
    lines += [f"Dim {object_name(name)}" for name in names]
    for name in names:
        lines.append(f'Set {object_name(name)} = CreateObject("BVConn.{name}")')
        lines.append(f'If Err.Number <> 0 Then Line "{name}", Empty, ""')
    for cls, row in every_call.rows(interface):
        lines += [f"result = {object_name(cls)}.{row}", f'Line "{cls}.{row}", result, ""']
    for call in calls:
        lines += call_lines(call, "soap")
    session = object_name(SESSION)
    lines += [f'{session}.UserName = "anna"', f'{session}.Password = "secret"',
              f'Call {session}.InitTorvexDAL({text(url + "/dal")})',
              f'Line "{SESSION}.InitTorvexDAL", Empty, ""', f"Call {session}.UseTorvexDAL()",
              f'Line "{SESSION}.UseTorvexDAL", Empty, ""']
    for call in calls:
        lines += call_lines(call, "dal")
    lines.append('WScript.Echo "done"')
    return PRELUDE + "\n".join(lines) + "\n"
