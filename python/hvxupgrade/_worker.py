"""A process that upgrades one file for another process: python3 -m hvxupgrade._worker DESCRIPTOR

The descriptor is a connection to that process. When that process is gone, telling it anything fails, and so does the
work: nothing is written for nobody.
"""
from __future__ import annotations

import sys
from multiprocessing.connection import Connection

from . import jobs


def main() -> None:
    connection = Connection(int(sys.argv[1]))
    job = connection.recv()
    try:
        connection.send(jobs.run(job, job.libraries.upgrader(),
                                 progress=lambda done, total: connection.send(jobs.Told(done, total)),
                                 before_writing=lambda result: connection.send(jobs.Writing(result))))
    except Exception as error:  # whatever it is, the other process raises it
        connection.send(error)


if __name__ == "__main__":
    main()
