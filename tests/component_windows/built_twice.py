"""built_twice.py SOURCE BUILD WORK: whether the folder that the sources lie in, and the moment, have no part in
BVConn.dll. Some of its objects are compiled anew from a copy of the sources, in a folder with another
name and depth, all of it is linked there, and both are held against what the build has made."""

import os
import re
import shutil
import subprocess
import sys

SOURCE, BUILD, WORK = (os.path.abspath(each) for each in sys.argv[1:4])
COPY = os.path.join(WORK, "copy", "of", "sources")
COPY_BUILD = os.path.join(WORK, "built")
LIBRARY = "bvconn/component/windows/BVConn.dll"
# Those in which a path would be most likely: with assertions of their own or of others' headers, those that
# are tables, and the resources.
ANEW = (r"component/windows/.*\.(rc\.res|res)$", r"_version\.rc", r"type_library\.rc",
        r"component/.*/windows/registration\.cpp\.obj$", r"component/.*/class_table\.cpp\.obj$",
        r"settings/.*/file_store\.cpp\.obj$", r"http/.*/curl_errors\.cpp\.obj$")


def ninja(*words):
    return subprocess.run(["ninja", "-C", BUILD, *words], stdout=subprocess.PIPE, text=True,
                          check=True).stdout.splitlines()


def content(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def in_copy(command):
    """With the folders of the copy; those of libraries that the build only reads stay. In one pass, since each
    of these folders may lie in another."""
    kept = os.path.join(SOURCE, "build", "windows")
    places = {kept: kept, BUILD: COPY_BUILD, SOURCE: COPY}
    return re.sub("(" + "|".join(map(re.escape, places)) + r")(?![\w.-])",
                  lambda found: places[found.group(1)], command)


def run(command):
    done = subprocess.run(in_copy(command), shell=True, cwd=COPY_BUILD, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False,
                          env={**os.environ, "CCACHE_DISABLE": "1"})
    if done.returncode != 0:
        sys.exit(f"{in_copy(command)}\n{done.stdout}")


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    shutil.copytree(os.path.join(SOURCE, "bvconn"), os.path.join(COPY, "bvconn"))
    # What the build wrote before it compiled, and folders for all that it makes.
    for place, folders, names in os.walk(BUILD):
        # What it makes lies below the tests.
        folders[:] = [each for each in folders if each not in ("Testing", "tests", "tools")]
        there = os.path.join(COPY_BUILD, os.path.relpath(place, BUILD))
        os.makedirs(there, exist_ok=True)
        for name in names:
            if name.endswith((".hxx", ".cxx", ".rc", ".cpp", ".h")):
                shutil.copy2(os.path.join(place, name), there)
    inputs = [os.path.relpath(each, BUILD) if os.path.isabs(each) else each
              for each in ninja("-t", "inputs", LIBRARY)]
    objects = [each for each in inputs if each.endswith((".obj", ".res"))]
    anew = [each for each in objects if any(re.search(pattern, each) for pattern in ANEW)]
    if len(anew) != 6:
        sys.exit(f"To be made anew are {anew}")
    # What they are made of in their turn, which is made first.
    first = ["bvconn/component/windows/BVConn.tlb"]
    commands = [ninja("-t", "commands", "-s", each)[-1] for each in anew]
    for header in re.findall(r"-include (\S+/cmake_pch\.hxx)", "\n".join(commands)):
        first.append(os.path.relpath(header, BUILD) + ".gch")
    for each in dict.fromkeys(first):
        run(ninja("-t", "commands", "-s", each)[-1])
    for command in commands:
        run(command)
    different = [each for each in anew if content(BUILD, each) != content(COPY_BUILD, each)]
    for each in objects:
        if each not in anew:
            shutil.copy2(os.path.join(BUILD, each), os.path.join(COPY_BUILD, each))
    run(ninja("-t", "commands", "-s", LIBRARY)[-1])
    if content(BUILD, LIBRARY) != content(COPY_BUILD, LIBRARY):
        different.append(LIBRARY)
    if different:
        sys.exit("Made in another folder these are other bytes: " + ", ".join(different))
    shutil.rmtree(WORK)


if __name__ == "__main__":
    main()
