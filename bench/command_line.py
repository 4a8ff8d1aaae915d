#!/usr/bin/env python3
"""Measures plain command lines: upgrades generated documents with all upgrades, without a report and with one.

    bench/command_line.py [FEATURES...]      (10000 100000 1000000 5000000 without arguments)

Uses the programs in build/. Of three interleaved runs of each, the medians are printed: seconds, those of the
processor, and the most memory that a process held.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(__file__).resolve().parent.parent / "build" / "bin"
RUNS = 3
REPORTS = {"no report": [], "summary": ["summary"], "full": ["full"]}


def run(document, folder, detail):
    """Seconds, processor seconds, the peak in MB, and the sizes of result and report in MB."""
    result, report = folder / "result.hvxdoc", folder / "report.jsonl"
    for file in (result, report):
        file.unlink(missing_ok=True)
    command = [str(BUILD / "hvxupgrade"), "upgrade", "-q", str(document), "-o", str(result)]
    if detail:
        command += ["--report", str(report), "--report-detail", detail[0]]
    start = time.monotonic()
    # What it used, its worker's share included.
    with subprocess.Popen(command) as process:
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)} ended with {process.returncode}")
    seconds = time.monotonic() - start
    sizes = [file.stat().st_size / 1e6 if file.exists() else 0.0 for file in (result, report)]
    return seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024 / 1e6, *sizes


def main():
    counts = [int(each) for each in sys.argv[1:]] or [10_000, 100_000, 1_000_000, 5_000_000]
    print("| features | report | MB | MB after | MB of report | seconds | processor | peak MB |")
    print("|---|---|---|---|---|---|---|---|")
    for count in counts:
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            document = folder / "document.hvxdoc"
            subprocess.run([str(BUILD / "hvx_generate"), str(count), str(document)], check=True)
            size = document.stat().st_size / 1e6
            figures = {report: [] for report in REPORTS}
            for _ in range(RUNS):
                for report, detail in REPORTS.items():
                    figures[report].append(run(document, folder, detail))
            for report, runs in figures.items():
                seconds, processor, peak, result, written = map(statistics.median, zip(*runs))
                print(f"| {count:,} | {report} | {size:.1f} | {result:.1f} | {written:.1f} | {seconds:.2f} "
                      f"| {processor:.2f} | {peak:.0f} |", flush=True)


if __name__ == "__main__":
    main()
