"""run_every_call.py PROCESSOR SOURCE_DIR BUILD_DIR BVCONN BVSANDBOX DLL [LANGUAGE]: registers the component,
lets a script (in vbscript, or jscript) call every operation on each route against a sandbox, and compares
its lines with the answers that `bvconn batch` gets from another such sandbox. Ends with 77 where the
component or wine is missing."""

import importlib
import json
import os
import subprocess
import sys

import every_call
import examples
from windows_host import WindowsHost, skip

PROCESSOR, SOURCE, BUILD, BVCONN, BVSANDBOX, DLL = sys.argv[1:7]
language = importlib.import_module(sys.argv[7] if len(sys.argv) > 7 else "vbscript")


def batch_lines(interface, values):
    home = os.path.join(BUILD, "home")
    os.makedirs(home, exist_ok=True)
    with examples.Sandbox(BVSANDBOX) as sandbox:
        calls = list(every_call.operations(interface, values, sandbox.url))
        _, lines = every_call.batch_lines(BVCONN, home, interface, calls, sandbox.url)
    return [language.as_shown(line) for line in lines] + ["done"]


def script_lines(host, interface, values):
    with examples.Sandbox(BVSANDBOX) as sandbox:
        calls = list(every_call.operations(interface, values, sandbox.url))
        with open(os.path.join(BUILD, language.FILE), "w", encoding="ascii", newline="\r\n") as file:
            file.write(language.script(interface, calls, sandbox.url))
        answer = host.script(language.FILE)
        return answer.stdout.replace(sandbox.url, "URL").splitlines()


def main():
    host = WindowsHost(PROCESSOR, SOURCE, BUILD)
    for program in (BVCONN, BVSANDBOX, DLL):
        if not os.path.exists(program):
            skip(f"{program} is not built")
    interface = json.loads(subprocess.check_output([BVCONN, "list", "--json"]))
    values = examples.read_values(os.path.join(SOURCE, "docs", "reference", "calls.txt"))
    with host.registered(DLL):
        wanted, found = batch_lines(interface, values), script_lines(host, interface, values)
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
