"""run_clients.py PROCESSOR SOURCE_DIR BUILD_DIR BVSANDBOX DLL PROGRAMS examples|pascal: registers the
component, and runs against a sandbox either the examples in each language, or the clients in Pascal.
PROGRAMS is the folder of those that CMake has built. Ends with 77 where something is missing."""

import difflib
import os
import subprocess
import sys

import every_call  # noqa: F401  which knows where this is
import examples
from windows_host import WindowsHost, skip

PROCESSOR, SOURCE, BUILD, BVSANDBOX, DLL, PROGRAMS, WHICH = sys.argv[1:8]
HERE = os.path.join(SOURCE, "tests", "hosts", "pascal")
EXAMPLES = os.path.join(SOURCE, "examples", "windows")

# What each example shows of the sandbox's invoice INV-1001, and of one that there is not; JScript knows
# no source of an error.
NUMBER = "InvoiceNumber: 700101"
ERROR = "Error 80042739"
SOURCED = ERROR + " of BVInvoiceConnector"


class Clients:
    def __init__(self):
        self.host = WindowsHost(PROCESSOR, SOURCE, BUILD)
        self.failed = False

    def compile(self, source):
        """A program in Pascal; None where there is no compiler for it."""
        # Debian has no compiler for 32 bits on machines of 64.
        if PROCESSOR != "x86_64":
            print(f"{source} is not tried: there is no Free Pascal for 32 bits here")
            return None
        done = subprocess.run([os.path.join(HERE, "compile"), BUILD, source], check=False)
        if done.returncode == 77:
            return None
        if done.returncode != 0:
            sys.exit(f"{source} is not compiled")
        return os.path.join(BUILD, os.path.basename(source).replace(".pas", ".exe"))

    def compare(self, name, wanted, answer):
        found = answer.stdout.splitlines()
        for line in difflib.unified_diff(wanted, found, name, "what it wrote", lineterm=""):
            print(line)
        if wanted != found or answer.returncode != 0:
            print(f"{name} ended with {answer.returncode}")
            self.failed = True
        else:
            print(f"{name} wrote what it should have")

    def examples(self, url):
        words = (url + "/soap", "ANNA", "INV-1001")
        for name, error in (("invoice.vbs", SOURCED), ("invoice.js", ERROR)):
            self.compare(name, [NUMBER, error],
                         self.host.script("Z:" + os.path.join(EXAMPLES, name), *words))
        pascal = self.compile(os.path.join(EXAMPLES, "invoice.pas"))
        if pascal:
            self.compare("invoice.pas", [NUMBER, SOURCED], self.host.run(pascal, *words))
        for name in sorted(os.listdir(EXAMPLES)):
            if name.endswith(".cpp"):
                program = os.path.join(PROGRAMS, name.replace(".cpp", ".exe"))
                self.compare(name, [NUMBER, SOURCED], self.host.run(program, *words))

    def pascal(self, url):
        importer = self.compile(os.path.join(HERE, "import_library.pas"))
        if not importer:
            skip("there is no Free Pascal that makes programs for this Windows")
        # The type library lies within the component too; the importer takes either.
        self.compare("import_library.pas", ["BVConnector_1_0_TLB needs 0 others"],
                     self.host.run(importer, "Z:" + DLL))
        for name in ("late_bound", "typed"):
            program = self.compile(os.path.join(HERE, name + ".pas"))
            with open(os.path.join(HERE, name + ".out"), encoding="ascii") as file:
                self.compare(name + ".pas", file.read().splitlines(),
                             self.host.run(program, url + "/soap"))


def main():
    clients = Clients()
    for program in (BVSANDBOX, DLL):
        if not os.path.exists(program):
            skip(f"{program} is not built")
    # A new sandbox has the documents that these ask for.
    with clients.host.registered(DLL), examples.Sandbox(BVSANDBOX) as sandbox:
        (clients.examples if WHICH == "examples" else clients.pascal)(sandbox.url)
    sys.exit(1 if clients.failed else 0)


if __name__ == "__main__":
    main()
