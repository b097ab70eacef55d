"""What the tests of the reference share."""

import html
import os
import re
import sys

import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.environ.get("BVCONN_BUILD", os.path.join(ROOT, "build/dev"))
GENERATOR = os.path.join(ROOT, "docs/reference")
sys.path.insert(0, GENERATOR)
sys.dont_write_bytecode = True


def generate(out, *options):
    """Runs the generator; gives its exit status and all that it said."""
    done = subprocess.run(
        [sys.executable, "-B", os.path.join(GENERATOR, "generate.py"), "--build", BUILD, "--out",
         out, *options], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    return done.returncode, done.stdout


def text_of(path, begin=None, end=None):
    """What a reader sees of a page, or of what stands between two of its headings."""
    with open(path, encoding="utf-8") as file:
        page = file.read()
    page = page[page.index("<main"):]
    if begin:
        page = page[page.index(f'id="{begin}"'):]
    if end:
        page = page[:page.index(f'id="{end}"')]
    page = re.sub(r"<[^>]*>", " ", page.replace("</code>", "").replace("<code>", ""))
    return re.sub(r"\s+", " ", html.unescape(page))
