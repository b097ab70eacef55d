"""The package of a build for Windows, as it lies where somebody unpacked it, in a folder with a space in its
name. What tests of it need is told by the words that the program was called with: SOURCE BUILD WORK
COMPILER BVSANDBOX."""

import os
import re
import shutil
import subprocess
import sys
import zipfile

SOURCE, BUILD, WORK, COMPILER, BVSANDBOX = sys.argv[1:6]
WORK = os.path.join(WORK, "try")
sys.path.insert(0, os.path.join(SOURCE, "docs", "reference"))
import examples  # noqa: E402

WINE = os.environ.get("BVCONN_WINE", "/usr/lib/wine/wine64")
X64 = "x86_64" in COMPILER
SIZE = "x64" if X64 else "x86"
SYSTEM = "C:/windows/system32/" if X64 else "C:/windows/syswow64/"
with open(os.path.join(SOURCE, "CMakeLists.txt"), encoding="utf-8") as lists:
    VERSION = re.search(r"BVConn VERSION ([\d.]+)", lists.read()).group(1)
NAME = f"bvconn-{VERSION}-windows"
UNPACKED = os.path.join(WORK, "unpacked folder", NAME)
PREFIX = os.path.join(WORK, "prefix")
with open(os.path.join(BUILD, "CMakeCache.txt"), encoding="utf-8") as cache:
    LIBRARIES = re.search(r"^BVCONN_WINDOWS_LIBRARIES:\w+=(.*)$", cache.read(), re.M).group(1)


def make(folder, *others):
    subprocess.run([sys.executable, "-B", os.path.join(SOURCE, "packaging", "windows", "package.py"),
                    os.path.join(WORK, folder), BUILD, *others], check=True, stdout=subprocess.DEVNULL)
    return os.path.join(WORK, folder, NAME + ".zip")


def content(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def text(*path):
    return content(*path).decode()


def files_below(folder):
    return {os.path.relpath(os.path.join(place, name), folder)
            for place, _, names in os.walk(folder) for name in names}


def run(*command):
    environment = {"BVCONN_WINE_SECONDS": "100", **os.environ,
                   "WINEPREFIX": PREFIX}
    if not X64:
        environment.setdefault("BVCONN_WINE_32", os.path.join(SOURCE, "build", "windows", "wine32"))
    answer = subprocess.run([os.path.join(SOURCE, "tests", "windows", "run"), *command], cwd=WORK,
                            env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            text=True, errors="replace", check=False)
    return answer.returncode, answer.stdout.replace("\r", "").splitlines()


def sandbox():
    return examples.Sandbox(BVSANDBOX)


def prepare(*others):
    """Makes the package, of other builds too, and unpacks it."""
    shutil.rmtree(WORK, ignore_errors=True)
    os.makedirs(os.path.dirname(UNPACKED))
    with zipfile.ZipFile(make("first", *others)) as archive:
        archive.extractall(os.path.dirname(UNPACKED))
