"""try.py SOURCE BUILD WORK COMPILER BVSANDBOX: makes the package of a build for Windows, looks at what is
in it, registers and calls its component where it was unpacked, and builds programs with it. Ends with
77 where something is missing that this needs."""

import os
import re
import shutil
import subprocess
import sys
import unittest
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

SCRIPT = """\
Set invoices = CreateObject("BVConn.BVInvoiceConnector")
Set invoice = invoices.GetInvoice(WScript.Arguments(0), "ANNA", "INV-1001")
WScript.Echo invoice.Nodes.ItemByName("InvoiceNumber").Value
WScript.Echo CreateObject("BVConn.Support").Version
WScript.Echo "END"
"""


def make(folder):
    subprocess.run([sys.executable, "-B", os.path.join(SOURCE, "packaging", "windows", "package.py"),
                    os.path.join(WORK, folder), BUILD], check=True, stdout=subprocess.DEVNULL)
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
                   "WINEPREFIX": os.path.join(WORK, "prefix")}
    if not X64:
        environment.setdefault("BVCONN_WINE_32", os.path.join(SOURCE, "build", "windows", "wine32"))
    answer = subprocess.run([os.path.join(SOURCE, "tests", "windows", "run"), *command], cwd=WORK,
                            env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            text=True, errors="replace", check=False)
    return answer.returncode, answer.stdout.replace("\r", "").splitlines()


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(WORK, ignore_errors=True)
        cls.zip = make("first")
        os.makedirs(os.path.dirname(UNPACKED))
        with zipfile.ZipFile(cls.zip) as archive:
            archive.extractall(os.path.dirname(UNPACKED))
        cls.files = files_below(UNPACKED)

    def test_is_the_same_bytes_when_it_is_made_again(self):
        self.assertTrue(content(self.zip) == content(make("second")))

    def test_has_one_folder_that_bears_its_name(self):
        self.assertEqual(os.listdir(os.path.dirname(UNPACKED)), [NAME])

    def test_has_what_its_readme_promises(self):
        for name in ("BVConn.dll", "BVConn.tlb", "bvconn.exe"):
            self.assertIn(f"{SIZE}/{name}", self.files)
        for name in ("BVConn.lib", "libBVConn.a", "libBVConnTesting.a", "libcurl.a", "libz.a"):
            self.assertIn(f"lib/{SIZE}/{name}", self.files)
        listed = [line for line in text(SOURCE, "bvconn", "public_headers.txt").splitlines()
                  if not line.startswith("#")]
        self.assertEqual({each for each in self.files if each.startswith("include/")},
                         {"include/bvconn/" + each for each in listed} | {"include/BVConn.h"})

    def test_has_a_function_in_cpp_for_every_member(self):
        idl = text(SOURCE, "bvconn", "component", "windows", "BVConn.idl")
        members, name = [], ""
        for line in idl.splitlines():
            begins = re.match(r"  dispinterface (\w+) \{", line)
            name = begins.group(1)[1:] if begins else name
            member = re.match(r'      \[id\(-?\d+\)((?:"[^"]*"|[^]"])*)\] .*?[ *](\w+)\(', line)
            # The interface of events, whose name begins with two, is for others to have.
            if member and "hidden" not in member.group(1) and not name.startswith("_"):
                members.append(f"{name}::{member.group(2)}")
        # All operations, and the catalogues' rows besides.
        self.assertGreater(len(members), 205 + 245)
        header = text(UNPACKED, "include", "BVConn.h")
        self.assertEqual(sorted(re.findall(r"^inline \S+ (\w+::\w+)\(.*\) const \{ .*; \}$", header, re.M)),
                         sorted(members))

    def test_leads_nowhere_that_is_not_there(self):
        for page in ("README.md", "LINKED.md"):
            for link in re.findall(r"\]\(([^)#]+)", text(UNPACKED, page)):
                self.assertIn(link, self.files, page)

    def test_says_that_no_licence_was_chosen(self):
        said = "No licence has been chosen by the owner yet"
        self.assertIn(said, text(UNPACKED, "README.md"))
        self.assertIn("has not chosen a licence yet",
                      text(UNPACKED, "licences", "BVConnector.txt"))

    def test_lists_all_that_the_linker_took_with_its_terms(self):
        rows = [[cell.strip() for cell in line.split("|")[1:-1]]
                for line in text(UNPACKED, "LINKED.md").splitlines() if re.match(r"\| [^p-]", line)]
        taken = set()
        for target, program in (("BVConnComponent", "BVConn.dll"), ("bvconn", "bvconn.exe")):
            with open(os.path.join(BUILD, target + ".map"), encoding="utf-8",
                      errors="replace") as file:
                taken |= set(re.findall(r"^/[^(\n]*/([^/(\n]+\.a)\(", file.read(), re.M))
            names = {row[0] for row in rows if f"`{SIZE}/{program}`" in row[4]}
            self.assertLessEqual({"libcurl", "zlib", "winpthreads", "mingw-w64",
                                  "libstdc++ and libgcc"}, names)
            # Only the program reads a command line.
            self.assertEqual("CLI11" in names, program == "bvconn.exe")
        self.assertIn("libcurl.a", taken)
        listed = {file for row in rows for file in row[5].split(", ")}
        self.assertEqual({each for each in listed if each.endswith(".a")}, taken)
        for row in rows:
            self.assertRegex(row[1], r"^\d+\.\d+")
            self.assertIn(re.search(r"\((licences/.*)\)", row[6]).group(1), self.files)

    def test_lists_the_versions_that_are_in_the_files(self):
        versions = {cells[1].strip(): cells[2].strip() for cells in
                    (line.split("|") for line in text(UNPACKED, "LINKED.md").splitlines())
                    if len(cells) > 3}
        library = content(UNPACKED, SIZE, "BVConn.dll")
        self.assertTrue(f" inflate {versions['zlib']} Copyright".encode() in library)
        self.assertTrue(f"{versions['libcurl']}\0".encode() in library)
        header = text(BUILD_LIBRARIES, "include", "curl", "curlver.h")
        self.assertIn(f'#define LIBCURL_VERSION "{versions["libcurl"]}"', header)

    def test_names_no_folder_of_the_machine_that_built(self):
        for name in sorted(self.files):
            self.assertFalse(SOURCE.encode() in content(UNPACKED, name), name)

    def test_is_registered_where_it_lies_called_and_removed(self):
        library = "Z:" + os.path.join(UNPACKED, SIZE, "BVConn.dll")
        with open(os.path.join(WORK, "call.vbs"), "w", encoding="ascii", newline="\r\n") as file:
            file.write(SCRIPT)
        key = ("reg.exe", "query", "HKLM\\Software\\Classes\\BVConn.BVInvoiceConnector")
        self.assertEqual(run(SYSTEM + "regsvr32.exe", "/s", library)[0], 0)
        try:
            self.assertEqual(run(*key)[0], 0)
            with examples.Sandbox(BVSANDBOX) as sandbox:
                answer = run(SYSTEM + "cscript.exe", "//nologo", "call.vbs", sandbox.url + "/soap")
            self.assertEqual(answer[1], ["700101", VERSION, "END"])
        finally:
            self.assertEqual(run(SYSTEM + "regsvr32.exe", "/s", "/u", library)[0], 0)
        self.assertNotEqual(run(*key)[0], 0)

    # Of the acceptance script, what it saw of each step, by the step's name.

    def accept(self, *words):
        status, lines = run("cmd.exe", "/c", "Z:" + os.path.join(UNPACKED, "acceptance", "accept.cmd"),
                            *words)
        path = re.search(r"^Please send back the file C:(.*)$", "\n".join(lines), re.M).group(1)
        report = text(WORK, "prefix", "drive_c", *path.split("\\")[1:]).replace("\r", "")
        self.assertTrue("\n".join(lines).startswith(report.rstrip("\n")), lines)
        steps = re.findall(r"^(passed|not judged|FAILED) +([^:]+): (.*)$", report, re.M)
        return status, {name: (outcome, seen) for outcome, name, seen in steps}

    def test_acceptance_passes_as_far_as_wine_can_judge(self):
        with examples.Sandbox(BVSANDBOX) as sandbox:
            status, steps = self.accept(sandbox.url + "/soap", "/session:S", "/invoice:INV-1002")
        self.assertEqual({name: outcome for name, (outcome, _) in steps.items()}, {
            "the registry before": "passed", "registering for the user": "passed",
            "registering for the machine": "passed",
            "making an object of every class by both names": "passed",
            "a row of a catalogue": "passed", "an error of the component's own": "passed",
            "a call over http": "passed", "a call where nobody listens": "passed",
            "a call over https, certificate trusted": "not judged",
            "a call over https, certificate not trusted": "not judged",
            "the same with the file of its authority": "not judged",
            "the event of a heart beat that fails": "not judged",
            "removing all": "passed", "the registry after": "passed",
            "making an object that is not registered": "passed"})
        self.assertEqual(status, 0)
        # 22 classes of the interface and three helpers.
        self.assertEqual(steps["making an object of every class by both names"][1],
                         "25 classes, version " + VERSION)
        self.assertEqual(steps["a row of a catalogue"][1], "getInvoice")
        self.assertRegex(steps["a call over http"][1], r"^the server answers with \w+, which has \d+ nodes$")

    def test_acceptance_tells_its_words_without_an_address(self):
        status, lines = run("cmd.exe", "/c",
                            "Z:" + os.path.join(UNPACKED, "acceptance", "accept.cmd"))
        self.assertEqual(status, 2)
        for word in ("ADDRESS", "/https:", "/bad:", "/ca:", "/session:", "/invoice:"):
            self.assertIn(word, "\n".join(lines))

    def test_acceptance_fails_where_no_server_answers(self):
        status, steps = self.accept("http://127.0.0.1:9/soap")
        self.assertEqual(status, 1)
        outcome, seen = steps["a call over http"]
        self.assertEqual(outcome, "FAILED")
        self.assertIn("0x80044301", seen)
        self.assertEqual(steps["the registry after"][0], "passed")

    def test_acceptance_leaves_what_was_registered_before(self):
        library = "Z:" + os.path.join(UNPACKED, SIZE, "BVConn.dll")
        self.assertEqual(run(SYSTEM + "regsvr32.exe", "/s", library)[0], 0)
        try:
            status, steps = self.accept("http://127.0.0.1:9/soap")
            self.assertEqual(status, 1)
            self.assertEqual(list(steps), ["the registry before"])
            self.assertIn("is registered already", steps["the registry before"][1])
            self.assertEqual(run("reg.exe", "query", "HKLM\\Software\\Classes\\BVConn.BVMethods")[0], 0)
        finally:
            run(SYSTEM + "regsvr32.exe", "/s", "/u", library)

    def test_brings_a_command_line_that_runs(self):
        answer = run("Z:" + os.path.join(UNPACKED, SIZE, "bvconn.exe"), "--version")
        self.assertEqual(answer[0], 0)
        self.assertIn(VERSION, "\n".join(answer[1]))

    def test_programs_are_built_with_it_by_CMake(self):
        build = os.path.join(WORK, "consumer")
        log = ""
        for step in (["-S", os.path.join(SOURCE, "tests", "windows_package", "consumer"), "-B", build,
                      "-G", "Ninja", "-DCMAKE_SYSTEM_NAME=Windows",
                      "-DCMAKE_CXX_COMPILER=" + COMPILER, "-DCMAKE_PREFIX_PATH=" + UNPACKED], ["--build", build]):
            done = subprocess.run(["cmake", *step], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  text=True, check=False)
            log += done.stdout
            self.assertEqual(done.returncode, 0, log)
        self.assertEqual(run(os.path.join(build, "entry_point.exe")), (0, ["getInvoice"]))
        with examples.Sandbox(BVSANDBOX) as sandbox:
            answer = run(os.path.join(build, "first_program.exe"), sandbox.url + "/soap", "ANNA",
                         "INV-1001")
        self.assertEqual(answer[0], 0)
        self.assertIn("InvoiceNumber: 700101", answer[1])


if __name__ == "__main__":
    for needed in (WINE, BVSANDBOX):
        if not os.access(needed, os.X_OK):
            print(f"skipped: there is no {needed} here")
            sys.exit(77)
    with open(os.path.join(BUILD, "CMakeCache.txt"), encoding="utf-8") as cache:
        BUILD_LIBRARIES = re.search(r"^BVCONN_WINDOWS_LIBRARIES:\w+=(.*)$", cache.read(),
                                    re.M).group(1)
    unittest.main(argv=sys.argv[:1])
