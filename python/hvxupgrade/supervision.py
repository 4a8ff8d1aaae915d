"""An upgrade of a file in a process of its own, and what is done when that process does not live to tell."""
from __future__ import annotations

import contextlib
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
from .errors import StoppedError, WorkerError
from .jobs import Job, Progress
from .results import UpgradeResult

# What is waited for at most at a time: the system counts milliseconds in 32 bits.
_LONGEST_WAIT = 86400.0
# What a crash leaves on the terminal at most, in WorkerError.output.
_OUTPUT_KEPT = 4096
# Seconds for a process that has nothing more to do, or that was told that nobody listens any more.
_TIME_TO_END = 0.5


def run_in_worker(job: Job, progress: Optional[Progress], timeout: Optional[float]) -> UpgradeResult:
    """Raises what the upgrade raises, and WorkerError when its process ends without an answer."""
    before = _identity(job.target)
    promised: Optional[UpgradeResult] = None
    with contextlib.closing(_Worker(job, timeout)) as worker:
        for message in worker.messages():
            if isinstance(message, jobs.Stage):
                worker.stage = message
            elif isinstance(message, jobs.Told):
                if progress is not None and progress(message.done, message.total) is False:
                    raise StoppedError(f"{job.source}: the upgrade was stopped", file=job.source,
                                       problem="the upgrade was stopped", advice="Start it again; nothing was written")
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
        self._output = tempfile.TemporaryFile()
        self._connection, theirs = multiprocessing.Pipe()
        try:
            self._process = subprocess.Popen(
                [sys.executable, "-P", "-m", "hvxupgrade._worker", str(theirs.fileno())], pass_fds=[theirs.fileno()],
                stdin=subprocess.DEVNULL, stdout=self._output, stderr=subprocess.STDOUT, env=_environment(),
                start_new_session=True)  # Ctrl-C is for this process, which ends the other one
        except OSError as error:
            self._connection.close()
            self._output.close()
            problem, advice = f"no worker can be started ({error})", "Upgrade it in this process, with worker=False"
            raise WorkerError(f"{job.source}: {problem}. {advice}", problem=problem, file=job.source,
                              advice=advice) from error
        finally:
            theirs.close()

    def messages(self) -> Iterator[object]:
        """Until the process ends, or its time is up."""
        with contextlib.suppress(EOFError, ConnectionError):
            self._connection.send(self._job)
            while True:
                left = _LONGEST_WAIT if self._deadline is None else max(0.0, self._deadline - time.monotonic())
                if self._connection.poll(min(left, _LONGEST_WAIT)):
                    yield self._connection.recv()
                elif left < _LONGEST_WAIT:
                    self._is_late = True
                    return

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
