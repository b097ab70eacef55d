"""What all pages have in common, and the folder that they are written to."""

import os
import shutil

from markup import Markup, el, joined, link

PLACES = [("index.html", "Overview"), ("classes/index.html", "Classes"),
          ("errors/index.html", "Errors"), ("guides/index.html", "Guides")]


class Site:
    """The pages below one folder, and what the search knows of them."""

    def __init__(self, folder, version):
        self.folder = folder
        self.version = version
        self.entries = []
        self.pages = []

    def known_to_search(self, kind, title, url, words="", names=()):
        """`names` are pairs of what something is and its name, as ("argument", "aGID")."""
        self.entries.append({"k": kind, "t": title, "u": url, "d": words.replace("`", ""),
                             "n": [list(each) for each in names]})

    def write_text(self, path, text):
        target = os.path.join(self.folder, path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "w", encoding="utf-8", newline="\n") as file:
            file.write(text)

    def copy(self, source, path):
        target = os.path.join(self.folder, path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copyfile(source, target)

    def write_page(self, path, title, *content, way=()):
        """`way` leads from the overview to this page: pairs of path and words."""
        root = up_from(path)
        steps = [link(root + target, words) for target, words in way]
        self.pages.append(path)
        self.write_text(path, "<!DOCTYPE html>\n" + el(
            "html",
            el("head",
               el("meta", charset="utf-8"),
               el("meta", name="viewport", content="width=device-width, initial-scale=1"),
               el("title", title if title == "BVConn" else f"{title} – BVConn"),
               el("link", rel="stylesheet", href=root + "style.css"),
               el("script", src=root + "search.js", defer="")),
            el("body",
               el("a", "To the content", href="#content", class_="skip"),
               self._header(root, path),
               el("main",
                  el("nav", joined(steps, " › "), class_="way", aria_label="Where this page is")
                  if steps else None,
                  el("h1", foldable(title)), *content, id="content", tabindex="-1"),
               el("footer", f"BVConn {self.version}"),
               data_root=root), lang="en") + "\n")

    def _header(self, root, path):
        places = [el("a", words, href=root + target,
                     aria_current="page" if target == path else None)
                  for target, words in PLACES + self.more_places()]
        return el(
            "header",
            el("nav", el("a", "BVConn", href=root + "index.html", class_="name"), *places,
               aria_label="Main"),
            el("div",
               el("label", "Search", for_="query", class_="unseen"),
               el("input", id="query", type="search", autocomplete="off", spellcheck="false",
                  placeholder="Search: press /", role="combobox", aria_expanded="false",
                  aria_controls="found", aria_autocomplete="list"),
               el("div", id="found", role="listbox", aria_label="What was found", hidden=""),
               el("noscript", "The search needs JavaScript."),
               role="search", class_="search"))

    def more_places(self):
        return [("api/annotated.html", "C++")] if self.has_api else []

    has_api = False


def foldable(title):
    """Names of operations may be folded behind the class."""
    return joined(title.split("."), Markup(".<wbr>")) if " " not in title else title


def up_from(path):
    return "../" * path.count("/")
