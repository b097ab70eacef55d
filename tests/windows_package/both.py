"""both.py SOURCE BUILD WORK COMPILER BVSANDBOX OTHER: makes the package of two builds for Windows, for 64 and for 32
bits, looks at what it has of each, and runs its acceptance script, which tries both. Ends with 77 where
something is missing that this needs."""

import os
import re
import struct
import sys
import unittest

import unpacked
from unpacked import SOURCE, UNPACKED, content, files_below, run, text

OTHER = sys.argv[6]
WINE_32 = os.environ.get("BVCONN_WINE_32", os.path.join(SOURCE, "build", "windows", "wine32"))
MACHINES = {"x64": 0x8664, "x86": 0x14C}


def machine_of_program(data):
    begin = struct.unpack_from("<I", data, 0x3C)[0]
    if data[begin:begin + 4] != b"PE\0\0":
        raise AssertionError("it is no program")
    return struct.unpack_from("<H", data, begin + 4)[0]


def machines_of_library(data):
    """Of each object in it; the tables before them are none, and short entries begin with a mark."""
    machines, place = set(), 8
    while place + 60 <= len(data):
        name = data[place:place + 16].rstrip()
        size = int(data[place + 48:place + 58])
        if name not in (b"/", b"//"):
            first, second, _, short = struct.unpack_from("<HHHH", data, place + 60)
            machines.add(short if (first, second) == (0, 0xFFFF) else first)
        place += 60 + size + size % 2
    return machines


class Both(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = files_below(UNPACKED)

    def test_has_the_same_files_for_both(self):
        of = {size: {each.replace(f"/{size}/", "/").replace(f"{size}/", "", 1) for each in self.files
                     if re.match(rf"(lib/)?{size}/", each)} for size in MACHINES}
        self.assertEqual(of["x64"], of["x86"])
        self.assertEqual(len(of["x64"]), 8)

    def test_has_for_each_what_was_made_for_it(self):
        for size, machine in MACHINES.items():
            for name in ("BVConn.dll", "bvconn.exe"):
                self.assertEqual(machine_of_program(content(UNPACKED, size, name)), machine, size + name)
            for name in ("BVConn.lib", "libBVConn.a", "libBVConnTesting.a", "libcurl.a", "libz.a"):
                self.assertEqual(machines_of_library(content(UNPACKED, "lib", size, name)), {machine},
                                 size + name)

    def test_lists_what_is_linked_in_of_both(self):
        rows = [line for line in text(UNPACKED, "LINKED.md").splitlines() if line.startswith("| lib")]
        self.assertGreater(len(rows), 1)
        for row in rows:
            for size in MACHINES:
                self.assertIn(f"`{size}/BVConn.dll`", row)

    def test_its_acceptance_script_tries_both(self):
        if not os.path.isdir(WINE_32):
            self.skipTest("there is no wine for programs of 32 bits here")
        with unpacked.sandbox() as server:
            status, lines = run("cmd.exe", "/c", "Z:" + os.path.join(UNPACKED, "acceptance", "accept.cmd"),
                                server.url + "/soap")
        said = "\n".join(lines)
        self.assertEqual(status, 0, said)
        self.assertEqual(said.count("Nothing failed."), 2, said)
        for size in MACHINES:
            self.assertIn(f"bvconn-acceptance-{size}.txt", said)
        self.assertEqual(re.findall(r"^BVConnector on this machine, (\d+) bits$", said, re.M), ["64", "32"])


if __name__ == "__main__":
    for needed in (unpacked.WINE, unpacked.BVSANDBOX,
                   *(os.path.join(OTHER, path) for path in
                     ("bvconn/component/windows/BVConn.dll", "tools/bvconn/bvconn.exe", "bvconn/libBVConn.a"))):
        if not os.access(needed, os.R_OK):
            print(f"skipped: there is no {needed} here")
            sys.exit(77)
    if os.path.isdir(WINE_32):
        os.environ["BVCONN_WINE_32"] = WINE_32
    unpacked.prepare(OTHER)
    unittest.main(argv=sys.argv[:1] + sys.argv[7:])
