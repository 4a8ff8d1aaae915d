"""The upgrade of one file, from reading to writing."""
from __future__ import annotations

import dataclasses
import enum
from collections.abc import Callable
from typing import Optional

from . import _native, arguments
from .errors import StoppedError
from .results import UpgradeResult

Progress = Callable[[int, int], object]


@dataclasses.dataclass(frozen=True)
class Libraries:
    """What an upgrader is made of."""

    paths: tuple[str, ...]
    use_installed: bool
    data: Optional[str]
    language: str

    def upgrader(self) -> _native.Upgrader:
        return _native.Upgrader(self.paths, self.use_installed, self.data, self.language)


@dataclasses.dataclass(frozen=True)
class Job:
    """What is to be done with a file."""

    source: str
    target: str
    identifiers: Optional[tuple[str, ...]]
    retry: bool
    overwrite: bool
    backup_suffix: str
    max_features_created: Optional[int]
    max_unpacked_bytes: Optional[int]
    libraries: Libraries


class Stage(enum.Enum):
    """What is being done; the values are words for it."""

    STARTING = "while it was started"
    LOADING = "while it loaded upgrade libraries"
    READING = "while it read the document"
    UPGRADING = "while it upgraded the document"
    WRITING = "while it wrote the result"


# What a worker says, besides its stage, and the result, or what was raised, with which it ends.


@dataclasses.dataclass(frozen=True)
class Told:
    """What a callback is told."""

    done: int
    total: int


@dataclasses.dataclass(frozen=True)
class Writing:
    """The upgrade is done, and the worker waits for an answer before it writes. This is the result of the file in place."""

    result: UpgradeResult


def run(job: Job, progress: Optional[Progress], at: Callable[[Stage], None] = lambda stage: None,
        before_writing: Callable[[UpgradeResult], None] = lambda result: None) -> UpgradeResult:
    """Raises StoppedError, with advice for who gave the files and has no document, when `progress` says so."""
    at(Stage.LOADING)
    upgrader = job.libraries.upgrader()
    at(Stage.READING)
    document = _native.read(job.source, None, job.max_unpacked_bytes)
    at(Stage.UPGRADING)
    result = upgrader.upgrade(document, job.identifiers, job.retry,
                              None if progress is None else stopping(progress, job.source),
                              max_features_created=job.max_features_created)
    at(Stage.WRITING)
    before_writing(result)
    document.write(job.target, overwrite=job.overwrite, backup_suffix=job.backup_suffix)
    return result


def stopping(progress: Progress, source: str) -> Progress:
    """Tells `progress`, and raises where it says that the upgrade is to stop."""
    def tell(done: int, total: int) -> None:
        if arguments.is_stop(progress(done, total)):
            raise StoppedError.about(source, "the upgrade was stopped", "Start it again; nothing was written")
    return tell
