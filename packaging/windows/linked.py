"""What a program for Windows has in it beside our own sources: asked from the linker's list (TARGET.map)
and from the compiler's (ninja), in packages of the machine that built, with their versions and terms."""

import os
import re
import subprocess
from dataclasses import dataclass, field

# By the package a file is from, and by the file. What is none of these has no place in a program of
# ours until somebody has looked at its terms.
PARTS = (
    (r"curl", r"libcurl\.a", "libcurl", "HTTP, and TLS by Windows"),
    (r"libz-mingw-w64-dev", r"libz\.a", "zlib", "replies that are packed"),
    (r"(gcc|g\+\+)-mingw-w64-[\w-]+-posix(-runtime)?", r".*", "libstdc++ and libgcc",
     "the C++ library; under the exception that GCC has for its runtime library"),
    (r"mingw-w64-[\w-]+-dev", r"lib(win)?pthread\.a", "winpthreads", "threads"),
    (r"mingw-w64-[\w-]+-dev", r".*", "mingw-w64",
     "the beginning of a program, parts of the C library, and how the libraries of Windows are called"),
    (r"nlohmann-json3-dev", r".*", "JSON for Modern C++", "JSON"),
    (r"libtomlplusplus-dev", r".*", "toml++", "files of settings"),
    (r"libcli11-dev", r".*", "CLI11", "the command line"),
)


@dataclass
class Part:
    name: str
    purpose: str
    package: str
    version: str
    terms: str  # the file that has them
    files: set = field(default_factory=set)

    @property
    def upstream(self):
        """Without what the distribution adds to a version."""
        return re.sub(r"\+b\d+$", "", re.split(r"[-+]", self.version.split(":")[-1], maxsplit=1)[0])


def run(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout


def files_of_map(path):
    """Libraries of which something was taken, and single objects; those of the build itself are named
    from its folder on."""
    with open(path, encoding="utf-8", errors="replace") as file:
        text = file.read()
    taken = re.search(r"^Archive member included .*?\n\n(.*?)\n\n", text, re.S | re.M).group(1)
    libraries = re.findall(r"^(/.*\.a)\(", taken, re.M)
    objects = re.findall(r"^LOAD (/.*\.o)$", text, re.M)
    return {os.path.realpath(each) for each in libraries + objects}


def headers_of_target(build, target):
    """Libraries that are headers alone reach a build through one folder of links, which the compiler
    may have followed."""
    objects = [each for each in run("ninja", "-C", build, "-t", "inputs", target).splitlines()
               if each.endswith(".obj")]
    links = os.path.join(build, "host_headers")
    folders = tuple(os.path.realpath(os.path.join(links, each)) + "/" for each in os.listdir(links))
    found = re.findall(r"^    (.*)$", run("ninja", "-C", build, "-t", "deps", *objects), re.M)
    whole = {os.path.realpath(os.path.join(build, each)) for each in found}
    return {each for each in whole if each.startswith(folders)}


def packages_of(paths, libraries):
    """For each file its package, the version of that, and the file with the terms."""
    own = os.path.realpath(libraries) + "/"
    found = {}
    with open(os.path.join(libraries, "version"), encoding="ascii") as file:
        version = file.read().strip()
    for path in paths:
        if path.startswith(own):
            found[path] = ("curl", version, os.path.join(libraries, "COPYING"))
    others = [path for path in paths if path not in found]
    owners = re.findall(r"^([^:,]+)[^ ]*: (.*)$", run("dpkg-query", "-S", *others), re.M)
    versions = dict(line.split(" ") for line in run(
        "dpkg-query", "-W", "-f=${Package} ${Version}\n",
        *sorted({name for name, _ in owners})).splitlines())
    for name, path in owners:
        found[path] = (name, versions[name], f"/usr/share/doc/{name}/copyright")
    return found


def parts_of(build, target, libraries):
    """The parts of a program, by their names."""
    parts = {}
    files = files_of_map(os.path.join(build, target + ".map")) | headers_of_target(build, target)
    for path, (package, version, terms) in sorted(packages_of(files, libraries).items()):
        base = os.path.basename(path)
        for pattern, file, name, purpose in PARTS:
            if re.fullmatch(pattern, package) and re.fullmatch(file, base):
                break
        else:
            raise SystemExit(f"{target} has {path} of {package} in it, whose terms nobody knows here")
        part = parts.setdefault(name, Part(name, purpose, package, version, terms))
        if base.endswith((".a", ".o")):
            part.files.add(base)
    return parts
