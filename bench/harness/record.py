"""Keeps the results of a run in pages of docs/, between two markers, with what they hold for."""

import platform
import re
import subprocess

from .world import HERE

DOCS = HERE.parent / "docs"
PAGES = {"performance.md": ("peers", "micro", "scale"), "sandbox-performance.md": ("sandbox",)}
BEGIN, END = "<!-- results -->\n", "<!-- end of results -->\n"
PACKAGES = {
    "libcurl": "libcurl4-openssl-dev",
    "pugixml": "libpugixml-dev",
    "expat": "libexpat1-dev",
    "libxml2": "libxml2-dev",
    "gSOAP": "libgsoap-dev",
    "zeep": "python3-zeep",
}
SANDBOX_PACKAGES = {"SQLite": "libsqlite3-dev", "Boost": "libboost-dev", "PostgreSQL": "postgresql"}
TITLES = {
    "peers": "A call",
    "micro": "Its parts",
    "scale": "Many calls",
    "sandbox": "Under load",
}


def output_of(*command):
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=True)
        return done.stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        models = [line.split(":")[1].strip() for line in lines if line.startswith("model name")]
    return f"{len(models)} × {models[0]}" if models else platform.machine()


def versions(packages):
    found = []
    for name, package in packages.items():
        version = output_of("dpkg-query", "-W", "-f=${Version}", package)
        # Of "2.9.14+dfsg-1.3", what its makers call it.
        if version:
            found.append(f"{name} {re.split('[-+]', version.split(':')[-1])[0]}")
    return ", ".join(found)


def compiler(build):
    cache = (build.parent / "CMakeCache.txt").read_text()
    path = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", cache, re.MULTILINE)
    return output_of(path[1], "--version").split("\n")[0] if path else ""


def facts(parts, options):
    """What the numbers hold for."""
    commit = output_of("git", "-C", str(HERE.parent), "rev-parse", "--short=12", "HEAD")
    if "sandbox" in parts:
        packages = SANDBOX_PACKAGES
        rounds = f"{options.rounds} of {options.sandbox_ms} ms for each kind of request."
    else:
        packages = PACKAGES
        rounds = (
            f"{options.rounds} of about {options.round_ms} ms for a call, "
            f"{options.passes} passes of {options.seconds} s for each of its parts."
        )
    return "\n".join(
        [
            f"- Machine: {processor()}, Linux {platform.release().split('-')[0]}.",
            f"- Made by: {compiler(options.build)}, preset release; commit {commit}.",
            f"- Beside: {versions(packages)}.",
            f"- Rounds: {rounds}",
        ]
    )


def are_whole_pages(parts):
    """Whether these parts are all that some pages hold, so that none is left from another run."""
    return all(set(of) <= set(parts) or not set(of) & set(parts) for of in PAGES.values())


def record(texts, options):
    """Replaces what stands between the markers of the pages that hold these."""
    for name, parts in PAGES.items():
        if not set(parts) <= set(texts):
            continue
        page = (DOCS / name).read_text()
        before, rest = page.split(BEGIN)
        _, after = rest.split(END)
        sections = [facts(parts, options)]
        sections += [f"### {TITLES[part]}\n\n{texts[part]}" for part in parts]
        text = before + BEGIN + "\n" + "\n\n".join(sections) + "\n\n" + END + after
        (DOCS / name).write_text(text)
