#!/usr/bin/env python3
"""Measures upgrades of whole archives: bench/archive.py [DOCUMENTS] [SMALL_DOCUMENTS] [FOLDER]

DOCUMENTS (default 20000) of 600 features: one worker, two, single calls by xargs, and the sum of what reading,
upgrading, verifying and writing them costs by themselves. SMALL_DOCUMENTS (default 100000) of three features: how much
memory the supervisor takes for a hundredth of them and for all, and a run over all that is killed twice.

The programs are those of build/. Ratios are of one run on one machine; what else that does makes seconds longer.
"""
import collections
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import threading
import time

BUILD = pathlib.Path(__file__).resolve().parent.parent / "build/bin"
PROGRAM = str(BUILD / "hvxupgrade")
SMALL = ('{"format":"hvxdoc","version":1,"upgrades":[],"features":3}\n'
         '{"id":1,"type":"AnalysisModel","name":"Model"}\n'
         '{"id":2,"type":"AnalysisCase","name":"Case","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1,'
         '"CaseKind":0}}\n'
         '{"id":3,"type":"HVXJobLT","name":"Job","father":{"ref":2},"attributes":{"AnalysisCase":{"ref":2},'
         '"RunType":"Full Analysis","RestartFrequency":0,"InputFileFlag":0}}\n')


def make_archive(folder, count, content):
    for number in range(count):
        place = folder / f"folder {number // 500}"
        if number % 500 == 0:
            place.mkdir(parents=True)
        (place / f"document {number}.hvxdoc").write_text(content, encoding="utf-8")


def peak_of(process):
    """The most memory that the supervisor itself had, in KB, looked at until it ends."""
    peak = 0
    while process.poll() is None:
        try:
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text(encoding="utf-8")
        except OSError:
            break
        for line in status.splitlines():
            if line.startswith("VmHWM:"):
                peak = max(peak, int(line.split()[1]))
        time.sleep(0.02)
    return peak


def run(arguments, folder):
    """Seconds, processor seconds with those of the workers, and the supervisor's peak in KB."""
    before = os.times()
    begun = time.monotonic()
    with subprocess.Popen(arguments, cwd=folder, stdout=subprocess.DEVNULL) as process:
        peaks = []
        watch = threading.Thread(target=lambda: peaks.append(peak_of(process)))
        watch.start()
        code = process.wait()
        watch.join()
    if code != 0:
        raise SystemExit(f"{' '.join(arguments[:4])} ... ended with {code}")
    after = os.times()
    processor = after.children_user + after.children_system - before.children_user - before.children_system
    return time.monotonic() - begun, processor, peaks[0]


def upgrade(*options):
    return [PROGRAM, "upgrade", "archive", "--output-dir", "new", "--progress", "none", *options]


def parts(features):
    """Processor seconds that one document costs, by hvx_measure."""
    lines = subprocess.run([str(BUILD / "hvx_measure"), str(features)], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    names = lines[-2].replace("MB after", "MB-after").split()
    row = dict(zip(names, lines[-1].split()))
    return sum(float(row[name]) for name in ("read", "upgrade", "verify", "write"))


def compare_ways(folder, count):
    subprocess.run([str(BUILD / "hvx_generate"), "600", str(folder / "one.hvxdoc")], check=True)
    make_archive(folder / "archive", count, (folder / "one.hvxdoc").read_text(encoding="utf-8"))
    each = parts(600)
    single = f"find archive -name '*.hvxdoc' -print0 | xargs -0 -P 2 -n 1 {PROGRAM} upgrade -q --output-dir new"
    ways = [("one worker (-j 1)", upgrade("-j", "1")), ("two workers (-j 2)", upgrade("-j", "2")),
            ("two workers, report in full", upgrade("-j", "2", "--report", "run.jsonl")),
            ("two workers, summaries", upgrade("-j", "2", "--report", "run2.jsonl", "--report-detail", "summary")),
            ("single calls, xargs -P 2", ["bash", "-c", single])]
    print(f"{count} documents of 600 features")
    print(f"{'':30} {'seconds':>8} {'processor':>10} {'documents/s':>12} {'to -j 1':>8} {'processor/parts':>16}")
    first = None
    for name, arguments in ways:
        seconds, processor, _ = run(arguments, folder)
        first = first or seconds
        print(f"{name:30} {seconds:8.1f} {processor:10.1f} {count / seconds:12.0f} {first / seconds:8.2f} "
              f"{processor / (each * count):16.2f}")
        shutil.rmtree(folder / "new")
    print(f"{'the parts, by hvx_measure':30} {'':8} {each * count:10.1f}")


def watch_memory(folder, count):
    print("\nThe supervisor's memory, documents of 3 features")
    for number in (count // 100, count):
        make_archive(folder / "archive", number, SMALL)
        seconds, _, peak = run(upgrade("--report", "run.jsonl", "--report-detail", "summary"), folder)
        print(f"{number:8} documents: {peak / 1024:6.1f} MB, {number / seconds:6.0f} documents/s")
        shutil.rmtree(folder / "new")
        shutil.rmtree(folder / "archive")
        (folder / "run.jsonl").unlink()


def kill_and_go_on(folder, count):
    make_archive(folder / "archive", count, SMALL)
    command = upgrade("--report", "run.jsonl", "--report-detail", "summary")
    done = []
    for part in (0.3, 0.6):
        with subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL) as process:
            while process.poll() is None and sum(1 for _ in (folder / "new").rglob("*.hvxdoc")) < part * count:
                time.sleep(0.5)
            process.send_signal(signal.SIGKILL)
        done.append(sum(1 for _ in (folder / "new").rglob("*.hvxdoc")))
    written = {file: file.stat().st_mtime_ns for file in (folder / "new").rglob("*.hvxdoc")}
    run(command, folder)
    with open(folder / "run.jsonl", encoding="utf-8") as report:
        records = collections.Counter(line["file"] for line in map(json.loads, report) if line["record"] == "document")
    again = sum(1 for file, modified in written.items() if file.stat().st_mtime_ns != modified)
    results = sum(1 for _ in (folder / "new").rglob("*.hvxdoc"))
    print(f"\n{count} documents, killed when {done[0]} and {done[1]} results were there, then gone on with: "
          f"{results} results, {again} of them written twice, {len(records)} documents in the report, "
          f"{sum(1 for number in records.values() if number != 1)} of them not once")
    if results != count or len(records) != count or again or max(records.values()) != 1:
        raise SystemExit("that is not what was promised")


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 20000
    small = int(sys.argv[2]) if len(sys.argv) > 2 else 100000
    top = pathlib.Path(sys.argv[3]) if len(sys.argv) > 3 else BUILD.parent / "archive"
    for step, size in ((compare_ways, count), (watch_memory, small), (kill_and_go_on, small)):
        shutil.rmtree(top, ignore_errors=True)
        top.mkdir(parents=True)
        step(top, size)
    shutil.rmtree(top)


if __name__ == "__main__":
    main()
