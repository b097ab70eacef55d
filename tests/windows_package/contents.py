import os
import re
import subprocess
import unittest
import xml.etree.ElementTree

from unpacked import BUILD, COMPILER, LIBRARIES, NAME, SIZE, SOURCE, UNPACKED, VERSION, WORK, \
    content, files_below, make, text


class Contents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = files_below(UNPACKED)

    def test_is_the_same_bytes_when_it_is_made_again(self):
        self.assertTrue(content(WORK, "first", NAME + ".zip") == content(make("second")))

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
                         {"include/bvconn/" + each for each in listed}
                         | {"include/BVConn.h", "include/BVConn.idl", "include/service_object_rows.inc"})

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
        folders = {os.path.dirname(each) for each in self.files}
        links = 0
        for page in sorted(each for each in self.files if each.endswith(".md")):
            for link in re.findall(r"\]\(([^)#:\s]+)(?:#[^)\s]*)?\)", text(UNPACKED, page)):
                target = os.path.normpath(os.path.join(os.path.dirname(page), link))
                self.assertIn(target, self.files | folders, page)
                links += 1
        self.assertGreater(links, 150)

    def test_names_no_file_of_the_sources_to_who_has_none(self):
        for page in ("README.md", "docs/component.md", "docs/windows.md"):
            said = re.sub(r"<!--.*?-->|```.*?```", "", text(UNPACKED, page), flags=re.S)
            for name in re.findall(r"[\w./-]+\.(?:inc|idl|cpp|js|vbs|py|h)\b", said):
                name = re.sub(r"^(\.\./)+", "", name)
                self.assertTrue(any(each == name or each.endswith("/" + name) for each in self.files),
                                f"{page} names {name}")

    def test_says_what_its_programs_are(self):
        windres = COMPILER[:COMPILER.index("-g++")] + "-windres"
        for name, kind in (("BVConn.dll", 2), ("bvconn.exe", 1)):
            said = subprocess.run([windres, "-O", "rc", os.path.join(UNPACKED, SIZE, name)],
                                  stdout=subprocess.PIPE, text=True, check=True).stdout
            self.assertIn(f'VALUE "FileVersion", "{VERSION}"', said)
            self.assertIn(f'VALUE "OriginalFilename", "{name}"', said)
            self.assertRegex(said, rf"FILETYPE (0x)?{kind}\b")
            self.assertRegex(said, r"FILEVERSION " + VERSION.replace(".", ", ") + ", 0")
        # The program alone is started by somebody, who has rights that it is to have.
        manifest = re.search(rb"<assembly .*?</assembly>", content(UNPACKED, SIZE, "bvconn.exe"), re.S)
        manifest = xml.etree.ElementTree.fromstring(manifest.group(0).decode())
        level = manifest.find(".//{urn:schemas-microsoft-com:asm.v3}requestedExecutionLevel")
        self.assertEqual(level.get("level"), "asInvoker")
        systems = manifest.findall(".//{urn:schemas-microsoft-com:compatibility.v1}supportedOS")
        self.assertEqual([each.get("Id") for each in systems], ["{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"])
        self.assertRegex(said, r"(?m)^1 24|RT_MANIFEST")

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
        header = text(LIBRARIES, "include", "curl", "curlver.h")
        self.assertIn(f'#define LIBCURL_VERSION "{versions["libcurl"]}"', header)

    def test_names_no_folder_of_the_machine_that_built(self):
        for name in sorted(self.files):
            self.assertFalse(SOURCE.encode() in content(UNPACKED, name), name)
