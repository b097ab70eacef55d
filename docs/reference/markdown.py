"""The Markdown that the project's pages are written in, and no more of it."""

import re
from dataclasses import dataclass, field

from markup import Markup, code, el, escaped, heading_link, pre, slug

INLINE = re.compile(
    r"(?P<ticks>`+)(?P<code>.+?)(?P=ticks)"
    r"|!?\[(?P<words>(?:[^\[\]`]|`[^`]*`|\[[^\]]*\])*)\]"
    r"\((?P<target>[^()\s]*(?:\([^)]*\))?[^()\s]*)\)"
    r"|\*\*(?P<strong>(?:[^*`]|`[^`]*`)+)\*\*"
    r"|(?<![\w*])\*(?P<em>[^*\s](?:[^*]*[^*\s])?)\*(?!\w)"
    r"|\\(?P<plain>[\\`*_{}\[\]()#+.!|<>-])", re.S)
ITEM = re.compile(r"( *)([-*+]|\d+[.)]) +(.*)")


@dataclass
class Page:
    title: str = ""
    body: Markup = Markup("")
    headings: list = field(default_factory=list)  # of level, anchor, text


class Reader:
    """`resolve(target, words)` gives a link's HTML, `name(text)` that of a piece of code."""

    def __init__(self, resolve, name=code):
        self.resolve = resolve
        self.name = name
        self.page = Page()
        self.anchors = {}

    def inline(self, text):
        parts, at = [], 0
        for found in INLINE.finditer(text):
            parts.append(text[at:found.start()])
            parts.append(self._piece(found))
            at = found.end()
        parts.append(text[at:])
        return escaped(parts)

    def _piece(self, found):
        if found["code"] is not None:
            return self.name(found["code"].strip() if found["ticks"] != "`" else found["code"])
        if found["target"] is not None:
            plain = Reader(self.resolve)  # a link has no links within
            return self.resolve(found["target"], plain.inline(found["words"]))
        if found["strong"] is not None:
            return el("strong", self.inline(found["strong"]))
        if found["plain"] is not None:
            return found["plain"]
        return el("em", self.inline(found["em"]))

    def read(self, text):
        self.page.body = self.blocks(text.splitlines())
        return self.page

    def blocks(self, lines):
        made, at = [], 0
        while at < len(lines):
            line = lines[at]
            if not line.strip():
                at += 1
                continue
            for form in (self._comment, self._fence, self._heading, self._table, self._list,
                         self._indented, self._paragraph):
                block, after = form(lines, at)
                if block is not None:
                    made += [block, "\n"] if block else []
                    at = after
                    break
        return escaped(made)

    def _comment(self, lines, at):
        """Says how a block is tested, not something to the readers of the page."""
        if not lines[at].lstrip().startswith("<!--"):
            return None, at
        while at < len(lines) and "-->" not in lines[at]:
            at += 1
        return Markup(""), at + 1

    def _fence(self, lines, at):
        fence = re.match(r" {0,3}(```+|~~~+) *([\w+-]*)", lines[at])
        if not fence:
            return None, at
        end = at + 1
        while end < len(lines) and not lines[end].strip() == fence[1]:
            end += 1
        return pre("\n".join(lines[at + 1:end]), fence[2] or "text"), end + 1

    def _indented(self, lines, at):
        end = at
        while end < len(lines) and (lines[end].startswith("    ") or not lines[end].strip()):
            end += 1
        if not lines[at].startswith("    "):
            return None, at
        return pre("\n".join(line[4:] for line in lines[at:end]).rstrip()), end

    def _heading(self, lines, at):
        found = re.match(r"(#{1,6}) +(.*?) *#*$", lines[at])
        if not found:
            return None, at
        # A heading is a link to itself, and has none within.
        level, words = len(found[1]), Reader(self.resolve).inline(found[2])
        if level == 1 and not self.page.title:
            self.page.title = re.sub(r"[`*]", "", found[2])
            return Markup(""), at + 1
        anchor = slug(words)
        again = self.anchors.get(anchor, 0)
        self.anchors[anchor] = again + 1
        if again:
            anchor += f"-{again}"
        self.page.headings.append((level, anchor, re.sub(r"[`*]", "", found[2])))
        return el(f"h{level}", heading_link(words, anchor), id=anchor), at + 1

    def _table(self, lines, at):
        if at + 1 == len(lines) or not lines[at].lstrip().startswith("|") or \
                not re.match(r" *\|[ :|-]+\|? *$", lines[at + 1]):
            return None, at
        end = at + 2
        while end < len(lines) and lines[end].lstrip().startswith("|"):
            end += 1
        titles = cells(lines[at])
        head = el("tr", [el("th", self.inline(each), scope="col") for each in titles])
        named = titles and titles[0] == "id"  # of what other pages point to
        rows = [self._row(cells(line), named) for line in lines[at + 2:end]]
        return el("div", el("table", el("thead", head), el("tbody", rows)), class_="wide",
                  tabindex="0"), end

    def _row(self, texts, named):
        return el("tr", [el("td", self.inline(each)) for each in texts],
                  id=texts[0] if named else None)

    def _list(self, lines, at):
        first = ITEM.match(lines[at])
        if not first or len(first[1]) > 3:
            return None, at
        items, end = [], at
        while end < len(lines):
            item = ITEM.match(lines[end])
            if not item or len(item[1]) != len(first[1]) or item[2].isalnum() != first[2].isalnum():
                break
            deep = len(lines[end]) - len(item[3])
            inner = [item[3]]
            end += 1
            while end < len(lines):
                line = lines[end]
                follows = end + 1 < len(lines) and lines[end + 1].startswith(" " * deep)
                if line.startswith(" " * deep) or (not line.strip() and follows):
                    inner.append(line[deep:])
                elif not line.strip() or ITEM.match(line) or re.match(r"[#|]|```", line):
                    break
                else:
                    inner.append(line.strip())
                end += 1
            items.append(el("li", self._item(inner)))
            while end + 1 < len(lines) and not lines[end].strip() and ITEM.match(lines[end + 1]):
                end += 1
        numbered = first[2][:-1].isdigit()
        return el("ol" if numbered else "ul", *items,
                  start=first[2][:-1] if numbered and first[2][:-1] != "1" else None), end

    def _item(self, lines):
        """A short item has no paragraph of its own."""
        block = self.blocks(lines).strip()
        whole = re.fullmatch(r"<p>((?:(?!</?p>).)*)</p>", block, re.S)
        return Markup(whole[1] if whole else block)

    def _paragraph(self, lines, at):
        end = at + 1
        while end < len(lines) and lines[end].strip() and \
                not re.match(r"#{1,6} | {0,3}(```|~~~)|\|| *<!--", lines[end]) and \
                not (ITEM.match(lines[end]) and not lines[end].startswith("    ")):
            end += 1
        return el("p", self.inline("\n".join(line.strip() for line in lines[at:end]))), end


def cells(line):
    """The cells of a row; a bar within code or behind a backslash divides nothing."""
    found, cell, ticks = [], "", False
    line = line.strip().removeprefix("|")
    at = 0
    while at < len(line):
        if line[at] == "\\" and line[at + 1:at + 2] == "|":
            cell += "|"
            at += 1
        elif line[at] == "|" and not ticks:
            found.append(cell.strip())
            cell = ""
        else:
            ticks ^= line[at] == "`"
            cell += line[at]
        at += 1
    return found + ([cell.strip()] if cell.strip() else [])
