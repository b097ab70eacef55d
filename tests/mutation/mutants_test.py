"""What is changed in a source, and what is left as it is."""

import unittest

from mutants import mutants_of


def changes(text, kind=None):
    """Each change as "before => after", of all kinds or of one."""
    return [f"{mutant.before} => {mutant.after}" for mutant in mutants_of("a.cpp", text)
            if kind in (None, mutant.kind)]


def body(text):
    return "void f() {\n  " + text + "\n}\n"


class Mutants(unittest.TestCase):
    def test_comments_texts_and_directives_stay(self):
        self.assertEqual(changes('// a == 1\n/* true */\n#if A == 1\nconst char* t = "x == 1";\n'), [])
        self.assertEqual(changes('auto t = R"(a == 1)";\n'), [])

    def test_comparisons_are_told_from_templates(self):
        self.assertEqual(changes(body("return a < b;"), "operator"), ["< => <="])
        self.assertEqual(changes(body("return vector<int>();"), "operator"), [])
        self.assertEqual(changes(body("T&& t = g(&a, *b);"), "operator"), [])

    def test_numbers_move_to_a_neighbour(self):
        self.assertEqual(changes("int a = 0, b = 1, c = 1'000u;\n", "constant"),
                         ["0 => 1", "1 => 0", "1'000u => 1001u"])
        self.assertEqual(changes("struct S { virtual void f() = 0; };\n", "constant"), [])

    def test_conditions_are_turned_round(self):
        self.assertEqual(changes(body("if (a(b)) return;"), "condition"), ["a(b) => !(a(b))"])
        self.assertEqual(changes(body("while (a) b();"), "condition"), ["a => false"])
        self.assertEqual(changes(body("if (auto* a = b()) return;"), "condition"), [])

    def test_statements_are_left_out_and_declarations_are_not(self):
        self.assertEqual(changes(body("a.b(c);"), "statement left out"), ["a.b(c); => ;"])
        self.assertEqual(changes(body("if (a) std::swap(b, b);"), "statement left out"),
                         ["std::swap(b, b); => ;"])
        for text in ("int a = b();", "std::string a(b);", "auto a = b();", "using a::b;", "T a = b;"):
            self.assertEqual(changes(body(text), "statement left out"), [], text)
        self.assertEqual(changes("struct A {\n  explicit A();\n  B(C);\n};\n", "statement left out"), [])

    def test_values_given_back_become_empty(self):
        self.assertEqual(changes(body("return a.b();"), "value given back"),
                         ["return a.b(); => return {};"])
        self.assertEqual(changes(body("return {}; return nullptr; return 1; return true; return;"), "value given back"), [])

    def test_fields_of_a_block_are_left_out(self):
        self.assertEqual(changes("constexpr A kA{.b = c, .d = {.e = f}};\n", "field left out"),
                         [".b = c, => ", ".d = {.e = f} => ", ".e = f => "])

    def test_neighbouring_arguments_of_calls_are_swapped(self):
        self.assertEqual(changes(body('add("a", g(b), c);'), "arguments swapped"),
                         ['"a", g(b) => g(b), "a"', "g(b), c => c, g(b)"])
        self.assertEqual(changes("void f(A, B);\nvoid g(A a, B b) {}\n", "arguments swapped"), [])
        self.assertEqual(changes(body("f(a, [&] { g(); });"), "arguments swapped"), [])

    def test_what_only_the_compiler_reads_stays(self):
        self.assertEqual(changes("static_assert(a == 1);\ntemplate <int N = 1>\nusing A = B<1>;\n"), [])

    def test_each_change_is_at_its_place(self):
        text = body("a(1);  // ä\n  if (b == 'c') d = true;")
        for mutant in mutants_of("a.cpp", text):
            self.assertEqual(text[mutant.start : mutant.end], mutant.before)


if __name__ == "__main__":
    unittest.main()
