"""The call through each peer, in interleaved rounds."""

import random
import subprocess
import sys
from contextlib import ExitStack

from .statistics import number, summary, table, time, with_spread
from .world import HERE, Program, application_files, server

CASES = {
    "small": "0.5 KB",
    "rows200": "90 KB",
    "rows20000": "9 MB",
    "fault": "fault",
    "chunked": "90 KB in chunks",
}
LARGE = "rows20000"
LABELS = {
    "floor": "floor: bare libcurl",
    "socket": "raw socket",
    "bvconn": "**this library**",
    "pugixml": "pugixml behind libcurl",
    "gsoap": "gSOAP's stubs",
    "expat": "expat + tree behind libcurl",
    "zeep": "zeep (Python)",
}
# What takes a thousand times as long as the others is asked less often.
SLOW_CASES = {"zeep": {"small", "rows200", "fault"}}
# Its buffer is there before anything is measured.
WITHOUT_MEMORY = {"socket"}


def python_with_zeep():
    """The Python that has zeep: the system's, if it came as a package of the system."""
    for python in (sys.executable, "/usr/bin/python3"):
        try:
            subprocess.run([python, "-c", "import zeep"], check=True, stderr=subprocess.DEVNULL)
            return python
        except (OSError, subprocess.CalledProcessError):
            pass
    return None


def installed_peers(build):
    """The command of each peer that this build has, in the order of the tables."""
    found = {}
    for name in LABELS:
        program = build / f"peer_{name}"
        if program.exists():
            found[name] = [program]
    if python := python_with_zeep():
        found["zeep"] = [python, "-B", HERE / "peers" / "zeep_peer.py"]
    for name in sorted(LABELS.keys() - found.keys()):
        print(f"{name} is not installed: it is not measured", file=sys.stderr)
    return found


def skips(peer, case):
    return peer in SLOW_CASES and case not in SLOW_CASES[peer]


def calls_in(peer, case, round_ms):
    """How many calls fill a round; the first ones warm what is kept."""
    peer.ask("round", case, 1)
    wall = max(peer.ask("round", case, 3)["wall"], 1)
    return max(1, min(2000, round(round_ms * 1e6 / wall)))


def rounds_of(peers, case, rounds, round_ms):
    """The answers of each peer, one for each round. The order within a round changes, so that
    nobody always comes after the same other one."""
    counts = {name: calls_in(peer, case, round_ms) for name, peer in peers.items()}
    answers = {name: [] for name in peers}
    order = list(peers)
    shuffle = random.Random(1).shuffle
    for _ in range(rounds):
        shuffle(order)
        for name in order:
            answers[name].append(peers[name].ask("round", case, counts[name]))
    return answers


def of_case(answers, floor):
    """Times, and ratios to the floor of the same round."""
    found = {}
    for name, own in answers.items():
        pairs = list(zip(own, answers[floor]))
        found[name] = {
            "wall": summary([one["wall"] for one in own]),
            "ratio": summary([one["wall"] / low["wall"] for one, low in pairs]),
            "cpu_ratio": summary([one["cpu"] / max(low["cpu"], 1) for one, low in pairs]),
            "faults": summary([one["faults"] for one in own]),
        }
    return found


def measure(build, commands, core, rounds, round_ms, cases=CASES, floor="floor"):
    """Every case through every peer: {case: {peer: times}}, all on one core with the server."""
    found = {}
    with ExitStack() as stack:
        environment = stack.enter_context(application_files())
        url = stack.enter_context(server(build, core))
        peers = {}
        for name, command in commands.items():
            peers[name] = Program([*command, url, core], environment)
            stack.callback(peers[name].close)
        for case in cases:
            asked = {name: peer for name, peer in peers.items() if not skips(name, case)}
            for name, peer in asked.items():
                answer = peer.ask("check", case)
                if not answer["ok"]:
                    raise RuntimeError(f"{name} read {case} as {answer['seen']}")
            found[case] = of_case(rounds_of(asked, case, rounds, round_ms), floor)
            print(f"  {case}: {len(asked)} peers, {rounds} rounds", file=sys.stderr)
    return found


def memory(build, commands, core, case=LARGE):
    """What each peer grows by for one large reply, in a process of its own, by the reply's size."""
    found = {}
    with application_files() as environment, server(build, core) as url:
        for name, command in commands.items():
            if skips(name, case) or name in WITHOUT_MEMORY:
                continue
            peer = Program([*command, url, core], environment)
            answer = peer.ask("memory", case)
            peer.close()
            found[name] = {key: answer[key] / answer["reply"] for key in ("peak", "held")}
    return found


def show(found, held):
    """The ratios as a table, and below it the times of the floor."""
    rows = []
    names = [name for name in LABELS if any(name in of for of in found.values())]
    for name in names:
        cells = []
        for case in found:
            one = found[case].get(name)
            cells.append(with_spread(one["ratio"]) if one and name != "floor" else "1" if one else "")
        cells.append(number(held[name]["peak"]) if name in held else "")
        rows.append([LABELS[name], *cells])
    head = ["ratio to the floor", *(CASES[case] for case in found), "memory ÷ 9 MB"]
    floor = ["floor", *(time(found[case]["floor"]["wall"]["median"]) for case in found)]
    faults = [
        ["floor", *(number(found[case]["floor"]["faults"]["median"]) for case in found)],
        ["this library", *(number(found[case]["bvconn"]["faults"]["median"]) for case in found)],
    ]
    cases = [CASES[case] for case in found]
    return "\n\n".join(
        [
            table(head, rows),
            table(["a call takes", *cases], [floor]),
            table(["page faults of a call", *cases], faults),
        ]
    )
