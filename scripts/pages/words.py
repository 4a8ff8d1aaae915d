"""Features and values in words, and what became of them as rows of a table."""
import collections
import json

LONGEST_VALUE = 80
PASSED_OVER = ("Type", "Magnitude", "Parameter")  # of components: what matters is the value


def shorten(text, longest=LONGEST_VALUE):
    return text if len(text) <= longest else text[:longest - 4].rstrip() + " ..."


def code(text):
    return f"`{text}`"


def say_feature(feature, features):
    """A feature as a reader knows it: by what it is called, or by what it holds."""
    attributes = feature.get("attributes", {})
    if feature["type"] == "Parameter" and "Value" in attributes:
        return f"parameter = {say(attributes['Value'], features)}"
    if feature["type"] == "GeometrySmartConnector":
        return f"support on {say(attributes.get('FirstObject'), features)}"
    name = feature.get("alias") or feature.get("name", "")
    # A name that upgrades make of late type and number tells nothing.
    return f'{feature["type"]} "{name}"' if name and not name.startswith(feature["type"] + ".") else feature["type"]


def say(value, features):
    if value is None:
        return "null"
    if isinstance(value, dict):
        if "ref" in value:
            target = features.get(value["ref"])
            return say_feature(target, features) if target else "a feature that is gone"
        return ", ".join(f"{key} {say(each, features)}" for key, each in value.items())
    if isinstance(value, list):
        return f"[{', '.join(say(each, features) for each in value)}]"
    if isinstance(value, float):
        return f"{value:.6g}"
    return json.dumps(value, ensure_ascii=False)


def say_both(change, before, after):
    """The value before and after; of long lists, what went and what came."""
    was, now = change.get("before"), change.get("after")
    said = [say(was, before) if "before" in change else "", say(now, after) if "after" in change else ""]
    if not (isinstance(was, list) and isinstance(now, list)) or max(map(len, said)) <= LONGEST_VALUE:
        return said
    went = [say(each, before) for each in was if each not in now]
    came = [say(each, after) for each in now if each not in was]
    sides = ((was, went), (now, came))
    return [f"{len(entries)} entries{', with ' if those else ''}{', '.join(those)}" for entries, those in sides]


def visited(item, by):
    """The feature that an upgrade worked on when it did this; the feature itself where nobody tells."""
    return next((each["feature"] for each in by if "feature" in each), item["id"])


def ancestor(item, same):
    """The topmost of those that came, or went, together."""
    while item.get("father", {}).get("ref") in same:
        item = same[item["father"]["ref"]]
    return item["id"]


def work_by_feature(record, before, after):
    """Rows of what changed, was created and was removed, by the feature that the upgrade worked on."""
    groups, beside = collections.defaultdict(list), collections.defaultdict(list)
    for item in record.get("changed", []):
        for change in item["changes"]:
            subject = visited(item, change["by"])
            key = {"attributes": code(change.get("key")), "modes": f"mode of {code(change.get('key'))}",
                   "upToDate": "up to date", "alias": "name", "type": "late type", "father": "place",
                   "physicalType": "physical type"}.get(change["field"], change["field"])
            if item["id"] != subject:
                key = f"{say_feature(after[item['id']], after)}: {key}"
            others = groups if item["id"] == subject else beside
            others[subject].append((key, *say_both(change, before, after)))
    for word, features in (("created", after), ("removed", before)):
        items = {item["id"]: item for item in record.get(word, [])}
        for item in items.values():
            if item["type"] == "GeometrySmartConnector":
                continue  # their owners' lists of supports tell
            subject = visited(item, item.get("by", []))
            if subject == item["id"]:
                subject = ancestor(item, items)
            holds = {key: value for key, value in item.get("attributes", {}).items() if key not in PASSED_OVER}
            cells = [f"{word}: {'parameter' if item['type'] == 'Parameter' else say_feature(item, features)}", "", ""]
            cells[2 if word == "created" else 1] = say(holds, features)
            if subject != item["id"] or holds:
                groups[subject].append(tuple(cells))
    for subject, rows in beside.items():
        groups[subject] += rows
    return groups
