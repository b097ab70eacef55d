"""Finds the small changes of a C++ source that its tests should notice.

A change is one operator, constant, condition, argument or statement, as somebody could have written it
by mistake. Comments, texts and preprocessor lines stay as they are. The sources are in the project's
format, and that decides what a compiler would have to decide: `a < b` compares, `vector<T>` does not.
"""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutant:
    file: str
    start: int
    end: int
    before: str
    after: str
    kind: str


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


TOKEN = re.compile(
    r"""
      (?P<comment>//[^\n]*|/\*.*?\*/)
    | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
    | (?P<string>(?:u8|[uUL])?R"(?P<mark>[^()\s\\]*)\(.*?\)(?P=mark)"|(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
    | (?P<char>'(?:\\[^\n']+|\\'|[^'\\\n]+)')
    | (?P<number>\.?\d(?:[eEpP][+-]|'(?=\w)|[\w.])*)
    | (?P<word>[A-Za-z_]\w*)
    | (?P<sign>\.\.\.|<=>|<<=|>>=|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w])
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

# Each sign stands for what is easily written in its place.
SIGNS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "^": "&", "<<": ">>",
    ">>": "<<", "+=": "-=", "-=": "+=", "|=": "&=", "&=": "|=",
}
WORDS = {"true": "false", "false": "true"}

# What begins no statement that could be left out and still compile.
DECLARING = set(
    """alignas auto bool case catch char class const constexpr default do double else enum extern float for
    friend if inline int long mutable namespace operator private protected public return short signed
    static static_assert struct switch template thread_local try typedef typename union unsigned using
    virtual void volatile wchar_t while""".split()
)
LEFT_OUT_ALONE = {"throw", "break", "continue", "delete"}
# Given back, these are what an empty value is already, or are changed as constants.
EMPTY_VALUES = ("{}", '""', "std::nullopt", "nullptr", "true", "false")
# A function's body, or a block in it, follows one of these.
BEFORE_CODE = {")", "]", "else", "do", "try", "const", "noexcept", "override", "mutable", "final"}
SCOPES = {"namespace", "class", "struct", "union", "enum", "extern"}
OPENING = {"(": ")", "[": "]", "{": "}"}


def tokens_of(text):
    """The tokens that a change may touch, in order; comments and directives are left out."""
    found = []
    for match in TOKEN.finditer(text):
        if match.lastgroup in ("comment", "directive"):
            continue
        kind = "string" if match.lastgroup == "mark" else match.lastgroup
        found.append(Token(kind, match.group(), match.start(), match.end()))
    return found


class Source:
    """One file's tokens, with what encloses each."""

    def __init__(self, file, text):
        self.file = file
        self.text = text
        self.tokens = tokens_of(text)
        self.partner = {}
        self.enclosing = []  # of each token, the place of the bracket around it, or None
        self.braces = {}  # of each opening brace, "code", "scope" or "values"
        self._match()

    def _match(self):
        open_places = []
        begin = 0  # of the statement that is being read
        for place, token in enumerate(self.tokens):
            if token.kind == "sign" and token.text in OPENING.values() and open_places:
                partner = open_places.pop()
                self.partner[partner], self.partner[place] = place, partner
            self.enclosing.append(open_places[-1] if open_places else None)
            if token.kind == "sign" and token.text in OPENING:
                open_places.append(place)
                if token.text == "{":
                    self.braces[place] = self._sort_of_brace(place, begin)
            if token.text in (";", "{", "}"):
                begin = place + 1

    def _sort_of_brace(self, place, begin):
        before = [token.text for token in self.tokens[begin:place]]
        if "(" not in before and any(word in SCOPES for word in before):
            return "scope"
        last = self.tokens[place - 1].text if place else ""
        around = self.enclosing[place]
        in_scope = around is None or self.braces.get(around) == "scope"
        if last in BEFORE_CODE or (")" in before and "->" in before[before.index(")"):]):
            return "code"
        if in_scope and last == "}":
            return "code"
        if not in_scope and last in (";", "{", "}", ":") and self.braces.get(around) == "code":
            return "code"
        return "values"

    def spaced(self, place):
        """Whether a sign stands between blanks, as those with two operands do."""
        token = self.tokens[place]
        return self.text[token.start - 1].isspace() and self.text[token.end].isspace()

    def in_code(self, place):
        around = self.enclosing[place]
        return around is not None and self.braces.get(around) == "code"

    def within_code(self, place):
        around = self.enclosing[place]
        while around is not None:
            if self.braces.get(around) == "code":
                return True
            around = self.enclosing[around]
        return False

    def word(self, place):
        return self.tokens[place].text if 0 <= place < len(self.tokens) else ""

    def end_of(self, place, closing):
        """The place of the first of these signs at the depth of this one."""
        while place < len(self.tokens):
            if self.word(place) in closing:
                return place
            if self.word(place) in OPENING and place in self.partner:
                place = self.partner[place]
            elif self.word(place) in OPENING.values():
                return None
            place += 1
        return None

    def change(self, first, last, after, kind):
        """The tokens from the first to the last, replaced."""
        start, end = self.tokens[first].start, self.tokens[last].end
        return Mutant(self.file, start, end, self.text[start:end], after, kind)


def changed_number(text):
    """A neighbouring number: what an edge that is off by one would be."""
    match = re.fullmatch(r"(\d+)([uUlLzZ]*)", text.replace("'", ""))
    if match:
        number = int(match.group(1))
        return str(0 if number == 1 else number + 1) + match.group(2)
    match = re.fullmatch(r"0[xX]([\da-fA-F]+)([uUlLzZ]*)", text.replace("'", ""))
    if match:
        return hex(int(match.group(1), 16) ^ 1) + match.group(2)
    return None


def changed_character(text):
    return "'y'" if text == "'x'" else "'x'"


def skipped(source):
    """The places of what only the compiler reads: assertions, templates, names for types."""
    places = set()
    for place, token in enumerate(source.tokens):
        if token.text in ("using", "static_assert", "template", "friend") and token.kind == "word":
            closing = (";", "{") if token.text == "template" else (";",)
            end = source.end_of(place, closing)
            if token.text == "template":
                end = place
                depth = 0
                while end + 1 < len(source.tokens):
                    end += 1
                    depth += {"<": 1, ">": -1, ">>": -2}.get(source.word(end), 0)
                    if depth <= 0:
                        break
            places.update(range(place, (end if end is not None else place) + 1))
    return places


def single_tokens(source, place):
    token = source.tokens[place]
    if token.kind == "sign" and token.text in SIGNS and source.spaced(place):
        yield source.change(place, place, SIGNS[token.text], "operator")
    elif token.kind == "sign" and token.text in ("++", "--"):
        yield source.change(place, place, "--" if token.text == "++" else "++", "operator")
    elif token.kind == "sign" and token.text == "!" and source.within_code(place):
        yield source.change(place, place, "", "condition")
    elif token.kind == "word" and token.text in WORDS:
        yield source.change(place, place, WORDS[token.text], "constant")
    elif token.kind == "char":
        yield source.change(place, place, changed_character(token.text), "constant")
    elif token.kind == "number":
        after = changed_number(token.text)
        pure = source.word(place - 1) == "=" and source.word(place - 2) in (")", "const", "noexcept")
        if after and not pure:
            yield source.change(place, place, after, "constant")


def conditions(source, place):
    if source.word(place) not in ("if", "while") or source.word(place + 1) != "(":
        return
    first, last = place + 2, source.partner.get(place + 1, place) - 1
    if last < first or source.end_of(first, (";",)) or source.word(first) in ("auto", "const"):
        return
    inner = source.text[source.tokens[first].start : source.tokens[last].end]
    after = f"!({inner})" if source.word(place) == "if" else "false"
    yield source.change(first, last, after, "condition")


def begins_statement(source, place):
    if not source.in_code(place) or place == 0:
        return False
    before = source.word(place - 1)
    if before in (";", "{", "}", "else", "do"):
        return before != "}" or source.braces.get(source.partner.get(place - 1)) == "code"
    if before == ")":
        opening = source.partner.get(place - 1, 0)
        return source.word(opening - 1) in ("if", "for", "while", "switch", "constexpr")
    if before == ":":
        return source.word(place - 3) == "case" or source.word(place - 2) == "default"
    return False


def statements(source, place):
    token = source.tokens[place]
    if not begins_statement(source, place):
        return
    end = source.end_of(place, (";",))
    if end is None:
        return
    if token.text == "return":
        value = source.text[source.tokens[place].end : source.tokens[end].start].strip()
        literal = end == place + 2 and source.tokens[place + 1].kind in ("number", "char")
        if value and value not in EMPTY_VALUES and not literal:
            yield source.change(place, end, "return {};", "value given back")
        return
    if token.text not in LEFT_OUT_ALONE:
        if token.kind == "word" and token.text in DECLARING:
            return
        after = place + 1
        while source.word(after) == "::":
            after += 2
        if token.kind == "word" and source.word(after) not in (
            "(", ".", "->", "[", "=", "+=", "-=", "|=", "&=", "++", "--", "<<"
        ):
            return
        if token.kind != "word" and token.text not in ("++", "--", "*", "("):
            return
    yield source.change(place, end, ";", "statement left out")


def fields(source, place):
    around = source.enclosing[place]
    if source.word(place) != "." or source.braces.get(around) != "values":
        return
    if source.word(place - 1) not in ("{", ",") or source.word(place + 2) != "=":
        return
    end = source.end_of(place, (",",))
    last = end if end is not None else source.partner.get(around, place) - 1
    if last > place:
        yield source.change(place, last, "", "field left out")


def arguments(source, place):
    """Two neighbouring arguments of a call, one for the other."""
    if source.word(place) != "(" or place not in source.partner or not source.within_code(place):
        return
    called = source.tokens[place - 1]
    if called.kind != "word" or called.text in ("if", "for", "while", "switch", "return", "catch"):
        return
    pieces, first, closing = [], place + 1, source.partner[place]
    while first <= closing:
        comma = source.end_of(first, (",",))
        last = (comma if comma is not None and comma < closing else closing) - 1
        pieces.append((first, last))
        first = last + 2
    for (a, b), (c, d) in zip(pieces, pieces[1:]):
        if b < a or d < c:
            continue
        left = source.text[source.tokens[a].start : source.tokens[b].end]
        right = source.text[source.tokens[c].start : source.tokens[d].end]
        gap = source.text[source.tokens[b].end : source.tokens[c].start]
        # A list or a lambda fits in no other argument's place.
        fits = not any(text.endswith(("&", "*")) or text[0] in "{[" for text in (left, right))
        if left != right and fits:
            yield source.change(a, d, right + gap + left, "arguments swapped")


FINDERS = (single_tokens, conditions, statements, fields, arguments)


def mutants_of(file, text):
    """Every change of this file, in the order of its text."""
    source = Source(file, text)
    left_alone = skipped(source)
    found = []
    for place in range(len(source.tokens)):
        if place not in left_alone:
            for finder in FINDERS:
                found.extend(finder(source, place))
    return found
