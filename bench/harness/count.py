"""The instructions of a call, counted by callgrind, against those of baseline.json.

Counts repeat to a ten-thousandth: they are made in the client alone, over calls on a connection that
is kept, against a server that answers late enough never to be found ready. What depends on the
machine is taken out twice: glibc is kept from choosing its functions by the processor, and a call is
counted as what it adds to the floor, which is counted in the same run and has the same libcurl. Other
compilers have numbers of their own, or none.
"""

import json
import platform
import re
import subprocess

from .statistics import table
from .world import HERE, application_files, server

BASELINE = HERE / "baseline.json"
CASES = {"small": 20, "rows200": 5, "fault": 20}
LIMIT = 1.05
SERVER_DELAY_MS = 20
# The functions that every x86-64 has.
PLAIN_GLIBC = "glibc.cpu.hwcaps=-AVX,-AVX2,-ERMS,-FSRM:glibc.cpu.x86_non_temporal_threshold=0x100000"


def counted(program, url, core, case, environment):
    """The instructions of one call, and the compiler that made the program."""
    command = ["valgrind", "--tool=callgrind", "--toggle-collect=*counted_calls*"]
    command += ["--callgrind-out-file=/dev/null", program, url, core]
    done = subprocess.run(
        [str(word) for word in command],
        input=f"count {case} {CASES[case]}\n",
        capture_output=True,
        text=True,
        env=environment,
    )
    collected = re.search(r"Collected : (\d+)", done.stderr)
    if done.returncode != 0 or not collected:
        raise RuntimeError(done.stderr)
    return round(int(collected[1]) / CASES[case]), json.loads(done.stdout)["compiler"]


def measure(build, core):
    """{case: {"floor": instructions, "call": instructions}}, and what they hold for."""
    found, compiler = {}, ""
    with application_files() as environment, server(build, core, SERVER_DELAY_MS) as url:
        environment["GLIBC_TUNABLES"] = PLAIN_GLIBC
        for case in CASES:
            one = {}
            for name, program in (("floor", "peer_floor"), ("call", "peer_invoice")):
                one[name], compiler = counted(build / program, url, core, case, environment)
            found[case] = one
    return found, f"{compiler}, {platform.machine()}"


def check(build, core, update):
    """Prints the comparison; whether it holds."""
    found, toolchain = measure(build, core)
    baseline = json.loads(BASELINE.read_text()) if BASELINE.exists() else {}
    if update:
        baseline[toolchain] = found
        BASELINE.write_text(json.dumps(baseline, indent=2, sort_keys=True) + "\n")
    before = baseline.get(toolchain)
    rows, holds = [], True
    for case, now in found.items():
        row = [case, now["floor"], now["call"]]
        if before:
            then = before[case]
            # As much as the call takes with the floor that the baseline had.
            same_floor = now["call"] - now["floor"] + then["floor"]
            ratio = same_floor / then["call"]
            holds = holds and ratio <= LIMIT
            row += [then["call"], f"{ratio:.3f}"]
        rows.append(row)
    head = ["instructions of a call", "floor", "now"] + (["baseline", "ratio"] if before else [])
    print(table(head, rows))
    if not before:
        print(f"There is no baseline for {toolchain}: nothing is compared.")
    elif not holds:
        print(
            "A call takes over 5 % more instructions than the baseline. If that is wanted,\n"
            "`./dev bench --count --update` takes the new numbers, in a commit that says why."
        )
    return holds
