"""What bench/run refuses before it measures anything."""

import subprocess
import sys
import unittest
from pathlib import Path

RUN = Path(__file__).resolve().parents[2] / "bench" / "run"


class Arguments(unittest.TestCase):
    def refused(self, *words):
        done = subprocess.run([sys.executable, str(RUN), *words], capture_output=True, text=True)
        self.assertEqual(done.returncode, 2, done.stderr)
        self.assertEqual(done.stdout, "")
        return done.stderr.splitlines()[-1]

    def test_a_revision_that_is_not_there_is_named(self):
        self.assertEqual(
            self.refused("--compare", "no-such-revision"),
            "./dev bench: error: there is no revision no-such-revision",
        )

    def test_an_option_is_no_revision(self):
        self.assertIn("there is no revision --all", self.refused("--compare=--all"))

    def test_a_comparison_has_neither_parts_nor_a_page(self):
        for words in (["peers"], ["--record"], ["--count"]):
            self.assertIn("--compare has a table of its own", self.refused("--compare", "HEAD", *words))

    def test_new_numbers_are_taken_only_where_instructions_are_counted(self):
        self.assertIn("--update goes with --count", self.refused("--update"))

    def test_a_part_that_is_not_there_is_named(self):
        self.assertIn("there is no part everything", self.refused("everything"))

    def test_what_is_kept_is_a_whole_page(self):
        self.assertIn("is kept", self.refused("peers", "--record"))


if __name__ == "__main__":
    unittest.main()
