"""Small documents, cut out of an example so that a trial takes some hundredths of a second."""
import json
import re

# What each document is cut out for: all features of these late types, and all that these link to.
CUTS = {
    "a.hvxdoc": {"HVXJobLT", "HVXPressure", "HVXDisplayGroupsLT"},
    "b.hvxdoc": {"HVXInteractionContainerLT", "HVXTangentialBehaviorLT", "HVXSpringLT", "HVXSectionControlsLT"},
}


def small_documents(example):
    """File names with bytes."""
    head, *lines = example.read_text(encoding="utf-8").splitlines()
    features = {json.loads(line)["id"]: line for line in lines}
    return {name: cut(head, features, late_types) for name, late_types in CUTS.items()}


def cut(head, features, late_types):
    wanted = [number for number, line in features.items() if json.loads(line)["type"] in late_types]
    kept = set()
    while wanted:
        number = wanted.pop()
        if number not in kept:
            kept.add(number)
            wanted += map(int, re.findall(r'"ref":(\d+)', features[number]))
    header = json.loads(head) | {"features": len(kept)}
    lines = [json.dumps(header, separators=(",", ":"))]
    lines += [line for number, line in features.items() if number in kept]
    return "".join(f"{line}\n" for line in lines).encode()
