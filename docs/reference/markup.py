"""HTML made of elements, so that no text can become markup by accident."""

import html
import re


class Markup(str):
    """Text that is HTML already; every other text is escaped where it is put in."""


def escaped(part):
    if isinstance(part, Markup):
        return part
    if isinstance(part, (list, tuple)):
        return Markup("".join(escaped(each) for each in part))
    return Markup(html.escape(str(part), quote=True)) if part is not None else Markup("")


def el(tag, /, *children, **attributes):
    """<tag attributes>children</tag>; `class_` and `for_` stand for words that Python keeps."""
    words = "".join(
        f' {key.rstrip("_").replace("_", "-")}="{escaped(value)}"'
        for key, value in attributes.items() if value is not None)
    if tag in ("meta", "link", "input", "img"):
        return Markup(f"<{tag}{words}>")
    return Markup(f"<{tag}{words}>{escaped(children)}</{tag}>")


def code(text):
    return el("code", text)


def link(target, *words):
    return el("a", *words, href=target)


def joined(parts, between):
    """The parts with the same in between."""
    all_parts = []
    for part in parts:
        if all_parts:
            all_parts.append(between)
        all_parts.append(part)
    return escaped(all_parts)


def pre(text, language="text"):
    # A block that is wider than the page is scrolled, with the keyboard too.
    return el("pre", el("code", text), class_=language, tabindex="0")


def table(head, rows, class_=None):
    """`rows` are cells, or a pair of an id and cells."""
    lines = []
    for row in rows:
        anchor, cells = row if isinstance(row, tuple) else (None, row)
        lines.append(el("tr", [el("td", cell) for cell in cells], id=anchor))
    return el("div", el("table", el("thead", el("tr", [el("th", each, scope="col")
                                                      for each in head])),
                        el("tbody", lines), class_=class_), class_="wide", tabindex="0")


def facts(rows):
    """Names and what is said of them; those of which nothing is said are left out."""
    return el("dl", [[el("dt", name), el("dd", words)] for name, words in rows if words])


def section(title, *content, level=2, anchor=None):
    if not escaped(content):
        return Markup("")
    anchor = anchor or slug(title)
    return el("section", el(f"h{level}", heading_link(title, anchor), id=anchor), *content)


def heading_link(title, anchor):
    return el("a", title, href="#" + anchor, class_="self")


def slug(title):
    """The anchor of a heading, made as the common viewers of Markdown make it."""
    words = re.sub(r"<[^>]*>", "", title) if isinstance(title, Markup) else title
    kept = re.sub(r"[^\w\- ]", "", html.unescape(words).strip().lower())
    return kept.replace(" ", "-")
