"""The page of one operation, or of one property."""

import json
import re

from interface import SESSION
from markup import Markup, code, el, joined, link, pre, section, table
from routes import condition_words, dal_part, failure_part, log_part, soap_part
from wire_files import indented_xml



def default_text(argument):
    if not argument["optional"]:
        return ""
    value = argument.get("default")
    return code(json.dumps(value, ensure_ascii=False, separators=(",", ":")))


def by_name(member):
    """The signature as callers by name see it."""
    data = member.data
    if data["kind"] == "event":
        return f"event {data['name']}"
    text = f"{data['result']} {data['name']}"
    if "arguments" in data:
        text += "(" + ", ".join(
            f"{each['type']} {each['name']}" +
            (f" = {json.dumps(each.get('default'), separators=(',', ':'))}"
             if each["optional"] else "") for each in data["arguments"]) + ")"
    if data["kind"] == "property":
        text += "" if data["readable"] and data["writable"] else \
            "  (read only)" if data["readable"] else "  (write only)"
    return text


def becomes(name, member):
    """What an argument becomes on each route: two lists of words."""
    soap, dal = [], []
    for request in member.seen["soap"]:
        if name in request["url"]:
            soap.append("the address")
        for header in request["headers"]:
            if name in header.get("arguments", ()):
                soap.append(["header ", code(header["name"])])
        if any(case.startswith(name + "=") for case in request["cases"]):
            soap.append("chooses the form")
        for place, each in enumerate(request["body"], 1):
            if name in each.get("arguments", ()):
                soap.append([f"{place}: ", code(each["name"]) if each["name"]
                             else "under the caller's name"])
    for call in member.seen["dal"]:
        for place, each in enumerate(call["arguments"], 1):
            if name in each.get("arguments", ()):
                dal.append([f"{place}: ", "part of the request's text" if each["requestText"]
                            else "itself"])
    return once(soap), once(dal)


def once(parts):
    """Several forms of a request say the same of most arguments."""
    found = {}
    for part in parts:
        found.setdefault(str(part), part)
    return joined(found.values(), ", or ")


def arguments_part(member, prose):
    arguments = member.data.get("arguments", [])
    if not arguments:
        return Markup("")
    notes = member.words.params
    rows = []
    for argument in arguments:
        name = argument["name"]
        soap, dal = becomes(name, member)
        rows.append((f"argument-{name}",
                     [code(name), argument["type"], default_text(argument), soap or "–",
                      dal or "–", prose.text(notes.get(name, ""), member.cls)]))
    head = ["argument", "type", "default", "by SOAP", "by the data access layer", "note"]
    empty = [column for column, name in enumerate(head)
             if column in (2, 5) and not any(row[column] for _, row in rows)]
    if not member.seen["dal"]:
        empty.append(4)
    if not member.seen["soap"]:
        empty.append(3)
    keep = [column for column in range(len(head)) if column not in empty]
    return section("Arguments", table([head[i] for i in keep],
                                      [(anchor, [row[i] for i in keep]) for anchor, row in rows]))


def routes_part(member, prose):
    if not member.seen:
        return Markup("")
    forms = []
    requests, calls = member.seen["soap"], member.seen["dal"]
    if member.route:
        forms.append(el("p", prose.text(member.route, member.cls), class_="route"))
    if calls and requests:
        forms.append(el("p", "The data access layer is asked ",
                        condition_words(member.seen["condition"]), "; otherwise the request goes "
                        "by SOAP. Nothing is tried twice."))
    elif calls:
        forms.append(el("p", "The data access layer is asked ",
                        condition_words(member.seen["condition"]), "."))
    for place, request in enumerate(requests):
        forms.append(soap_part(request, place, len(requests)))
    # An operation of a connector chooses one; the session's own makes one after the other.
    what = "call" if member.cls == SESSION else "form"
    for place, call in enumerate(calls):
        forms.append(dal_part(call, place, len(calls), what))
    if not requests and not calls:
        forms.append(el("p", "It sends nothing on either route."))
    return section("Routes", *forms)


WORDS_OF_ROUTE = {"soap": "By SOAP", "dal": "By the data access layer",
                  "nothing": "Without a route"}


def wire_part(member):
    """What the first case of each wire file says, to the letter."""
    parts = []
    for route in ("soap", "dal", "nothing"):
        case = member.wire.get(route)
        if not case:
            continue
        sent = "\n".join(sent_lines(case))
        parts.append(section(
            WORDS_OF_ROUTE[route],
            el("p", case["claim"][0][:1].upper() + case["claim"][0][1:], ". From ",
               code(case["path"][0]), "."),
            [el("p", "Given ", joined([code(each) for each in case["given"]], ", "), ".")]
            if case.get("given") else None,
            el("h4", "Called"), pre("\n".join(case["call"])),
            [el("h4", "Sent"), pre(sent, "xml")] if sent else None,
            [el("h4", "Came back"), pre(came_back(case), "xml")] if came_back(case) else None,
            [el("h4", "The caller gets"), pre("\n".join(case.get("answer", [])), "json")],
            level=3, anchor="wire-" + route))
    return section("The wire, to the letter", *parts, anchor="wire")


def sent_lines(case):
    if "send" in case:
        yield "POST " + case["send"][0]
        yield f'SOAPAction: "{case["action"][0]}"' if case.get("action", ["none"]) != ["none"] \
            else "no SOAPAction of its own"
    if "dal" in case:
        yield "\n".join(case["dal"])
    if case.get("userID") and case["userID"] != ["none"]:
        yield "header userID: " + case["userID"][0]
    for key in ("request", "text"):
        if key in case:
            yield ""
            yield indented_xml("".join(case[key]))


def came_back(case):
    if "fault" in case:
        return "fault " + case["fault"][0]
    for key in ("reply", "raw"):
        if key in case:
            return indented_xml("".join(case[key]))
    return ""


def example_part(member):
    example = member.example
    if not example:
        return Markup("")
    return section(
        "Example",
        el("p", "With a ", link("../guides/sandbox.html", "sandbox"), " that was just started, ",
           code("bvsandbox --port 8080"), ":") if "8080" in example.command else None,
        pre(example.command, "sh"),
        pre(example.output, "text") if example.output else
        el("p", "It prints nothing, and ends with 0."),
        [el("p", "What goes out, shown by ", code("--print-request"), " behind it:"),
         el("pre", code(example.sent), class_="folded", tabindex="0")] if example.sent else None)


def errors_part(member, prose):
    if not member.seen:
        return Markup("")
    failures = member.seen["failures"]
    tail = next((case["tail"][0] for case in member.wire.values() if "tail" in case), None)
    return section(
        "Errors",
        [el("p", prose.text(each, member.cls)) for each in member.words.throws],
        failure_part("By SOAP", failures["soap"], prose),
        failure_part("By the data access layer", failures["dal"], prose),
        el("p", "In the ", link("../guides/tests/wire/README.html", "wire files"),
           " this way to end is the tail ", code(tail), ".") if tail else None,
        el("p", "What can go wrong on the way, and in the reply: ",
           link("../errors/index.html", "all numbers"), ".") if failures["soap"] or
        failures["dal"] else None)


def oddities_part(member, oddities, prose):
    rows = [[prose.oddity(each.id), prose.text(each.words, member.cls)]
            for each in oddities if each.is_of(member)]
    return section("Deliberate oddities", table(["id", "what is odd"], rows) if rows else None,
                   anchor="oddities")


def more_part(member, classes, api, guides):
    cls = next(each for each in classes if each.name == member.cls)
    links = [link("../" + cls.path, member.cls)]
    target = api.member(member.cls, member.name)
    if target:
        links.append(link("../" + target, f"{member.name} in the C++ interface"))
    for source in ("docs/routes.md", "docs/values.md", "docs/errors.md", "docs/exchanges.md",
                   "docs/testing-your-application.md", "docs/calling-by-name.md"):
        if source in guides:
            links.append(link("../guides/" + source[5:-3] + ".html", guides[source]))
    return section("See also", el("ul", [el("li", each) for each in links]))


def signature_part(member, cls, api):
    """In C++ and by name."""
    names = re.findall(r"\b[A-Z]\w+", " ".join(each.code for each in member.declarations))
    types = [link("../" + api.cls(name), code(name)) for name in dict.fromkeys(names)
             if api.cls(name)]
    header = cls.words.path
    page = api.file(header)
    shown = link("../" + page, code(header)) if page else code(header)
    return section(
        "Signature",
        [pre(each.code, "cpp") for each in member.declarations],
        [el("p", "Types: ", joined(types, ", "), ".")] if types else None,
        el("p", "In ", shown, ". By name:"), pre(by_name(member)))


def write(member, cls, classes, site, prose, api, guides, oddities):
    group = member.group.text if member.words.text else ""
    text = member.words.text or member.group.text
    site.write_page(
        member.path, member.whole_name,
        el("div", prose.paragraphs(text, member.cls), class_="summary"),
        el("p", prose.text(group, member.cls)) if group else None,
        signature_part(member, cls, api),
        arguments_part(member, prose),
        example_part(member),
        routes_part(member, prose),
        errors_part(member, prose),
        log_part(member.seen["log"]) if member.seen else None,
        oddities_part(member, oddities, prose),
        wire_part(member),
        more_part(member, classes, api, guides),
        way=[("index.html", "Overview"), ("classes/index.html", "Classes"),
             (cls.path, cls.name)])
    site.known_to_search("property" if member.kind == "property" else member.kind,
                         member.whole_name, member.path, member.summary, search_names(member))


def search_names(member):
    names = [("argument", each["name"]) for each in member.data.get("arguments", [])]
    for request in (member.seen or {}).get("soap", []):
        names += [("method", request["method"] or ""), ("service", request["service"] or "")]
        names += [("parameter", each["name"] or "") for each in request["body"]]
    for call in (member.seen or {}).get("dal", []):
        names.append(("service object", f"{call['object']}.{call['operation']}"))
    for route in (member.seen or {}).get("failures", {}).values():
        for each in (route or {}).get("codes", []):
            names += [("fault code", str(each["code"])), ("error", each["hex"])]
    return [each for each in dict.fromkeys(names) if each[1]]
