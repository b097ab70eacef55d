"""What a type library holds, as facts: a mapping from a heading ("class …", "interface …") to the lines
below it, from each place that knows it. The lines are those of list_type_library."""

import json
import re

# Hosts may use these without making an object.
PREDECLARED = ("BVConnectorObject", "BVServices", "BVMethods")
OBJECTS = ("SoapNode", "SoapEnvelope", "HTTPTransport")


def result_type(word):
    return "*_" + word if word in OBJECTS else word


def argument_type(word):
    """The caller's own objects may be nodes and documents too."""
    return "object" if word in ("SoapNode", "XMLDocument") else word


def literal_lines(path):
    with open(path, encoding="utf-8") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                yield line.rstrip("\n")


def default_text(kind, value):
    """A variant that is left out is seen to be; all others have a value that stands for it."""
    if kind == "variant":
        return ""
    return " default=" + json.dumps(value, ensure_ascii=False)


def member_lines(number, member):
    """Of a member in the form of `bvconn list --json`."""
    if member["kind"] == "event":
        return
    arguments = [f"argument {each['name']} {argument_type(each['type'])} in" +
                 (" optional" + default_text(each["type"], each["default"])
                  if each["optional"] else "") for each in member.get("arguments", [])]
    head = f"member {number}"
    if member["kind"] == "operation":
        yield f"{head} method {member['name']} {result_type(member['result'])}"
        yield from arguments
        return
    if member["readable"]:
        yield f"{head} get {member['name']} {result_type(member['result'])}"
        yield from arguments
    if member["writable"]:
        yield f"{head} put {member['name']} none"
        yield f"argument - {argument_type(member['result'])} in"


def interface_facts(classes, ids):
    facts = {}
    for each in classes:
        name = each["class"]
        facts[f"interface _{name} {ids['members of ' + name]}"] = [
            line for number, member in enumerate(each["members"], 1)
            for line in member_lines(number, member)]
        events = [member["name"] for member in each["members"] if member["kind"] == "event"]
        if events:
            facts[f"interface __{name} {ids['events of ' + name]}"] = [
                f"member {number} method {event} none"
                for number, event in enumerate(events, 1)]
    return facts


def identifiers(path):
    """The literal table: what it names, with its identifier."""
    ids = {}
    for line in literal_lines(path):
        what, text = re.fullmatch(r"(.*?) (\{.*?\}(?: .*)?)", line).groups()
        ids[what] = text
    return ids


def class_facts(ids):
    facts = {f"library BVConnector {ids['type library']}": []}
    for what, text in ids.items():
        kind, _, name = what.partition(" ")
        if kind not in ("class", "helper", "result"):
            continue
        line = f"class {name} {text} default=_{name}"
        if "events of " + name in ids:
            line += f" default-events=__{name}"
        line += " appobject" if name in PREDECLARED else ""
        line += "" if kind == "result" else " creatable"
        facts[line] = []
    return facts


def outside_facts(path, ids):
    facts = {}
    for line in literal_lines(path):
        if line.startswith("interface"):
            name = line.split("_", 1)[1]
            lines = facts[f"{line} {ids['members of ' + name]}"] = []
        else:
            lines.append(line)
    return facts


def expected(classes, identifiers_path):
    """All but the members of the objects that are none of the public classes."""
    ids = identifiers(identifiers_path)
    return {**class_facts(ids), **interface_facts(classes, ids)}


def listed(text):
    """What list_type_library printed."""
    facts = {}
    for line in text.splitlines():
        if line.startswith("member "):
            line = re.sub(r"^member \S+ ", "member ", line)
        if line.startswith(("member ", "argument ")):
            lines.append(line)
        else:
            lines = facts[line] = []
    return facts


def differences(actual, wanted):
    """In words, one to a line; nothing where the two are the same."""
    for heading in wanted.keys() - actual.keys():
        yield "missing: " + heading
    for heading in actual.keys() - wanted.keys():
        yield "not known: " + heading
    for heading in wanted.keys() & actual.keys():
        have, want = actual[heading], wanted[heading]
        for place in range(max(len(have), len(want))):
            one = have[place] if place < len(have) else "nothing"
            other = want[place] if place < len(want) else "nothing"
            if one != other:
                yield f"{heading}: {one}, not {other}"
                break
