"""The upgrade of one file, from reading to writing."""
from __future__ import annotations

import dataclasses
from collections.abc import Callable
from typing import Optional

from . import _native
from .results import UpgradeResult

Progress = Callable[[int, int], object]


@dataclasses.dataclass(frozen=True)
class Libraries:
    """What an upgrader is made of."""

    paths: tuple[str, ...]
    use_installed: bool
    data: Optional[str]

    def upgrader(self) -> _native.Upgrader:
        return _native.Upgrader(self.paths, self.use_installed, self.data)


@dataclasses.dataclass(frozen=True)
class Job:
    """What is to be done with a file."""

    source: str
    target: str
    identifiers: Optional[tuple[str, ...]]
    retry: bool
    overwrite: bool
    backup_suffix: str
    libraries: Libraries


# What a worker says, besides the result, or what was raised, with which it ends.


@dataclasses.dataclass(frozen=True)
class Told:
    """What a callback is told."""

    done: int
    total: int


@dataclasses.dataclass(frozen=True)
class Writing:
    """The upgrade is done, and the worker waits for an answer before it writes. This is the result of the file in place."""

    result: UpgradeResult


def run(job: Job, upgrader: _native.Upgrader, progress: Optional[Progress],
        before_writing: Callable[[UpgradeResult], None] = lambda result: None) -> UpgradeResult:
    document = _native.read(job.source)
    result = upgrader.upgrade(document, job.identifiers, job.retry, progress)
    before_writing(result)
    document.write(job.target, overwrite=job.overwrite, backup_suffix=job.backup_suffix)
    return result
