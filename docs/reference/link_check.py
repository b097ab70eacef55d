"""Finds links to pages and places that are not there: link_check.py FOLDER."""

import os
import posixpath
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit


class _Page(HTMLParser):
    def __init__(self):
        super().__init__()
        self.places = set()
        self.targets = []

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if not value:
                continue
            if name == "id" or (name == "name" and tag == "a"):
                self.places.add(value)
            elif name in ("href", "src"):
                self.targets.append((self.getpos()[0], value))


def read_pages(folder):
    pages = {}
    for where, _, names in os.walk(folder):
        for name in names:
            if name.endswith(".html"):
                path = os.path.join(where, name)
                page = _Page()
                with open(path, encoding="utf-8") as file:
                    page.feed(file.read())
                pages[os.path.relpath(path, folder)] = page
    return pages


def broken_links(folder):
    """A line for each: where it stands, where it points, what is missing."""
    pages = read_pages(folder)
    broken = []
    for path, page in sorted(pages.items()):
        for line, target in page.targets:
            parts = urlsplit(target)
            if parts.scheme or parts.netloc or target.startswith("javascript:"):
                continue
            to = posixpath.normpath(posixpath.join(posixpath.dirname(path), unquote(parts.path))) \
                if parts.path else path
            place = unquote(parts.fragment)
            if to not in pages and not os.path.isfile(os.path.join(folder, to)):
                broken.append(f"{path}:{line}: {target}: there is no such page")
            elif place and to in pages and place not in pages[to].places:
                broken.append(f"{path}:{line}: {target}: the page has no such place")
    return broken


def main():
    found = broken_links(sys.argv[1])
    print("\n".join(found) if found else "all links lead somewhere")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
