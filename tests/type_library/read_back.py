"""read_back.py PROCESSOR SOURCE_DIR BUILD_DIR BVCONN [FILE…]: lets Windows' own functions (those of wine,
here) read a type library, and compares what they find with `bvconn list --json`: in each FILE, which a
build for Windows made, or in one that it makes of the interface definition as such a build does.
PROCESSOR is x86_64 or i686. Ends with 77 where a tool is missing."""

import json
import os
import shutil
import subprocess
import sys
import time

import facts

PROCESSOR, SOURCE, BUILD, BVCONN, *FILES = sys.argv[1:]
HERE = os.path.join(SOURCE, "tests", "type_library")
IDL = os.path.join(SOURCE, "bvconn", "component", "windows", "BVConn.idl")
WINE = os.environ.get("BVCONN_WINE", "/usr/lib/wine/wine64")


def skip(reason):
    print("skipped: " + reason)
    sys.exit(77)


def tool(name):
    name = f"{PROCESSOR}-w64-mingw32-{name}"
    return shutil.which(name) or skip(f"there is no {name} here")


def compiled(widl, name):
    """The bytes of a type library."""
    path = os.path.join(BUILD, name)
    bits = "--win64" if PROCESSOR == "x86_64" else "--win32"
    subprocess.run([widl, "-t", bits, "-o", path, IDL], check=True,
                   env={**os.environ, "WIDL_TIME_OVERRIDE": "0"})
    with open(path, "rb") as file:
        return file.read()


def made_library():
    widl = tool("widl")
    first = compiled(widl, "again.tlb")
    time.sleep(1.1)
    if compiled(widl, "BVConn.tlb") != first:
        sys.exit("the same definition gives another type library a second later")
    return "BVConn.tlb"


def run(program, *arguments):
    # Wine is to be done, or ended, before this test is.
    environment = {"BVCONN_WINE_SECONDS": "120", **os.environ}
    wine_32 = os.path.join(SOURCE, "build", "windows", "wine32")
    if PROCESSOR == "i686" and os.path.isdir(wine_32):
        environment.setdefault("BVCONN_WINE_32", wine_32)
    return subprocess.run([os.path.join(SOURCE, "tests", "windows", "run"), program, *arguments],
                          cwd=BUILD, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True,
                          env=environment, check=False)


def in_one_spelling(outside, classes):
    """A type library has one spelling of each name, the first that it meets. Names are looked up without
    regard to case, so the arguments of the objects that come behind the classes may show another."""
    spelling = {}
    for each in classes:
        for member in each["members"]:
            for name in [member["name"], *(one["name"] for one in member.get("arguments", []))]:
                spelling.setdefault(name.lower(), name)
    for lines in outside.values():
        for words in (line.split() for line in lines if line.startswith("member ")):
            spelling.setdefault(words[3].lower(), words[3])
    for lines in outside.values():
        for place, line in enumerate(lines):
            if line.startswith("argument "):
                words = line.split(" ")
                words[1] = spelling.get(words[1].lower(), words[1])
                lines[place] = " ".join(words)


def main():
    os.makedirs(BUILD, exist_ok=True)
    compiler = tool("g++-posix")
    files = ["Z:" + os.path.abspath(each) for each in FILES] or [made_library()]
    if not os.access(WINE, os.X_OK):
        skip(f"there is no {WINE} here to read the type library")
    program = os.path.join(BUILD, "list_type_library.exe")
    subprocess.run([compiler, "-std=c++20", "-O1", "-Wall", "-Wextra", "-Wconversion", "-Wshadow",
                    "-Werror", "-static", "-DUNICODE", "-DWIN32_LEAN_AND_MEAN", "-I", SOURCE, "-o",
                    program, os.path.join(HERE, "list_type_library.cpp"), "-lole32",
                    "-loleaut32"],
                   check=True)
    # Without a file it asks for one, with the status 2.
    if run(program).returncode != 2 and PROCESSOR == "i686":
        skip("this wine runs no programs of 32 bits to read the type library")
    classes = json.loads(subprocess.check_output([BVCONN, "list", "--json"]))
    ids = os.path.join(SOURCE, "tests", "component", "identifiers.txt")
    outside = facts.outside_facts(os.path.join(HERE, "outside_members.txt"), facts.identifiers(ids))
    in_one_spelling(outside, classes)
    wanted = {**facts.expected(classes, ids), **outside}
    return max(compare(program, each, wanted) for each in files)


def compare(program, file, wanted):
    answer = run(program, file)
    if answer.returncode != 0:
        sys.exit(f"list_type_library ended with {answer.returncode} for {file}")
    found = list(facts.differences(facts.listed(answer.stdout), wanted))
    same = f"{sum(map(len, wanted.values()))} facts under {len(wanted)} headings are the same"
    print(os.path.basename(file) + ": " + ("\n".join(found) or same))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
