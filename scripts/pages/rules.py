"""What `hvxupgrade check` says of features that an upgrade left behind, from the tables of its rules."""
import collections
import re
import sys

from pages.walk import ROOT


def split_fields(text):
    """The parts of an initializer between commas that stand in no braces, brackets or quotes."""
    parts, depth, quoted, part = [], 0, False, ""
    for i, char in enumerate(text):
        if char == '"' and text[i - 1] != "\\":
            quoted = not quoted
        elif not quoted and char in "{(":
            depth += 1
        elif not quoted and char in "})":
            depth -= 1
        if char == "," and depth == 0 and not quoted:
            parts.append(part.strip())
            part = ""
        else:
            part += char
    return [*parts, part.strip()] if part.strip() else parts


def text_of(field, constants):
    """The text of a field: string literals, one behind the other, or the name of a constant."""
    if field == "{}":
        return ""
    literals = re.findall(r'"((?:[^"\\]|\\.)*)"', field)
    if literals:
        return "".join(literals).replace('\\"', '"')
    name = field.rsplit("::", 1)[-1]
    if name not in constants:
        sys.exit(f"upgrade-pages: nothing in standalone/check tells what {field} stands for")
    return constants[name]


def rules():
    """What the rules of `hvxupgrade check` say of features that an upgrade left behind, by identifier."""
    constant = re.compile(r'constexpr std::string_view (k\w+) =\s*((?:"(?:[^"\\]|\\.)*"\s*)+);')
    headers = sorted([*ROOT.glob("standalone/check/*.h"), *ROOT.glob("standalone/analysis/*.h")])
    common = "".join(header.read_text(encoding="utf-8") for header in headers)
    found = collections.defaultdict(list)
    for source in sorted(ROOT.glob("standalone/check/*Rules.cpp")):
        text = re.sub(r"^\s*//.*$", "", source.read_text(encoding="utf-8"), flags=re.MULTILINE)
        constants = {name: text_of(value, {}) for name, value in constant.findall(common + text)}
        table = re.search(r"constexpr ConformityRule kRules\[\] = \{(.*?)^\};", text, re.MULTILINE | re.DOTALL)
        for row in split_fields(table.group(1)) if table else []:
            fields = split_fields(row.removeprefix("{").removesuffix("}"))
            late_types, identifier, reason = (text_of(field, constants) for field in fields[:3])
            if identifier:
                found[identifier].append((late_types, reason))
    return found
