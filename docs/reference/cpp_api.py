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
            f"PROJECT_NUMBER = {version}", f'STRIP_FROM_INC_PATH = "{root}"', f'OUTPUT_DIRECTORY = "{out}"',
            f'LAYOUT_FILE = "{layout}"', f'GENERATE_TAGFILE = "{tags}"',
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
        self.classes, self.members, self.files = {}, {}, {}
        self.folder = folder
        if not tag_file:
            return
        for compound in xml.parse(tag_file).getroot():
            kind, name = compound.get("kind"), compound.findtext("name")
            page = compound.findtext("filename")
            if kind in ("class", "struct"):
                self.classes[name] = page
                for member in compound.iter("member"):
                    key = (name, member.findtext("name"))
                    anchor = f"{member.findtext('anchorfile')}#{member.findtext('anchor')}"
                    self.members.setdefault(key, anchor)
            elif kind == "file":
                path = os.path.join(compound.findtext("path") or "", name)
                self.files[os.path.relpath(os.path.join(root, path), root)] = page

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
