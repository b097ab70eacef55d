"""The pages that lead to the operations: overview, classes, error numbers."""

import interface
from markup import code, el, joined, link, pre, section, table
from shell import up_from


def value_of(member):
    value = member.data.get("value")
    return value if isinstance(value, str) else "" if value is None else str(value)


def senders(classes):
    """By wire name of method and of service: the operations that send it."""
    methods, services = {}, {}
    for each in classes:
        for member in each.members:
            for request in (member.seen or {}).get("soap", []):
                methods.setdefault(request["method"], {})[member.whole_name] = member
                services.setdefault(request["service"], {})[member.whole_name] = member
    return methods, services


def write_class(cls, classes, site, prose, api):
    page = api.cls(cls.name)
    words = cls.words
    site.known_to_search("class", cls.name, cls.path, cls.summary)
    site.write_page(
        cls.path, cls.name,
        el("div", prose.paragraphs(words.comment, cls.name), class_="summary") if words else None,
        el("p", "In ", code(words.path), *([", ", link("../" + page, "in the C++ interface")]
                                           if page else []), ".") if words else None,
        catalogue_part(cls, classes, site) if cls.is_catalogue else members_part(cls, prose),
        way=[("index.html", "Overview"), ("classes/index.html", "Classes")])


def result_of(member):
    result = member.data.get("result", "none")
    return "–" if result == "none" else result


def members_part(cls, prose):
    parts = []
    for kind, title in (("operation", "Operations"), ("property", "Properties"),
                        ("event", "Events")):
        rows = [(f"member-{member.name}",
                 [link("../" + member.path, code(member.name)), result_of(member),
                  prose.text(member.summary, cls.name)])
                for member in cls.members if member.kind == kind]
        if rows:
            parts.append(section(title, table(["name", "type", "what it gives"], rows)))
    return parts


def catalogue_part(cls, classes, site):
    by_method, by_service = senders(classes)
    known = by_method if cls.name == "BVMethods" else by_service
    rows = []
    for member in cls.members:
        anchor = f"row-{member.name}"
        value = value_of(member)
        sent_by = [link("../" + each.path, code(name))
                   for name, each in known.get(value, {}).items()]
        many = len(sent_by) > 6
        rows.append((anchor, [code(member.name), code(value), f"{len(sent_by)} operations" if many
                              else joined(sent_by, ", ") or "no operation"]))
        site.known_to_search("row", f"{cls.name}.{member.name}", f"{cls.path}#{anchor}", value,
                             [("wire name", value)])
    return section("Rows", table(["row", "text on the wire", "sent by"], rows))


def write_classes_index(classes, site, prose):
    rows = [[link(up_from("classes/index.html") + each.path, code(each.name)),
             str(len(each.members)), prose.text(each.summary, each.name)] for each in classes]
    site.write_page("classes/index.html", "Classes",
                    table(["class", "members", "what it is for"], rows),
                    section("All operations", *[all_operations(each) for each in classes
                                                if not each.is_catalogue]),
                    way=[("index.html", "Overview")])


def all_operations(cls):
    return [el("h3", cls.name, id=f"operations-{cls.name}"),
            el("p", joined([link("../" + member.path, member.name)
                            for member in cls.members], ", "))]


def raisers(number, classes):
    """The operations for which this number stands for certain fault codes, or for any fault; and
    these codes."""
    rows, all_codes = [], {}
    for each in classes:
        for member in each.members:
            codes = {}
            for route, failures in ((member.seen or {}).get("failures") or {}).items():
                for one in (failures or {}).get("codes", []):
                    if one["hex"] == number.number:
                        codes.setdefault(one["code"], route)
                fault = (failures or {}).get("fault")
                if fault and fault["hex"] == number.number:
                    codes.setdefault("any other", route)
            if codes:
                rows.append([link("../" + member.path, code(member.whole_name)),
                             ", ".join(str(code) for code in codes)])
                all_codes.update(codes)
    return rows, [("fault code", str(code)) for code in all_codes if code != "any other"]


def in_words(number, classes, prose):
    """The operations whose comment names the number."""
    rows = []
    for each in classes:
        for member in each.members:
            text = " ".join([member.words.text, member.group.text, *member.words.throws,
                             *member.words.params.values()])
            if number.number in text and (number.number.startswith("0x") or
                                          f"error {number.number}" in text):
                rows.append([link("../" + member.path, code(member.whole_name)),
                             prose.text(sentence_with(number.number, text), each.name)])
    return rows


def sentence_with(number, text):
    for sentence in text.replace("\n", " ").split(". "):
        if number in sentence:
            return sentence.rstrip(".") + "."
    return ""


def write_error(number, classes, site, prose):
    faults, codes = raisers(number, classes)
    general = len(faults) > 40  # it is what a fault becomes nearly everywhere
    named = in_words(number, classes, prose)
    site.known_to_search("error", f"{number.number} {number.constant}", number.path, number.words,
                         [("error", number.number), ("error", str(number.decimal)),
                          ("constant", number.constant), *codes])
    site.write_page(
        number.path, f"Error {number.number}",
        el("p", prose.text(number.words), class_="summary"),
        pre(f"bvconn::error_numbers::{number.constant}   // {number.number}, {number.decimal}",
            "cpp"),
        section("Operations whose faults it stands for",
                el("p", f"A fault is this error in {len(faults)} operations.") if general else
                table(["operation", "fault codes"], faults) if faults else None),
        section("Operations that name it", table(["operation", "what its comment says"], named)
                if named else None),
        el("p", "What is the same for all errors: ",
           link("../guides/errors.html", "the guide to errors"), "; from a failed call to its "
           "reason: ", link("../guides/support.html", "step by step"), "."),
        way=[("index.html", "Overview"), ("errors/index.html", "Errors")])


def write_errors_index(numbers, site, prose):
    rows = [(f"error-{each.number}",
             [link("../" + each.path, code(each.number)), str(each.decimal), code(each.constant),
              prose.text(each.words)]) for each in numbers]
    site.write_page("errors/index.html", "Error numbers",
                    table(["number", "decimal", "constant", "cause and cure"], rows),
                    el("p", "How errors arrive, and what they carry: ",
                       link("../guides/errors.html", "the guide to errors"), "."),
                    way=[("index.html", "Overview")])


def write_index(classes, numbers, guides, site, prose):
    connectors = [each for each in classes
                  if not each.is_catalogue and each.name != interface.SESSION]
    operations = sum(member.kind == "operation" for each in connectors for member in each.members)
    rows = [[link(each.path, code(each.name)), str(len(each.members)),
             prose.at_top(each.summary, each.name)] for each in classes]
    guide_links = [el("li", link("guides/" + source[5:-3] + ".html", title))
                   for source, title in guides.items()
                   if source.startswith("docs/") and source.count("/") == 1]
    site.write_page(
        "index.html", "BVConn",
        el("p", f"{operations} operations in {len(connectors)} connector classes, "
           f"{len(numbers)} error numbers, {len(guide_links)} guides. Press ", el("kbd", "/"),
           " to search them: names of operations and arguments, wire names, error numbers, fault "
           "codes.", class_="summary"),
        section("Guides", el("ul", guide_links, class_="columns")),
        section("Classes", table(["class", "members", "what it is for"], rows)))
