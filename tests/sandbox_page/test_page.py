"""The page of the sandbox in a real browser: what comes is shown, what is asked for is done, and
nothing that anybody sends becomes more than a text."""

import json
import os
import tempfile
import threading
import time
import unittest
from http.server import BaseHTTPRequestHandler, HTTPServer

from browser import PROGRAM, SHIFT, Browser
from served import Sandbox

# Each would run if it became a part of the page.
IMAGE = "<img src=x onerror=\"window.hit='image'\">"
SCRIPT = "</script><script>window.hit='script'</script>"
EVIL = IMAGE + SCRIPT


@unittest.skipUnless(PROGRAM, "there is no Chromium on this machine; the page was not tried")
class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        self.sandbox = Sandbox()
        self.addCleanup(self.sandbox.close)
        self.browser.size(1200, 900)
        self.browser.scheme("light")

    def open(self, view="exchanges", sandbox=None):
        self.browser.open(f"{(sandbox or self.sandbox).url}/#/{view}")
        self.browser.until("document.querySelector('h1')")

    def tearDown(self):
        self.assertEqual(self.browser.dialogs, [])

    def expect_quiet(self):
        """Neither the policy nor a script has anything to complain about."""
        self.assertEqual(self.browser.complaints, [])

    def submit(self, form, **values):
        """Gives a form these values, as if typed, and sends it."""
        self.browser.run(f"""(() => {{
          const form = document.querySelector({json.dumps(form)});
          for (const [name, value] of Object.entries({json.dumps(values)})) {{
            const control = form.elements[name];
            control.value = value;
            control.dispatchEvent(new Event("change", {{bubbles: true}}));
          }}
          form.requestSubmit();
        }})()""")

    def rows(self):
        return self.browser.run("[...document.querySelectorAll('tr[data-id]')].map("
                                "(each) => [...each.cells].map((cell) => cell.innerText))")

    # What comes is shown.

    def test_the_list_grows_by_a_call_that_is_made_while_the_page_is_open(self):
        self.open()
        self.browser.until("document.getElementById('connection').innerText === 'live'")
        self.assertEqual(self.rows(), [])
        self.assertEqual(
            self.sandbox.call("BVInvoiceConnector.GetInvoice", "strInvoiceUID=INV-1001")[0], 0)
        self.browser.until("document.querySelector('tr[data-id]')")
        number, _, route, operation, outcome, status, _, arguments = self.rows()[0]
        self.assertEqual((number, route, operation), ("1", "soap", "BVInvoiceConnector.GetInvoice"))
        self.assertEqual((outcome, status), ("answered", "200"))
        self.assertEqual(arguments, "strInvoiceUID=INV-1001 aSessionID=***")
        self.sandbox.call("BVInvoiceConnector.GetInvoice", "strInvoiceUID=INV-0")
        self.browser.until("document.querySelectorAll('tr[data-id]').length === 2")
        self.assertEqual([each[4] for each in self.rows()], ["fault", "answered"])
        self.expect_quiet()

    def test_an_exchange_shows_request_reply_and_all_that_differs(self):
        self.sandbox.call("BVGenericConnector.Send", "aService=urn:InvoiceService",
                          "aMethod=getInvoice", "aRootNodeName=UID", "aSoapNode=<a/>")
        self.open("exchange/1")
        self.browser.until("document.querySelector('section')")
        found = self.browser.run("[...document.querySelectorAll('table')][0].innerText")
        self.assertIn("is named 'UID'", found)
        self.assertIn("has no type", found)
        self.assertIn("type 'string'", found)
        sections = self.browser.run("[...document.querySelectorAll('section')]"
                                    ".map((each) => each.innerText)")
        self.assertIn("POST /soap", sections[0])
        self.assertIn(">***</userID>", sections[0])
        self.assertIn("500", sections[1])
        self.assertIn("faultstring", sections[1])
        self.expect_quiet()

    def test_documents_are_listed_by_kind_and_shown(self):
        self.open("documents/quote")
        self.browser.until("document.querySelectorAll('tbody tr').length === 30")
        self.assertIn("project (30)", self.browser.text("main nav"))
        self.browser.run("document.querySelector('tbody a').click()")
        self.browser.until("document.querySelector('h1').innerText === 'Document QUO-4001'")
        self.browser.until("document.querySelector('pre')")
        self.assertIn("QUO-4001", self.browser.text("pre"))
        self.expect_quiet()

    def test_a_list_of_ten_thousand_stays_short_and_quick(self):
        sandbox = Sandbox("--journal-count", "10000")
        self.addCleanup(sandbox.close)
        sandbox.fill_journal(10000)
        self.open(sandbox=sandbox)
        self.browser.until("document.querySelectorAll('tr[data-id]').length === 100")
        self.assertIn("9900 left out", self.browser.text("main"))
        sandbox.fill_journal(700)
        self.browser.until("document.querySelector('tr[data-id]').dataset.id === '10700'")
        self.assertLessEqual(self.browser.run("document.querySelectorAll('tr[data-id]').length"), 500)

    def test_the_list_is_told_of_now_and_then_and_not_row_by_row(self):
        self.open()
        self.browser.until("document.getElementById('connection').innerText === 'live'")
        self.sandbox.fill_journal(1)
        self.browser.until("document.querySelectorAll('tr[data-id]').length === 1")
        self.browser.run("""window.told = [];
          new MutationObserver(() => told.push(document.getElementById('news').textContent))
            .observe(document.getElementById('news'), {childList: true, characterData: true,
                                                       subtree: true});""")
        self.sandbox.fill_journal(20)
        self.browser.until("window.told.length > 0")
        self.assertEqual(len(self.browser.run("told")), 1)
        self.assertIn("more exchanges", self.browser.run("told[0]"))

    def test_the_list_goes_on_when_the_sandbox_is_there_again(self):
        self.sandbox.fill_journal(3)
        self.open()
        self.browser.until("document.querySelectorAll('tr[data-id]').length === 3")
        port = self.sandbox.port
        self.sandbox.close()
        self.browser.until("document.getElementById('connection').innerText.includes('lost')")
        self.sandbox = Sandbox(port=port)
        self.addCleanup(self.sandbox.close)
        self.sandbox.fill_journal(1)
        self.browser.until("document.getElementById('connection').innerText === 'live'")
        self.browser.until("document.querySelectorAll('tr[data-id]').length === 1")

    # What is asked for is done.

    def test_a_fault_that_is_switched_on_hits_the_next_call_until_it_is_off(self):
        self.open("faults")
        self.browser.until("document.querySelector('form[aria-label] select')")
        self.submit("form[aria-label='A new fault']", kind="soap-fault")
        self.browser.until("document.querySelector('tbody tr')")
        self.browser.run("document.querySelector('tbody button').click()")
        self.browser.until("document.querySelector('main').innerText.includes('Nothing goes wrong')")
        self.submit("form[aria-label='A new fault']", kind="status", name="down",
                    operation="BVInvoiceConnector.*", status="503", count="1")
        self.browser.until("document.querySelector('tbody tr')")
        status, words = self.sandbox.call("BVInvoiceConnector.GetInvoice", "strInvoiceUID=INV-1001")
        self.assertNotEqual(status, 0)
        self.assertIn("503", words)
        self.browser.until("document.querySelector('tbody tr').cells[4].innerText === '1'")
        self.assertEqual(
            self.sandbox.call("BVInvoiceConnector.GetInvoice", "strInvoiceUID=INV-1001")[0], 0)
        self.expect_quiet()

    def test_a_fault_that_cannot_be_is_refused_in_words(self):
        self.open("faults")
        self.browser.until("document.querySelector('form[aria-label] select')")
        self.submit("form[aria-label='A new fault']", kind="soap-fault",
                    operation="BVInvoiceConnector.GetInvoise")
        self.assertIn("did you mean BVInvoiceConnector.GetInvoice",
                      self.browser.until("document.querySelector('main form [role=alert]').innerText"))
        self.assertEqual(self.sandbox.get("/admin/faults")["faults"], [])

    def test_the_form_of_an_operation_makes_the_call_and_shows_what_came_back(self):
        self.open("call/BVInvoiceConnector.GetInvoice")
        self.browser.until("document.querySelector('main form')")
        self.submit("main form", strInvoiceUID="INV-1001")
        self.browser.until("document.activeElement.id === 'answer'")
        self.assertIn("Result after", self.browser.text("#answer"))
        self.assertIn(">INV-1001</InvoiceUID>", self.browser.text("section pre"))
        self.submit("main form", strInvoiceUID="INV-0")
        self.browser.until("document.getElementById('answer')?.innerText.startsWith('Error')")
        answer = self.browser.text("section")
        self.assertIn("0x80042739 (-2147211463)", answer)
        self.assertIn("BVInvoiceConnector", answer)
        self.assertEqual(self.sandbox.get("/admin/journal")["matched"], 2)
        self.expect_quiet()

    def test_each_operation_has_a_form_with_its_arguments(self):
        operations = self.sandbox.get("/admin/operations")["operations"]
        self.open("calls")
        self.browser.until(f"document.querySelectorAll('main li').length === {len(operations)}")
        self.assertEqual(len(operations), 205)
        for each in operations:
            name = each["operation"]
            # A browser takes two hundred ways in ten seconds, and then no more.
            time.sleep(0.06)
            self.browser.run(f"location.hash = '#/call/{name}'")
            self.browser.until(f"document.querySelector('h1').innerText === {json.dumps(name)} "
                               "&& document.querySelector('main form')")
            labels = self.browser.run("[...document.querySelectorAll('main form fieldset')].at(-1)"
                                      ".innerText")
            for argument in each["arguments"]:
                self.assertIn(f"{argument['name']} {argument['type']}", labels, name)
            unnamed = self.browser.run("[...document.querySelectorAll('main form :is(input, select, "
                                       "textarea)')].filter((each) => each.labels.length !== 1)"
                                       ".length")
            self.assertEqual(unnamed, 0, name)
        self.expect_quiet()

    # Markup stays text.

    def expect_text_alone(self, view, ready, words):
        self.open(view)
        self.browser.until(ready)
        self.assertIn(words, self.browser.run("document.body.textContent"), view)
        self.assertEqual(self.browser.run("document.querySelectorAll('img').length"), 0, view)
        self.assertEqual(self.browser.run("document.scripts.length"), 1, view)
        self.assertIsNone(self.browser.run("window.hit ?? null"), view)

    def test_markup_from_anywhere_stays_text(self):
        self.sandbox.ask("POST", "/admin/faults", json.dumps(
            {"kind": "soap-fault", "name": IMAGE.replace("/", ""), "text": EVIL, "detail": EVIL,
             "session": "ANNA", "count": 1}))
        self.sandbox.call("BVInvoiceConnector.GetInvoice", f"strInvoiceUID={EVIL}")
        escaped = EVIL.replace("&", "&amp;").replace("<", "&lt;")
        status, words = self.sandbox.call(
            "BVProjectConnector.SaveProject",
            "aProject=<Project><GID>PRJ-3001</GID><ProjectNumber>" + escaped +
            "</ProjectNumber><Status>" + escaped + "</Status></Project>")
        self.assertEqual(status, 0, words)
        table = "document.querySelector('tbody tr')"
        self.expect_text_alone("exchanges", f"{table}?.parentNode.rows.length === 2", IMAGE)
        self.expect_text_alone("exchange/1", "document.querySelectorAll('pre').length === 4", EVIL)
        self.expect_text_alone("exchange/2", "document.querySelectorAll('pre').length === 4", "&lt;img")
        self.expect_text_alone("documents/project", table, EVIL)
        self.expect_text_alone("document/PRJ-3001", "document.querySelector('pre')", EVIL)
        self.expect_text_alone("faults", table, EVIL)
        self.expect_text_alone(f"document/{IMAGE.replace('/', '')}",
                               "document.querySelector('main [role=alert]')", "There is no document")
        self.expect_text_alone(f"call/{SCRIPT}", "document.querySelector('main [role=alert]')",
                               "There is no operation")

    def test_the_words_of_a_server_stay_text_in_the_answer_of_a_form(self):
        self.sandbox.ask("POST", "/admin/faults", json.dumps({"kind": "soap-fault", "text": EVIL}))
        self.open("call/BVInvoiceConnector.GetInvoice")
        self.browser.until("document.querySelector('main form')")
        self.submit("main form", strInvoiceUID=EVIL)
        self.browser.until("document.activeElement.id === 'answer'")
        self.assertIn(EVIL, self.browser.run("document.body.textContent"))
        self.assertEqual(self.browser.run("document.querySelectorAll('img').length"), 0)
        self.assertIsNone(self.browser.run("window.hit ?? null"))

    def test_what_a_script_would_write_is_stopped_by_the_policy(self):
        self.open()
        for script in (f"document.body.innerHTML = {json.dumps(IMAGE)}",
                       "document.body.setAttribute('onclick', '1')", "eval('1')"):
            with self.assertRaises(RuntimeError, msg=script):
                self.browser.run(f"(() => {{ {script}; return new Promise((done) => setTimeout("
                                 "() => done(1), 0)); })()")

    # The keyboard is enough.

    def test_keys_alone_find_an_operation_call_it_and_open_its_exchange(self):
        press, until = self.browser.press, self.browser.until
        self.open()
        press("Tab")
        self.assertEqual(self.browser.text("a:focus"), "Skip to the content")
        self.assertGreaterEqual(self.browser.run(
            "document.activeElement.getBoundingClientRect().left"), 0)
        self.browser.tab_to("at.innerText === 'Calls'")
        self.assertNotEqual(self.browser.run("getComputedStyle(document.activeElement).outlineStyle"),
                            "none")
        press("Enter")
        until("document.querySelector('input[type=search]')")
        self.browser.tab_to("at.type === 'search'")
        self.browser.type("invoiceconnector getinv")
        until("document.querySelectorAll('main li').length === 1")
        press("ArrowDown")
        self.assertEqual(self.browser.text("a:focus"), "BVInvoiceConnector.GetInvoice")
        press("Enter")
        until("document.querySelector('main form')")
        self.browser.tab_to("at.name === 'strInvoiceUID'")
        self.browser.type("INV-1001")
        press("Enter")
        until("document.activeElement.id === 'answer'")
        self.browser.tab_to("at.innerText === 'The exchanges'")
        press("Enter")
        until("document.querySelector('tr[data-id]')")
        self.sandbox.call("BVInvoiceConnector.GetInvoice", "strInvoiceUID=INV-1002")
        until("document.querySelectorAll('tr[data-id]').length === 2")
        self.browser.tab_to("at.closest('tr[data-id]')")
        press("End")
        self.assertEqual(self.browser.text("a:focus"), "1")
        press("ArrowUp")
        self.assertEqual(self.browser.text("a:focus"), "2")
        press("ArrowDown")
        press("Enter")
        until("document.querySelector('h1').innerText === 'Exchange 1'")
        self.assertEqual(self.browser.run("document.activeElement.id"), "view")

    def test_keys_alone_set_a_fault_and_take_it_back(self):
        press, until = self.browser.press, self.browser.until
        self.open("faults")
        until("document.querySelector('form[aria-label] select')")
        self.browser.tab_to("at.id === 'fault-kind'")
        press("ArrowDown", 2)
        self.assertEqual(self.browser.run("document.activeElement.value"), "status")
        self.browser.tab_to("at.name === 'count'")
        self.browser.type("1")
        press("Enter")
        until("document.querySelector('tbody tr')")
        self.assertEqual(self.sandbox.get("/admin/faults")["faults"][0]["kind"], "status")
        for _ in range(60):
            press("Tab", modifiers=SHIFT)
            if self.browser.text("button:focus") == "Remove":
                break
        press("Enter")
        until("document.querySelector('main').innerText.includes('Nothing goes wrong')")
        self.assertEqual(self.browser.text("button:focus"), "Remove all")

    # Everybody can read it.

    VIEWS = ("exchanges", "exchange/1", "documents/RFQ", "document/INV-1001", "faults", "calls",
             "call/BVSearchConnector.SearchForOrders")

    def test_it_fits_narrow_and_wide_windows(self):
        self.sandbox.call("BVInvoiceConnector.GetInvoice", "strInvoiceUID=" + "INV-1001" * 30)
        for width in (320, 768, 1900):
            self.browser.size(width, 800)
            for view in self.VIEWS:
                self.open(view)
                self.browser.until("document.querySelectorAll('main > div > *').length > 1")
                self.assertLessEqual(
                    self.browser.run("document.documentElement.scrollWidth"), width, view)

    def test_texts_stand_out_in_light_and_dark(self):
        for scheme in ("light", "dark"):
            self.browser.scheme(scheme)
            self.open()
            for name in ("text", "soft", "link", "good", "bad", "odd", "tag"):
                for ground in ("ground", "raised"):
                    ratio = self.browser.run(CONTRAST % (name, ground))
                    self.assertGreaterEqual(ratio, 4.5, f"{name} on {ground} in {scheme}")

    # Nobody else may.

    def test_a_sandbox_with_a_token_asks_for_it_until_it_is_right(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        file = os.path.join(folder.name, "token")
        with open(file, "w", encoding="ascii",
                  opener=lambda path, flags: os.open(path, flags, 0o600)) as out:
            out.write("right-word\n")
        sandbox = Sandbox("--listen", "0.0.0.0", "--admin-token-file", file)
        self.addCleanup(sandbox.close)
        press, until, text = self.browser.press, self.browser.until, self.browser.text
        self.browser.open(f"{sandbox.url}/#/exchanges")
        until("document.activeElement.id === 'token-text'")
        self.assertIn("asks for the administrator's token", text("#token"))
        self.assertEqual(text("#token-refused"), "")
        self.browser.type("wrong-word")
        press("Enter")
        until("document.getElementById('token-refused').innerText.includes('not take this token')")
        self.assertNotEqual(text("#connection"), "live")
        # The wrong one is selected, so that what is typed takes its place.
        self.browser.type("right-word")
        press("Enter")
        until("document.getElementById('connection').innerText === 'live'")
        self.assertTrue(self.browser.run("document.getElementById('token').hidden"))
        self.assertEqual(sandbox.call("BVInvoiceConnector.GetInvoice",
                                      "strInvoiceUID=INV-1001")[0], 0)
        until("document.querySelector('tr[data-id]')")
        self.assertEqual(self.rows()[0][3], "BVInvoiceConnector.GetInvoice")
        # What is asked for is done, and another view does not ask again.
        self.browser.run("location.hash = '#/faults'")
        until("document.querySelector('form[aria-label] select')")
        self.submit("form[aria-label='A new fault']", kind="status", status="503", count="1")
        until("document.querySelector('tbody tr')")
        self.assertNotEqual(sandbox.call("BVInvoiceConnector.GetInvoice",
                                         "strInvoiceUID=INV-1001")[0], 0)
        self.browser.open(f"{sandbox.url}/#/exchanges")
        until("document.querySelectorAll('tr[data-id]').length === 2")
        self.assertTrue(self.browser.run("document.getElementById('token').hidden"))
        # Nobody else has it.
        self.assertEqual(sandbox.ask("GET", "/admin/journal")[0], 401)

    def test_a_page_of_another_origin_changes_and_learns_nothing(self):
        class Stranger(BaseHTTPRequestHandler):
            def do_GET(self):
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(b"<title>Stranger</title>")

            def log_message(self, *_):
                pass

        server = HTTPServer(("127.0.0.1", 0), Stranger)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        self.browser.open(f"http://127.0.0.1:{server.server_port}/")
        tried = self.browser.run(f"""(async () => {{
          const url = {json.dumps(self.sandbox.url)};
          const seen = [];
          const send = (path, options) => fetch(url + path, options)
            .then((reply) => reply.text()).then((text) => seen.push(text)).catch(() => {{}});
          await send("/admin/faults", {{method: "POST", mode: "no-cors", body: '{{"kind":"close"}}'}});
          await send("/admin/faults", {{method: "POST", body: '{{"kind":"close"}}'}});
          await send("/admin/reset", {{method: "POST", mode: "no-cors"}});
          await send("/admin/journal");
          await send("/soap", {{method: "POST", mode: "no-cors", body: "<a/>"}});
          return seen.filter((each) => each !== "");
        }})()""")
        self.assertEqual(tried, [])
        self.assertEqual(self.sandbox.get("/admin/faults")["faults"], [])
        self.assertEqual(self.sandbox.get("/admin/journal")["matched"], 0)
        self.browser.complaints.clear()
        self.browser.run(f"""new Promise((done) => {{
          const frame = document.createElement("iframe");
          frame.onload = done;
          frame.src = {json.dumps(self.sandbox.url + "/")};
          document.body.append(frame);
        }})""")
        self.assertTrue(any("403" in each for each in self.browser.complaints),
                        self.browser.complaints)


# How much a colour of the page stands out from another one, as WCAG has it.
CONTRAST = """(() => {
  const shown = (name) => {
    const probe = document.createElement("i");
    probe.style.color = `var(--${name})`;
    document.body.append(probe);
    const parts = getComputedStyle(probe).color.match(/[0-9.]+/g).slice(0, 3).map((each) => each / 255);
    probe.remove();
    const [r, g, b] = parts.map((each) => each <= 0.03928 ? each / 12.92 : ((each + 0.055) / 1.055) ** 2.4);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const [low, high] = [shown("%s"), shown("%s")].sort((a, b) => a - b);
  return (high + 0.05) / (low + 0.05);
})()"""


if __name__ == "__main__":
    unittest.main()
