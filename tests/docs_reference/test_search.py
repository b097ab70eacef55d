"""The search, typed into in a real browser: pages are opened from files, no server is there."""

import html
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from urllib.parse import quote

import support

BROWSER = next(filter(None, map(shutil.which, ("chromium", "chromium-browser", "google-chrome"))),
               None)


@unittest.skipUnless(BROWSER, "there is no Chromium on this machine; the search was not tried")
class Search(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.out = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.out)
        # Whether the pages are without a fault is another test's business.
        _, words = support.generate(cls.out, "--without-api", "--examples", "none")
        assert os.path.exists(os.path.join(cls.out, "search-index.js")), words

    def found(self, query, page="index.html"):
        """The results as pairs of kind and title, and where the first one leads."""
        with tempfile.TemporaryDirectory() as profile:
            dom = subprocess.run(
                [BROWSER, "--headless", "--no-sandbox", "--disable-gpu",
                 "--user-data-dir=" + profile, "--virtual-time-budget=2000", "--dump-dom",
                 f"file://{self.out}/{page}#q={quote(query)}"], check=True, timeout=100,
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        box = dom[dom.index('id="found"'):dom.index("</header>")]
        targets = re.findall(r'<a class="result" href="([^"]*)"', box)
        pairs = re.findall(r'class="kind">([^<]*)</span><span class="title">([^<]*)<', box)
        return [(kind, html.unescape(title)) for kind, title in pairs], targets, box

    def test_the_operation_of_that_name_comes_first(self):
        results, targets, _ = self.found("getinvoice")
        self.assertEqual(results[0], ("operation", "BVInvoiceConnector.GetInvoice"))
        self.assertEqual(targets[0], "operations/BVInvoiceConnector.GetInvoice.html")

    def test_from_a_page_below_a_number_leads_to_its_page(self):
        results, targets, _ = self.found("-2147211463", "errors/13.html")
        self.assertEqual(results[0], ("error", "0x80042739 kInvoiceFault"))
        self.assertEqual(targets[0], "../errors/0x80042739.html")

    def test_an_argument_finds_its_operations_and_says_why(self):
        results, _, box = self.found("blnUnassociate")
        self.assertEqual(results, [("operation", "BVInvoiceConnector.UnlockOrderReconcile")])
        self.assertIn("argument blnUnassociate", box)

    def test_a_guide_is_found_with_or_without_the_hyphen(self):
        results, _, _ = self.found("timeouts proxy")
        self.assertEqual(results[0], ("guide", "Time-outs, TLS and proxy"))

    def test_all_words_count_and_markup_is_text(self):
        results, _, _ = self.found("reconcile lock")
        self.assertIn(("operation", "BVInvoiceConnector.UnlockOrderReconcile"), results)
        results, _, box = self.found("<img src=x>")
        self.assertEqual(results, [])
        self.assertIn("Nothing has all of these words.", box)


if __name__ == "__main__":
    unittest.main()
