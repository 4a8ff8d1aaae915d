"""Whole files at a time: upgraded, checked, compared."""
from __future__ import annotations

import os
from collections.abc import Sequence
from typing import Optional, Union

from . import _native, jobs, supervision
from .results import Difference, Finding, UpgradeResult

Path = Union[str, "os.PathLike[str]"]


def check(document: Union[_native.Document, Path]) -> list[Finding]:
    """All that does not conform to the current data model, in a document or in the file of that name."""
    return _opened(document).check()


def diff(before: Union[_native.Document, Path], after: Union[_native.Document, Path]) -> Difference:
    """What two documents, or the files of these names, differ in."""
    return _native.compare(_opened(before), _opened(after))


def upgrade_file(source: Path, target: Path, *, worker: bool = True, progress: Optional[jobs.Progress] = None,
                 timeout: Optional[float] = None, identifiers: Optional[Sequence[str]] = None, retry: bool = False,
                 overwrite: bool = False, backup_suffix: str = "", libraries: Sequence[Path] = (),
                 use_installed: bool = True, data: Optional[Path] = None) -> UpgradeResult:
    """Reads `source`, upgrades it, and writes the result to `target`, which may be the same file with `overwrite`.

    In a worker, a process of its own, a crash of an upgrade, or one that takes too much memory or time, is a
    `WorkerError`, and the files are as they were. `timeout` are seconds, for all of it; it needs a worker. `progress`
    is told how far the upgrade is, as of `Upgrader.upgrade`.
    """
    if timeout is not None and not worker:
        raise ValueError("only a worker can be stopped when its time is up")
    job = jobs.Job(
        source=os.fsdecode(source), target=os.fsdecode(target),
        identifiers=None if identifiers is None else tuple(identifiers),
        retry=retry, overwrite=overwrite, backup_suffix=backup_suffix,
        libraries=jobs.Libraries(tuple(os.fsdecode(each) for each in libraries), use_installed,
                                 None if data is None else os.fsdecode(data)))
    if worker:
        return supervision.run_in_worker(job, progress, timeout)
    return jobs.run(job, job.libraries.upgrader(), progress)


def _opened(document: Union[_native.Document, Path]) -> _native.Document:
    return document if isinstance(document, _native.Document) else _native.read(document)
