"""What programs of 32 and of 64 bits share in one home of Windows: the settings, what is registered, and
what scripts write.

both_builds.py NARROW_BUILD WIDE_BUILD BVSANDBOX: folders of the builds for 32 and for 64 bits, and the
server. Ends with 77 where one of them is not there, or no wine for programs of 32 bits."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
WINE_32 = os.environ.get("BVCONN_WINE_32", os.path.join(ROOT, "build", "windows", "wine32"))
KEY = "Brimvale\\Torvex\\AppData"
OF_32 = "HKLM\\Software\\Wow6432Node\\" + KEY
SCRIPTS = os.path.join(os.path.dirname(HERE), "component_windows", "scripts")
SKIPPED = 77


class Build:
    def __init__(self, folder, system):
        self.tool = os.path.join(folder, "tools", "bvconn", "bvconn.exe")
        self.library = os.path.join(folder, "bvconn", "component", "windows", "BVConn.dll")
        self.system = "C:/windows/" + system + "/"

    def regsvr32(self, *words):
        return run(self.system + "regsvr32.exe", "/s", *words, "Z:" + self.library).returncode

    def script(self, path, *words):
        return run(self.system + "cscript.exe", "//nologo", "Z:" + path, *words).stdout


def run(*words):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("BVCONN_MACHINE_SETTINGS", "BVCONN_USER_SETTINGS")}
    environment.update(BVCONN_WINE_32=WINE_32, BVCONN_WINE_SECONDS="60")
    return subprocess.run([os.path.join(HERE, "run"), *words], env=environment, encoding="utf-8",
                          errors="replace", stdin=subprocess.DEVNULL, capture_output=True,
                          check=False)


class Settings(unittest.TestCase):
    def tearDown(self):
        # Other tests share this home, and are to find what an application finds that has set nothing.
        run(WIDE.system + "reg.exe", "delete", OF_32, "/v", "defaultTimeOut", "/f")
        run(WIDE.system + "reg.exe", "delete", "HKCU\\Software\\" + KEY, "/v", "TraceSoapTraffic", "/f")

    def set(self, build, name, value):
        done = run(build.tool, "settings", "set", name, value)
        self.assertEqual(done.returncode, 0, done.stderr)

    def test_written_by_one_are_read_by_the_other(self):
        for writer, reader, time in ((NARROW, WIDE, "61000"), (WIDE, NARROW, "62000")):
            for name, value in (("defaultTimeOut", time), ("TraceSoapTraffic", "True"),
                                ("TraceSoapTraffic", "False")):
                self.set(writer, name, value)
                done = run(reader.tool, "settings", "get", name)
                self.assertEqual(done.stdout.strip(), value, done.stderr)

    def test_of_the_machine_lie_where_the_application_of_32_bits_has_them(self):
        for writer, value, in_hex in ((WIDE, "63000", "0xf618"), (NARROW, "64000", "0xfa00")):
            self.set(writer, "defaultTimeOut", value)
            shown = run(WIDE.system + "reg.exe", "query", OF_32, "/v", "defaultTimeOut")
            self.assertTrue({value, in_hex} & set(shown.stdout.split()), shown.stdout)
            other = run(WIDE.system + "reg.exe", "query", "HKLM\\Software\\" + KEY)
            self.assertNotEqual(other.returncode, 0, other.stdout)


class Registration(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.script = os.path.join(self.folder.name, "row.vbs")
        with open(self.script, "w", encoding="ascii") as file:
            file.write('WScript.Echo CreateObject("BVConnector.BVMethods").GetInvoice\n')
        # The host of scripts registers what is its own when it first starts in a new home.
        for build in (NARROW, WIDE):
            build.script(self.script)

    def tearDown(self):
        self.folder.cleanup()

    def classes(self, root="HKLM"):
        """All that is registered, as a listing in both views."""
        path = os.path.join(self.folder.name, "classes.reg")
        if os.path.exists(path):
            os.remove(path)
        run(WIDE.system + "reg.exe", "export", root + "\\Software\\Classes", "Z:" + path)
        with open(path, encoding="utf-16") as file:
            return file.read()

    def test_of_one_stays_when_the_other_goes(self):
        before = self.classes()
        for first, second in ((NARROW, WIDE), (WIDE, NARROW)):
            for build in (first, second):
                self.assertEqual(build.regsvr32(), 0)
            for build in (first, second):
                self.assertEqual(build.script(self.script).split(), ["getInvoice"])
            self.assertEqual(first.regsvr32("/u"), 0)
            self.assertEqual(first.script(self.script), "")
            self.assertEqual(second.script(self.script).split(), ["getInvoice"])
            self.assertEqual(second.regsvr32("/u"), 0)
            self.assertEqual(self.classes(), before)

    def test_for_the_user_leaves_nothing_of_either(self):
        # A home of wine has no such key before something is in it.
        run(WIDE.system + "reg.exe", "add", "HKCU\\Software\\Classes", "/f")
        before = self.classes("HKCU")
        for build in (NARROW, WIDE):
            self.assertEqual(build.regsvr32("/n", "/i:user"), 0)
        during = self.classes("HKCU")
        for build in (NARROW, WIDE):
            self.assertIn(build.library.replace("/", "\\\\"), during)
            self.assertEqual(build.regsvr32("/u", "/n", "/i:user"), 0)
        self.assertEqual(self.classes("HKCU"), before)


class Scripts(unittest.TestCase):
    def outputs(self, build):
        command = [SANDBOX, "--port", "0", "--memory", "--until-eof"]
        with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True) as sandbox:
            url = json.loads(sandbox.stdout.readline())["soap"]
            self.assertEqual(build.regsvr32(), 0)
            try:
                return {name: build.script(os.path.join(SCRIPTS, name), url)
                        for name in ("calls.vbs", "calls.js")}
            finally:
                build.regsvr32("/u")
                sandbox.stdin.close()

    def test_write_the_same(self):
        narrow, wide = self.outputs(NARROW), self.outputs(WIDE)
        for name, text in narrow.items():
            self.assertEqual(text.splitlines()[-1:], ["END"], name)
            self.assertEqual(text, wide[name], name)


def missing():
    needed = [SANDBOX, WINE_32]
    for build in (NARROW, WIDE):
        needed += [build.tool, build.library]
    return next((path for path in needed if not os.path.exists(path)), None)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    SANDBOX = sys.argv[3]
    NARROW, WIDE = Build(sys.argv[1], "syswow64"), Build(sys.argv[2], "system32")
    if missing():
        print(f"skipped: there is no {missing()}")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1])
