"""Runs the program once, with all its processes, and leaves none behind."""
import ctypes
import dataclasses
import os
import resource
import signal
import subprocess
import time

LONGEST = 10  # seconds; a run takes hundredths of one
GRACE = 8     # for a worker whose parent is gone
SUBREAPER = 36


def adopt_orphans():
    """Workers whose parent died become children of this process, so that their end is noticed."""
    ctypes.CDLL(None).prctl(SUBREAPER, 1, 0, 0, 0)


@dataclasses.dataclass
class Run:
    code: int = 0          # as subprocess has it: minus the number of the signal that ended it
    output: bytes = b""
    errors: str = ""
    seconds: float = 0.0
    hung: bool = False
    left: bool = False     # some process had to be killed in the end
    started: bool = True


@dataclasses.dataclass(frozen=True)
class Blow:
    """A signal to come, so many seconds after the start."""
    moment: float
    number: int
    to: str  # program, worker or both


def run_program(command, folder, environment=(), limits=(), blows=(), user=None, output=None):
    """`output` is a file for standard output, instead of one that is read."""
    def prepare():
        for limit, most in limits:
            resource.setrlimit(limit, (most, most))
        if user is not None:
            os.setgroups([])
            os.setresgid(user, user, user)
            os.setresuid(user, user, user)

    run = Run()
    out_name, errors_name = folder.parent / f"{folder.name}.out", folder.parent / f"{folder.name}.err"
    with open(output or out_name, "wb") as out, open(errors_name, "wb") as errors:
        began = time.monotonic()
        try:
            process = subprocess.Popen([str(word) for word in command], cwd=folder, stdin=subprocess.DEVNULL,
                                       stdout=out, stderr=errors, env=os.environ | dict(environment),
                                       start_new_session=True,
                                       preexec_fn=prepare if limits or user is not None else None)
        except (OSError, subprocess.SubprocessError):  # the limits leave no room for a program at all
            run.started = False
        else:
            strike(process, began, blows)
            run.hung = not wait(process, began)
            run.code = process.returncode
            run.seconds = time.monotonic() - began
            run.left = not bury(process.pid)
    run.errors = errors_name.read_text(encoding="utf-8", errors="replace")
    errors_name.unlink()
    if output is None:
        run.output = out_name.read_bytes()
        out_name.unlink()
    return run


def wait(process, began):
    try:
        process.wait(max(0.1, LONGEST - (time.monotonic() - began)))
        return True
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return False


def bury(group):
    """Waits until no process of the group is left. False when one had to be killed."""
    deadline = time.monotonic() + GRACE
    while True:
        try:
            while os.waitpid(-group, os.WNOHANG)[0] != 0:
                pass
        except ChildProcessError:
            pass
        try:
            os.killpg(group, 0)
        except ProcessLookupError:
            return True
        if time.monotonic() > deadline:
            os.killpg(group, signal.SIGKILL)
            time.sleep(0.1)
            return False
        time.sleep(0.002)


def strike(process, began, blows):
    for blow in blows:
        time.sleep(max(0.0, began + blow.moment - time.monotonic()))
        targets = []
        if blow.to in ("worker", "both"):
            targets += workers_of(process.pid)
        if blow.to in ("program", "both"):
            targets.append(process.pid)
        for target in targets:
            try:
                os.kill(target, blow.number)  # the program is waited for later, so that its number is its own
            except ProcessLookupError:
                pass


def workers_of(process):
    try:
        with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as children:
            return [int(number) for number in children.read().split()]
    except OSError:
        return []
