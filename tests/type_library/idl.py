"""Reads the interface definition of the type library into facts."""

import re

TYPES = {"void": "none", "BSTR": "string", "VARIANT_BOOL": "boolean", "short": "int16",
         "long": "int32", "VARIANT": "variant", "IDispatch *": "object", "IUnknown *": "unknown",
         "SAFEARRAY(BSTR)": "string[]", "SAFEARRAY(unsigned char)": "byte[]"}
ACCESS = {"propget": "get", "propput": "put", "propputref": "putref"}


def type_word(text):
    text = text.strip()
    return TYPES[text] if text in TYPES else "*" + text.removesuffix("*").strip()


def split_outside_brackets(text):
    """At commas, but for those within brackets and quotes."""
    parts, depth, quoted = [""], 0, False
    for c in text:
        quoted ^= c == '"'
        depth += (c in "([") - (c in ")]") if not quoted else 0
        if c == "," and depth == 0 and not quoted:
            parts.append("")
        else:
            parts[-1] += c
    return [part.strip() for part in parts if part.strip()]


def default_text(kind, attributes):
    for each in attributes:
        if each.startswith("defaultvalue("):
            value = each[len("defaultvalue("):-1]
            words = {"boolean": {"0": "false", "-1": "true"}, "object": {"0": "null"}}
            return " default=" + words.get(kind, {}).get(value, value)
    return ""


def argument_line(text, is_value):
    attributes, kind, name = re.fullmatch(r"\[(.*?)\] (.*?)(\w+)", text).groups()
    attributes = split_outside_brackets(attributes)
    kind = type_word(kind)
    assert attributes[0] == "in", text
    optional = " optional" if "optional" in attributes else ""
    return (f"argument {'-' if is_value else name} {kind} in{optional}"
            f"{default_text(kind, attributes)}")


def member_lines(statement):
    attributes, kind, name, arguments = re.fullmatch(
        r"\[(.*?)\] (SAFEARRAY\([\w ]+\) |[^(]*?)(\w+)\((.*)\)", statement).groups()
    attributes = split_outside_brackets(attributes)
    number = re.fullmatch(r"id\((-?\d+)\)", attributes[0])[1]
    access = next((ACCESS[each] for each in attributes if each in ACCESS), "method")
    flags = "".join(" " + each for each in attributes if each in ("hidden", "restricted"))
    yield f"member {number} {access} {name} {type_word(kind)}{flags}"
    arguments = split_outside_brackets(arguments)
    for place, each in enumerate(arguments, 1):
        yield argument_line(each, access.startswith("put") and place == len(arguments))


def interface_facts(text):
    for uuid, name, body in re.findall(
            r"\[uuid\(([-0-9A-F]+)\)\]\s*dispinterface (\w+) \{\s*properties:\s*methods:(.*?)\};",
            text, re.S):
        statements = [" ".join(each.split()) for each in body.split(";") if each.strip()]
        yield (f"interface {name} {{{uuid}}}",
               [line for each in statements for line in member_lines(each)])


def class_facts(text):
    for attributes, name, body in re.findall(r"\[(uuid[^\]]*)\]\s*coclass (\w+) \{(.*?)\};", text,
                                             re.S):
        attributes = split_outside_brackets(attributes)
        line = f"class {name} {{{attributes[0][5:-1]}}}"
        for marks, interface in re.findall(r"\[([\w, ]+)\] dispinterface (\w+);", body):
            marks = marks.split(", ")
            line += f" {marks[0]}{'-events' if 'source' in marks else ''}={interface}"
        line += " appobject" if "appobject" in attributes else ""
        line += "" if "noncreatable" in attributes else " creatable"
        yield line, []


def facts(text):
    uuid, version, name = re.search(
        r"\[uuid\(([-0-9A-F]+)\), version\(([\d.]+)\).*?\]\s*library (\w+)", text).groups()
    return {f"library {name} {{{uuid}}} {version}": [], **dict(interface_facts(text)),
            **dict(class_facts(text))}
