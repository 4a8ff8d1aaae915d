"""The small faults that can be put into a source of the library."""
import collections
import dataclasses
import re

from mutation.paths import LIBRARY


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str  # beneath the library's folder
    start: int
    end: int
    new: str
    kind: str
    line: int
    old: str

    def __str__(self):
        def flat(text):
            return " ".join(text.split())
        return f"{self.file}:{self.line}: {self.kind}: `{flat(self.old)}` -> `{flat(self.new)}`"


TOKEN = re.compile(r"""
    (?P<space>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
  | (?P<string>"(?:[^"\\\n]|\\.)*")
  | (?P<char>'(?:[^'\\\n]|\\.)*')
  | (?P<number>(?:0x[0-9A-Fa-f]+|\d+(?:\.\d*)?(?:[eE][-+]?\d+)?)[uUlLfF]*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign>->\*?|::|\+\+|--|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)""", re.VERBOSE | re.DOTALL | re.MULTILINE)


@dataclasses.dataclass
class Statement:
    """A statement as the tokens [first, last]; `test` are the tokens of an if's condition."""
    word: str  # if, for, while, return, break, continue, {, or "" for an expression or a declaration
    first: int
    last: int
    test: tuple = ()
    then: "Statement | None" = None
    other: "Statement | None" = None
    inner: list = dataclasses.field(default_factory=list)


# Words of which one is easily written for the other.
LIKE_WORDS = [("First", "Second"), ("From", "To"), ("Old", "New"), ("old", "new"), ("Minimum", "Maximum"),
              ("Min", "Max"), ("Points", "Products"), ("points", "products"), ("Standard", "Explicit"),
              ("Force", "Moment"),
              ("first", "second"), ("ReplaceSubString", "ReplaceAll")]
# What a routine's result may do to an upgrade, and what is taken instead.
FAILURE_POLICIES = {"kIgnore": "kStop", "kStop": "kIgnore", "kLast": "kStop",
                    "kSkip": "kStop", "kFirst": "kLast"}
CODES = {"E_FAIL": "S_OK", "S_OK": "E_FAIL", "E_NOINTERFACE": "E_FAIL"}
OPERATORS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "<": "<=", ">": ">=", "&&": "||", "||": "&&",
             "++": "--", "--": "++"}


class Source:
    """One file of the library and the faults that can be put into it."""

    def __init__(self, path, host):
        self.path = path
        self.name = str(path.relative_to(LIBRARY))
        self.text = path.read_text(encoding="utf-8")
        self.host = host
        self.tokens = []  # (kind, text, start)
        for match in TOKEN.finditer(self.text):
            if match.lastgroup != "space":
                self.tokens.append((match.lastgroup, match.group(), match.start()))
        self.partner = self.match_brackets()
        self.negated = set()  # the tokens of tests that were negated as a whole
        self.mutants = []

    def match_brackets(self):
        partner, stack = {}, []
        for index, (kind, text, _) in enumerate(self.tokens):
            if kind != "sign":
                continue
            if text in "([{":
                stack.append(index)
            elif text in ")]}" and stack:
                partner[stack[-1]] = index
                partner[index] = stack.pop()
        return partner

    def word(self, index):
        return self.tokens[index][1] if 0 <= index < len(self.tokens) else ""

    def span(self, first, last):
        return self.tokens[first][2], self.tokens[last][2] + len(self.tokens[last][1])

    def code(self, first, last):
        start, end = self.span(first, last)
        return self.text[start:end]

    def add(self, kind, first, last, new):
        start, end = self.span(first, last)
        if self.text[start:end] != new:
            line = self.text.count("\n", 0, start) + 1
            self.mutants.append(Mutant(self.name, start, end, new, kind, line, self.text[start:end]))

    # -- statements --

    def opens_block(self, index):
        return self.word(index) == "{" and self.word(index - 1) in (")", "]", "const", "else", "noexcept")

    def block(self, opening):
        statements, index = [], opening + 1
        while index < self.partner[opening]:
            statements.append(self.statement(index))
            index = statements[-1].last + 1
        return statements

    def statement(self, index):
        word = self.word(index)
        if word == "{":
            return Statement("{", index, self.partner[index], inner=self.block(index))
        if word in ("if", "for", "while"):
            opening = index + 1
            closing = self.partner[opening]
            then = self.statement(closing + 1)
            result = Statement(word, index, then.last, (opening + 1, closing - 1), then)
            if word == "if" and self.word(then.last + 1) == "else":
                result.other = self.statement(then.last + 2)
                result.last = result.other.last
            return result
        last = index
        while self.word(last) != ";":
            last = self.partner.get(last, last) + 1
        return Statement(word if word in ("return", "break", "continue") else "", index, last)

    def mutate(self):
        seen = set()
        for index in range(len(self.tokens)):
            if self.opens_block(index) and index not in seen:
                self.mutate_list(self.block(index), seen)
        self.mutate_tokens()
        return sorted(self.mutants, key=lambda mutant: mutant.start)

    def mutate_list(self, statements, seen):
        for statement in statements:
            self.mutate_statement(statement, seen)
        for one, two in zip(statements, statements[1:]):
            if self.is_call(one) and self.is_call(two):
                between = self.text[self.span(one.first, one.last)[1]:self.span(two.first, two.last)[0]]
                self.add("swap", one.first, two.last,
                         self.code(two.first, two.last) + between + self.code(one.first, one.last))

    def is_call(self, statement):
        """A call by itself, or one whose result ends the routine: what can be dropped or moved."""
        text = self.code(statement.first, statement.last)
        if statement.word == "if":
            return statement.then.word == "return" and ("; Failed(" in text or text.startswith("if (Failed("))
        return statement.word == "" and "(" in text and not self.is_declaration(text)

    @staticmethod
    def is_declaration(text):
        declaration = r"(const|static|constexpr|using)\b|[\w:]+(<[^;=()]*>)?[&*]?\s+[&*]?\w+\s*[;=({]"
        return re.match(declaration, text) is not None

    def mutate_statement(self, statement, seen):
        if statement.word == "{":
            seen.add(statement.first)
            self.mutate_list(statement.inner, seen)
            return
        text = self.code(statement.first, statement.last)
        if self.is_call(statement):
            self.add("drop", statement.first, statement.last, ";")
        if statement.word == "if":
            self.mutate_test(statement)
        if statement.then is not None:
            self.mutate_statement(statement.then, seen)
        if statement.other is not None:
            self.mutate_statement(statement.other, seen)
        if statement.word in ("break", "continue"):
            self.add("jump", statement.first, statement.last,
                     "continue;" if statement.word == "break" else "break;")
        if statement.word == "return" and statement.last > statement.first + 1:
            value = self.code(statement.first + 1, statement.last - 1)
            if "(" in value and not value.startswith("!"):
                self.add("ignore", statement.first, statement.last,
                         f"{{ static_cast<void>({value}); return S_OK; }}")
            elif re.fullmatch(r"[a-z]\w*", value) and value not in ("true", "false"):
                self.add("ignore", statement.first, statement.last, "return S_OK;")
        if text.startswith("static_cast<void>("):
            call = text[len("static_cast<void>("):-2]
            self.add("heed", statement.first, statement.last,
                     f"if (const HRESULT heeded = {call}; Failed(heeded)) return heeded;")
        declared = re.fullmatch(r"((?:const )?HRESULT \w+) = (.*\(.*);", text, re.DOTALL)
        if declared:
            self.add("drop", statement.first, statement.last, f"{declared.group(1)} = S_OK;")

    def mutate_test(self, statement):
        first, last = statement.test
        cuts = [index for index in self.level(first, last) if self.word(index) == ";"]
        if cuts:
            first = cuts[-1] + 1
        test = self.code(first, last)
        ends = statement.then.word in ("return", "break", "continue") and statement.other is None
        if ends:
            self.add("go on", first, last, f"({test}) && false")
        if not (ends and re.match(r"Failed\(|\w+ == NULL_var", test)):
            self.add("negate", first, last, f"!({test})")
            signs = (index for index in self.level(first, last) if self.word(index) in ("==", "!="))
            self.negated.update(signs)
        joints = [index for index in self.level(first, last) if self.word(index) in ("||", "&&")]
        if not joints:
            return
        neutral = "true" if self.word(joints[0]) == "&&" else "false"
        begins = [first, *(joint + 1 for joint in joints)]
        ends_at = [*(joint - 1 for joint in joints), last]
        for begin, end in zip(begins, ends_at):
            operand = self.code(begin, end)
            self.add("drop operand", begin, end, f"(static_cast<void>({operand}), {neutral})")

    def level(self, first, last):
        """The tokens from first to last that stand in no bracket among them."""
        index = first
        while index <= last:
            yield index
            index = self.partner.get(index, index) + 1 if self.word(index) in "([{" else index + 1

    # -- single tokens --

    def mutate_tokens(self):
        constants = collections.defaultdict(list)  # the file's own, by type
        declared = r"^(?:inline )?(?:constexpr|const) ([\w:]+(?: char)?\*?) (k[A-Z]\w*)(?=[ ({=])"
        for kind, name in re.findall(declared, self.text, re.MULTILINE):
            constants[kind].append(name)
        for index, (kind, text, start) in enumerate(self.tokens):
            before, after = self.word(index - 1), self.word(index + 1)
            if kind == "number":
                self.mutate_number(index, text, before)
            elif kind == "string":
                self.mutate_string(index, text, before, after)
            elif kind == "name":
                self.mutate_name(index, text, before, after, constants)
            elif text in ("++", "--") or text in OPERATORS and self.text[start - 1] == " " and \
                    before != "template" and after != "NULL_var" and index not in self.negated:
                self.add("operator", index, index, OPERATORS[text])

    def mutate_number(self, index, text, before):
        if before == "[" and self.word(index + 1) == "]" and text == "1":
            named = self.word(index - 2)
            self.add("index", index, index, f"{named}.Size()")
            return
        if text.startswith("0x"):
            self.add("literal", index, index, "1")
        elif "." in text:
            suffix = "F" if text.endswith("F") else ""
            self.add("literal", index, index, f"{float(text.rstrip('F')) * 2 + 1}{suffix}")
        else:
            digits = text.rstrip("uUlL")
            self.add("literal", index, index, str(int(digits) + 1) + text[len(digits):])

    def mutate_string(self, index, text, before, after):
        # A sentence tells what a routine does, to a reader; texts of several pieces are sentences too.
        if text.endswith('."') or self.tokens[index - 1][0] == "string" or after.startswith('"'):
            return
        if before not in ("extern", "__attribute__") and self.word(index - 2) != "visibility":
            self.add("literal", index, index, f'{text[:-1]}~"' if text != '""' else '"~"')

    def mutate_name(self, index, text, before, after, constants):
        if text in CODES and before != "==":
            self.add("code", index, index, CODES[text])
        if text in ("true", "false"):
            self.add("literal", index, index, "false" if text == "true" else "true")
        if before == "[" and after == "]" and self.word(index - 2) not in ("", "=", "(", ","):
            self.add("index", index, index, "1")
        if before == "::" and text.startswith("k"):
            enum = self.word(index - 2)
            options = self.host.enums.get(enum, [])
            if enum == "HVXOnFailure":
                self.add("like-named", index, index, FAILURE_POLICIES[text])
            elif text in options and len(options) > 1:
                self.add("like-named", index, index, options[(options.index(text) + 1) % len(options)])
        elif text.startswith("k"):
            for names in constants.values():
                if text in names and len(names) > 1 and not self.is_declared_at(index):
                    self.add("like-named", index, index, names[(names.index(text) + 1) % len(names)])
        for one, two in [*LIKE_WORDS, *[(two, one) for one, two in LIKE_WORDS]]:
            like = re.sub(rf"{one}(?=[A-Z_]|$)", two, text)
            if like != text and (like in self.host.names or re.search(rf"\b{like}\b", self.text)):
                if not self.is_declared_at(index):
                    self.add("like-named", index, index, like)
                break
        else:
            if before in (".", "->", "::") and text in self.host.siblings:
                self.add("like-named", index, index, self.host.siblings[text])

    def is_declared_at(self, index):
        """Whether the name at index is declared there: it follows a type."""
        kind, text, _ = self.tokens[index - 1]
        return kind == "name" and text not in ("return", "else") or text in ("&", "*", ">") and \
            self.tokens[index - 2][0] == "name" and self.text[self.tokens[index][2] - 1] == " "
