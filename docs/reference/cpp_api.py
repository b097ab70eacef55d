"""The pages that Doxygen makes of the public headers, and where it put what."""

import os
import subprocess
import tempfile
import xml.etree.ElementTree as xml


HERE = os.path.dirname(os.path.abspath(__file__))
BACK = '<navindex><tab type="user" url="../index.html" visible="yes" title="Reference"/>'


class DoxygenFailed(Exception):
    """With what it said."""


def public_headers(root):
    with open(os.path.join(root, "bvconn/public_headers.txt"), encoding="utf-8") as file:
        lines = [line.strip() for line in file if not line.startswith("#")]
    return ["bvconn/" + line for line in lines if line.endswith(".h")]


def write_api(root, out, version):
    """Makes OUT/api, and gives what is known of it."""
    with tempfile.TemporaryDirectory() as scratch:
        layout, tags = os.path.join(scratch, "layout.xml"), os.path.join(scratch, "tags.xml")
        subprocess.run(["doxygen", "-l", layout], check=True, stdout=subprocess.DEVNULL)
        with open(layout, encoding="utf-8") as file:
            text = file.read()
        with open(layout, "w", encoding="utf-8") as file:
            file.write(text.replace("<navindex>", BACK))
        with open(os.path.join(HERE, "Doxyfile"), encoding="utf-8") as file:
            settings = file.read()
        settings += "\n".join([
            f"PROJECT_NUMBER = {version}", f'STRIP_FROM_INC_PATH = "{root}"',
            f'OUTPUT_DIRECTORY = "{out}"', f'LAYOUT_FILE = "{layout}"', f'GENERATE_TAGFILE = "{tags}"',
            "INPUT = " + " ".join(public_headers(root))]) + "\n"
        os.makedirs(out, exist_ok=True)
        done = subprocess.run(["doxygen", "-"], cwd=root, input=settings, text=True, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode != 0 or done.stdout.strip():
            raise DoxygenFailed(done.stdout)
        return Api(root, tags)


class Api:
    """Where its pages are. Without a file of tags nothing is known, and no page links there."""

    def __init__(self, root, tag_file=None, folder="api/"):
        self.classes, self.members, self.functions, self.files = {}, {}, {}, {}
        self.folder = folder
        for compound in xml.parse(tag_file).getroot() if tag_file else ():
            kind, name = compound.get("kind"), compound.findtext("name")
            page = compound.findtext("filename")
            if kind in ("class", "struct"):
                self.classes[name] = page
                self._read_members(compound, name, self.members)
            elif kind == "namespace":
                self._read_members(compound, name, self.functions)
            elif kind == "file":
                path = os.path.join(compound.findtext("path") or "", name)
                self.files[os.path.relpath(os.path.join(root, path), root)] = page

    @staticmethod
    def _read_members(compound, name, into):
        for member in compound.iter("member"):
            page, anchor = member.findtext("anchorfile"), member.findtext("anchor")
            if page and anchor:
                into.setdefault((name, member.findtext("name")), f"{page}#{anchor}")

    def _page(self, page):
        if not page:
            return None
        return self.folder + (page if ".html" in page else page + ".html")

    def cls(self, name):
        return self._page(self.classes.get("bvconn::" + name))

    def member(self, cls, name):
        return self._page(self.members.get(("bvconn::" + cls, name)))

    def file(self, path):
        return self._page(self.files.get(path))

    def names(self, known):
        """Names in C++ and their pages, but for the classes that have pages of their own."""
        whole = [(name, page) for name, page in self.classes.items()]
        for (owner, name), page in [*self.members.items(), *self.functions.items()]:
            whole.append((f"{owner}::{name}", page))
        for name, page in whole:
            short = name.removeprefix("bvconn::")
            *owners, last = short.split("::")
            made = last in owners or last.startswith(("~", "operator"))
            if name != short and not made and (owners + [last])[0] not in known:
                yield short, self._page(page)
