"""Two builds of the library side by side, with the programs of this tree."""

import os
import shutil
import subprocess
import sys

from . import count, micro, peers
from .statistics import table, time, with_spread
from .world import HERE, application_files, server

ROOT = HERE.parent
FOLDER = ROOT / "build" / "compare"
# What knows no more of the library than applications do.
TARGETS = ["peer_bvconn", "micro_reading", "micro_writing", "micro_values", "micro_calls", "micro_json"]


def commit_of(base):
    """The commit that a revision stands for; "" where there is none."""
    command = ["git", "-C", str(ROOT), "rev-parse", "--quiet", "--verify", "--short=12"]
    command += ["--end-of-options", base + "^{commit}"]
    return subprocess.run(command, stdout=subprocess.PIPE, text=True).stdout.strip()


def build_of(commit):
    """Builds the library as it was at a commit; gives the folder of the programs."""
    tree = FOLDER / commit
    build = tree / "build" / "compare"
    if not tree.exists():
        run_git("worktree", "prune")
        run_git("worktree", "add", "--detach", str(tree), commit)
    configure = ["cmake", "-S", HERE, "-B", build, "-G", "Ninja"]
    configure += ["-DCMAKE_BUILD_TYPE=Release", f"-DBVCONN_TREE={tree}"]
    if shutil.which("ccache"):
        # Paths count from the tree, as the folder of the build lies in it: what is the same in two
        # revisions is compiled once.
        ccache = f"cmake;-E;env;CCACHE_BASEDIR={tree};CCACHE_NOHASHDIR=1;ccache"
        configure.append(f"-DCMAKE_CXX_COMPILER_LAUNCHER={ccache}")
    subprocess.run([str(word) for word in configure], check=True, stdout=sys.stderr)
    # A part that this revision's library cannot be asked for is left out.
    for target in TARGETS:
        command = ["cmake", "--build", build, "-j", os.environ.get("BVCONN_JOBS", "2"), "--target", target]
        done = subprocess.run([str(word) for word in command], stdout=sys.stderr)
        if done.returncode != 0:
            if target == TARGETS[0]:
                sys.exit(f"{commit} cannot be built")
            print(f"{target} cannot be built with {commit}: it is not compared", file=sys.stderr)
    return build


def run_git(*words):
    done = subprocess.run(
        ["git", "-C", str(ROOT), *words], check=True, stdout=subprocess.PIPE, text=True
    )
    return done.stdout.strip()


def compare_calls(base, now, options):
    """Every case through both builds, each in processes of its own."""
    commands = {
        "floor": [now / "peers/peer_floor"],
        "base": [base / "peers/peer_bvconn"],
        "now": [now / "peers/peer_bvconn"],
    }
    found = peers.measure(
        now / "peers", commands, options.core, options.rounds, options.round_ms, floor="base"
    )
    held = peers.memory(now / "peers", commands, options.core)
    return found, held


def compare_counts(base, now, core):
    """Instructions of a call, {case: (base, now)}; nothing where there is no valgrind."""
    if not shutil.which("valgrind"):
        return {}
    found = {}
    with application_files() as environment:
        environment["GLIBC_TUNABLES"] = count.PLAIN_GLIBC
        with server(now / "peers", core, count.SERVER_DELAY_MS) as url:
            for case in count.CASES:
                found[case] = [
                    count.counted(build / "peers/peer_bvconn", url, core, case, environment)[0]
                    for build in (base, now)
                ]
    return found


def compare(base, options):
    old = build_of(base)
    found, held = compare_calls(old, options.build, options)
    counts = compare_counts(old, options.build, options.core)
    parts = micro.compare(
        old / "micro", options.build / "micro", options.core, options.passes, options.seconds
    )
    rows = []
    for case, of in found.items():
        one = [time(of[name]["wall"]["median"]) for name in ("base", "now")]
        count_of = counts.get(case)
        ratio = f"{count_of[1] / count_of[0]:.4f}" if count_of else ""
        rows.append([peers.CASES[case], *one, with_spread(of["now"]["ratio"]), ratio])
    head = ["a call", "base", "now", "time, now ÷ base", "instructions, now ÷ base"]
    memory = [[name, f"{held[name]['peak']:.2f}"] for name in ("base", "now")]
    print(table(head, rows))
    print("\n" + table(["build", "memory ÷ 9 MB"], memory))
    print("\n" + micro.show_ratios(parts))
    return {"calls": found, "memory": held, "instructions": counts, "parts": parts}
