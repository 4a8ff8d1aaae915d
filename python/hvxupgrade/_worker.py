"""A process that upgrades one file for another process: python3 -m hvxupgrade._worker DESCRIPTOR MASTER

The descriptor is a connection to that process, whose number is MASTER. It is told how far the upgrade is, and asked
before anything is written. When it is gone, so is this process: nothing is written for nobody.
"""
from __future__ import annotations

import os
import select
import signal
import sys
import threading
import time
from multiprocessing.connection import Connection

from . import jobs
from .results import UpgradeResult

# Seconds for the work to stop and to remove its temporary files; a routine may never ask whether it is to stop.
_TIME_TO_STOP = 3.0
# Milliseconds after which the other process is looked for. Children that it forked hold its end of the connection, so
# that this may stay open when it is gone.
_BETWEEN_LOOKS = 250


def main() -> None:
    connection = Connection(int(sys.argv[1]))
    threading.Thread(target=_end_with, args=[connection.fileno(), int(sys.argv[2])], daemon=True).start()
    job = connection.recv()

    def ask(result: UpgradeResult) -> None:
        connection.send(jobs.Writing(result))
        connection.recv()

    try:
        connection.send(jobs.run(job, at=connection.send, before_writing=ask,
                                 progress=lambda done, total: connection.send(jobs.Told(done, total))))
    except Exception as error:  # whatever it is, the other process raises it
        connection.send(error)


def _end_with(descriptor: int, master: int) -> None:
    """Ends this process once its master has closed the connection, or has ended."""
    poll = select.poll()
    poll.register(descriptor, select.POLLRDHUP)
    while not poll.poll(_BETWEEN_LOOKS) and os.getppid() == master:
        pass
    os.kill(os.getpid(), signal.SIGINT)
    time.sleep(_TIME_TO_STOP)
    os._exit(1)


if __name__ == "__main__":
    main()
