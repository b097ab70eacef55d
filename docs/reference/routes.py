"""What goes out on each route, how it fails and what is logged, as HTML."""

import json

from markup import Markup, code, el, facts, joined, section, table


def origin(seen):
    if "arguments" in seen:
        return joined([code(each) for each in seen["arguments"]], ", ")
    if "constant" not in seen:
        return "–"
    text = seen["constant"]
    return ["always ", code(json.dumps(text, ensure_ascii=False))] if text else "always empty"


def types_of(parameter):
    if parameter["anyContent"]:
        return "any content"
    types = [each or "untyped" for each in parameter["types"]] + ["nil"] * parameter["nil"]
    return " or ".join(types)


def form_title(words, cases, place, count, what="form"):
    title = words + (f", {what} {place + 1} of {count}" if count > 1 else "")
    return title + (f" ({', '.join(cases)})" if cases else "")


def soap_part(request, place, count):
    named = request["method"]
    whose = "the caller's"
    timeout = request["timeout"]
    body = [[str(number), parameter_name(each), types_of(each), origin(each)]
            for number, each in enumerate(request["body"], 1)]
    return section(
        form_title("By SOAP", request["cases"], place, count),
        facts([
            ("posts to", joined([code(each) for each in request["url"]], ", ")),
            ("method", [code(request["method"]), " of ", code(request["service"])] if named
             else whose),
            ("SOAPAction", whose if not named else code(request["soapAction"])
             if request["soapAction"] is not None else "as the request before left it"),
            ("time-out", "as the caller says" if timeout is None else
             [f"{timeout} ms", [" unless ", code("defaultTimeOut"), " is set"]
              if timeout == 300000 else ""]),
            ("header", joined([[code(each["name"]), " from ", origin(each)]
                               for each in request["headers"]], ", ") or "none"),
        ]),
        table(["place", "parameter", "type", "from"], body) if body else
        None if request["openEnded"] else el("p", "The body is empty."),
        el("p", "What else the document holds follows, node by node.")
        if request["openEnded"] else None,
        level=3, anchor=f"soap-{place + 1}")


def parameter_name(parameter):
    if not parameter["name"]:
        return "(the caller's name)"
    space = parameter.get("namespace")
    return [code(parameter["name"]), [" in ", code(space)] if space else ""]


def dal_part(call, place, count, what):
    rows = []
    for number, each in enumerate(call["arguments"], 1):
        kind = "the request's text" if each["requestText"] else \
            "any type" if each["anyType"] else " or ".join(each["types"])
        rows.append([str(number), kind, origin(each)])
    return section(
        form_title("By the data access layer", call["cases"], place, count, what),
        facts([("calls", [code(f"{call['object']}.{call['operation']}"),
                          ", looked up by name" if call["byName"] else ""])]),
        table(["place", "type", "from"], rows) if rows else el("p", "It has no arguments."),
        level=3, anchor=f"dal-{place + 1}")


def condition_words(condition):
    """ "when …", after "is asked"."""
    parts = []
    for key, name in (("usingTorvexDAL", "UsingTorvexDAL"), ("useDALSave", "UseDALSave")):
        if condition and condition[key]:
            parts.append([code(name), " is true"])
    if condition and condition["disabledBy"]:
        parts.append(["the method is not disabled there (",
                      joined([code(each) for each in condition["disabledBy"]], ", "), ")"])
    return ["when ", joined(parts, " and ")] if parts else "whatever is switched on"


def raised_words(keeps):
    if keeps is None:
        return "not raised: the operation returns as if nothing had happened"
    if "helpFile" in keeps:
        return "raised with all its values"
    if not keeps:
        return "raised as another one"
    return ["raised with its ", joined([", ".join(keeps[:-1]), keeps[-1]], " and ")
            if len(keeps) > 1 else keeps[0], " alone"]


def failure_part(title, seen, prose):
    if not seen:
        return Markup("")
    logged = [code(f"{each['class']}.{each['method']}") for each in seen["log"]]
    rows = [["an error on the way", ["logged under ", joined(logged, ", ")] if logged
             else "not logged", raised_words(seen["keeps"])]]
    if seen["fault"]:
        text = "with" if seen["fault"]["serverText"] else "without"
        rows.append(["a fault of the server's", "the same" if logged else "not logged",
                     ["raised as ", prose.number(seen["fault"]["hex"]),
                      f" {text} the server's text"]])
    for each in seen["codes"]:
        rows.append([f"a fault with the code {each['code']}", "the same" if logged
                     else "not logged", ["raised as ", prose.number(each["hex"])]])
    return section(title, table(["what fails", "log", "what the caller gets"], rows), level=3,
                   anchor="errors-" + ("soap" if title == "By SOAP" else "dal"))


def log_part(lines):
    rows = [[code(each["do"]), code(f"{each['class']}.{each['method']}"),
             str(each.get("level", "")), each.get("text", "")] for each in lines]
    return section("Log lines of its own",
                   table(["line", "about", "level", "text"], rows), anchor="log") if rows \
        else section("Log lines of its own", el("p", "None."), anchor="log")
