"""A broken link is found, and fails the making of the pages."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import support
from cpp_api import Api
from guides import BrokenLink, Guides
from link_check import broken_links
from prose import Prose
from shell import Site


class LinkCheck(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def page(self, path, text):
        target = os.path.join(self.folder, path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "w", encoding="utf-8") as file:
            file.write(text)

    def test_links_that_lead_somewhere_are_left_alone(self):
        self.page("a/b.html", '<h2 id="here">x</h2><a href="../c.html#there">x</a>'
                  '<a href="#here">x</a><a href="https://example.com/none">x</a>')
        self.page("c.html", '<p id="there">x</p><a href="a/b.html">x</a><img src="d.png">')
        self.page("d.png", "")
        self.assertEqual(broken_links(self.folder), [])

    def test_a_page_that_is_not_there_is_found(self):
        self.page("a.html", '<p>x</p>\n<a href="gone.html">x</a>')
        self.assertEqual(broken_links(self.folder),
                         ["a.html:2: gone.html: there is no such page"])

    def test_a_place_that_is_not_there_is_found(self):
        self.page("a.html", '<a href="b.html#gone">x</a><a href="#gone">x</a>')
        self.page("b.html", '<p id="other">x</p>')
        self.assertEqual(broken_links(self.folder),
                         ["a.html:1: b.html#gone: the page has no such place",
                          "a.html:1: #gone: the page has no such place"])

    def test_is_a_program_that_fails_over_what_it_finds(self):
        program = os.path.join(support.GENERATOR, "link_check.py")
        check = [sys.executable, "-B", program, self.folder]
        self.page("a.html", "<p>x</p>")
        self.assertEqual(subprocess.run(check, capture_output=True, check=False).returncode, 0)
        self.page("b.html", '<a href="gone.html">x</a>')
        done = subprocess.run(check, capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout),
                         (1, "b.html:1: gone.html: there is no such page\n"))

    def test_a_script_that_is_not_there_is_found(self):
        self.page("a.html", '<script src="gone.js"></script>')
        self.assertEqual(len(broken_links(self.folder)), 1)


class GuideLinks(unittest.TestCase):
    def setUp(self):
        self.root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.root)

    def write(self, text):
        os.makedirs(os.path.join(self.root, "docs"), exist_ok=True)
        for name, words in (("docs/page.md", text), ("README.md", "# R\n")):
            with open(os.path.join(self.root, name), "w", encoding="utf-8") as file:
                file.write(words)
        site = Site(os.path.join(self.root, "out"), "1.0")
        Guides(self.root, site, Api(self.root), Prose([], [])).write()
        return os.path.join(self.root, "out/guides/page.html")

    def test_to_a_source_that_is_there_name_it(self):
        os.makedirs(os.path.join(self.root, "src"))
        with open(os.path.join(self.root, "src/a.cpp"), "w", encoding="utf-8"):
            pass
        self.assertIn("the source (src/a.cpp)",
                      support.text_of(self.write("# T\n\n[the source](../src/a.cpp)\n")))

    def test_to_a_file_that_is_not_there_fail(self):
        with self.assertRaisesRegex(BrokenLink, r"docs/page.md: links to \.\./src/gone\.cpp"):
            self.write("# T\n\n[gone](../src/gone.cpp)\n")


if __name__ == "__main__":
    unittest.main()
