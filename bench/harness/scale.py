"""Two sessions on two cores against one, and what a process that lives long holds."""

import os
import sys
from contextlib import ExitStack

from . import peers
from .statistics import summary, table, with_spread
from .world import Program, application_files, server

CASES = ("small", "rows200", "rows20000")


def factors(program, urls, case, rounds, round_ms, environment):
    """How many times as many calls two sessions make as one does, round by round. One is what each
    core does by itself."""
    asked = Program([program, *urls], environment)
    asked.ask(case, 2, 0, 1)
    calls = max(1, round(round_ms * 1e6 / (asked.ask(case, 4, 0, 0)["wall"] / 4)))
    found = []
    for _ in range(rounds):
        alone = [asked.ask(case, calls, core, core)["wall"] for core in (0, 1)]
        both = asked.ask(case, calls, 0, 1)["wall"]
        found.append(sum(alone) / both)
    asked.close()
    return summary(found)


def sessions(build, rounds, round_ms):
    """{case: {"bvconn": factor, "floor": factor}}; nothing where there are no two cores."""
    if not {0, 1} <= os.sched_getaffinity(0):
        print("Two sessions are not measured: there are no two cores", file=sys.stderr)
        return {}
    found = {}
    with ExitStack() as stack:
        environment = stack.enter_context(application_files())
        urls = [stack.enter_context(server(build / "peers", core)) for core in (0, 1)]
        for case in CASES:
            found[case] = {
                name: factors(
                    build / f"scale/scale_{name}", urls, case, rounds, round_ms, environment
                )
                for name in ("floor", "bvconn")
            }
            print(f"  {case}: two sessions, {rounds} rounds", file=sys.stderr)
    return found


def lasting(build, core, case="rows20000"):
    """What stays of a 9 MB reply in a process that goes on with small ones, in bytes."""
    with application_files() as environment, server(build / "peers", core) as url:
        peer = Program([build / "peers/peer_bvconn", url, core], environment)
        answer = peer.ask("lasting", case)
        peer.close()
    return answer["stays"]


def measure(build, core, rounds, round_ms):
    return {"sessions": sessions(build, rounds, round_ms), "stays": lasting(build, core)}


def show(found):
    rows = [
        [peers.CASES[case], with_spread(one["bvconn"]), with_spread(one["floor"])]
        for case, one in found["sessions"].items()
    ]
    stays = f"{found['stays'] / 1024:.0f} KiB"
    head = ["two sessions on two cores ÷ one", "this library", "floor"]
    lines = [table(head, rows)] if rows else []
    lines.append(table(["a process that reads 9 MB now and then", "holds more"], [["", stays]]))
    return "\n\n".join(lines)
