"""Reads the literal table of the interface into the form of `bvconn list --json`."""

import re

import facts

USUAL = {"string": "", "boolean": False, "int16": 0, "int32": 0, "SoapNode": None, "variant": None}


def argument(text):
    name, kind, mark, default = re.fullmatch(r'(\w+): ([\w\[\]]+)(\??)(?: = "(.*)")?',
                                             text).groups()
    made = {"name": name, "type": kind, "optional": bool(mark)}
    if mark:
        made["default"] = USUAL[kind] if default is None else default
    return made


def member(text):
    if text.endswith(", event"):
        return {"name": text.removesuffix(", event"), "kind": "event"}
    head, _, tail = text.partition(" -> ")
    name, brackets, rest = head.partition("(")
    result = tail.split(", ")
    made = {"name": name, "result": result[0]}
    if tail.startswith('"'):
        return {**made, "kind": "property", "result": "string", "readable": True, "writable": False}
    if brackets:
        made["arguments"] = [argument(each) for each in rest.removesuffix(")").split(", ") if each]
    if len(result) == 1 and brackets:
        return {**made, "kind": "operation"}
    return {**made, "kind": "property", "readable": "read" in result or len(result) == 1,
            "writable": "written" in result}


def classes(path):
    entries = []
    for line in facts.literal_lines(path):
        if line.startswith(" "):
            entries[-1] += " " + line.strip()
        else:
            entries.append(line)
    made = {}
    for entry in entries:
        name, _, rest = entry.partition(".")
        made.setdefault(name, []).append(member(rest))
    return [{"class": name, "members": members} for name, members in made.items()]
