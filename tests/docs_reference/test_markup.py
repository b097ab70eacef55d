"""No text becomes markup."""

import unittest

import support  # noqa: F401  (finds the generator)
from headers import words_of
from interface import Class, Member, Oddity
from markdown import Reader
from markup import el, escaped, pre, section, table
from prose import Prose


def plain_link(target, words):
    return el("a", words, href=target)


def body_of(text):
    return Reader(plain_link).read(text).body.strip()


class TextIsEscaped(unittest.TestCase):
    def test_in_elements_and_attributes(self):
        self.assertEqual(el("td", "a<b & \"c\""), "<td>a&lt;b &amp; &quot;c&quot;</td>")
        self.assertEqual(el("a", "x", title='"><script>'),
                         '<a title="&quot;&gt;&lt;script&gt;">x</a>')

    def test_but_elements_within_elements_are_not(self):
        self.assertEqual(el("p", el("b", "<"), ">"), "<p><b>&lt;</b>&gt;</p>")

    def test_in_blocks_tables_and_headings(self):
        self.assertIn("&lt;m:save&gt;", pre("<m:save>"))
        self.assertIn("<td>&lt;i&gt;</td>", table(["h"], [["<i>"]]))
        self.assertIn(">&lt;b&gt;</a></h2>", section("<b>", "x"))

    def test_in_comments_of_headers(self):
        self.assertEqual(Prose([], []).text("give `<a/>` & <b>"),
                         "give <code>&lt;a/&gt;</code> &amp; &lt;b&gt;")

    def test_in_pages_of_markdown(self):
        self.assertEqual(body_of("a <script>x</script> `<i>`"),
                         "<p>a &lt;script&gt;x&lt;/script&gt; <code>&lt;i&gt;</code></p>")
        self.assertIn("<code>&lt;x a=&quot;1&quot;/&gt;</code>", body_of('```xml\n<x a="1"/>\n```'))

    def test_nothing_is_left_out_silently(self):
        self.assertEqual(escaped(None), "")
        self.assertEqual(escaped([1, ["<", None]]), "1&lt;")


class Comments(unittest.TestCase):
    def test_are_taken_apart(self):
        words = words_of([
            "What it gives. Route: DAL `Object.Get`,", "else SOAP `get` of \"urn:A.b\". More.",
            "@param aUID  The key, in one", "             or two lines.",
            "@throws Error  0x80042739 for the fault code 10041."])
        self.assertEqual(words.text, "What it gives. More.")
        self.assertEqual(words.route,
                         'Route: DAL `Object.Get`, else SOAP `get` of "urn:A.b".')
        self.assertEqual(words.params, {"aUID": "The key, in one or two lines."})
        self.assertEqual(words.throws, ["0x80042739 for the fault code 10041."])

    def test_link_what_they_name(self):
        member = Member("C", {"name": "Get", "kind": "operation"})
        prose = Prose([Class("C", None, [member])], [])
        self.assertEqual(prose.text("as `Get` and `Put`", "C"),
                         'as <a href="../operations/C.Get.html"><code>Get</code></a> and '
                         "<code>Put</code>")


    def test_link_the_oddities_that_there_are(self):
        prose = Prose([], [], [Oddity("log-name", "", "")])
        self.assertEqual(prose.text("deliberate [log-name] and deliberate [other]"),
                         'deliberate [<a href="../guides/oddities.html#log-name">log-name</a>] and '
                         "deliberate [other]")


class Markdown(unittest.TestCase):
    def test_tables_keep_bars_within_code(self):
        made = body_of("| a | b |\n|---|---|\n| `x|y` | p \\| q |")
        self.assertIn("<td><code>x|y</code></td><td>p | q</td>", made)

    def test_lists_nest_and_go_on_in_their_next_line(self):
        self.assertEqual(
            body_of("- one\n  more\n  - inner\n- two").replace("\n", " ").replace("> <", "><"),
            "<ul><li><p>one more</p><ul><li>inner</li></ul></li><li>two</li></ul>")

    def test_headings_have_the_places_that_links_mean(self):
        page = Reader(plain_link).read("# T\n\n## Is a setting `x` the reason?\n\n"
                                       "## Data\n\n## Data")
        self.assertEqual(page.title, "T")
        self.assertEqual([anchor for _, anchor, _ in page.headings],
                         ["is-a-setting-x-the-reason", "data", "data-1"])

    def test_words_about_how_a_block_is_tested_are_not_shown(self):
        self.assertEqual(body_of("<!-- given: x\n y -->\ntext"), "<p>text</p>")
        self.assertIn("&lt;!-- x --&gt;", body_of("```xml\n<!-- x -->\n```"))

    def test_links_and_emphasis(self):
        self.assertEqual(body_of("**bold** [a `b`](c.md#d) *em* 2 * 3 a_b_c"),
                         '<p><strong>bold</strong> <a href="c.md#d">a <code>b</code></a> '
                         "<em>em</em> 2 * 3 a_b_c</p>")


if __name__ == "__main__":
    unittest.main()
