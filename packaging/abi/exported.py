"""Compiles the sources that define what the library exports, with the types that it speaks of.

    exported.py BUILD LIBRARY

The library itself is built with the debug information of lines alone. Its types take far less time
and room when all sources are compiled as one, so that is done, whatever names they keep to
themselves: those that several have are told apart by a macro. A source that cannot be among
others all the same is compiled alone.
"""

import json
import os
import re
import shlex
import subprocess
import sys

UNNAMED = re.compile(r"^namespace \{$(.*?)^\}  // namespace$", re.M | re.S)
NAME = re.compile(
    r"^(?:(?:class|struct|enum|enum class) (\w+)"
    r"|(?![}#/ ]|using|extern|template|class|struct|enum|static_assert)"
    r"(?:.*?[\s&*])?([A-Za-z_]\w*)\s*[({=;\[])",
    re.M,
)
NO_NAMES = {"const", "default", "noexcept"}

# Known not to bear the others' headers; any other such source is found out, at some cost.
ALONE = {"bvconn/dal/bv_connector_object.cpp", "bvconn/platform/soap/node_lines.cpp"}


def symbols(path, *options):
    """What a library or an object defines for others."""
    lines = subprocess.run(
        ["nm", "--defined-only", *options, path], capture_output=True, text=True, check=True
    ).stdout.splitlines()
    return {line.split()[2] for line in lines if " T " in line}


def read_sources(build):
    """The sources that define something exported, with the command for one that is compiled."""
    exported = symbols(os.path.join(build, "bvconn", "libBVConn.so"), "--dynamic")
    sources, options = {}, {}
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as commands:
        for entry in json.load(commands):
            output = re.search(r" -o (\S+)", entry["command"])[1]
            made = os.path.join(build, output)
            room = output.startswith("bvconn/") and not output.startswith("bvconn/testing/")
            if room and os.path.exists(made) and symbols(made) & exported:
                path = os.path.relpath(entry["file"])
                with open(path, encoding="utf-8") as source:
                    sources[path] = source.read()
                words = shlex.split(entry["command"])
                options |= dict.fromkeys(w for w in words if re.match(r"-(D|I|isystem|std|f)", w))
    return sources, list(options)


def private_names(text):
    return {
        either or other
        for block in UNNAMED.findall(text)
        for either, other in NAME.findall(re.sub(r'"[^"\n]*"', '""', block))
    } - NO_NAMES


def as_one(sources):
    includes, uses = {}, {}
    for text in sources.values():
        includes |= dict.fromkeys(re.findall(r'^#include [<"].*[>"]$', text, re.M))
        for name in private_names(text):
            uses[name] = uses.get(name, 0) + 1
    # All headers come first, so that no macro reaches them.
    lines = [line for line in includes if ".inc" not in line]
    for number, (path, text) in enumerate(sorted(sources.items())):
        shared = sorted(name for name in private_names(text) if uses[name] > 1)
        lines += [f"#define {name} {name}_{number}" for name in shared]
        lines += [f'#include "{path}"']
        lines += [f"#undef {name}" for name in shared]
    return "\n".join(lines) + "\n"


def main(build, library):
    sources, options = read_sources(build)
    with open(os.path.join(build, "CMakeCache.txt"), encoding="utf-8") as cache:
        compiler = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", cache.read(), re.M)[1]
    one = os.path.splitext(library)[0] + ".cpp"
    command = [compiler, *options, "-I.", "-w", "-O0", "-g", "-shared", "-o", library]
    alone = sorted(ALONE & set(sources))
    while True:
        with open(one, "w", encoding="utf-8") as together:
            together.write(as_one({p: t for p, t in sources.items() if p not in alone}))
        done = subprocess.run([*command, one, *alone], stderr=subprocess.PIPE, text=True)
        if done.returncode == 0:
            return 0
        at_fault = re.findall(r"^(\S+?):\d+:\d+: error", done.stderr, re.M)
        more = {os.path.relpath(path) for path in at_fault} & set(sources) - set(alone)
        if not more:
            print(done.stderr, file=sys.stderr)
            return 1
        print("compiled alone:", *sorted(more), file=sys.stderr)
        alone += sorted(more)


sys.exit(main(*sys.argv[1:]))
