"""What the host's declarations offer to be confused with something else."""
import collections
import re

from mutation.paths import LIBRARY, ROOT


class Host:
    """Names, the values of enumerations, and for each operation one with the same parameters."""

    def __init__(self):
        self.names, self.enums, self.siblings = set(), {}, {}
        for header in sorted([*ROOT.glob("host/**/*.h"), *LIBRARY.glob("headers/*.h")]):
            text = re.sub(r"//[^\n]*", "", header.read_text(encoding="utf-8"))
            self.names.update(re.findall(r"\b[A-Z]\w+", text))
            for name, body in re.findall(r"enum class (\w+)[^{;]*\{([^}]*)\}", text):
                self.enums[name] = re.findall(r"\bk\w+", body)
            by_parameters = collections.defaultdict(list)
            for name, parameters in re.findall(r"HRESULT ([A-Z]\w*)\(([^()]*)\)", text):
                types = tuple(re.sub(r"\s+\w+$", "", one.strip()) for one in parameters.split(","))
                by_parameters[types].append(name)
            for names in by_parameters.values():
                names = list(dict.fromkeys(names))
                for name, sibling in zip(names, names[1:] + names[:1]):
                    if name != sibling:
                        self.siblings.setdefault(name, sibling)
