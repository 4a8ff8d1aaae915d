"""What a trial begins with, and what an undisturbed run makes of it."""
import contextlib
import dataclasses
import os
import pathlib
import tempfile

from torture.documents import small_documents
from torture.process import run_program

ROOT = pathlib.Path(__file__).resolve().parent.parent
EXAMPLE = ROOT / "examples/heated_pipe.hvxdoc"
PROGRAM = ROOT / "build/bin/hvxupgrade"
RIGHTS = 0o640
ATTRIBUTE = "user.hvxtorture"
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


IN_PLACE = Variant("in place", ("upgrade", "a.hvxdoc", "b.hvxdoc", "--in-place", "--backup", ".old", "--report",
                                "r.json", "--force"),
                   (Target("a.hvxdoc", "a.hvxdoc", "a.hvxdoc.old"), Target("b.hvxdoc", "b.hvxdoc", "b.hvxdoc.old")),
                   "r.json")
TO_FOLDER = Variant("to a folder", ("upgrade", "a.hvxdoc", "b.hvxdoc", "--output-dir", "out", "--report",
                                    "out/r.json"),
                    (Target("a.hvxdoc", "out/a.hvxdoc"), Target("b.hvxdoc", "out/b.hvxdoc")), "out/r.json")
TO_FILE = Variant("to a file", ("upgrade", "a.hvxdoc", "-o", "c.hvxdoc", "--trace", "t.txt"),
                  (Target("a.hvxdoc", "c.hvxdoc"),), "", "t.txt")
CHECK = Variant("check", ("check", "a.hvxdoc", "b.hvxdoc"))
STATUS = Variant("status", ("status", "--check", "a.hvxdoc", "b.hvxdoc"))
DIFF = Variant("diff", ("diff", "a.hvxdoc", "b.hvxdoc"))
SHOW = Variant("show", ("show", "--attributes", "a.hvxdoc"))
WRITING = (IN_PLACE, TO_FOLDER, TO_FILE)
VIEWING = (CHECK, STATUS, DIFF, SHOW)


@dataclasses.dataclass(frozen=True)
class Reference:
    """What an undisturbed run does: the folder before and behind it, and what it tells."""
    start: dict
    end: dict
    code: int
    output: bytes
    seconds: float


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
        if not name.endswith("/"):
            (folder / name).write_bytes(data)
            (folder / name).chmod(RIGHTS)
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
    start = small_documents(EXAMPLE)
    found = {}
    for variant in (*WRITING, *VIEWING):
        with tempfile.TemporaryDirectory(prefix="hvx-torture-") as name:
            folder = pathlib.Path(name)
            fill(folder, start)
            run = run_program([PROGRAM, *variant.arguments], folder)
            end = content(folder)
            if variant in WRITING and run.code != 0:
                raise SystemExit(f"an undisturbed run fails: {run.errors}")
            found[variant.name] = Reference(start, end, run.code, run.output, run.seconds)
    return found
