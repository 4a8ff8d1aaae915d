"""The sections of a page, and the overview of all."""
import collections
import re
import sys

from pages.explanations import explanation
from pages.walk import brought_along
from pages.words import LONGEST_VALUE, code, say, say_feature, shorten, work_by_feature

ROWS_OF_FEATURE = 8
FAILURES = {
    "ignore": "is ignored",
    "stop": "ends the upgrade of the feature with its code",
    "last": "is kept; the upgrade continues and returns the result of the last routine run",
    "skip": "skips what else the class does for the same upgrade",
    "first": "is the result of the feature's upgrade, which the routine ends in any case",
}
MEANINGS = {"same": "The same, expressed differently", "onPurpose": "Changed on purpose",
            "unaccounted": "Unaccounted for"}


def cell(text):
    return text.replace("|", "\\|") or "-"


def chosen(entry, groups, features):
    """Up to two features that show most: of different late types, those first that the upgrade is bound to."""
    bound = {name for binding in entry["bindings"] for name in binding["lateTypes"]}
    new = {each for each, rows in groups.items() if rows[0][0].startswith(("created", "removed"))}
    ranked = sorted(groups, key=lambda each: (features[each]["type"] not in bound, each not in new and not bound, each))
    result = []
    for each in ranked:
        if features[each]["type"] not in [features[other]["type"] for other in result]:
            result.append(each)
    return result[:2]


def totals_of(before, records):
    """How many features it changed, created and removed, by example."""
    found = {}
    for name in sorted(before.features):
        totals = records[name]["totals"] if name in records else collections.Counter()
        found[f"examples/{name}"] = {"changed": totals["changed"], "created": totals["created"], "removed": totals["removed"]}
    return found


def examples_of(entry, without, before, after, records):
    """Up to two features of the first example that it changes: which, of which, the first rows, how many more."""
    for name in sorted(records):
        features = before.features[name] | after.features[name]
        groups = work_by_feature(records[name], before.features[name], after.features[name])
        if groups:
            break
    else:
        return []
    if without:
        sys.exit(f"upgrade-pages: docs/upgrades/texts.toml says why {entry['upgrade']} changes nothing, but it does")
    result = []
    for subject in chosen(entry, groups, features):
        rows = [[shorten(text) for text in row] for row in groups[subject]]
        shown, more = rows[:ROWS_OF_FEATURE], len(rows[ROWS_OF_FEATURE:])
        result.append((say_feature(features[subject], features), f"examples/{name}", shown, more))
    return result


def example_section(examples, without, totals):
    lines = ["## Before and after", ""]
    for feature, name, rows, more in examples:
        lines += [f"{feature} of {code(name)}:", "", "| | Before | After |", "|---|---|---|"]
        lines += [f"| {' | '.join(map(cell, row))} |" for row in rows]
        if more:
            lines.append(f"| {more} more | ... | ... |")
        lines.append("")
    if not examples:
        lines += [without, ""]
    counts = [f"{code(name)}: {', '.join(f'{count} {word}' for word, count in numbers.items())}"
              for name, numbers in totals.items()]
    return [*lines, "Features in all: " + "; ".join(counts) + ".", ""]


def in_words(code_name):
    return re.sub("[A-Z]", lambda capital: " " + capital.group().lower(), code_name)


def say_facts(facts, features):
    told = [say(fact["value"], features) if "value" in fact else in_words(fact["standing"]) for fact in facts or []]
    return ", ".join(told) or "none"


def differences_of(before, after, records):
    """What the analysis says differently: for each meaning and reason how often, by example, and the first."""
    found = collections.defaultdict(collections.Counter)
    first = {}
    for name, record in sorted(records.items()):
        features = before.features[name] | after.features[name]
        for each in record.get("sheet", {}).get("differences", []):
            key = (MEANINGS[each["meaning"]], each.get("reason", ""))
            found[key][f"examples/{name}"] += 1
            whose = each.get("alias") or each["kind"]
            said = f"{whose}, {each['quantity']}" if "quantity" in each else whose
            if each.get("before") or each.get("after"):
                said += f": {say_facts(each.get('before'), features)} -> {say_facts(each.get('after'), features)}"
            first.setdefault(key, shorten(said, 2 * LONGEST_VALUE))
    return [(*key, dict(sorted(counts.items())), first[key]) for key, counts in sorted(found.items())]


def sheet_section(differences):
    lines = ["## What the analysis says", ""]
    for meaning, reason, counts, first in differences:
        numbers = ", ".join(f"{count} in {code(name)}" for name, count in counts.items())
        lines += [f"- {meaning}: {reason} ({numbers})", f"  - {first}"]
    return [*lines, *([] if differences else ["The same before and after, in both examples."]), ""]


def harmless_failures(records):
    reasons = sorted({each["reason"] for record in records.values() for each in record["harmlessFailures"]})
    return [f"A failure may mean that there was nothing to do: {each[0].lower()}{each[1:]}" for each in reasons]


def bindings_section(entry, harmless):
    if entry["documentWide"]:
        return ["It works on the whole document at once, after all features: " + entry["purpose"], ""]
    if not entry["bindings"]:
        return ["No class answers to it.", ""]
    lines = ["| Late types | Class | What it does | A failure |", "|---|---|---|---|"]
    for binding in entry["bindings"]:
        types = ", ".join(map(code, binding["lateTypes"]))
        lines.append(f"| {types} | `{binding['class']}` | {binding['purpose']} | {FAILURES[binding['onFailure']]} |")
    lines.append("")
    every = sorted({each["class"] for each in entry["bindings"] if each["matching"] == "inTurn"})
    if every:
        lines.append(f"{', '.join(map(code, every))}: all rows run that name the upgrade, one after the other.")
    if len(every) < len({each["class"] for each in entry["bindings"]}):
        lines.append(f"{'Each other class' if every else 'A class'} runs only its first row that names the upgrade.")
    return [*lines, *harmless, ""]


def left_section(found):
    if not found:
        return []
    lines = ["## When it fails", "", "`hvxupgrade check` then reports what is left behind:", ""]
    for late_types, reason in found:
        whose = ", ".join(map(code, late_types.split())) or "any feature"
        lines.append(f"- {whose}: {reason}")
    return [*lines, ""]


def page_and_explanation(entry, count, about, left, without, step):
    """The page of an upgrade, and the same as data for the program."""
    before, _, records = step
    examples, totals, differences = examples_of(entry, without, *step), totals_of(before, records), differences_of(*step)
    if not examples:
        without = without or "Neither example holds anything that it changes."
    harmless = harmless_failures(records)
    place = f"Upgrade {entry['number']} of {count}. [All upgrades](README.md)"
    lines = [f"# {entry['upgrade']}", "", place, "", about, "", *bindings_section(entry, harmless)]
    along = brought_along(entry["upgrade"])
    if along:
        lines += ["These must run before it, and are run as well where a document has not been through them:", ""]
        lines += [*(f"- [{name}]({name}.md): {reason}" for name, reason in along.items()), ""]
    lines += [*left_section(left), *example_section(examples, without, totals), *sheet_section(differences)]
    data = explanation(about, along, harmless, left, examples, without, totals, differences)
    return "\n".join(lines).rstrip() + "\n", data


def purpose_of(entry):
    purposes = [entry["purpose"]] if entry["documentWide"] else [each["purpose"] for each in entry["bindings"]]
    return " ".join(dict.fromkeys(purposes)) or "Changes nothing; recorded only."


def overview(entries):
    lines = ["# Upgrades", "",
             "A page for each upgrade: what it does and why, to which features, before and after, and what the",
             "analysis says differently. `scripts/upgrade-pages` writes them from the program, the examples and",
             "[texts.toml](texts.toml).", "", "## By time", "", "| | Upgrade | What it does |", "|---|---|---|"]
    lines += [f"| {each['number']} | [{each['upgrade']}]({each['upgrade']}.md) | {purpose_of(each)} |" for each in entries]
    by_type = collections.defaultdict(list)
    for each in entries:
        for name in {name for binding in each["bindings"] for name in binding["lateTypes"]}:
            by_type[name].append(each)
        if each["documentWide"]:
            by_type["the whole document"].append(each)
    lines += ["", "## By late type", "", "| Late type | Upgrades, oldest first |", "|---|---|"]
    for name, found in sorted(by_type.items(), key=lambda item: item[0].lower()):
        links = ", ".join(f"[{each['upgrade']}]({each['upgrade']}.md) ({each['number']})" for each in found)
        lines.append(f"| {name if ' ' in name else code(name)} | {links} |")
    return "\n".join(lines) + "\n"
