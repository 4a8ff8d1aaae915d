#!/usr/bin/env python3
"""Compares this program with scripts that do the same: bench/alternatives/compare.py [FEATURES] [REPETITIONS]

Seven upgrades of one generated document (1000000 features, 5 repetitions), with the programs of build/. Ours also
verifies its result and brings it to disk; the scripts do not. Ends with 1 if a result differs from ours, but for
the integers that jq makes of whole reals.
"""
import itertools
import json
import os
import pathlib
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
BUILD = HERE.parent.parent / "build/bin"
NAMES = str(HERE / "names.json")
IDENTIFIERS = ",".join(json.loads(pathlib.Path(NAMES).read_text(encoding="utf-8"))["identifiers"])
FOR_JQ = """(grep -E '"hvxdoc"|"AnalysisCase"|"HVXShellSectionEnhLT"|"HVXARSurfLT"' "$1"; cat "$1") |
            jq -cn --slurpfile names "$3" -f "$0" >"$2" """
OURS = "hvxupgrade"
COMMANDS = {
    OURS: [str(BUILD / "hvxupgrade"), "upgrade", "-q", "--only", IDENTIFIERS, "DOCUMENT", "-o", "RESULT"],
    "C++, copying": ["NLOHMANN", NAMES, "DOCUMENT", "RESULT", "--copying"],
    "Python, copying": [sys.executable, "-B", str(HERE / "python_copying.py"), "DOCUMENT", "RESULT"],
    "C++, nlohmann": ["NLOHMANN", NAMES, "DOCUMENT", "RESULT"],
    "Python, json": [sys.executable, "-B", str(HERE / "python_json.py"), "DOCUMENT", "RESULT"],
    "SQLite": [sys.executable, "-B", str(HERE / "sqlite.py"), "DOCUMENT", "RESULT"],
    "jq": ["bash", "-o", "pipefail", "-c", FOR_JQ, str(HERE / "upgrade.jq"), "DOCUMENT", "RESULT", NAMES]}
MOST_RUNS = {"jq": 2}  # it takes long


def run(name, document, result):
    """Seconds, processor seconds and the peak in MB, which is never less than that of this process."""
    result.unlink(missing_ok=True)
    places = {"DOCUMENT": document, "RESULT": result, "NLOHMANN": result.parent / "nlohmann"}
    begun = time.monotonic()
    process = subprocess.Popen([places.get(word, word) for word in COMMANDS[name]])
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"{name} ended with {process.returncode}")
    return time.monotonic() - begun, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def values(line, has_kinds):
    """Keys of a feature may stand in any order, attributes may not; and a flag must not equal a number."""
    numbers = {"parse_float": lambda text: ("number", float(text).hex())}
    numbers["parse_int"] = (lambda text: ("integer", int(text))) if has_kinds else numbers["parse_float"]
    try:
        return sorted(json.loads(line, object_pairs_hook=tuple, **numbers))
    except ValueError:
        return line


def verdict(ours, name, theirs):
    spelled = lost = 0
    with open(ours, "rb") as first, open(theirs, "rb") as second:
        for number, (our, their) in enumerate(itertools.zip_longest(first, second, fillvalue=b"[]"), 1):
            if our == their:
                continue
            if values(our, True) == values(their, True):
                spelled += 1
            elif name == "jq" and values(our, False) == values(their, False):  # it has one kind of number
                lost += 1
            else:
                return f"DIFFERS in line {number}"
    if lost:
        return f"reals became integers in {lost} lines"
    return f"same values, {spelled} lines spelled otherwise" if spelled else "same bytes"


def prove_comparison(ours, wrong):
    """A comparison that cannot fail tells nothing."""
    text = ours.read_text(encoding="utf-8")
    run_type, frequency = '"RunType":"Full Analysis"', '"RestartFrequency":0'
    for old, new in (("0.7853981633974483", "0.7853981633974484"), (f"{run_type},{frequency}", f"{frequency},{run_type}"),
                     ('"MemoryUnit":1', '"MemoryUnit":true'), ('"upToDate":false,', ""), (text.splitlines()[-1], "")):
        wrong.write_text(text.replace(old, new, 1), encoding="utf-8")
        for name in COMMANDS:
            if not verdict(ours, name, wrong).startswith("DIFFERS"):
                raise SystemExit(f"the comparison with {name} does not notice that {old} is missing")


def check_small(folder):
    """Both examples, and with their features in reverse order."""
    for example in sorted((HERE.parent.parent / "examples").glob("*.hvxdoc")):
        header, *features = example.read_text(encoding="utf-8").splitlines(keepends=True)
        for lines in (features, features[::-1]):
            (folder / "document").write_text(header + "".join(lines), encoding="utf-8")
            for name in COMMANDS:
                run(name, folder / "document", folder / name)
                if verdict(folder / OURS, name, folder / name).startswith("DIFFERS"):
                    raise SystemExit(f"{name}: {example.name}: {verdict(folder / OURS, name, folder / name)}")
    prove_comparison(folder / OURS, folder / "wrong")


def main():
    features = sys.argv[1] if len(sys.argv) > 1 else "1000000"
    repetitions = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    found = {"jq": shutil.which("jq"), "g++": shutil.which("g++"), "python3": sqlite3.sqlite_version_info >= (3, 38),
             "nlohmann-json3-dev": pathlib.Path("/usr/include/nlohmann/json.hpp").exists()}
    if not all(found.values()):
        raise SystemExit("apt-get install " + " ".join(package for package in found if not found[package]))
    with tempfile.TemporaryDirectory(dir=BUILD.parent) as temporary:
        folder = pathlib.Path(temporary)
        subprocess.run(["g++", "-std=c++20", "-O2", HERE / "nlohmann.cpp", "-o", folder / "nlohmann"], check=True)
        check_small(folder)
        document = folder / "document"
        subprocess.run([BUILD / "hvx_generate", features, document], check=True)
        costs = {name: [] for name in COMMANDS}
        for repetition in range(repetitions):
            for name in COMMANDS:
                if name != OURS and repetition < MOST_RUNS.get(name, repetitions):
                    for each in (OURS, name):
                        os.sync()  # what earlier runs wrote is not charged to this one
                        costs[each].append(run(each, document, folder / each))
        print(f"{features} features, {document.stat().st_size / 1e6:.0f} MB; medians, and ratios of medians\n"
              f"{'':16}{'wall s':>8}{'processor s':>13}{'peak MB':>9}{'times ours: wall':>18}{'processor':>11}{'runs':>6}")
        differ = False
        for name in COMMANDS:
            wall, processor, peak = (statistics.median(column) for column in zip(*costs[name]))
            if name == OURS:
                our_wall, our_processor = wall, processor
            told = verdict(folder / OURS, name, folder / name)
            differ |= told.startswith("DIFFERS")
            print(f"{name:16}{wall:8.2f}{processor:13.2f}{peak:9.0f}{wall / our_wall:18.2f}"
                  f"{processor / our_processor:11.2f}{len(costs[name]):6}  {told}")
    sys.exit(differ)


if __name__ == "__main__":
    main()
