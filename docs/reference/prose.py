"""The words of comments as HTML, with links to what they name."""

import re

from markup import Markup, code, el, escaped, link

PIECE = re.compile(
    r"`([^`]+)`|(0x[0-9A-F]{8})\b|\b(errors? )(\d+)\b|(?<=eliberate \[)([a-z][a-z0-9-]+)(?=\])")


class Prose:
    """Links from pages in a folder one level below the overview."""

    def __init__(self, classes, numbers, oddities=()):
        self.oddities = {each.id for each in oddities}
        self.members = {}
        for each in classes:
            for member in each.members:
                if not each.is_catalogue:
                    self.members[member.whole_name] = member.path
        self.classes = {each.name: each.path for each in classes}
        self.numbers = {each.number: each.path for each in numbers}
        self.constants = {each.constant: each.path for each in numbers}

    def text(self, text, cls=None):
        parts, at = [], 0
        for found in PIECE.finditer(text):
            parts += [text[at:found.start()], self._piece(found, cls)]
            at = found.end()
        return escaped(parts + [text[at:]])

    def _piece(self, found, cls):
        if found[1]:
            return self.name(found[1], cls)
        if found[2]:
            return self.number(found[2])
        if found[5]:
            return self.oddity(found[5])
        return [found[3], self.number(found[4])]

    def name(self, name, cls=None):
        bare = name.replace("::", ".").removesuffix("()")
        target = self.members.get(bare) or self.members.get(f"{cls}.{bare}") or \
            self.classes.get(bare)
        return link("../" + target, code(name)) if target else code(name)

    def whole_name(self, name, root):
        """Links operations and numbers that are named whole, from a page below `root`."""
        target = self.members.get(name) or self.classes.get(name) or self.constants.get(name) or \
            self.numbers.get(name)
        return link(root + target, code(name)) if target else code(name)

    def oddity(self, name):
        return link(f"../guides/oddities.html#{name}", name) if name in self.oddities else name

    def number(self, number):
        target = self.numbers.get(number)
        return link("../" + target, number) if target else number

    def at_top(self, text, cls=None):
        """The same for a page that stands in the topmost folder."""
        return Markup(self.text(text, cls).replace('href="../', 'href="'))

    def paragraphs(self, text, cls=None):
        return [el("p", self.text(each, cls)) for each in text.split("\n\n") if each]
