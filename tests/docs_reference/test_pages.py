"""The pages that the built tool gives."""

import json
import os
import re
import shutil
import tempfile
import unittest
from html.parser import HTMLParser

import support

OUT = tempfile.mkdtemp()
RESULT = (None, "")


def setUpModule():
    global RESULT
    RESULT = support.generate(OUT, "--without-api", "--examples", "BVPostalConnector")


def tearDownModule():
    shutil.rmtree(OUT)


def page(name, begin=None, end=None):
    return support.text_of(os.path.join(OUT, name), begin, end)


def operation_pages():
    return sorted(os.listdir(os.path.join(OUT, "operations")))


def search_entries():
    with open(os.path.join(OUT, "search-index.js"), encoding="utf-8") as file:
        text = file.read()
    return json.loads(text[text.index("["):text.rindex("]") + 1])


class Nesting(HTMLParser):
    """What is wrong with a page's elements: ends without a beginning, places that it has twice."""

    def __init__(self):
        super().__init__()
        self.open, self.places, self.wrong = [], set(), []

    def handle_starttag(self, tag, attrs):
        place = dict(attrs).get("id")
        if place in self.places:
            self.wrong.append(f"{place} is there twice")
        self.places.update({place} - {None})
        if tag == "a" and "a" in self.open:
            self.wrong.append(f"a link within a link, line {self.getpos()[0]}")
        if tag not in ("meta", "link", "input", "wbr", "img"):
            self.open.append(tag)

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.wrong.append(f"</{tag}> ends nothing, line {self.getpos()[0]}")


class Pages(unittest.TestCase):
    def test_are_made_without_a_complaint(self):
        self.assertEqual(RESULT[0], 0, RESULT[1])

    def test_there_is_one_for_each_operation_of_the_connectors(self):
        # Two members of connectors are no operations: a property and an event.
        connectors = [each for each in operation_pages()
                      if not each.startswith("BVConnectorObject.")]
        self.assertEqual(len(connectors), 205 + 2)

    def test_there_is_one_for_each_member_of_the_session(self):
        self.assertEqual(sum(each.startswith("BVConnectorObject.")
                             for each in operation_pages()), 29)

    def test_there_is_one_for_each_class_and_number(self):
        self.assertEqual(len(os.listdir(os.path.join(OUT, "classes"))), 22 + 1)
        for number in ("6", "13", "91", "0x80044201", "0x80042739", "0x80041004"):
            self.assertTrue(os.path.exists(os.path.join(OUT, f"errors/{number}.html")), number)

    def test_of_an_operation_says_what_is_agreed(self):
        name = "operations/BVInvoiceConnector.GetInvoice.html"
        whole = page(name)
        for words in ("One invoice.",
                      "SoapNode GetInvoice(std::string_view aServerURL, std::string_view "
                      "aSessionID, std::string_view strInvoiceUID);",
                      "SoapNode GetInvoice(string aServerURL, string aSessionID, string "
                      "strInvoiceUID)"):
            self.assertIn(words, whole)
        arguments = page(name, "arguments", "routes")
        self.assertIn("aServerURL string the address", arguments)
        self.assertIn("aSessionID string header userID", arguments)
        self.assertIn("strInvoiceUID string 1: param", arguments)
        routes = page(name, "routes", "errors")
        self.assertIn("Route: SOAP getInvoice.", routes)
        self.assertIn("method getInvoice of urn:InvoiceService", routes)
        self.assertIn("SOAPAction urn:InvoiceService", routes)
        self.assertIn("time-out 300000 ms unless defaultTimeOut is set", routes)
        self.assertNotIn("data access layer", routes)
        errors = page(name, "errors", "log")
        self.assertIn("logged under BVInvoiceConnector.GetInvoice", errors)
        self.assertIn("raised as 0x80044201 with the server's text", errors)
        self.assertIn("a fault with the code 10041 the same raised as 0x80042739", errors)
        self.assertIn("EnterMethod BVInvoiceConnector.GetInvoice 1", page(name, "log", "wire"))
        wire = page(name, "wire", "see-also")
        self.assertIn("POST http://server/soap", wire)
        self.assertIn('<param xsi:type="xsd:string">', wire)

    def test_of_an_operation_with_two_routes_says_when_which_is_taken(self):
        name = "operations/BVProjectConnector.SaveProject.html"
        routes = page(name, "routes", "errors")
        self.assertIn("asked when UsingTorvexDAL is true and UseDALSave is true and the method is "
                      "not disabled there (urn:ProjectService.save); otherwise the request goes "
                      "by SOAP", routes)
        self.assertIn("calls ProjectService.SaveProject", routes)
        self.assertIn("1 the request's text aSessionID, aProject", routes)
        self.assertIn("aProject SoapNode 1: under the caller's name", page(name, "arguments"))

    def test_of_an_operation_with_the_layer_alone_say_so(self):
        self.assertIn("The data access layer is asked whatever is switched on.",
                      page("operations/BVSearchConnector.SearchForOrders.html", "routes"))

    def test_of_several_forms_show_each(self):
        routes = page("operations/BVSalesInstrumentConnector.SetLineComments.html", "routes")
        self.assertIn("form 3 of 3 (aSalseInstrType=ORDER)", routes)

    def test_name_the_oddities_of_the_operation(self):
        odd = page("operations/BVInvoiceConnector.GetNewReconicle.html", "oddities", "wire")
        self.assertIn("misspelt-reconicle", odd)
        self.assertNotIn("misspelt-overidden", odd)

    def test_show_what_a_sandbox_answers(self):
        example = page("operations/BVPostalConnector.GetCountries.html", "example", "routes")
        self.assertIn("bvconn call BVPostalConnector.GetCountries --server "
                      "http://127.0.0.1:8080/soap --session S", example)
        self.assertIn("Country", example)
        self.assertIn("SOAP: POST http://127.0.0.1:8080/soap SOAPAction: urn:Postal", example)
        self.assertIn('<m:getCountries xmlns:m="urn:Postal"', example)

    def test_of_a_number_lead_to_the_operation_that_raises_it(self):
        with open(os.path.join(OUT, "errors/0x80042739.html"), encoding="utf-8") as file:
            text = file.read()
        self.assertIn('href="../operations/BVInvoiceConnector.GetSAPInvoice.html"', text)
        self.assertIn("-2147211463", text)

    def test_of_guides_link_numbers_and_operations(self):
        with open(os.path.join(OUT, "guides/errors.html"), encoding="utf-8") as file:
            self.assertIn('<a href="../errors/0x80044201.html"><code>kSoapFault</code></a>',
                          file.read())

    def test_of_the_methods_say_who_sends_them(self):
        rows = page("classes/BVMethods.html", "rows")
        self.assertIn("GetNewReconcile getNewReconcile BVInvoiceConnector.GetNewReconicle", rows)

    def test_are_put_together_as_they_have_to_be(self):
        for folder, _, names in os.walk(OUT):
            for name in (each for each in names if each.endswith(".html")):
                nesting = Nesting()
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    nesting.feed(file.read())
                self.assertEqual(nesting.wrong + nesting.open, [], name)

    def test_have_nothing_of_this_machine(self):
        for folder, _, names in os.walk(OUT):
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    self.assertNotIn(support.ROOT.encode(), file.read(), name)

    def test_are_the_same_each_time(self):
        with tempfile.TemporaryDirectory() as again:
            support.generate(again, "--without-api", "--examples", "BVPostalConnector")
            for folder, _, names in os.walk(OUT):
                for name in names:
                    path = os.path.relpath(os.path.join(folder, name), OUT)
                    with open(os.path.join(OUT, path), "rb") as one, \
                            open(os.path.join(again, path), "rb") as other:
                        self.assertEqual(one.read(), other.read(), path)


class SearchIndex(unittest.TestCase):
    def test_has_every_operation(self):
        operations = [each for each in search_entries() if each["k"] == "operation"]
        self.assertEqual(len(operations), 205 + 2)  # the session's own two with them
        self.assertEqual(len({each["u"] for each in operations}), 207)

    def test_has_arguments_wire_names_codes_and_numbers(self):
        names = {tuple(name) for each in search_entries() for name in each["n"]}
        for wanted in (("argument", "strInvoiceUID"), ("method", "searchForAllCustomersLite"),
                       ("parameter", "includePrice"), ("service", "urn:ZeltViewService"),
                       ("service object", "SearchService.OrdersSearchEmailExport"),
                       ("fault code", "10071"), ("error", "-2147211463"),
                       ("constant", "kTimeout")):
            self.assertIn(wanted, names)

    def test_has_headings_of_guides(self):
        headings = {each["t"] for each in search_entries() if each["k"] == "heading"}
        self.assertIn("All numbers", headings)

    def test_leads_to_pages_that_are_there(self):
        for each in search_entries():
            path = re.sub("#.*", "", each["u"])
            self.assertTrue(os.path.exists(os.path.join(OUT, path)), each["u"])


if __name__ == "__main__":
    unittest.main()
