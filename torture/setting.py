"""What a trial begins with, and what an undisturbed run makes of it."""
import contextlib
import dataclasses
import gzip
import os
import pathlib
import re
import tempfile

from torture.documents import small_documents
from torture.process import run_program

ROOT = pathlib.Path(__file__).resolve().parent.parent
EXAMPLE = ROOT / "examples/heated_pipe.hvxdoc"
PROGRAM = ROOT / "build/bin/hvxupgrade"
RIGHTS = 0o640
ATTRIBUTE = "user.hvxtorture"
TIME = 1_600_000_000_000_000_000  # of all files before a trial, so that a report can know it
HERE = b"@folder@"                # stands in a report for the folder of the trial
FAILING_CALLS = ROOT / "build/lib/hvx_failing_calls.so"


@dataclasses.dataclass(frozen=True)
class Target:
    """A result: the document that is read, the file that is written, and the backup, where one is wanted."""
    document: str
    file: str
    backup: str = ""


@dataclasses.dataclass(frozen=True)
class Variant:
    """A command, given within the folder of a trial."""
    name: str
    arguments: tuple
    targets: tuple = ()
    report: str = ""
    trace: str = ""
    folders: tuple = ()  # that are there beforehand

    def words(self):
        return [PROGRAM, *self.arguments]

    def words_again(self):
        """The command that goes on with what a fault left: what has failed for good is tried again."""
        return [*self.words(), *(["--again", "failed"] if self.report else ["--force"])]


def in_place(documents, *more):
    """The words of a command, and its results."""
    return (("upgrade", *documents, "--in-place", "--backup", ".old", *more),
            tuple(Target(document, document, f"{document}.old") for document in documents))


PLAIN = ("a.hvxdoc", "b.hvxdoc")
PACKED = ("a.hvxdoc.gz", "b.hvxdoc.gz")
# One worker, so that it lives through both documents, and each call has its number.
IN_PLACE = Variant("in place", *in_place(PLAIN, "-j", "1", "--report", "r.jsonl"), "r.jsonl")
TWO_WORKERS = Variant("two workers", *in_place(PLAIN, "-j", "2", "--report", "r.jsonl"), "r.jsonl")
COMPRESSED = Variant("compressed", *in_place(PACKED, "-j", "2", "--report", "r.jsonl"), "r.jsonl")
# Another run was killed while it wrote the second record.
GOING_ON = Variant("going on", *in_place(PLAIN, "-j", "2", "--report", "r.jsonl"), "r.jsonl")
REPORT_APART = Variant("report elsewhere", *in_place(PLAIN, "-j", "2", "--report", "apart/r.jsonl"),
                       "apart/r.jsonl", folders=("apart/",))
TO_FOLDER = Variant("to a folder", ("upgrade", "a.hvxdoc", "b.hvxdoc", "--output-dir", "out", "-j", "2", "--report",
                                    "out/r.jsonl"),
                    (Target("a.hvxdoc", "out/a.hvxdoc"), Target("b.hvxdoc", "out/b.hvxdoc")), "out/r.jsonl")
TO_FILE = Variant("to a file", ("upgrade", "a.hvxdoc", "-o", "c.hvxdoc", "--trace", "t.txt"),
                  (Target("a.hvxdoc", "c.hvxdoc"),), "", "t.txt")
CHECK = Variant("check", ("check", "a.hvxdoc", "b.hvxdoc"))
STATUS = Variant("status", ("status", "--check", "a.hvxdoc", "b.hvxdoc"))
DIFF = Variant("diff", ("diff", "a.hvxdoc", "b.hvxdoc"))
SHOW = Variant("show", ("show", "--attributes", "a.hvxdoc"))
WRITING = (IN_PLACE, TWO_WORKERS, TO_FOLDER, TO_FILE, COMPRESSED, REPORT_APART, GOING_ON)
VIEWING = (CHECK, STATUS, DIFF, SHOW)


@dataclasses.dataclass(frozen=True)
class Reference:
    """What an undisturbed run does: the folder before and behind it, and what it tells."""
    start: dict
    end: dict
    code: int
    output: bytes
    seconds: float


def start_of(variant):
    """The folder before a command: the documents, and what else it needs."""
    documents = small_documents(EXAMPLE)
    if variant is COMPRESSED:
        documents = {f"{name}.gz": gzip.compress(data, mtime=0) for name, data in documents.items()}
    if variant is GOING_ON:
        return half_done(documents)
    return documents | {name: b"" for name in variant.folders}


def half_done(documents):
    with tempfile.TemporaryDirectory(prefix="hvx-torture-") as name:
        folder = pathlib.Path(name)
        fill(folder, documents)
        run_program(GOING_ON.words(), folder)
        start = content(folder)
        first, second = PLAIN
        start[second] = start.pop(f"{second}.old")
        head, *lines = start[GOING_ON.report].splitlines(keepends=True)
        done, other = sorted(lines[:2], key=lambda line: f'"file":"{first}"'.encode() not in line[:80])
        text = head.replace(name.encode(), HERE) + done + other[:len(other) // 2]
        times = str(TIME).encode()
        start[GOING_ON.report] = re.sub(rb'"modified":[0-9]+', b'"modified":' + times, text)
    return start


def content(folder):
    """The files beneath a folder, with their bytes; folders end with a slash."""
    files = {}
    for path in sorted(folder.rglob("*")):
        name = str(path.relative_to(folder))
        if path.is_dir():
            files[name + "/"] = b""
        else:
            files[name] = path.read_bytes()
    return files


def fill(folder, start, attribute=True):
    """Writes the documents, with rights that new files do not get, and an attribute where there are such."""
    for name, data in start.items():
        if name.endswith("/"):
            (folder / name).mkdir(exist_ok=True)
        else:
            (folder / name).write_bytes(data.replace(HERE, os.fsencode(folder)))
            (folder / name).chmod(RIGHTS)
            os.utime(folder / name, ns=(TIME, TIME))
            with contextlib.suppress(OSError):
                if attribute:
                    os.setxattr(folder / name, ATTRIBUTE, b"kept")


def attributes(file):
    """What a result takes over from the document that it replaces."""
    try:
        value = os.getxattr(file, ATTRIBUTE)
    except OSError:
        value = None
    return file.stat().st_mode & 0o7777, value


def references():
    """What undisturbed runs of all variants do, by the variant's name."""
    found = {}
    for variant in (*WRITING, *VIEWING):
        with tempfile.TemporaryDirectory(prefix="hvx-torture-") as name:
            folder = pathlib.Path(name)
            start = start_of(variant)
            fill(folder, start)
            run = run_program(variant.words(), folder)
            end = content(folder)
            if variant in WRITING and run.code != 0:
                raise SystemExit(f"an undisturbed run fails: {run.errors}")
            found[variant.name] = Reference(start, end, run.code, run.output, run.seconds)
    return found
