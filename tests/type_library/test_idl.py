"""test_idl.py IDL INTERFACE_TABLE IDENTIFIERS OUTSIDE_MEMBERS BVCONN_TYPELIB: whether the interface
definition says what the literal tables say, and is what the program writes."""

import subprocess
import sys
import unittest

import facts
import idl
import interface_table

IDL, TABLE, IDENTIFIERS, OUTSIDE, PROGRAM = sys.argv[1:6]


class Definition(unittest.TestCase):
    def setUp(self):
        with open(IDL, encoding="utf-8") as file:
            self.text = file.read()
        self.wanted = {
            **facts.expected(interface_table.classes(TABLE), IDENTIFIERS),
            **facts.outside_facts(OUTSIDE, facts.identifiers(IDENTIFIERS))}

    def differences(self, text):
        return "\n".join(facts.differences(idl.facts(text), self.wanted))

    def test_says_what_the_tables_say(self):
        self.assertEqual(self.differences(self.text), "")

    def test_is_what_the_program_writes(self):
        self.assertTrue(
            subprocess.check_output([PROGRAM], text=True) == self.text,
            "after a change of the interface: bvconn_typelib > bvconn/component/windows/BVConn.idl")

    def test_is_seen_whole(self):
        """The other test passes on nothing where nothing is wanted; this one does not."""
        interfaces = [each for each in self.wanted if each.startswith("interface")]
        self.assertEqual(len(interfaces), 22 + 6 + 1)
        self.assertEqual(sum(each.startswith("class") for each in self.wanted), 22 + 6)
        connectors = [each for each in interfaces if each.startswith("interface _BV")
                      and not each.startswith("interface _BVConnectorObject")]
        operations = [line for each in connectors for line in self.wanted[each]
                      if line.startswith("member") and line.split()[2] == "method"]
        self.assertEqual(len(operations), 205)

    def test_a_change_of_any_kind_is_seen(self):
        for old, new in (("[id(2)] _SoapNode *GetInvoice(", "[id(1)] _SoapNode *GetInvoice("),
                         ("BSTR strInvoiceUID", "BSTR strInvoiceUid"),
                         ("[in] BSTR strInvoiceUID", "[in, optional] BSTR strInvoiceUID"),
                         ("[in] BSTR strInvoiceUID", "[in] long strInvoiceUID"),
                         ('defaultvalue("NOTHING")', 'defaultvalue("")'),
                         (", appobject", ""), (", noncreatable", ""),
                         ("67B9CEFF", "67B9CEFE"), ("version(1.0)", "version(1.1)")):
            with self.subTest(old=old):
                self.assertTrue(old in self.text)
                self.assertNotEqual(self.differences(self.text.replace(old, new, 1)), "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
