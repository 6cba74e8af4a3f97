"""Small changes to C++ source, each of which a test should notice.

The source is split into tokens. Comments, preprocessor directives (except the bodies of macros) and
what only the compiler checks (static_assert) are left alone.
"""
import collections
import re

TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#[ \t]*(?!define\b)\w+(?:\\\n|[^\n])*)
  | (?P<string>"(?:\\.|[^"\\\n])*")
  | (?P<character>'(?:\\.|[^'\\\n])+')
  | (?P<number>\d(?:[\w.]|'(?=\w))*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<space>(?:\s|\\\n)+)
  | (?P<operator><<=|>>=|\.\.\.|::|->|<<|>>|[<>=!+\-*/%&|^]=|&&|\|\||\+\+|--|.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)
Token = collections.namedtuple("Token", "kind text start end")
Edit = collections.namedtuple("Edit", "start end text")

# Operators between two operands, which the formatter surrounds with spaces.
BINARY = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
    "&&": "||", "||": "&&", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
    "+": "-", "-": "+", "*": "+", "/": "*", "%": "*",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=",
    "|=": "&=", "&=": "|=", "<<=": ">>=", ">>=": "<<=",
}
STEPS = {"++": "--", "--": "++"}

# Names that are easily confused.
CONFUSED = [
    ["true", "false"], ["all_of", "any_of"], ["min", "max"], ["hex", "dec"],
    ["at", "appended"],
]
LINKS = {".", "->", "::"}
OPEN = {"(": ")", "[": "]", "{": "}"}
CLOSE = set(OPEN.values())
BLOCKS = {"if", "constexpr", "for", "while", "switch"}
NO_STATEMENT = BLOCKS | {
    "return", "using", "typedef", "template", "class", "struct", "enum", "namespace", "friend",
    "static_assert", "case", "default", "public", "private", "protected", "extern", "goto", "do",
    "else", "try", "catch", "const", "static", "auto", "inline", "explicit", "virtual",
    "typename", "unsigned", "operator",
}
NO_CONDITION = {"*", "{", "out", "make", "rows", "static_cast"}
FIELD_NUMBER = re.compile(r"k\w+FieldNumber")
ACCESSOR = re.compile(r"[gG]et[A-Z]\w*|set_\w+|first|second|[a-z]\w*_")
DECLARATION = re.compile(r"(?!throw|delete)[\w:]+(<[^;]*?>)?[&*\s]+[\w:]+\s*(=[^=]|;|\(|\[|,)")


def tokens_of(source):
    """The tokens, without spaces, comments and directives."""
    found = [Token(m.lastgroup, m.group(), m.start(), m.end()) for m in TOKEN.finditer(source)]
    return [t for t in found if t.kind not in ("comment", "directive", "space")]


def followers(names):
    """Maps each name to the next, and the last to the first."""
    names = list(dict.fromkeys(names))
    return {name: other for name, other in zip(names, names[1:] + names[:1]) if name != other}


def enumerations_of(sources):
    """The names in each enumeration defined in the sources."""
    families = []
    for source in sources:
        plain = re.sub(r"//[^\n]*|/\*.*?\*/", "", source, flags=re.DOTALL)
        for body in re.findall(r"\benum\b[^;{]*\{([^}]*)\}", plain):
            families.append([n for n in re.findall(r"(?:^|,)\s*(\w+)", body)])
    return families


class Source:
    """One file and all its changes. @p families are lists of names that replace each other."""

    def __init__(self, source, families):
        self.source = source
        self.tokens = tokens_of(source)
        self.partner, self.enclosing = self._brackets()
        self.replacing = {}
        for family in CONFUSED + families:
            self.replacing = {**followers(family), **self.replacing}
        self.siblings = self._siblings()

    def edits(self):
        """All changes in the order in which they occur in the file, without duplicates."""
        found, seen_by_compiler = set(), -1
        for i, token in enumerate(self.tokens):
            if token.text == "static_assert":
                seen_by_compiler = self.partner.get(i + 1, i)
            if i > seen_by_compiler:
                found.update(self._of_token(i, token))
                found.update(self._of_statement(i))
        changed = {e for e in found if self.source[e.start:e.end] != e.text}
        return sorted(changed, key=lambda e: (e.start, e.end, e.text))

    # ------------------------------------------------------------------------------- preparation

    def _brackets(self):
        """For each bracket the place of its partner; for each token the bracket around it."""
        partner, enclosing, stack = {}, [], []
        for i, token in enumerate(self.tokens):
            if token.text in CLOSE and stack:
                partner[i] = stack.pop()
                partner[partner[i]] = i
            enclosing.append(self.tokens[stack[-1]].text if stack else "")
            if token.text in OPEN:
                stack.append(i)
        return partner, enclosing

    def _siblings(self):
        """For each owner, which of its names replaces which."""
        names = collections.defaultdict(list)
        for i in range(len(self.tokens)):
            if self._is_choice_of_owner(i):
                names[self._owner(i)].append(self._at(i))
        return {owner: followers(offered) for owner, offered in names.items()}

    def _owner(self, i):
        """What a member or a qualified name belongs to, with the link between them, or None."""
        if self._at(i - 1) in LINKS and self.tokens[i - 2].kind == "name":
            return self._at(i - 2), self._at(i - 1)
        return None

    def _neighbour(self, i):
        name = self._at(i)
        if name in self.replacing:
            return self.replacing[name]
        if FIELD_NUMBER.fullmatch(name):
            return self._nearest_other(i, FIELD_NUMBER)
        return self.siblings.get(self._owner(i), {}).get(name)

    def _nearest_other(self, i, pattern):
        """The nearest other name of the same sort, likely to belong to the same message."""
        near = [*range(i + 1, len(self.tokens)), *range(i - 1, -1, -1)]
        return next((self._at(j) for j in near
                     if pattern.fullmatch(self._at(j)) and self._at(j) != self._at(i)), None)

    def _is_choice_of_owner(self, i):
        """Whether a name after its owner is one of several that the owner has."""
        if self._owner(i) is None:
            return False
        owner, link = self._owner(i)
        if link == "::":
            return owner.endswith("_fields") or self._at(i - 3) == "&"
        return ACCESSOR.fullmatch(self._at(i)) is not None

    def _at(self, i):
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def _text(self, first, last):
        return self.source[self.tokens[first].start:self.tokens[last].end]

    def _replaced(self, first, last, text):
        return Edit(self.tokens[first].start, self.tokens[last].end, text)

    # ------------------------------------------------------------------------------ single tokens

    def _of_token(self, i, token):
        kinds = {"operator": self._of_operator, "number": self._of_number,
                 "string": self._of_string, "name": self._of_name}
        if token.kind == "character":
            yield self._replaced(i, i, "'~'")
        else:
            yield from kinds[token.kind](i, token.text)

    def _of_operator(self, i, text):
        if text == "!":
            yield self._replaced(i, i, "")
        elif text in STEPS:
            yield self._replaced(i, i, STEPS[text])
        elif text in BINARY and self._is_binary(i):
            yield self._replaced(i, i, BINARY[text])
        elif text == "?":
            yield from self._of_choice(i)
        elif text == "{":
            yield from self._of_list(i)

    def _is_binary(self, i):
        token = self.tokens[i]
        set_off = self.source[token.start - 1] + self.source[token.end:token.end + 1]
        if not set_off.isspace() or len(set_off) < 2:
            return False
        if token.text != "<<":
            return True
        # Only between numbers: for streams there is no other operator.
        return (self.tokens[i + 1].kind == "number" or self._at(i - 1) == "}" or
                self._at(i - 1).isupper())

    def _of_number(self, i, text):
        number = re.fullmatch(r"(0x[0-9A-Fa-f]+|\d+)([uUlL]*)", text)
        if number is not None:
            base = 16 if "x" in text else 8 if text.startswith("0") else 10
            form = {16: "0x%X", 8: "0%o", 10: "%d"}[base]
            value = int(number[1], base) + 1
            yield self._replaced(i, i, form % value + number[2] if value > 1 else "1" + number[2])

    def _of_string(self, i, text):
        if text == '""' or self._at(i - 1) == "extern":
            return
        yield self._replaced(i, i, text[:-1] + '~"')
        if text == '"\\n"' and self._at(i - 1) == "<<":
            yield self._replaced(i, i, "std::endl")

    def _of_name(self, i, text):
        if self._neighbour(i) is not None:
            yield self._replaced(i, i, self._neighbour(i))
        if text == "endl":
            yield self._replaced(i - 2, i, '"\\n"')
        if text == "rows" and self._at(i - 1) == "return" and self._at(i + 1) == "(":
            yield from self._of_rows(i + 1)
        if text == "if":
            yield from self._of_condition(i)
        if text == "return":
            yield from self._of_return(i)

    # ------------------------------------------------------------------------------ longer pieces

    def _end(self, first, stops):
        """The place of the first stop outside inner brackets, or of a closing bracket."""
        i = first
        while i < len(self.tokens) and self._at(i) not in stops | CLOSE:
            i = self.partner.get(i, i) + 1 if self._at(i) in OPEN else i + 1
        return i

    def _negated(self, first, last):
        """The condition negated, unless changing a single token does the same."""
        operators = [self._at(i) for i in range(first, last + 1)]
        compared = operators.count("==") + operators.count("!=")
        combined = {"&&", "||", "?"} & set(operators)
        compared += self._at(first) == "!"
        if first <= last and (compared != 1 or combined):
            yield self._replaced(first, last, "!(%s)" % self._text(first, last))

    def _of_condition(self, i):
        first = i + 3 if self._at(i + 1) == "constexpr" else i + 2
        end = self._end(first, {";"})
        if self._at(end) == ";":
            first, end = end + 1, self._end(end + 1, set())
        yield from self._negated(first, end - 1)

    def _of_return(self, i):
        end = self._end(i + 1, {";"})
        choice = self._at(self._end(i + 1, {";", "?"})) == "?"
        if self._at(end) == ";" and end > i + 2 and not choice and (
                self._at(i + 1) not in NO_CONDITION):
            yield from self._negated(i + 1, end - 1)

    def _of_choice(self, i):
        colon = self._end(i + 1, {":"})
        end = self._end(colon + 1, {";", ","})
        yes, no = self._text(i + 1, colon - 1), self._text(colon + 1, end - 1)
        yield self._replaced(i + 1, end - 1, "%s : %s" % (no, yes))

    def _of_list(self, i):
        """Leaves out each element of a list in braces."""
        if self._at(i - 1) not in ("=", ",", "{", "(", "return"):
            return
        commas, j = [], self._end(i + 1, {",", ";"})
        while self._at(j) == ",":
            commas.append(j)
            j = self._end(j + 1, {",", ";"})
        if commas and self._at(j) == "}":
            yield from self._without_each(self.tokens[i].end, self.tokens[j].start, commas)

    def _of_rows(self, i):
        """Leaves out each row of those that a call is given."""
        last = self.partner[i]
        commas, j = [], i + 1
        while j < last:
            if self._at(j) == ",":
                commas.append(j)
            j = self.partner[j] + 1 if self._at(j) in OPEN else j + 1
        if last > i + 1:
            yield from self._without_each(self.tokens[i].end, self.tokens[last].start, commas)

    def _without_each(self, start, end, commas):
        ends = [self.tokens[c].end for c in commas]
        for first, last in zip([start] + ends, ends):
            yield Edit(first, last, "")
        if not commas or tokens_of(self.source[ends[-1]:end]):
            yield Edit(self.tokens[commas[-1]].start if commas else start, end, "")

    def _of_statement(self, i):
        """Leaves out the statement that begins here, if it is a simple one."""
        end = self._end(i, {";", "{", ":"})
        simple = (self._begins_statement(i) and self._at(end) == ";" and end > i and
                  (self.tokens[i].kind == "name" or self._at(i) in ("*", "(", "++", "--")) and
                  self._at(i) not in NO_STATEMENT and
                  self._at(end - 1) not in ("default", "delete") and
                  not self._is_last_break(i) and
                  not DECLARATION.match(self._text(i, end)))
        if simple:
            yield self._replaced(i, end - 1, "")

    def _is_last_break(self, i):
        """Whether the statement ends a switch that ends here anyway."""
        if self._at(i) != "break" or self._at(i + 2) != "}":
            return False
        head = self.partner[i + 2] - 1
        return self._at(self.partner.get(head, 0) - 1) == "switch"

    def _begins_statement(self, i):
        before = self._at(i - 1)
        if self.enclosing[i] != "{":
            return False
        if before == ")":
            return self._at(self.partner[i - 1] - 1) in BLOCKS
        if before == ":":
            label = i - 2
            while self.tokens[label].kind == "name" or self._at(label) == "::":
                label -= 1
            return self._at(label + 1) in ("case", "default")
        return before in (";", "{", "}", "else")
