"""What `bvconn.exe` has otherwise than elsewhere: its command line, and settings in the registry."""

import json
import os
import subprocess
import tempfile
import unittest

PROGRAM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "bvconn")
KEY = "Software\\Brimvale\\Torvex\\AppData"


def run(*words, **variables):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("BVCONN_MACHINE_SETTINGS", "BVCONN_USER_SETTINGS")}
    return subprocess.run([PROGRAM, *words], env={**environment, **variables}, encoding="utf-8",
                          stdin=subprocess.DEVNULL, capture_output=True, check=False)


def setting(name):
    done = run("settings", "list", "--json")
    return next(each for each in json.loads(done.stdout) if each["name"] == name)


class CommandLine(unittest.TestCase):
    def test_keeps_letters_that_no_code_page_has_together(self):
        done = run("call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=http://127.0.0.1:1/",
                   "aSessionID=Größe Ł 東", "--print-request")
        self.assertIn(">Größe Ł 東<", done.stdout, done.stderr)

    def test_has_no_patterns(self):
        done = run("call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=http://127.0.0.1:1/",
                   "aSessionID=*", "--print-request")
        self.assertIn(">*<", done.stdout, done.stderr)

    def test_keeps_quotes_and_backslashes(self):
        done = run("call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=http://127.0.0.1:1/",
                   'aSessionID=a"b \\ c\\', "--print-request")
        self.assertIn(">a\"b \\ c\\<", done.stdout.replace("&quot;", '"'), done.stderr)

    def test_variables_keep_their_letters(self):
        done = run("call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=http://127.0.0.1:1/",
                   "--print-request", BVCONN_SESSION="Größe Ł 東")
        self.assertIn(">Größe Ł 東<", done.stdout, done.stderr)


class Settings(unittest.TestCase):
    def test_lie_in_the_registry_and_say_so(self):
        for text in ("True", "False"):
            self.assertEqual(run("settings", "set", "TraceSoapTraffic", text).returncode, 0)
            found = setting("TraceSoapTraffic")
            self.assertEqual((found["value"], found["from"]), (text, "registry"))
            self.assertEqual(found["registry"], "HKCU\\" + KEY)
            self.assertNotIn("file", found)

    def test_of_the_machine_lie_below_its_root(self):
        self.assertEqual(setting("tracePort")["registry"], "HKLM\\" + KEY)

    def test_table_has_a_place_of_each(self):
        lines = run("settings", "list").stdout.splitlines()
        self.assertTrue(lines[0].endswith("PLACE"), lines)
        self.assertTrue(lines[1].endswith("HKLM\\" + KEY), lines)

    def test_lie_in_a_file_that_the_environment_names(self):
        done = run("settings", "list", "--json", BVCONN_USER_SETTINGS="C:\\no\\such.toml")
        found = next(each for each in json.loads(done.stdout) if each["name"] == "TraceSoapTraffic")
        self.assertEqual((found["file"], found["from"]), ("C:\\no\\such.toml", "default"))

    def test_choose_the_form_of_service_objects(self):
        with tempfile.TemporaryDirectory() as folder:
            file = "Z:" + os.path.join(folder, "machine.toml")

            def found():
                done = run("settings", "list", "--json", BVCONN_MACHINE_SETTINGS=file)
                return next(each for each in json.loads(done.stdout)
                            if each["name"] == "ServiceObjects")

            self.assertEqual((found()["value"], found()["from"]), ("", "default"))
            done = run("settings", "set", "ServiceObjects", "http", BVCONN_MACHINE_SETTINGS=file)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual(found()["value"], "http")
            self.assertNotIn("remark", found())
            done = run("settings", "set", "ServiceObjects", "soap", BVCONN_MACHINE_SETTINGS=file)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn("ServiceObjects takes component or http, or an empty text", done.stderr)
            with open(os.path.join(folder, "machine.toml"), encoding="utf-8") as written:
                text = written.read()
            with open(os.path.join(folder, "machine.toml"), "w", encoding="utf-8") as changed:
                changed.write(text.replace("http", "soap"))
            self.assertEqual(found()["remark"], "not component or http")


if __name__ == "__main__":
    unittest.main()
