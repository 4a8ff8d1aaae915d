#!/usr/bin/python3
"""Writes small documents to begin fuzzing with: pieces of the examples and of the damaged documents.

  fuzz/make_seeds.py FOLDER [DICTIONARY]

A piece is a feature with all that stands above it and beneath it and what those link to. DICTIONARY, where it
is given, gets the late types and keys of all of them, as libFuzzer reads it.
"""
import gzip
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
MOST_FEATURES = 40


def links_of(value):
    if isinstance(value, dict):
        return [value["ref"]]
    return [target for entry in value for target in links_of(entry)] if isinstance(value, list) else []


def pieces_of(features):
    sons = {}
    for feature in features.values():
        sons.setdefault(feature.get("father", {}).get("ref"), []).append(feature["id"])
    for start in features:
        wanted, waiting = set(), [start]
        while waiting and len(wanted) < MOST_FEATURES:
            each = waiting.pop(0)
            if each in wanted or each not in features:
                continue
            wanted.add(each)
            feature = features[each]
            above = [feature[key]["ref"] for key in ("father", "container") if key in feature]
            links = [target for value in feature.get("attributes", {}).values() for target in links_of(value)]
            waiting += above + links + (sons.get(each, []) if each == start or len(above) > 1 else [])
        yield start, wanted


def without_links(value, kept):
    if isinstance(value, dict):
        return value if value["ref"] in kept else None
    return [without_links(entry, kept) for entry in value] if isinstance(value, list) else value


def text_of(features, wanted):
    lines = [{"format": "hvxdoc", "version": 1, "upgrades": [], "features": len(wanted)}]
    for each in sorted(wanted):
        feature = dict(features[each])
        for key in ("father", "container"):
            if key in feature and feature[key]["ref"] not in wanted:
                del feature[key]
        if "attributes" in feature:
            feature["attributes"] = {key: without_links(value, wanted)
                                     for key, value in feature["attributes"].items()}
        lines.append(feature)
    return "".join(json.dumps(line, separators=(",", ":"), ensure_ascii=False) + "\n" for line in lines)


def as_zstd(data):
    """One frame with one block, stored as it is: magic number, what the header tells, sizes."""
    return (b"\x28\xb5\x2f\xfd\xa0" + len(data).to_bytes(4, "little")
            + (len(data) << 3 | 1).to_bytes(3, "little") + data)


REPORT = [
    {"record": "run", "report": "hvxupgrade", "version": 4, "tool": "1.0.0", "folder": "/home",
     "arguments": ["upgrade", "a"], "time": "2026-11-23T04:15:53Z", "host": "h", "user": "u",
     "commandLine": ["hvxupgrade", "upgrade", "a"], "otherArguments": [], "language": "en",
     "libraries": [{"name": "L", "version": "1", "file": "/l.so", "sha256": "00"}]},
    {"record": "joined", "file": "r.jsonl", "report": "hvxupgrade", "version": 4},
    {"record": "continued", "time": "2026-11-23T04:15:53Z", "libraries": []},
    {"record": "document", "file": "a/b.hvxdoc", "verdict": "upgraded",
     "input": {"file": "a/b.hvxdoc", "bytes": 9, "modified": 17, "sha256": "00"},
     "result": {"file": "n/b.hvxdoc", "bytes": 12, "modified": 18}, "thingsForPerson": 1, "dropped": 0,
     "needsPerson": [{"file": "a/b.hvxdoc", "kind": "leftBehind", "reason": "x"}],
     "totals": {"features": 3, "concerned": 1, "changed": 1, "created": 0, "removed": 0, "failed": 0},
     "seconds": 0.5, "upgrades": ["UpgradeJobMemoryUnit"], "changed": [{"id": 3}], "created": []},
    {"record": "document", "file": "a/c.hvxdoc", "verdict": "broken", "problem": "a/c.hvxdoc: broken",
     "thingsForPerson": 0, "needsPerson": []},
    {"record": "end", "time": "2026-11-23T04:15:53Z", "words": "2 documents: ...", "exitCode": 3, "left": 0,
     "totals": {"documents": 2}},
]


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    words = set()
    for source in sorted([*ROOT.glob("examples/*.hvxdoc"), *ROOT.glob("tests/damaged/*.hvxdoc")]):
        lines = [json.loads(line) for line in source.read_text(encoding="utf-8").splitlines()[1:]]
        features = {line["id"]: line for line in lines}
        types = set()
        for start, wanted in pieces_of(features):
            words |= {features[start]["type"], *features[start].get("attributes", {})}
            if features[start]["type"] in types:
                continue  # one piece around a feature of each late type is enough
            types.add(features[start]["type"])
            name = f"{source.parent.name}-{source.stem}-{start}.hvxdoc"
            text = text_of(features, wanted).encode()
            (folder / name).write_bytes(text)
            if len(types) == 1:  # a few compressed ones
                (folder / f"{name}.gz").write_bytes(gzip.compress(text, mtime=0))
                (folder / f"{name}.zst").write_bytes(as_zstd(text))
    write_reports(pathlib.Path(sys.argv[2]), words)
    entries = sorted(f'"{word}"\n' for word in words)
    pathlib.Path(sys.argv[3]).write_text("".join(entries), encoding="utf-8")


def write_reports(folder, words):
    """As long as a run got before it ended, or was killed; and all that a record may lack."""
    folder.mkdir(parents=True, exist_ok=True)
    lines = [json.dumps(line, separators=(",", ":")) + "\n" for line in REPORT]
    for count in range(1, len(lines) + 1):
        (folder / f"of-{count}-lines.jsonl").write_text("".join(lines[:count]), encoding="utf-8")
    (folder / "cut-off.jsonl").write_text("".join(lines)[:-20], encoding="utf-8")
    for line in REPORT:
        words.update(line)
        for key in line:
            if key in ("record", "report"):
                continue
            lacking = {other: value for other, value in line.items() if other != key}
            text = lines[0] + json.dumps(lacking, separators=(",", ":")) + "\n"
            (folder / f"without-{line['record']}-{key}.jsonl").write_text(text, encoding="utf-8")


main()
