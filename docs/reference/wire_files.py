"""The first case of each wire file: what goes out and what comes back, to the letter."""

import os
import re

SOAP_ENCODING = ' SOAP-ENV:encodingStyle="http://schemas.xmlsoap.org/soap/encoding/"'
KEY = re.compile(r"([a-z][\w ]*):(?: (.*))?$")


def read_case(text):
    """The head and the first case of a wire file; each value is a list of lines."""
    case = {}
    key = None
    for line in text.splitlines():
        begin = KEY.match(line)
        if line.startswith("#"):
            continue
        if begin and not line.startswith(" "):
            key = begin[1]
            if key in case and key in ("claim", "call"):
                break  # the second case, or the second step of the first
            case.setdefault(key, [])
            if begin[2]:
                case[key].append(begin[2])
        elif key and line.strip():
            case[key].append(line.strip())
    return case


def read_cases(root):
    """By operation and route: {"Class.Operation": {"soap": …}}."""
    cases = {}
    for folder, _, names in sorted(os.walk(os.path.join(root, "tests/wire"))):
        for name in sorted(names):
            if not name.endswith(".wire"):
                continue
            cls, operation, route, _ = name.split(".")
            path = os.path.join(folder, name)
            with open(path, encoding="utf-8") as file:
                case = read_case(file.read())
            case["path"] = [os.path.relpath(path, root)]
            cases.setdefault(f"{cls}.{operation}", {})[route] = case
    return cases


def indented_xml(text):
    """Elements on lines of their own, those with text alone on one; nothing else is changed."""
    text = text.replace("{soap}", SOAP_ENCODING)
    tokens = re.findall(r"<[^>]*>|[^<]+", text)
    lines, depth, at = [], 0, 0
    while at < len(tokens):
        token = tokens[at]
        if token.startswith("</"):
            depth -= 1
            lines.append("  " * depth + token)
        elif not token.startswith("<") or token.endswith("/>") or token.startswith(("<?", "<!")):
            lines.append("  " * depth + token)
        elif at + 1 < len(tokens) and tokens[at + 1].startswith("</"):
            lines.append("  " * depth + token + tokens[at + 1])
            at += 1
        elif at + 2 < len(tokens) and not tokens[at + 1].startswith("<") and \
                tokens[at + 2].startswith("</"):
            lines.append("  " * depth + "".join(tokens[at:at + 3]))
            at += 2
        else:
            lines.append("  " * depth + token)
            depth += 1
        at += 1
    return "\n".join(line for line in lines if line.strip())
