"""Pages to test on: the program makes them, of the examples and of documents made from these.

Each is made once and kept for as long as the tests run.
"""
import base64
import functools
import gzip
import json
import pathlib
import re
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/bin/hvxupgrade"
FOLDER = tempfile.TemporaryDirectory(prefix="hvx-page-")
PLACE = pathlib.Path(FOLDER.name)
EXAMPLE = ROOT / "examples/bolted_bracket.hvxdoc"
PIPE = ROOT / "examples/heated_pipe.hvxdoc"

# Runs a script wherever a text becomes markup, an attribute or a part of a script.
NASTY = "'\"><img src=x onerror=\"window.ran=1\"><script>window.ran=1<!--`${window.ran=1}&lt;&#60;\u202e\u0007\u2028x"
# Verdicts of an archive, as often as their numbers say.
SHARES = (("upgraded", 12), ("current", 82), ("faulty", 4), ("broken", 2))


def run(*arguments, codes=(0,)):
    done = subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, check=False, cwd=PLACE)
    if done.returncode not in codes:
        raise AssertionError(f"hvxupgrade {arguments} ended with {done.returncode}: {done.stderr}")
    return done.stdout


def data(page, element="page"):
    """What a page holds in one of its elements, read without the page's own scripts."""
    text = page.read_text(encoding="utf-8")
    packed = re.search(rf'id="{element}">(.*?)</script>', text, re.DOTALL).group(1)
    return json.loads(gzip.decompress(base64.b64decode(packed)))


@functools.cache
def upgraded():
    page = PLACE / "upgraded.html"
    run("upgrade", EXAMPLE, "-o", PLACE / "upgraded.hvxdoc", "--html", page)
    return page


@functools.cache
def difference():
    upgraded()
    page = PLACE / "difference.html"
    run("diff", EXAMPLE, PLACE / "upgraded.hvxdoc", "--html", page, codes=(1,))
    return page


@functools.cache
def checked():
    """A document in which an upgrade left something behind."""
    page = PLACE / "checked.html"
    left = PLACE / "left.hvxdoc"
    run("upgrade", faulty_document(), "-o", left, codes=(1,))
    run("check", left, "--html", page, codes=(1,))
    return page


def faulty_document():
    """A pressure whose parameter has no value: its upgrade leaves it behind."""
    document = PLACE / "faulty.hvxdoc"
    text = EXAMPLE.read_text(encoding="utf-8")
    document.write_text(text.replace(',"Value":12500000.0', "", 1), encoding="utf-8")
    return document


@functools.cache
def nasty():
    """A document in whose path and names there is markup, and which needs a person."""
    folder = PLACE / "a<" / "script><script>window.ran=1<"
    folder.mkdir(parents=True)
    document = folder / "script>'\"<img src=x onerror=window.ran=1>.hvxdoc"
    text = faulty_document().read_text(encoding="utf-8")
    for name in ("Pressure.1", "Finite Element Model.1", "Gravity.1", "Lug Face"):
        text = text.replace(f'"alias":"{name}"', f'"alias":{json.dumps(name + NASTY)}')
    document.write_text(text, encoding="utf-8")
    page = PLACE / "nasty.html"
    run("upgrade", document, PIPE, "--output-dir", PLACE / "nasty", "--html", page, codes=(1,))
    return page


@functools.cache
def record_lines():
    """A line of a report for each verdict of `SHARES`, and the first and the last line."""
    current = PLACE / "upgraded.hvxdoc"
    upgraded()
    broken = PLACE / "broken.hvxdoc"
    broken.write_bytes(EXAMPLE.read_bytes()[:50000])
    report = PLACE / "few.jsonl"
    run("upgrade", PIPE, current, faulty_document(), broken, "--output-dir", PLACE / "few", "--report", report, codes=(3,))
    lines = report.read_text(encoding="utf-8").splitlines()
    documents = {}
    for line in lines[1:-1]:
        document = json.loads(line)
        name = pathlib.Path(document["file"]).stem
        documents[{"heated_pipe": "upgraded", "upgraded": "current"}.get(name, name)] = document
    return lines[0], documents, lines[-1]


@functools.cache
def archive(count):
    """A report of that many documents, as a page. Only the first have all details, else it would hold gigabytes."""
    first, documents, last = record_lines()
    turns = [verdict for verdict, share in SHARES for _ in range(share)]
    report = PLACE / f"archive-{count}.jsonl"
    with report.open("w", encoding="utf-8") as file:
        file.write(first + "\n")
        for at in range(count):
            verdict = turns[(at * 37) % len(turns)]
            document = dict(documents[verdict], file=f"archive/{2000 + at % 20}/{verdict}_{(at * 7919) % count}.hvxdoc")
            if at >= 200 and verdict in ("upgraded", "faulty"):
                document = dict(documents["current"], file=document["file"])
            if "seconds" in document:
                document["seconds"] = ((at * 613) % 977) / 100
            file.write(json.dumps(document) + "\n")
        file.write(last + "\n")
    page = PLACE / f"archive-{count}.html"
    run("report", report, "--format", "html", "-o", page, codes=(0, 1, 3))
    return page


@functools.cache
def numbers_only():
    """Of a report with numbers only, of a document whose name holds what cannot be shown; four alike need a person."""
    document = PLACE / "a\nb.hvxdoc"
    features = [{"id": 1, "type": "AnalysisModel"}, {"id": 2, "type": "AnalysisCase", "father": {"ref": 1}}]
    features += [{"id": id, "type": "HVXJobLT", "father": {"ref": 2}, "attributes": {"MemoryUnit": 0}} for id in range(3, 7)]
    lines = [{"format": "hvxdoc", "version": 1, "upgrades": [], "features": len(features)}, *features]
    document.write_text("".join(json.dumps(line) + "\n" for line in lines), encoding="utf-8")
    page = PLACE / "numbers.html"
    run("upgrade", document, "--dry-run", "--report", PLACE / "numbers.jsonl", "--report-detail", "summary", "--html", page,
        codes=(1,))
    return page


def cut_short():
    """A page whose file ends within its first block."""
    page = PLACE / "cut-short.html"
    text = archive(1000).read_text(encoding="utf-8")
    page.write_text(text[:text.index('id="block-0">') + 400], encoding="utf-8")
    return page
