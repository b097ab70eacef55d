"""test_every_call.py BVCONN BVSANDBOX: whether a batch is asked for every operation on each route, and a
script for what the batch is asked for."""

import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

import every_call
import examples
import jscript
import vbscript

BVCONN, BVSANDBOX = sys.argv[1:3]
VALUES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "docs", "reference",
                      "calls.txt")


class EveryCall(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.interface = json.loads(subprocess.check_output([BVCONN, "list", "--json"]))
        values = examples.read_values(VALUES)
        with examples.Sandbox(BVSANDBOX) as sandbox, tempfile.TemporaryDirectory() as home:
            cls.calls = list(every_call.operations(cls.interface, values, sandbox.url))
            cls.titles, cls.lines = every_call.batch_lines(BVCONN, home, cls.interface, cls.calls,
                                                           sandbox.url)
        cls.script = vbscript.script(cls.interface, cls.calls, "http://127.0.0.1:1")

    def test_asks_for_all_205_operations_on_each_route(self):
        for route in ("soap", "dal"):
            self.assertEqual(
                len({each for each in self.titles if each.startswith(route + " BV")}), 205)

    def test_the_sandbox_understands_nearly_all(self):
        """Six have no route but the data access layer; a few keys are gone when their turn comes."""
        failed = [line for line in self.lines if ": error " in line]
        self.assertEqual(sum(": error 91 " in line for line in failed), 6)
        self.assertLess(len(failed), 40, "\n".join(failed))

    def test_the_script_shows_the_lines_of_the_batch(self):
        statements = self.script.split('CreateObject("BVConn.BVConfigConnector")')[1]
        shown = re.findall(r'^Line "((?:soap |dal )?\w+\.\w+)"', statements, re.M)
        self.assertEqual(shown, self.titles)
        self.assertTrue(self.script.endswith('WScript.Echo "done"\n'))

    def test_the_script_makes_an_object_of_every_class(self):
        made = re.findall(r'^Set the(\w+) = CreateObject\("BVConn\.(\w+)"\)$', self.script, re.M)
        self.assertEqual([name for name, _ in made], [name for _, name in made])
        self.assertEqual({name for name, _ in made}, {each["class"] for each in self.interface})
        self.assertEqual(len(made), 22)

    def test_the_other_language_shows_the_same_lines(self):
        script = jscript.script(self.interface, self.calls, "http://127.0.0.1:1")
        shown = re.findall(r'^line\("((?:soap |dal )?\w+\.\w+)"', script, re.M)
        self.assertEqual(shown, self.titles)
        made = re.findall(r'^var the(\w+) = new ActiveXObject\("BVConn\.(\w+)"\);$', script, re.M)
        self.assertEqual({name for _, name in made}, {each["class"] for each in self.interface})
        self.assertTrue(script.endswith('WScript.Echo("done");\n'))

    def test_the_other_language_knows_no_sources_and_no_dates(self):
        self.assertEqual(jscript.as_shown("soap A.b: error -5 source 'it's' description 'd'"),
                         "soap A.b: error -5 description 'd'")
        self.assertEqual(
            jscript.as_shown("soap A.b: n{a=2007-01-05 00:00:00 b='2007-01-05 00:00:00'}"),
            "soap A.b: n{a=(a date) b='2007-01-05 00:00:00'}")

    def test_values_are_written_as_each_language_has_them(self):
        self.assertEqual(vbscript.literal(["a", 'say "b"']), 'Array("a", "say ""b""")')
        self.assertEqual(vbscript.literal(True), "True")
        self.assertEqual(every_call.shown({"node": {"name": "n", "value": None, "nodes": [
            {"name": "a", "value": "é\\", "nodes": []}, {"name": "b", "value": 2.5, "nodes": []},
            {"name": "c", "value": None, "nil": True, "nodes": []},
            {"name": "d", "value": {"date": "2007-01-05T00:00:00"}, "nodes": []}]}}),
            "n{a='\\00E9\\005C' b=2.5 c=nil d=2007-01-05 00:00:00}")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
