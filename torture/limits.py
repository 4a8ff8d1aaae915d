"""Limits of processes, growing from nothing to more than a run needs, and outputs that are full."""
import errno
import os
import resource

from torture.setting import IN_PLACE, TO_FILE, VIEWING
from torture.trial import Trial

KB = 1 << 10
MB = 1 << 20
USER = 61000  # nobody's, so that no other process counts


def growing(first, last, factor):
    value = first
    while value <= last:
        yield int(value)
        value *= factor


def limited(sparse):
    finer = 1.5 if sparse else 1.04
    trials = []

    def add(name, limit, values, **more):
        trials.extend(Trial(f"ulimit {name}", IN_PLACE, limits=((limit, value),), **more) for value in values)

    add("file size", resource.RLIMIT_FSIZE, growing(300, 200 * KB, finer), error=errno.EFBIG)
    add("open files", resource.RLIMIT_NOFILE, range(0, 24, 3 if sparse else 1), error=errno.EMFILE)
    add("data", resource.RLIMIT_DATA, growing(64 * KB, 8 * MB, finer), may_end=True)
    add("address space", resource.RLIMIT_AS, growing(MB, 40 * MB, finer), may_end=True)
    add("stack", resource.RLIMIT_STACK, growing(8 * KB, 8 * MB, max(finer, 1.1)), struck=True)
    if os.geteuid() == 0:
        for number in range(2 if sparse else 20):
            add("processes", resource.RLIMIT_NPROC, [number % 3], user=USER + number, error=errno.EAGAIN)
    return trials


def full_outputs():
    return [Trial("standard output is full", variant, output="/dev/full", error=0)
            for variant in (IN_PLACE, TO_FILE, *VIEWING)]
