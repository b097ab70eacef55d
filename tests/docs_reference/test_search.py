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

# Types into the search as a person without a mouse would, and notes what happens.
KEYS = """
window.addEventListener("load", async () => {
  const query = document.getElementById("query");
  const found = document.getElementById("found");
  const press = (key) => document.activeElement.dispatchEvent(
      new KeyboardEvent("keydown", {key, bubbles: true, cancelable: true}));
  const seen = [];
  press("/");
  seen.push("focused " + (document.activeElement === query));
  query.value = "SAPInvoice";
  query.dispatchEvent(new Event("input"));
  await new Promise((done) => setTimeout(done, 500));
  seen.push("open " + !found.hidden);
  press("ArrowDown");
  seen.push(found.children[1].getAttribute("aria-selected") === "true" ? "second" : "not second");
  press("ArrowUp");
  found.addEventListener("click", (event) => {
    event.preventDefault();
    seen.push(event.target.closest("a").getAttribute("href"));
  });
  press("Enter");
  press("Escape");
  seen.push("open " + !found.hidden);
  seen.push("focused " + (document.activeElement === query));
  document.body.insertAdjacentHTML("beforeend", `<p id="seen">${seen.join("; ")}</p>`);
});
"""


@unittest.skipUnless(BROWSER, "there is no Chromium on this machine; the search was not tried")
class Search(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.out = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.out)
        # Whether the pages are without a fault is another test's business.
        _, words = support.generate(cls.out, "--without-api", "--examples", "none")
        assert os.path.exists(os.path.join(cls.out, "search-index.js")), words

    def page_after(self, address):
        """The page as it is when its scripts have run."""
        with tempfile.TemporaryDirectory() as profile:
            return subprocess.run(
                [BROWSER, "--headless", "--no-sandbox", "--disable-gpu",
                 "--user-data-dir=" + profile, "--virtual-time-budget=2000", "--dump-dom",
                 f"file://{self.out}/{address}"], check=True, timeout=100,
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout

    def found(self, query, page="index.html"):
        """The results as pairs of kind and title, where they lead, and all that is shown."""
        dom = self.page_after(f"{page}#q={quote(query)}")
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

    def test_the_keyboard_is_enough(self):
        with open(os.path.join(self.out, "index.html"), encoding="utf-8") as file:
            text = file.read()
        with open(os.path.join(self.out, "keys.html"), "w", encoding="utf-8") as file:
            file.write(text.replace("</body>", f"<script>{KEYS}</script></body>"))
        self.assertIn(
            '<p id="seen">focused true; open true; second; '
            "operations/BVInvoiceConnector.GetSAPInvoice.html; open false; focused false</p>",
            self.page_after("keys.html"))

    def test_all_words_count_and_markup_is_text(self):
        results, _, _ = self.found("reconcile lock")
        self.assertIn(("operation", "BVInvoiceConnector.UnlockOrderReconcile"), results)
        results, _, box = self.found("<img src=x>")
        self.assertEqual(results, [])
        self.assertIn("Nothing has all of these words.", box)


if __name__ == "__main__":
    unittest.main()
