"""Every operation of the interface, with arguments that a new sandbox understands: as lines for
`bvconn batch`, and what its answers come to, a line for each call. The arguments are those of the
examples in the reference."""

import json
import os
import re
import subprocess
import sys
from dataclasses import dataclass

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "docs", "reference"))
import examples  # noqa: E402

SESSION = "BVConnectorObject"
CATALOGUES = ("BVServices", "BVMethods")
LEFT_OUT = object()


@dataclass
class Call:
    cls: str
    name: str
    result: str
    arguments: list  # of (argument as `bvconn list --json` tells it, value or LEFT_OUT)

    @property
    def title(self):
        return f"{self.cls}.{self.name}"


def typed(argument, text):
    """The value of a word of the examples."""
    sign, kind = text.startswith(":="), argument["type"]
    text = text[2:] if sign else text[1:]
    if sign or kind in ("string[]", "int16", "int32"):
        return json.loads(text)
    if kind in ("boolean", "XMLDocument"):
        return text.lower() == "true"
    return text


def arguments_of(cls, member, values, url):
    texts = dict(re.fullmatch(r"(\w+)(:?=.*)", each, re.S).groups()
                 for each in examples.arguments_of(cls, member, values))
    for argument in member.get("arguments", []):
        name = argument["name"]
        if name == "aServerURL":
            value = url + "/soap"
        elif name in texts:
            value = typed(argument, texts[name])
        else:
            value = "S" if name == "aSessionID" else LEFT_OUT
        yield argument, value


def operations(interface, values, url):
    for each in interface:
        if each["class"] == SESSION:
            continue
        for member in each["members"]:
            if member["kind"] == "operation":
                yield Call(each["class"], member["name"], member["result"],
                           list(arguments_of(each["class"], member, values, url)))


def rows(interface):
    """The catalogues' properties, of which each is a call too for a host."""
    return [(each["class"], member["name"]) for each in interface for member in each["members"]
            if each["class"] in CATALOGUES]


# As requests of a batch.

def json_value(argument, value):
    if argument["type"] == "SoapNode":
        return {"xml": value}
    return {"document": True} if argument["type"] == "XMLDocument" else value


def object_name(cls):
    return "the" + cls


def batch_requests(interface, calls, url):
    """Requests, each with the title of its line; those without one are not shown."""
    for each in interface:
        yield None, {"new": each["class"], "as": object_name(each["class"])}
    for cls, row in rows(interface):
        yield f"{cls}.{row}", {"get": f"{object_name(cls)}.{row}"}

    def each_call(route):
        for call in calls:
            yield f"{route} {call.title}", {
                "call": f"{object_name(call.cls)}.{call.name}",
                "args": {argument["name"]: json_value(argument, value)
                         for argument, value in call.arguments if value is not LEFT_OUT}}

    yield from each_call("soap")
    session = object_name(SESSION)
    for name, value in (("UserName", "anna"), ("Password", "secret")):
        yield None, {"set": f"{session}.{name}", "value": value}
    yield f"{SESSION}.InitTorvexDAL", {"call": f"{session}.InitTorvexDAL",
                                       "args": {"dal_server_url": url + "/dal"}}
    yield f"{SESSION}.UseTorvexDAL", {"call": f"{session}.UseTorvexDAL", "args": {}}
    yield from each_call("dal")


# What comes back, in one line. Characters that are no plain ASCII are shown by their number, since
# hosts print in character sets of their own.

def plain(text):
    return "".join(c if " " <= c <= "~" and c != "\\" else f"\\{ord(c):04X}" for c in text)


def shown_number(value):
    return str(int(value)) if value == int(value) else repr(value)


def shown(value):
    if value is None:
        return "none"
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, (int, float)):
        return shown_number(value)
    if isinstance(value, str):
        return "'" + plain(value) + "'"
    if isinstance(value, list):
        return "[" + ",".join(map(shown, value)) + "]"
    if "date" in value:
        return value["date"].replace("T", " ")
    if "node" in value:
        return shown_node(value["node"])
    raise ValueError(f"no form for {value}")


def shown_node(node):
    if node.get("nodes"):
        return node["name"] + "{" + " ".join(map(shown_node, node["nodes"])) + "}"
    return node["name"] + ("=nil" if node.get("nil") else "=" + shown(node["value"]))


def shown_answer(answer):
    if "error" in answer:
        error = answer["error"]
        return (f"error {error['number']} source '{plain(error['source'])}' "
                f"description '{plain(error['description'])}'")
    if "usage" in answer:
        raise ValueError(answer["usage"])
    text = shown(answer["result"])
    if "document" in answer:
        text += " document '" + plain(answer["document"]) + "'"
    return text


def batch_lines(bvconn, home, interface, calls, url):
    """The titles of the lines, and the lines."""
    requests = list(batch_requests(interface, calls, url))
    text = "".join(json.dumps({"id": place, **request}) + "\n"
                   for place, (_, request) in enumerate(requests))
    output = subprocess.run([bvconn, "batch"], input=text, stdout=subprocess.PIPE, text=True,
                            env={"HOME": home, "TZ": "UTC", "PATH": os.environ["PATH"]},
                            check=True).stdout
    answers = [json.loads(line) for line in output.splitlines()]
    answers = [each for each in answers if "event" not in each]
    assert [each["id"] for each in answers] == list(range(len(requests)))
    shown = [(title, f"{title}: {shown_answer(answer)}".replace(url, "URL"))
             for (title, _), answer in zip(requests, answers) if title]
    return [title for title, _ in shown], [line for _, line in shown]
