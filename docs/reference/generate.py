#!/usr/bin/env python3
"""Makes the reference: pages of HTML for operations, classes, errors and guides, with a search.

What the pages say is taken from where it is held: the built tool, which observes the operations;
the comments of the public headers; the first case of each wire file; a sandbox, which answers the
examples. See README.md beside this file.
"""

import argparse
import json
import os
import re
import shutil
import sys

import examples
import interface
import link_check
import operation_page
import overview_pages
from cpp_api import Api, DoxygenFailed, write_api
from guides import BrokenLink, Guides
from prose import Prose
from shell import Site

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
SHOWN_PROBLEMS = 20


def read(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        return file.read()


def options():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--build", default=os.path.join(ROOT, "build/dev"),
                        help="the build folder that has the tool and the sandbox")
    parser.add_argument("--out", default=os.path.join(ROOT, "build/dev/docs/html"))
    parser.add_argument("--source", default=ROOT, help="the source tree")
    parser.add_argument("--without-api", action="store_true",
                        help="leave out the pages that Doxygen makes")
    parser.add_argument("--examples", default="", metavar="CLASS",
                        help="run the examples of this class alone; 'none' runs none")
    given = parser.parse_args()
    for name in ("build", "out", "source"):
        setattr(given, name, os.path.abspath(getattr(given, name)))
    return given


def add_examples(given, classes):
    programs = {"tool": os.path.join(given.build, "tools/bvconn/bvconn"),
                "sandbox": os.path.join(given.build, "sandbox/bvsandbox")}
    values = examples.read_values(os.path.join(HERE, "calls.txt"))
    wanted = [member for member in interface.pages_of(classes)
              if examples.has_example(member) and given.examples in ("", member.cls)]
    examples.run_examples(programs, values, wanted)
    return [f"the example of {each.whole_name} ends with {each.example.status}: "
            f"{each.example.output}" for each in wanted if each.example.status != 0]


def write_search(site):
    entries = ",\n".join(json.dumps(each, ensure_ascii=False, separators=(",", ":"))
                         for each in site.entries)
    # Not fetched but included, so that it works from a file too.
    site.write_text("search-index.js", f"window.bvconnSearchIndex = [\n{entries}\n];\n")
    for name in ("search.js", "style.css"):
        shutil.copyfile(os.path.join(HERE, name), os.path.join(site.folder, name))


def version_of(source):
    return re.search(r"project\(BVConn VERSION ([\d.]+)", read(source, "CMakeLists.txt"))[1]


def main():
    given = options()
    classes = interface.read_interface(given.source,
                                       os.path.join(given.build, "tools/bvconn/bvconn"))
    problems = [] if given.examples == "none" else add_examples(given, classes)
    numbers = interface.read_error_numbers(read(given.source, "docs/errors.md"))
    if os.path.exists(os.path.join(given.out, "search-index.js")):
        shutil.rmtree(given.out)  # pages of what is gone would be found again
    site = Site(given.out, version_of(given.source))
    api = Api(given.source)
    if not given.without_api:
        try:
            api = write_api(given.source, given.out, site.version)
            site.has_api = True
        except DoxygenFailed as error:
            problems.append(str(error))
    oddities = interface.read_oddities(read(given.source, "docs/oddities.md"))
    for name, page in api.names({each.name for each in classes}):
        site.known_to_search("C++", name, page)
    prose = Prose(classes, numbers, oddities)
    for each in oddities:
        site.known_to_search("oddity", each.id, f"guides/oddities.html#{each.id}", each.words)
    try:
        guides = Guides(given.source, site, api, prose).write()
    except BrokenLink as error:
        problems.append(str(error))
        guides = {}
    for cls in classes:
        overview_pages.write_class(cls, classes, site, prose, api)
        if not cls.is_catalogue:
            for member in cls.members:
                operation_page.write(member, cls, classes, site, prose, api, guides, oddities)
    for number in numbers:
        overview_pages.write_error(number, classes, site, prose)
    overview_pages.write_classes_index(classes, site, prose)
    overview_pages.write_errors_index(numbers, site, prose)
    overview_pages.write_index(classes, numbers, guides, site, prose)
    write_search(site)
    problems += link_check.broken_links(given.out)
    for problem in problems[:SHOWN_PROBLEMS]:
        print(problem, file=sys.stderr)
    if len(problems) > SHOWN_PROBLEMS:
        print(f"… and {len(problems) - SHOWN_PROBLEMS} more", file=sys.stderr)
    print(f"{len(site.pages)} pages, {len(site.entries)} entries for the search")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
