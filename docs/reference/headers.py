"""The words of the public headers: what stands above each class and each member."""

import os
import re
from dataclasses import dataclass, field

ROUTE = re.compile(r'Route: (?:[^.`"]|`[^`]*`|"[^"]*")*\.')


@dataclass
class Words:
    """A comment, taken apart."""

    text: str = ""
    route: str = ""
    params: dict = field(default_factory=dict)
    throws: list = field(default_factory=list)


@dataclass
class Declaration:
    name: str
    code: str
    line: int
    words: Words
    group: Words  # of the comment that serves several members


@dataclass
class ClassWords:
    name: str
    path: str
    line: int
    comment: str
    declarations: list = field(default_factory=list)

    def of(self, name):
        return [each for each in self.declarations if each.name == name]


def words_of(lines):
    """A comment's paragraphs are kept apart by an empty line."""
    words = Words()
    parts = [""]
    keys = [("text", None)]
    for line in map(str.strip, lines):
        begin = re.match(r"@(param|throws)\s+(\S+)\s+(.*)", line)
        if begin:
            keys.append((begin[1], begin[2]))
            parts.append(begin[3])
        elif line.startswith("Route: ") and keys[-1][0] != "text":
            keys.append(("text", None))  # what follows @param is words about the whole again
            parts.append(line)
        else:
            parts[-1] += ("\n\n" if not line else " " if parts[-1] else "") + line
    for (kind, name), part in zip(keys, parts):
        part = re.sub(r"\s*\n\n\s*", "\n\n", part.strip())
        if kind == "param":
            words.params[name] = part
        elif kind == "throws":
            words.throws.append(part)
        else:
            words.text = (words.text + " " + part).strip()
    route = ROUTE.search(words.text)
    if route:
        words.route = route[0]
        words.text = words.text.replace(route[0], "").replace("  ", " ").strip()
    return words


def declared_name(declaration):
    """The name before the arguments, or before the end; arguments of templates are none."""
    plain = declaration
    while "<" in plain:
        shorter = re.sub(r"<[^<>]*>", "", plain)
        if shorter == plain:
            break
        plain = shorter
    name = re.search(r"(~?\w+)\s*[(;{=]", plain)
    return name[1] if name else ""


def comment_text(line):
    return line.strip().lstrip("/").strip()


def in_lines(declaration, width=96):
    """A declaration that is too long for a line, with its arguments below each other."""
    if len(declaration) <= width or "(" not in declaration:
        return declaration
    begin = declaration.index("(") + 1
    return declaration[:begin] + declaration[begin:].replace(", ", ",\n" + " " * begin)


class _ClassReader:
    def __init__(self, found, service_objects):
        self.found = found
        self.service_objects = service_objects
        self.own, self.group, self.code = [], [], []
        self.served = False
        self.first = 0

    def read(self, number, line):
        bare = line.strip()
        if bare.startswith("#"):
            if bare.startswith("#define BVCONN_SERVICE_OBJECT("):
                for name in self.service_objects:
                    self._add(name, [bare.split(")", 1)[1].replace("name", name)], number)
                self.own = []
        elif self.code or not (not bare or bare.startswith("//") or bare.endswith(":")):
            self._read_code(number, bare)
        elif not bare.startswith("//"):  # an empty line, or "public:"
            self.group, self.served = [], False
        elif bare.startswith("///"):
            self.own.append(comment_text(bare))
        else:
            if self.served:
                self.group, self.served = [], False
            self.group.append(comment_text(bare))

    def _read_code(self, number, bare):
        self.first = self.first if self.code else number
        self.code.append(bare)
        if bare.endswith((";", "}")):
            name = declared_name(" ".join(self.code))
            self._add(name, self.code, self.first)
            self.own, self.code = [], []

    def _add(self, name, lines, number):
        self.served = True
        text = in_lines(re.sub(r"\s*\{.*\}$", ";", " ".join(lines).strip()))
        self.found.declarations.append(Declaration(
            name, text, number, words_of(self.own), words_of(self.group)))


def read_header(path, text, service_objects=()):
    """The exported classes of one header."""
    classes, reader, comment = [], None, []
    for number, line in enumerate(text.splitlines(), 1):
        opening = re.match(r"class BVCONN_EXPORT (\w+) (?::.*)?\{", line)
        if opening:
            classes.append(ClassWords(opening[1], path, number, words_of(comment).text))
            reader = _ClassReader(classes[-1], service_objects)
        elif reader:
            if line in ("};", " private:"):
                reader = None
            else:
                reader.read(number, line)
        elif line.startswith("///"):
            comment.append(comment_text(line))
        else:
            comment = []
    return classes


def read_headers(root):
    """All exported classes below bvconn/, by name."""
    rows = os.path.join(root, "bvconn/platform/torvexlib/service_object_rows.inc")
    with open(rows, encoding="utf-8") as file:
        objects = re.findall(r"^BVCONN_SERVICE_OBJECT\((\w+)", file.read(), re.M)
    found = {}
    for folder, _, names in sorted(os.walk(os.path.join(root, "bvconn"))):
        for name in sorted(names):
            if name.endswith(".h"):
                path = os.path.join(folder, name)
                with open(path, encoding="utf-8") as file:
                    for each in read_header(os.path.relpath(path, root), file.read(), objects):
                        found[each.name] = each
    return found
