"""The project's pages in Markdown as pages of the site."""

import os
import posixpath
import re

from markdown import Reader
from markup import code, el, link, table
from shell import up_from


class BrokenLink(Exception):
    """A page points to what is not there."""


def site_path(source):
    """Where docs/errors.md stands on the site: guides/errors.html."""
    return "guides/" + re.sub(r"\.md$", ".html", source.removeprefix("docs/"))


def sources(root):
    """The guides in the order in which the README leads to them, then the pages beside them."""
    with open(os.path.join(root, "README.md"), encoding="utf-8") as file:
        readme = file.read()
    found = []
    for folder, folders, names in os.walk(root):
        # A build among the sources holds pages for what it installs, whatever its folder is called.
        if "CMakeCache.txt" in names:
            folders.clear()
            continue
        folders[:] = sorted(each for each in folders
                            if not each.startswith(".") and each != "build")
        found += [os.path.relpath(os.path.join(folder, name), root)
                  for name in names if name.endswith(".md")]
    kind = {"docs": 0, "": 1, "docs/decisions": 3}
    return sorted(found, key=lambda path: (kind.get(os.path.dirname(path), 2),
                                           readme.find(f"({path})"), path))


class Guides:
    def __init__(self, root, site, api, prose):
        self.root = root
        self.prose = prose
        self.site = site
        self.api = api
        self.broken = []

    def write(self):
        titles = {}
        for source in sources(self.root):
            titles[source] = self._write_page(source)
        self._write_index(titles)
        if self.broken:
            raise BrokenLink("\n".join(self.broken))
        return titles

    def _write_page(self, source):
        path = site_path(source)
        reader = Reader(lambda target, words: self.resolve(source, target, words),
                        lambda text: self.prose.whole_name(text, up_from(path)))
        with open(os.path.join(self.root, source), encoding="utf-8") as file:
            page = reader.read(file.read())
        self.site.known_to_search("guide", page.title, path)
        for level, anchor, words in page.headings:
            self.site.known_to_search("heading", words, f"{path}#{anchor}", page.title)
        parts = [(anchor, words) for level, anchor, words in page.headings if level == 2]
        contents = el("nav", el("ul", [el("li", link("#" + anchor, words))
                                       for anchor, words in parts]),
                      class_="contents", aria_label="On this page") if len(parts) > 2 else None
        self.site.write_page(path, page.title, contents, page.body,
                             way=[("index.html", "Overview"), ("guides/index.html", "Guides")])
        return page.title

    def resolve(self, source, target, words):
        """A page becomes its page here, a public header its page of the API, the rest a name."""
        if re.match(r"[a-z]+:", target):
            return link(target, words)
        name, _, anchor = target.partition("#")
        anchor = "#" + anchor if anchor else ""
        if not name:
            return link(anchor, words)
        path = posixpath.normpath(posixpath.join(posixpath.dirname(source), name))
        full = os.path.join(self.root, path)
        if not os.path.exists(full):
            self.broken.append(f"{source}: links to {target}, which is not there")
            return words
        root = up_from(site_path(source))
        if path == "docs":
            return link(root + "guides/index.html", words)
        if path.endswith(".md"):
            return link(root + site_path(path) + anchor, words)
        if path.endswith(".png"):
            picture = "guides/" + posixpath.basename(path)
            self.site.copy(full, picture)
            return el("img", src=root + picture, alt=words)
        header = self.api.file(path)
        if header:
            return link(root + header, words)
        return [words, " (", code(path), ")"] if path not in words else words

    def _write_index(self, titles):
        kinds = {"docs": "Guides", "": "The project", "docs/decisions": "Decisions"}
        parts = {}
        for source, title in titles.items():
            kind = kinds.get(os.path.dirname(source), "In the source tree")
            parts.setdefault(kind, []).append(
                [link(up_from("guides/index.html") + site_path(source), title), code(source)])
        self.site.write_page(
            "guides/index.html", "Guides",
            *[[el("h2", kind, id=kind.lower().replace(" ", "-")),
               table(["page", "source"], rows)] for kind, rows in parts.items()],
            way=[("index.html", "Overview")])
