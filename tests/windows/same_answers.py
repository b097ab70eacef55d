"""What two programs `bvconn` answer to the same batch, line for line: every operation on both routes,
with all of its arguments, with those that it needs, and with none.

same_answers.py BVSANDBOX BVCONN OTHER: each program calls a new sandbox on the same port. Ends with 77
where one of the three is not there."""

import json
import os
import subprocess
import sys
import tempfile

SKIPPED = 77
LONGEST_RUN_S = 540

# A document that the sandbox has, of the kind that a class is about.
KEYS = {
    "BVInvoiceConnector": "INV-1001",
    "BVProjectConnector": "PRJ-3001",
    "BVQuoteConnector": "QUO-4001",
    "BVOrderConnector": "ORD-5001",
    "BVRequestForQuoteConnector": "RFQ-6001",
    "BVAcknowledgementConnector": "ACK-7001",
    "BVSubmittalConnector": "SUB-8001",
    "BVRMAConnector": "RMA-9001",
    "BVMaintenanceConnector": "PAR-101",
    "BVPrintConnector": "PI-101",
    "BVSalesInstrumentConnector": "QUO-4001",
}
# What an argument names whatever the class, by a part of its name.
NAMED = [
    ("Invoice", "INV-1001"),
    ("Reconcile", "REC-10001"),
    ("Project", "PRJ-3001"),
    ("RFQ", "RFQ-6001"),
    ("Quote", "QUO-4001"),
    ("Order", "ORD-5001"),
    ("ack", "ACK-7001"),
    ("Submittal", "SUB-8001"),
    ("Customer", "CUS-2001"),
    ("Paragraph", "PAR-101"),
    ("Remark", "RMK-201"),
    ("PrintInfo", "PI-101"),
]
DATE_WORDS = ("Date", "BidStart", "BidEnd", "CommKey")


def key_of(class_name, argument):
    for part, key in NAMED:
        if part in argument:
            return key
    return KEYS.get(class_name, "CUS-2001")


def text_of(class_name, argument, url):
    if argument in ("aServerURL", "dal_server_url"):
        return url
    if argument == "aSessionID":
        return "ANNA"
    if argument.upper().endswith(("GID", "UID", "ID")):
        return key_of(class_name, argument)
    if any(word in argument for word in DATE_WORDS):
        return "2025-02-03"
    if argument in ("SIType", "astrSIType", "aSalseInstrType", "aType"):
        return "QUOTE"
    # Letters that no code page of one byte has together.
    return "Größe Ł 1"


def value_of(class_name, argument, url):
    kind, name = argument["type"], argument["name"]
    text = text_of(class_name, name, url)
    if kind == "string":
        return text
    if kind == "string[]":
        return [text, "1"]
    if kind == "variant":
        return [key_of(class_name, name), "1"] if name.endswith("s") else key_of(class_name, name)
    if kind == "SoapNode":
        key = key_of(class_name, name)
        return {"xml": f"<Document><GID>{key}</GID><Name>Größe &amp; Ł</Name><Line/></Document>"}
    if kind == "XMLDocument":
        return {"document": True}
    return {"boolean": True, "int16": 1, "int32": 60000}[kind]


def operations(interface):
    for each in interface:
        for member in each["members"]:
            if member["kind"] == "operation" and each["class"] != "BVConnectorObject":
                yield each["class"], member


def lines_of(interface, soap, dal):
    """The requests, and the number of operations that they call on a route."""
    lines = []

    def add(**request):
        lines.append(json.dumps({"id": len(lines) + 1, **request}, ensure_ascii=False))

    def call_all(forms):
        for class_name, member in operations(interface):
            for form in forms:
                taken = [a for a in member["arguments"] if form == "all" or not a["optional"]]
                values = {a["name"]: value_of(class_name, a, soap) for a in taken}
                add(call=f"{class_name}.{member['name']}", args={} if form == "none" else values)

    call_all(["all", "needed", "none"])
    for name, value in (("UserName", "ANNA"), ("Password", "Geheim ß"), ("AppVer", "1.0")):
        add(set=f"BVConnectorObject.{name}", value=value)
    add(call="BVConnectorObject.InitTorvexDAL", args={"dal_server_url": dal})
    add(call="BVConnectorObject.UseTorvexDAL", args={})
    call_all(["all", "needed"])
    add(get="BVConnectorObject.UsingTorvexDAL")
    return lines


class Sandbox:
    def __init__(self, program, port):
        self.process = subprocess.Popen(
            [program, "--port", str(port), "--until-eof"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.ready = json.loads(self.process.stdout.readline())

    def __enter__(self):
        return self.ready

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait(20)


def batch(program, lines):
    with tempfile.TemporaryDirectory() as home:
        environment = {name: value for name, value in os.environ.items()
                       if not name.startswith(("BVCONN_", "XDG_")) or name in KEPT_VARIABLES}
        environment["BVCONN_MACHINE_SETTINGS"] = home + "/machine.toml"
        environment["BVCONN_USER_SETTINGS"] = home + "/user.toml"
        environment["BVCONN_LOG_FILE"] = home + "/bvconn.log"
        done = subprocess.run([program, "batch"], input="\n".join(lines) + "\n", text=True,
                              encoding="utf-8", capture_output=True, env=environment,
                              timeout=LONGEST_RUN_S, check=False)
    return done.stdout.splitlines(), done.returncode, done.stderr


KEPT_VARIABLES = ("BVCONN_WINDOWS_BUILD", "BVCONN_WINE", "BVCONN_WINE_32", "BVCONN_WINE_SECONDS")


def kind_of(answer):
    return next((kind for kind in ("result", "error", "usage") if kind in answer), "none")


def main(sandbox, bvconn, other):
    for program in (sandbox, bvconn, other):
        if not os.access(program, os.X_OK):
            print(f"skipped: there is no {program}")
            return SKIPPED
    interface = json.loads(subprocess.run([bvconn, "list", "--json"], capture_output=True,
                                          check=True).stdout)
    outcomes, port = [], 0
    for program in (bvconn, other):
        with Sandbox(sandbox, port) as ready:
            port = ready["port"]
            lines = lines_of(interface, ready["soap"], ready["dal"])
            outcomes.append(batch(program, lines))
    (expected, status, _), (found, other_status, words) = outcomes
    different = [(line, a, b) for line, a, b in zip(lines, expected, found) if a != b]
    for line, a, b in different[:20]:
        print(f"asked  {line}\nthis   {a}\nother  {b}\n")
    counts = {}
    for line in expected:
        kind = kind_of(json.loads(line))
        counts[kind] = counts.get(kind, 0) + 1
    called = len(list(operations(interface)))
    print(f"{called} operations, {len(lines)} requests, {len(expected)} and {len(found)} answers, "
          f"{len(different)} different; {counts}")
    if words:
        print(words)
    # Every request has its answer, most of them one that the server gave.
    complete = len(expected) == len(found) == len(lines) and counts.get("result", 0) > called
    return 0 if complete and not different and status == other_status else 1


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
