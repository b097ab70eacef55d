"""How much the sandbox bears: requests a second on one core, many connections, a long time, and
several processes on one database."""

import os
import sys
import time
from contextlib import ExitStack

from . import sandbox_requests as requests
from .postgres import postgres
from .sandbox_process import load, sandbox
from .statistics import number, summary, table

CONNECTIONS = 8
MANY = 1000
PROCESSES = (1, 2, 4)
KINDS = {
    "invoice": "`getInvoice` by SOAP (4 KB)",
    "project": "`getProject` by SOAP",
    "project_by_dal": "the same by the data access layer",
    "search": "`searchForInvoices` (20 invoices, 54 KB)",
    "save": "`save` of a project with ten lines",
}
JOURNALS = {"with": [], "without": ["--journal-count", "0"]}
# A slice of a soak, between two looks at the memory.
SLICE_MS = 250


def requests_of(kind, port):
    """One for each connection, so that those who save do not all save the same."""
    if kind == "project_by_dal":
        return [requests.get_project_by_dal(requests.login(port))]
    if kind == "save":
        return [requests.save(f"PRJ-LOAD-{i}") for i in range(CONNECTIONS)]
    one = {
        "invoice": requests.get_invoice,
        "project": requests.get_project,
        "search": requests.search,
    }[kind]
    return [one()]


def round_of(loading, one, kind, round_ms, count):
    loading.open(min(CONNECTIONS, count), one)
    texts = requests_of(kind, one.port)
    loading.ask(texts, min(count, 50))
    before = one.cpu_ns()
    answer = loading.ask(texts, count, round_ms)
    took = one.cpu_ns() - before
    return {
        "rate": answer["answered"] / answer["wall"] * 1e9,
        "cpu_us": took / answer["answered"] / 1e3,
        "median_us": answer["median"] / 1e3,
        "slow_us": answer["slow"] / 1e3,
    }


def speeds(program, loading, core, options):
    """{kind: {journal: {what: summary}}}: all of a round in turn, on one core."""
    found = {kind: {journal: [] for journal in JOURNALS} for kind in KINDS}
    with ExitStack() as stack:
        running = {
            journal: stack.enter_context(sandbox(program, {core}, *extra))
            for journal, extra in JOURNALS.items()
        }
        for _ in range(options.rounds):
            for kind in KINDS:
                for journal, one in running.items():
                    found[kind][journal].append(
                        round_of(loading, one, kind, options.sandbox_ms, options.requests)
                    )
        for one in running.values():
            loading.open(0, one)
    print(f"  {len(KINDS)} kinds of requests, {options.rounds} rounds", file=sys.stderr)
    return {
        kind: {
            journal: {what: summary([each[what] for each in rounds]) for what in rounds[0]}
            for journal, rounds in of.items()
        }
        for kind, of in found.items()
    }


def left_behind(one, at_first, patience=5):
    """Descriptors that stay open a while after the connections are gone."""
    deadline = time.monotonic() + patience
    while one.descriptors() > at_first and time.monotonic() < deadline:
        time.sleep(0.05)
    return one.descriptors() - at_first


def many(program, loading, core, connections):
    """What so many connections cost that are all open and all ask at once."""
    with sandbox(program, {core}) as one:
        loading.open(1, one)
        loading.ask([requests.get_invoice()], 2 * connections)
        alone = {"resident": one.resident(), "descriptors": one.descriptors() - 1}
        loading.open(connections, one)
        answer = loading.ask([requests.get_invoice()], connections * 5)
        found = {
            "connections": connections,
            "answered": answer["answered"],
            "rate": answer["answered"] / answer["wall"] * 1e9,
            "slow_us": answer["slow"] / 1e3,
            "grown": one.resident() - alone["resident"],
            "descriptors": one.descriptors() - alone["descriptors"],
        }
        loading.open(0, one)
        found["left"] = left_behind(one, alone["descriptors"])
    print(f"  {connections} connections", file=sys.stderr)
    return found


def soak(program, loading, core, seconds):
    """Resident memory over so long, from a tenth of the time on."""
    with sandbox(program, {core}) as one:
        kinds = [text for kind in KINDS for text in requests_of(kind, one.port)]
        loading.open(CONNECTIONS, one)
        slices = max(10, round(seconds * 1000 / SLICE_MS))
        slice_ms = round(seconds * 1000 / slices)
        answered, seen = 0, []
        for _ in range(slices):
            answered += loading.ask(kinds, milliseconds=slice_ms)["answered"]
            seen.append(one.resident())
        loading.open(0, one)
    begin, end = seen[slices // 10], seen[-1]
    print(f"  {seconds} seconds of soak", file=sys.stderr)
    return {
        "seconds": seconds,
        "answered": answered,
        "begin": begin,
        "end": end,
        "largest": max(seen[slices // 10 :]),
        "growth": (end - begin) / begin,
    }


def on_postgres(program, loading, cores, options):
    """{processes: {mix: rate}}, of all processes together; None where there is no server."""
    reads = [requests.get_invoice(number) for number in range(1001, 1009)]
    saves = [requests.save(f"PRJ-LOAD-{i}") for i in range(32)]
    mixes = {"reads": reads, "saves": saves, "one save in ten": reads + [reads[0]] + saves[:1]}
    found = {}
    with postgres() as server:
        if not server:
            print("No PostgreSQL server is installed: it is not measured", file=sys.stderr)
            return None
        for processes in PROCESSES:
            address = server.database(f"load{processes}")
            with ExitStack() as stack:
                running = [
                    stack.enter_context(sandbox(program, cores, "--db", address))
                    for _ in range(processes)
                ]
                loading.open(CONNECTIONS * processes, *running)
                found[processes] = {}
                for mix, texts in mixes.items():
                    loading.ask(texts, 100)
                    rates = []
                    for _ in range(max(2, options.rounds // 4)):
                        answer = loading.ask(texts, milliseconds=options.sandbox_ms)
                        rates.append(answer["answered"] / answer["wall"] * 1e9)
                    found[processes][mix] = summary(rates)
                loading.open(0, *running)
            print(f"  {processes} processes on PostgreSQL", file=sys.stderr)
    return found


def measure(options):
    program = options.build.parent / "sandbox/bvsandbox"
    cores = os.sched_getaffinity(0)
    # The sandbox has a core to itself, where there is a second one to load it from.
    others = sorted(cores - {options.core}) or [options.core]
    with load(options.build / "sandbox/sandbox_load", others[0]) as loading:
        found = {
            "speeds": speeds(program, loading, options.core, options),
            "many": many(program, loading, options.core, options.connections),
            "soak": soak(program, loading, options.core, options.soak_seconds),
        }
        if not options.no_postgresql:
            found["postgresql"] = on_postgres(program, loading, cores, options)
    return found


def rate(one):
    half = (one["high"] - one["low"]) / 2
    return f"{one['median']:,.0f} ±{half:,.0f}"


def show_speeds(found):
    rows = []
    for kind, of in found.items():
        cells = [rate(of[journal]["rate"]) for journal in JOURNALS]
        cells += [f"{number(of[journal]['cpu_us']['median'])} µs" for journal in JOURNALS]
        cells.append(f"{number(of['with']['slow_us']['median'] / 1e3)} ms")
        rows.append([KINDS[kind], *cells])
    head = ["on one core", "requests a second", "without journal", "processor a request"]
    return table([*head, "without journal", "99 of 100 within"], rows)


def show_many(one):
    row = [
        f"{one['connections']:,}",
        f"{one['answered']:,}",
        f"{one['rate']:,.0f}",
        f"{one['slow_us'] / 1e3:.0f} ms",
        f"{one['grown'] / 1024 / one['connections']:.0f} KiB",
        f"{one['descriptors'] / one['connections']:.2f}",
        str(one["left"]),
    ]
    head = ["connections at once", "requests answered", "a second", "99 of 100 within"]
    return table(
        [*head, "memory of each", "descriptors of each", "descriptors left behind"], [row]
    )


def show_soak(one):
    row = [
        f"{one['seconds']:g} s",
        f"{one['answered']:,}",
        *(f"{one[key] / 2**20:.1f} MiB" for key in ("begin", "largest", "end")),
        f"{one['growth'] * 100:+.2f} %",
    ]
    head = ["soak", "requests", "resident after a tenth", "most", "at the end", "growth"]
    return table(head, [row])


def show_postgres(found):
    mixes = list(next(iter(found.values())))
    rows = [[processes, *(rate(of[mix]) for mix in mixes)] for processes, of in found.items()]
    return table(["processes on one PostgreSQL, requests a second", *mixes], rows)


def show(found):
    tables = [show_speeds(found["speeds"]), show_many(found["many"]), show_soak(found["soak"])]
    if found.get("postgresql"):
        tables.append(show_postgres(found["postgresql"]))
    return "\n\n".join(tables)
