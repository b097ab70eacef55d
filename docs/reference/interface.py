"""All that is known of the interface, from where it is known: tool, headers and wire files."""

import json
import re
import subprocess
from dataclasses import dataclass, field

import headers
import wire_files

SESSION = "BVConnectorObject"       # what belongs to the calling thread, and is no connector
CATALOGUES = ("BVServices", "BVMethods")


@dataclass
class Member:
    cls: str
    data: dict                      # of `bvconn list --json`
    seen: dict = None               # of `bvconn describe --json`; None for a plain property
    declarations: list = field(default_factory=list)
    wire: dict = field(default_factory=dict)
    example: object = None

    @property
    def name(self):
        return self.data["name"]

    @property
    def whole_name(self):
        return f"{self.cls}.{self.name}"

    @property
    def kind(self):
        return self.data["kind"]

    @property
    def path(self):
        return f"operations/{self.whole_name}.html"

    @property
    def words(self):
        return self.declarations[0].words if self.declarations else headers.Words()

    @property
    def group(self):
        return self.declarations[0].group if self.declarations else headers.Words()

    @property
    def route(self):
        return self.words.route or self.group.route

    @property
    def summary(self):
        """The first sentence of the comment."""
        text = self.words.text or self.group.text
        return re.split(r"(?<=[.;:]) (?=[A-Z`])", text.split("\n\n")[0])[0]

    def needs_dal(self):
        return bool(self.seen and self.seen["dal"] and not self.seen["soap"])


@dataclass
class Class:
    name: str
    words: headers.ClassWords
    members: list

    @property
    def path(self):
        return f"classes/{self.name}.html"

    @property
    def is_catalogue(self):
        return self.name in CATALOGUES

    @property
    def summary(self):
        text = self.words.comment if self.words else ""
        return re.split(r"(?<=\.) (?=[A-Z`])", text.split("\n\n")[0])[0]


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def read_interface(root, tool):
    """All classes in the order of the interface."""
    seen = {}
    for line in output_of(tool, "describe", "--all", "--json").splitlines():
        each = json.loads(line)
        seen[f"{each['class']}.{each['operation']}"] = each
    declared = headers.read_headers(root)
    wire = wire_files.read_cases(root)
    classes = []
    for info in json.loads(output_of(tool, "list", "--json")):
        name = info["class"]
        words = declared.get(name)
        members = []
        for data in info["members"]:
            whole = f"{name}.{data['name']}"
            members.append(Member(name, data, seen.get(whole),
                                  words.of(data["name"]) if words else [], wire.get(whole, {})))
        classes.append(Class(name, words, members))
    return classes


def pages_of(classes):
    """The members that have a page of their own: all but the rows of the catalogues."""
    return [member for each in classes if not each.is_catalogue for member in each.members]


@dataclass
class ErrorNumber:
    number: str                     # as it is shown: "13", "0x80042739"
    constant: str
    words: str

    @property
    def path(self):
        return f"errors/{self.number}.html"

    @property
    def decimal(self):
        value = int(self.number, 0)
        return value - (1 << 32) if value >= 1 << 31 else value


def read_error_numbers(page):
    """The rows of the table in docs/errors.md; a test holds it against what the library says."""
    rows = re.findall(r"^\| *(0x[0-9A-F]{8}|\d+) *\| *`(k\w+)` *\| *(.*?) *\|$", page, re.M)
    return [ErrorNumber(*row) for row in rows]


@dataclass
class Oddity:
    id: str
    words: str
    held_by: str

    def is_of(self, member):
        """Whether the operation's comment names it, or the operation's wire files hold it."""
        text = " ".join([member.words.text, member.words.route, member.group.text,
                         *member.words.params.values(), *member.words.throws])
        return f"deliberate [{self.id}]" in text.replace("Deliberate [", "deliberate [") or \
            f"wire.{member.whole_name}." in self.held_by


def read_oddities(page):
    """The rows of docs/oddities.md; a test holds it together with the sources."""
    rows = re.findall(r"^\| ([a-z][a-z0-9-]+) \| (.*?) \| .*? \| (.*) \|$", page, re.M)
    return [Oddity(*row) for row in rows if row[0] != "id"]
