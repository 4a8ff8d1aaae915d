#!/usr/bin/python3
"""Measures reading a document into Python against reading it in C++: bench/python_reading.py [FEATURES] [RUNS]

FEATURES (default 1 million) of a generated document. RUNS (default 7) of each way in turn, each in a process of its own;
what is measured are the processor seconds from the name of the file to the last feature, without the start of Python:

  C++        hvxupgrade::Read
  features   read, then the late type and one attribute of every feature
  columns    read, then document.columns("Value")
  lines      read_lines, then the late type and one attribute of every line

The programs and the module are those of build/. Others may use the machine: compare the ratios of the best runs.
"""
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(__file__).resolve().parent.parent / "build"
AIMS = {"features": 5, "columns": 1.5}


def features(path):
    import hvxupgrade
    begin = time.process_time()
    document = hvxupgrade.read(path)
    for feature in document:
        feature.late_type
        feature.get("Value")
    return time.process_time() - begin


def columns(path):
    import hvxupgrade
    import numpy  # noqa: F401  its start is not what is measured
    begin = time.process_time()
    document = hvxupgrade.read(path)
    document.columns("Value")
    return time.process_time() - begin


def lines(path):
    import hvxupgrade
    begin = time.process_time()
    for line in hvxupgrade.read_lines(path):
        line.late_type
        line.get("Value")
    return time.process_time() - begin


WAYS = {"features": features, "columns": columns, "lines": lines}


def seconds_of(way, path):
    if way == "C++":
        command = [BUILD / "bin/hvx_read", path]
    else:
        command = [sys.executable, __file__, "--measure", way, path]
    environment = {**os.environ, "PYTHONPATH": str(BUILD / "python")}
    return float(subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE, text=True).stdout.split()[0])


def main(count, runs):
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "document.hvxdoc")
        subprocess.run([BUILD / "bin/hvx_generate", str(count), path], check=True)
        seconds = {way: [] for way in ("C++", *WAYS)}
        for _ in range(runs):
            for way, measured in seconds.items():
                measured.append(seconds_of(way, path))
    best = min(seconds["C++"])
    print(f"{'':10}{'best':>8}{'median':>8}{'to C++':>8}{'aim':>6}")
    for way, measured in seconds.items():
        print(f"{way:10}{min(measured):8.3f}{statistics.median(measured):8.3f}{min(measured) / best:8.2f}"
              f"{AIMS.get(way, ''):>6}")


if __name__ == "__main__":
    if sys.argv[1:2] == ["--measure"]:
        print(WAYS[sys.argv[2]](sys.argv[3]))
    else:
        main(int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000, int(sys.argv[2]) if len(sys.argv) > 2 else 7)
