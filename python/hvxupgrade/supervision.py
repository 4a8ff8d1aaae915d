"""An upgrade of a file in a process of its own, and what is done when that process does not live to tell."""
from __future__ import annotations

import contextlib
import math
import multiprocessing
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import tempfile
import time
from collections.abc import Iterator
from typing import Optional

from . import jobs
from .errors import WorkerError
from .jobs import Job, Progress
from .results import UpgradeResult

# Seconds after which the process is looked at, whether or not it said anything. Children that this process forked
# meanwhile hold both ends of the connection, so that it may stay open when the worker is gone.
_BETWEEN_LOOKS = 0.1
# What a crash leaves on the terminal at most, in WorkerError.output.
_OUTPUT_KEPT = 4096
# Seconds for a process that has nothing more to do, or that was told that nobody listens any more.
_TIME_TO_END = 0.5


def run_in_worker(job: Job, progress: Optional[Progress], timeout: Optional[float]) -> UpgradeResult:
    """Raises what the upgrade raises, and WorkerError when its process ends without an answer."""
    before = _identity(job.target)
    promised: Optional[UpgradeResult] = None
    tell = None if progress is None else jobs.stopping(progress, job.source)
    with contextlib.closing(_Worker(job, timeout)) as worker:
        for message in worker.messages():
            if isinstance(message, jobs.Stage):
                worker.stage = message
            elif isinstance(message, jobs.Told):
                if tell is not None:
                    tell(message.done, message.total)
            elif isinstance(message, jobs.Writing):
                promised = message.result
                worker.let_write()
            elif isinstance(message, UpgradeResult):
                return message
            elif isinstance(message, Exception):
                raise message
        worker.close()
        # Killed on its last steps, it may have put the result in place all the same; it is whole then.
        if promised is not None and before != _identity(job.target):
            return promised
        raise worker.error()


class _Worker:
    def __init__(self, job: Job, timeout: Optional[float]) -> None:
        self._job = job
        self._timeout = timeout
        self._deadline = None if timeout is None else time.monotonic() + timeout
        self._is_late = False
        self.stage = jobs.Stage.STARTING
        try:
            self._start()
        except OSError as error:
            raise WorkerError.about(job.source, f"no worker can be started ({error})",
                                    "Upgrade it in this process, with worker=False") from error

    def _start(self) -> None:
        if not sys.executable:
            raise OSError("this Python does not know its own program, sys.executable")
        with contextlib.ExitStack() as begun:
            self._output = begun.enter_context(tempfile.TemporaryFile())
            self._connection, theirs = multiprocessing.Pipe()
            begun.enter_context(self._connection)
            with theirs:
                self._process = subprocess.Popen(
                    [sys.executable, "-P", "-m", "hvxupgrade._worker", str(theirs.fileno()), str(os.getpid())],
                    pass_fds=[theirs.fileno()], stdin=subprocess.DEVNULL, stdout=self._output, stderr=subprocess.STDOUT,
                    env=_environment(), start_new_session=True)  # Ctrl-C is for this process, which ends the other one
            begun.pop_all()

    def messages(self) -> Iterator[object]:
        """Until the process ends, or its time is up. What was told of progress and overtaken is left out."""
        with contextlib.suppress(EOFError, ConnectionError):
            self._connection.send(self._job)
            while self._wait():
                for message in self._arrived():
                    if self._left() <= 0:
                        self._is_late = True
                        return
                    yield message

    def _left(self) -> float:
        """Seconds until the time is up."""
        return math.inf if self._deadline is None else self._deadline - time.monotonic()

    def _wait(self) -> bool:
        """For something to arrive; False once nothing will, or the time is up."""
        while True:
            left = self._left()
            if left <= 0:
                self._is_late = True
                return False
            has_ended = self._process.poll() is not None  # and then said all that it ever will
            if self._connection.poll(0 if has_ended else min(left, _BETWEEN_LOOKS)):
                return True
            if has_ended:
                return False

    def _arrived(self) -> Iterator[object]:
        """What waits now; of a row of what is told of progress, the last."""
        told: Optional[jobs.Told] = None
        while self._connection.poll():
            message = self._connection.recv()
            if isinstance(message, jobs.Told):
                told = message
                continue
            if told is not None:
                yield told
                told = None
            yield message
        if told is not None:
            yield told

    def let_write(self) -> None:
        with contextlib.suppress(ConnectionError):  # met again by those who wait for messages
            self._connection.send(None)

    def close(self) -> None:
        """Ends the process, wherever it is, and removes what it left."""
        if self._connection.closed:
            return
        self._connection.close()
        if not self._is_late:
            with contextlib.suppress(subprocess.TimeoutExpired):
                self._process.wait(_TIME_TO_END)
        self._process.kill()
        self._process.wait()
        _remove_leftovers(self._job.target, self._process.pid)

    def error(self) -> WorkerError:
        """What became of the process, once it is closed."""
        code = self._process.returncode
        if self._is_late:
            what = f"the upgrade took longer than {self._timeout:g} seconds, and was ended"
        elif code < 0:
            what = f"the process that upgraded it was ended by signal {-code} ({_name_of(-code)})"
        else:
            what = f"the process that upgraded it ended with code {code}"
        problem, advice = f"{what} {self._doing()}", self._advice(code)
        error = WorkerError(f"{self._job.source}: {problem}; nothing was written. {advice}", problem=problem,
                            file=self._job.source, advice=advice)
        error.exit_code = None if self._is_late else code
        size = self._output.seek(0, os.SEEK_END)
        self._output.seek(max(0, size - _OUTPUT_KEPT))
        error.output = self._output.read().decode(errors="replace")
        return error

    def _doing(self) -> str:
        paths = self._job.libraries.paths
        if self.stage is jobs.Stage.LOADING and paths:
            return f"while it loaded {' and '.join(paths)}"
        return self.stage.value

    def _advice(self, code: int) -> str:
        paths = self._job.libraries.paths
        if self.stage is jobs.Stage.LOADING and paths:
            which = (f"Leave out {paths[0]}" if len(paths) == 1 else
                     "Give these libraries one at a time, to find the one that does so, and leave that out")
            return f"{which}, or have it mended by who made it; what it printed is in the attribute output"
        if self._is_late:
            return "Give it a longer timeout"
        if code == -signal.SIGKILL:
            return "Check that there is memory enough, and who ends processes here"
        if self.stage is jobs.Stage.UPGRADING:
            chosen = self._job.identifiers
            if chosen is not None and len(chosen) == 1:
                return f"Choose others than {chosen[0]}, or have it mended by who made it; see what it printed, in output"
            return "Choose upgrades with identifiers, to find the one that does so, and leave that out"
        return "See what it printed, in the attribute output"


def _environment() -> dict[str, str]:
    """That of this process; the worker is to find this very package."""
    here = str(pathlib.Path(__file__).parent.parent)
    others = os.environ.get("PYTHONPATH")
    return {**os.environ, "PYTHONPATH": here + os.pathsep + others if others else here}


def _identity(path: str) -> Optional[tuple[int, int, int]]:
    with contextlib.suppress(OSError):
        found = os.stat(path)
        return found.st_dev, found.st_ino, found.st_mtime_ns
    return None


def _name_of(number: int) -> str:
    with contextlib.suppress(ValueError):
        return signal.Signals(number).name
    return "unknown"


def _remove_leftovers(target: str, process: int) -> None:
    """Removes temporary files of the process, which was killed while it wrote: `.FILE.HOST.SPACE.PROCESS.START.hvxtmp-...`"""
    host = re.sub(r"[^A-Za-z0-9]", "-", socket.gethostname())
    with contextlib.suppress(OSError):
        space = os.stat("/proc/self/ns/pid").st_ino
        maker = re.compile(rf"\..+\.{re.escape(host)}\.{space:x}\.{process}\.[0-9a-f]+\.hvxtmp-\w{{6}}")
        for each in pathlib.Path(os.path.realpath(target)).parent.iterdir():
            if maker.fullmatch(each.name):
                each.unlink()
