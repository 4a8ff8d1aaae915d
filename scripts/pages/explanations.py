"""What the pages say, as data that `hvxupgrade identifiers NAME` reads (tool/settings/Explanations.h)."""
import json
import re


def plain(text):
    """Without the signs of Markdown, in one line."""
    return re.sub(r"\[([^\]]+)\]\([^)]+\.md\)", r"\1", " ".join(text.split())).replace("`", "")


def explanation(about, along, harmless, left, examples, without, totals, differences):
    """Of one upgrade. What there is nothing to say about is left out."""
    data = {
        "about": plain(about),
        "before": [{"upgrade": name, "reason": plain(reason)} for name, reason in along.items()],
        "harmless": [plain(each) for each in harmless],
        "leaves": [{"lateTypes": late_types.split(), "what": plain(what)} for late_types, what in left],
        "examples": [{"of": f"{feature} of {name}", "rows": [list(map(plain, row)) for row in rows], "more": more}
                     for feature, name, rows, more in examples],
        "none": plain(without),
        "features": [{"of": name} | numbers for name, numbers in totals.items()],
        "analysis": [{"meaning": meaning, "reason": reason, "first": first,
                      "features": [{"of": name, "count": count} for name, count in counts.items()]}
                     for meaning, reason, counts, first in differences],
    }
    return {key: value for key, value in data.items() if value}


def text_of(data, levels, indent=""):
    """As JSON, of which so many levels are put on lines of their own: a difference is to be readable."""
    if levels == 0 or not isinstance(data, (dict, list)):
        return json.dumps(data, ensure_ascii=False)
    inner = indent + " "
    if isinstance(data, dict):
        lines = [f"{inner}{json.dumps(key)}: {text_of(value, levels - 1, inner)}" for key, value in data.items()]
        return "{\n" + ",\n".join(lines) + f"\n{indent}}}"
    return "[\n" + ",\n".join(inner + text_of(each, levels - 1, inner) for each in data) + f"\n{indent}]"


def file_of(explanations):
    return text_of({"explanations": "hvxupgrade", "version": 1, "upgrades": explanations}, 4) + "\n"
