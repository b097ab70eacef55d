"""run_every_call.py PROCESSOR SOURCE_DIR BUILD_DIR BVCONN BVSANDBOX DLL: registers the component, lets a
script call every operation on each route against a sandbox, and compares its lines with the answers that
`bvconn batch` gets from another such sandbox. Ends with 77 where the component or wine is missing."""

import json
import os
import subprocess
import sys

import every_call
import examples
import vbscript

PROCESSOR, SOURCE, BUILD, BVCONN, BVSANDBOX, DLL = sys.argv[1:7]
WINE = os.environ.get("BVCONN_WINE", "/usr/lib/wine/wine64")
SYSTEM = "C:/windows/system32/" if PROCESSOR == "x86_64" else "C:/windows/syswow64/"


def skip(reason):
    print("skipped: " + reason)
    sys.exit(77)


def run(*command):
    # Local time is that of the other program, and numbers are written with a point.
    environment = {"BVCONN_WINE_SECONDS": "240", **os.environ, "TZ": "UTC", "LC_ALL": "C.UTF-8"}
    wine_32 = os.path.join(SOURCE, "build", "windows", "wine32")
    if PROCESSOR == "i686" and os.path.isdir(wine_32):
        environment.setdefault("BVCONN_WINE_32", wine_32)
    return subprocess.run([os.path.join(SOURCE, "tests", "windows", "run"), *command], cwd=BUILD,
                          env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          text=True, errors="replace", check=False)


def batch_lines(interface, values):
    home = os.path.join(BUILD, "home")
    os.makedirs(home, exist_ok=True)
    with examples.Sandbox(BVSANDBOX) as sandbox:
        calls = list(every_call.operations(interface, values, sandbox.url))
        _, lines = every_call.batch_lines(BVCONN, home, interface, calls, sandbox.url)
    return lines + ["done"]


def script_lines(interface, values):
    with examples.Sandbox(BVSANDBOX) as sandbox:
        calls = list(every_call.operations(interface, values, sandbox.url))
        with open(os.path.join(BUILD, "every_call.vbs"), "w", encoding="ascii",
                  newline="\r\n") as file:
            file.write(vbscript.script(interface, calls, sandbox.url))
        answer = run(SYSTEM + "cscript.exe", "//nologo", "every_call.vbs")
        return answer.stdout.replace(sandbox.url, "URL").splitlines()


def main():
    if not os.access(WINE, os.X_OK):
        skip(f"there is no {WINE} here")
    for program in (BVCONN, BVSANDBOX, DLL):
        if not os.path.exists(program):
            skip(f"{program} is not built")
    os.makedirs(BUILD, exist_ok=True)
    registered = run(SYSTEM + "regsvr32.exe", "/s", "Z:" + DLL)
    if registered.returncode != 0:
        sys.exit(f"the component is not registered: {registered.returncode}")
    interface = json.loads(subprocess.check_output([BVCONN, "list", "--json"]))
    values = examples.read_values(os.path.join(SOURCE, "docs", "reference", "calls.txt"))
    try:
        wanted, found = batch_lines(interface, values), script_lines(interface, values)
    finally:
        run(SYSTEM + "regsvr32.exe", "/s", "/u", "Z:" + DLL)
    differences = [(want, have) for want, have in zip(wanted, found) if want != have]
    for want, have in differences[:20]:
        print(f"wanted {want[:600]}\n   got {have[:600]}")
    if len(wanted) != len(found):
        print(f"{len(found)} lines, not {len(wanted)}; the last is {found[-1:]}")
    if differences or len(wanted) != len(found):
        sys.exit(f"{len(differences)} lines are otherwise")
    print(f"{len(wanted)} lines are the same")


if __name__ == "__main__":
    main()
