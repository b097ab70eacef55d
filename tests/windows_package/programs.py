import os
import shutil
import subprocess
import unittest

from unpacked import COMPILER, SIZE, SOURCE, SYSTEM, UNPACKED, VERSION, WORK, files_below, run, sandbox

SCRIPT = """\
Set invoices = CreateObject("BVConn.BVInvoiceConnector")
Set invoice = invoices.GetInvoice(WScript.Arguments(0), "ANNA", "INV-1001")
WScript.Echo invoice.Nodes.ItemByName("InvoiceNumber").Value
WScript.Echo CreateObject("BVConn.Support").Version
WScript.Echo "END"
"""


class Programs(unittest.TestCase):
    def test_is_registered_where_it_lies_called_and_removed(self):
        library = "Z:" + os.path.join(UNPACKED, SIZE, "BVConn.dll")
        with open(os.path.join(WORK, "call.vbs"), "w", encoding="ascii", newline="\r\n") as file:
            file.write(SCRIPT)
        key = ("reg.exe", "query", "HKLM\\Software\\Classes\\BVConn.BVInvoiceConnector")
        self.assertEqual(run(SYSTEM + "regsvr32.exe", "/s", library)[0], 0)
        try:
            self.assertEqual(run(*key)[0], 0)
            with sandbox() as server:
                answer = run(SYSTEM + "cscript.exe", "//nologo", "call.vbs", server.url + "/soap")
            self.assertEqual(answer[1], ["700101", VERSION, "END"])
        finally:
            self.assertEqual(run(SYSTEM + "regsvr32.exe", "/s", "/u", library)[0], 0)
        self.assertNotEqual(run(*key)[0], 0)

    def test_brings_a_command_line_that_runs(self):
        answer = run("Z:" + os.path.join(UNPACKED, SIZE, "bvconn.exe"), "--version")
        self.assertEqual(answer[0], 0)
        self.assertIn(VERSION, "\n".join(answer[1]))

    def build(self, source, folder):
        """Builds a project that has nothing of ours but the package, and gives the folder."""
        folder = os.path.join(WORK, folder)
        log = ""
        ccache = shutil.which("ccache")
        for step in (["-S", source, "-B", folder, "-G", "Ninja", "-DCMAKE_SYSTEM_NAME=Windows",
                      "-DCMAKE_CXX_COMPILER=" + COMPILER, "-DCMAKE_PREFIX_PATH=" + UNPACKED,
                      *(["-DCMAKE_CXX_COMPILER_LAUNCHER=" + ccache] if ccache else [])],
                     ["--build", folder, "-j2"]):
            done = subprocess.run(["cmake", *step], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  text=True, check=False)
            log += done.stdout
            self.assertEqual(done.returncode, 0, log)
        return folder

    def test_programs_are_built_with_it_by_CMake(self):
        built = self.build(os.path.join(SOURCE, "tests", "windows_package", "consumer"), "consumer")
        self.assertEqual(run(os.path.join(built, "entry_point.exe")), (0, ["getInvoice"]))
        # A user whose numbers have a comma.
        key = ("reg.exe", "add", "HKCU\\Control Panel\\International", "/v", "sDecimal", "/f", "/d")
        self.assertEqual(run(*key, ",")[0], 0)
        try:
            self.assertEqual(run(os.path.join(built, "values.exe")), (0, ["2,5 2.5 True 7.25 0"]))
        finally:
            self.assertEqual(run(*key, ".")[0], 0)

    def test_its_examples_are_built_where_they_lie(self):
        built = self.build(os.path.join(UNPACKED, "examples"), "examples")
        programs = {os.path.splitext(each)[0] for each in os.listdir(built) if each.endswith(".exe")}
        sources = {os.path.splitext(os.path.basename(each))[0] for each in files_below(UNPACKED)
                   if each.startswith("examples/") and each.endswith(".cpp")}
        self.assertEqual(programs, sources)
        self.assertLessEqual({"first_program", "invoice_by_name", "invoice_typed"}, programs)
        with sandbox() as server:
            answer = run(os.path.join(built, "first_program.exe"), server.url + "/soap", "ANNA",
                         "INV-1001")
        self.assertEqual(answer[0], 0)
        self.assertIn("InvoiceNumber: 700101", answer[1])
