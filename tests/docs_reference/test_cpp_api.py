"""The comments of the public headers, read by Doxygen, whose warnings are errors."""

import os
import shutil
import tempfile
import unittest

import support
from cpp_api import DoxygenFailed, public_headers, write_api
from link_check import broken_links


@unittest.skipUnless(shutil.which("doxygen"), "there is no Doxygen on this machine")
class CppApi(unittest.TestCase):
    def setUp(self):
        self.out = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.out)

    def test_shows_the_public_headers_without_a_warning(self):
        api = write_api(support.ROOT, self.out, "1.0")
        self.assertIn("bvconn/bvconn.h", public_headers(support.ROOT))
        for page in (api.cls("BVInvoiceConnector"), api.file("bvconn/platform/error.h"),
                     api.member("BVInvoiceConnector", "GetInvoice").split("#", maxsplit=1)[0]):
            self.assertTrue(os.path.exists(os.path.join(self.out, page)), page)
        names = dict(api.names({"BVInvoiceConnector"}))
        for name in ("TimeoutScope", "Variant::is", "explain", "error_numbers::kTimeout"):
            self.assertIn(name, names)
        self.assertNotIn("BVInvoiceConnector::GetInvoice", names)
        for name in ("index.html",):  # what the pages lead back to
            open(os.path.join(self.out, name), "w", encoding="utf-8").close()
        self.assertEqual(broken_links(self.out), [])

    def test_fails_over_a_parameter_that_there_is_not(self):
        root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, root)
        os.makedirs(os.path.join(root, "bvconn"))
        shutil.copytree(support.GENERATOR, os.path.join(root, "docs/reference"))
        with open(os.path.join(root, "bvconn/public_headers.txt"), "w", encoding="utf-8") as file:
            file.write("# a comment\nwrong.h\n")
        with open(os.path.join(root, "bvconn/wrong.h"), "w", encoding="utf-8") as file:
            file.write("/// Wrong.\n/// @param b  There is none.\nvoid wrong(int a);\n")
        with self.assertRaisesRegex(DoxygenFailed, "argument 'b'"):
            write_api(root, self.out, "1.0")


if __name__ == "__main__":
    unittest.main()
