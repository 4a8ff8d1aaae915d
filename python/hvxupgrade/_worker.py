"""A process that upgrades one file for another process: python3 -m hvxupgrade._worker DESCRIPTOR

The descriptor is a connection to that process, which is told how far the upgrade is, and asked before anything is
written. When that process is gone, so is this one: nothing is written for nobody.
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


def main() -> None:
    connection = Connection(int(sys.argv[1]))
    threading.Thread(target=_end_with, args=[connection.fileno()], daemon=True).start()
    job = connection.recv()

    def ask(result: UpgradeResult) -> None:
        connection.send(jobs.Writing(result))
        connection.recv()

    try:
        connection.send(jobs.run(job, at=connection.send, before_writing=ask,
                                 progress=lambda done, total: connection.send(jobs.Told(done, total))))
    except Exception as error:  # whatever it is, the other process raises it
        connection.send(error)


def _end_with(descriptor: int) -> None:
    """Ends this process once nobody is at the other end of the connection."""
    poll = select.poll()
    poll.register(descriptor, select.POLLRDHUP)
    poll.poll()
    os.kill(os.getpid(), signal.SIGINT)
    time.sleep(_TIME_TO_STOP)
    os._exit(1)


if __name__ == "__main__":
    main()
