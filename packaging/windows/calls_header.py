"""calls_header.py IDL OUT: writes BVConn.h, the library's classes for programs in C++ on Windows, from its
interface definition."""

import os
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))

# What an argument is taken as, and what a result is made of a Variant by.
ARGUMENTS = {"BSTR": "const std::wstring&", "VARIANT_BOOL": "bool", "short": "std::int16_t",
             "long": "std::int32_t", "VARIANT": "const Variant&", "IDispatch *": "const Object&",
             "SAFEARRAY(BSTR)": "const std::vector<std::wstring>&"}
RESULTS = {"BSTR": ("std::wstring", "{}.text()"), "VARIANT_BOOL": ("bool", "{}.boolean()"),
           "short": ("std::int16_t", "static_cast<std::int16_t>({}.number())"),
           "long": ("std::int32_t", "{}.number()"), "VARIANT": ("Variant", "{}"),
           "SAFEARRAY(unsigned char)": ("Variant", "{}"), "IDispatch *": ("Object", "Object({})"),
           "void": ("void", "{}")}
FLAGS = {"": "DISPATCH_METHOD", "propget": "DISPATCH_PROPERTYGET", "propput": "DISPATCH_PROPERTYPUT",
         "propputref": "DISPATCH_PROPERTYPUTREF"}
KEYWORDS = {"namespace", "type"}


def guid(text):
    words = text.split("-")
    last = words[3] + words[4]
    return (f"{{0x{words[0]}, 0x{words[1]}, 0x{words[2]}, "
            f"{{{', '.join('0x' + last[i:i + 2] for i in range(0, 16, 2))}}}}}")


def default(kind, text):
    if text is None:
        return "Variant::missing()"
    if kind == "BSTR":
        return "L" + text
    return {"VARIANT_BOOL": "false" if text == "0" else "true", "IDispatch *": "{}"}.get(kind, text)


def argument(attributes, kind, name):
    name += "_" if name in KEYWORDS else ""
    text = f"{ARGUMENTS[kind]} {name}"
    if "optional" in attributes:
        given = re.search(r"defaultvalue\((.*)\)", attributes)
        text += " = " + default(kind, given and given.group(1))
    return text, name


def function(member):
    number, attributes, result, name, words = member
    access = re.search(r"prop(get|putref|put)", attributes)
    access = access.group(0) if access else ""
    arguments = [argument(*each) for each in re.findall(
        r"\[in((?:\"[^\"]*\"|[^\]\"])*)\] (\w+(?:\([\w ]+\))?(?: \*)?) ?(\w+)", words)]
    # A result is an object of a class here, which a function may be named like.
    made = re.fullmatch(r"_(\w+) \*", result)
    kind, back = (f"com::{made.group(1)}", "com::" + made.group(1) + "({})") if made \
        else RESULTS[result]
    call = f"call({number}, {FLAGS[access]}, {{{', '.join(name for _, name in arguments)}}})"
    statement = back.format(call)
    return (f"  {kind} {name}({', '.join(text for text, _ in arguments)}) const {{ "
            f"{'' if kind == 'void' else 'return '}{statement}; }}")


def classes(idl):
    made = {name: (identifier, attributes, body) for identifier, attributes, name, body in re.findall(
        r"\[uuid\(([\w-]+)\)([^\]]*)\]\n  coclass (\w+) \{(.*?)\n  \};", idl, re.S)}
    events = dict(re.findall(r"\[uuid\(([\w-]+)\)\]\n  dispinterface (__\w+) \{", idl))
    events = {name: identifier for identifier, name in events.items()}
    found = re.findall(r"\[uuid\([\w-]+\)\]\n  dispinterface _(?!_)(\w+) \{(.*?)\n  \};", idl, re.S)
    yield "\n".join(f"class {name};" for name, _ in found) + "\n"
    bodies = []
    for name, body in found:
        identifier, attributes, rows = made[name]
        lines = [f"class {name} : public Object {{", " public:", "  using Object::Object;"]
        if "noncreatable" not in attributes:
            lines.append(f"  static {name} create() {{ return {name}(made({guid(identifier)})); }}")
        source = re.search(r"\[default, source\] dispinterface (\w+);", rows)
        if source:
            lines.append(f"  static constexpr IID kEvents{guid(events[source.group(1)])};")
        functions = []
        for member in re.findall(r"^      \[id\((-?\d+)\)((?:\"[^\"]*\"|[^\]\"])*)\] (.*?[ *])(\w+)\((.*?)\);$",
                                 body, re.S | re.M):
            if "hidden" not in member[1]:
                functions.append((member[0], member[1], member[2].strip(), member[3], member[4]))
        # Bodies come after all classes, since each may be made by another.
        for each in functions:
            text = function(each)
            head, statement = text.split(" const { ", 1)
            lines.append(head + " const;")
            kind, rest = re.fullmatch(r"  (\S+) (.*)", head, re.S).groups()
            plain = re.sub(r" = (L\"[^\"]*\"|Variant::missing\(\)|[^,)]*)", "", rest)
            bodies.append(f"inline {kind} {name}::{plain} const {{ {statement}")
        lines.append("};\n")
        yield "\n".join(lines)
    yield "\n".join(bodies) + "\n"


def header(idl):
    with open(os.path.join(HERE, "BVConn.h.in"), encoding="utf-8") as file:
        return file.read().replace("@CLASSES@", "\n".join(classes(idl)).rstrip("\n"))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding="utf-8") as source_file:
        text_made = header(source_file.read())
    with open(sys.argv[2], "w", encoding="utf-8") as made_file:
        made_file.write(text_made)
