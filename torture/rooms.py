"""Real file systems that are full, lack inodes, or may only be read. Mounting takes a space of mounts of our own."""
import pathlib
import shutil
import subprocess
import sys
import tempfile

from torture import promises
from torture.process import run_program
from torture.setting import COMPRESSED, IN_PLACE, REPORT_APART, TO_FILE, TO_FOLDER, TWO_WORKERS, content, fill
from torture.trial import Outcome, Trial

PAGE = 4096


def own_mounts():
    """The words before a command that give it mounts of its own; None where that is not allowed."""
    for words in (["unshare", "-m"], ["unshare", "-rm"]):
        probe = [*words, "mount", "-t", "tmpfs", "none", tempfile.gettempdir()]
        if shutil.which("unshare") and subprocess.run(probe, capture_output=True, check=False).returncode == 0:
            return words
    return None


def run_apart(short):
    """Runs the trials as another process with mounts of its own, which prints the lines; None if not allowed."""
    words = own_mounts()
    if words is None:
        return None
    command = [*words, sys.executable, sys.argv[0], "--rooms", *(["--short"] if short else [])]
    return subprocess.run(command, check=False).returncode


def mount(folder, options):
    subprocess.run(["mount", "-t", "tmpfs", "-o", options, "none", folder], check=True)


def remount(folder, options):
    subprocess.run(["mount", "-o", f"remount,{options}", "none", folder], check=True)


def rooms(references, short):
    """Yields the outcome of each trial."""
    step = 3 if short else 1
    for variant in (IN_PLACE, TWO_WORKERS, TO_FOLDER, TO_FILE, COMPRESSED):
        start = references[variant.name].start
        held = sum(-(-len(data) // PAGE) for data in start.values())
        for pages in range(held, held + 40, step):
            yield in_room("full file system", variant, references, f"size={pages * PAGE}", "size=64m")
        for inodes in range(len(start) + 1, len(start) + 12, step):
            yield in_room("no inodes left", variant, references, f"nr_inodes={inodes}", "nr_inodes=1000")
        yield in_room("read-only file system", variant, references, "size=64m", "rw", "ro")
    for pages in range(1, 30, step):
        yield in_room("full file system of the report", REPORT_APART, references, f"size={pages * PAGE}", "size=64m")
    yield in_room("read-only file system of the report", REPORT_APART, references, "size=64m", "rw", "ro")


def in_room(kind, variant, references, options, freed, later=""):
    base = pathlib.Path(tempfile.mkdtemp(prefix="hvx-torture-"))
    folder = base / "documents"
    apart = variant is REPORT_APART
    room = folder / "apart" if apart else folder
    reference = references[variant.name]
    trial = Trial(kind, variant, note=f"mount -t tmpfs -o {options} {later}")
    room.mkdir(parents=True)
    mount(room, options)
    try:
        fill(folder, reference.start, attribute=False)  # for which there may be no room
        if later:
            remount(room, later)
        run = run_program(variant.words(), folder)
        after = content(folder)
        verdict, broken = promises.judge(trial, run, reference, after)
        remount(room, freed)
        again = run_program(variant.words_again(), folder)
        broken += promises.judge_again(trial, again, reference, content(folder))
        return Outcome(trial, verdict, broken, run)
    finally:
        subprocess.run(["umount", "-l", room], check=True)
        shutil.rmtree(base, ignore_errors=True)
