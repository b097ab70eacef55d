"""The parts of a call, measured with Google Benchmark in several passes that are interleaved."""

import json
import subprocess
import sys

from .statistics import number, summary, table, time, with_spread
from .world import application_files

UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def programs(build):
    return sorted(path for path in build.glob("micro_*") if path.is_file())


def pass_of(program, core, seconds, environment):
    """One pass of a program: {benchmark: its numbers}, times of the processor in nanoseconds."""
    command = ["taskset", "-c", str(core), str(program), "--benchmark_format=json"]
    command.append(f"--benchmark_min_time={seconds}")
    done = subprocess.run(command, capture_output=True, text=True, env=environment)
    if done.returncode != 0:
        raise RuntimeError(f"{program.name}: {done.stderr}")
    found = {}
    for one in json.loads(done.stdout)["benchmarks"]:
        if one.get("error_occurred"):
            raise RuntimeError(f"{one['name']}: {one['error_message']}")
        numbers = {"cpu": one["cpu_time"] * UNITS[one["time_unit"]]}
        for key in ("bytes_per_second", "items_per_second", "bytes_a_node"):
            if key in one:
                numbers[key] = one[key]
        found[one["name"]] = numbers
    return found


def passes(builds, core, count, seconds):
    """{benchmark: [numbers of the first build, …]} for each pass; benchmarks of all builds alone."""
    collected = {}
    with application_files() as environment:
        names = set.intersection(*({p.name for p in programs(build)} for build in builds))
        for name in sorted(names):
            for _ in range(count):
                runs = [pass_of(build / name, core, seconds, environment) for build in builds]
                for key in [key for key in runs[0] if all(key in run for run in runs)]:
                    collected.setdefault(key, []).append([run[key] for run in runs])
            print(f"  {name}: {count} passes", file=sys.stderr)
    return collected


def measure(build, core, count, seconds):
    found = {}
    for name, runs in passes([build], core, count, seconds).items():
        keys = runs[0][0].keys()
        found[name] = {key: summary([run[0][key] for run in runs]) for key in keys}
    return found


def compare(base, now, core, count, seconds):
    """{benchmark: ratio of the processor times, now to base}."""
    collected = passes([base, now], core, count, seconds)
    return {
        name: summary([after["cpu"] / before["cpu"] for before, after in runs])
        for name, runs in collected.items()
    }


def throughput(one):
    if "bytes_per_second" in one:
        return f"{one['bytes_per_second']['median'] / 1e6:.0f} MB/s"
    if "items_per_second" in one:
        return f"{time(1e9 / one['items_per_second']['median'])} each"
    return ""


def show(found):
    rows = []
    for name, one in found.items():
        middle = one["cpu"]["median"]
        spread = (one["cpu"]["high"] - one["cpu"]["low"]) / 2 / middle * 100
        node = number(one["bytes_a_node"]["median"]) if "bytes_a_node" in one else ""
        rows.append([name, f"{time(middle)} ±{spread:.1f} %", throughput(one), node])
    return table(["part", "time", "throughput", "bytes a node"], rows)


def show_ratios(ratios):
    return table(["part", "now ÷ base"], [[name, with_spread(one)] for name, one in ratios.items()])
