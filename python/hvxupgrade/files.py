"""Whole files at a time: read, upgraded, checked, compared."""
from __future__ import annotations

import os
from collections.abc import Iterable
from typing import Optional, Union

from . import _native, arguments, jobs, supervision
from .results import Difference, Finding, Header, UpgradeResult

Path = Union[str, "os.PathLike[str]"]


def read(path: Path, *, progress: Optional[jobs.Progress] = None,
         max_unpacked_bytes: Optional[int] = None) -> _native.Document:
    """Reads a document, plain or compressed by gzip or zstd, whole into memory.

    `progress(read, total)` is told bytes of the file; if it returns False, the reading ends with StoppedError, and what
    it raises comes out as it is. A compressed file that unpacks to more than `max_unpacked_bytes` is refused; None
    allows 256 MiB and a hundred bytes for each byte of the file. Raises UnreadableError, InvalidDocumentError,
    NewerDocumentError and ChangedError, which name the file and, where one is to blame, the line.
    """
    return _native.read(arguments.path(path, "path"), progress, arguments.count(max_unpacked_bytes, "max_unpacked_bytes"))


def read_header(path: Path) -> Header:
    """Reads the first line of a document only, in a time that does not depend on its size. Raises what `read` does."""
    return _native.read_header(arguments.path(path, "path"))


def read_lines(path: Path, *, progress: Optional[jobs.Progress] = None,
               max_unpacked_bytes: Optional[int] = None) -> _native.Lines:
    """Reads a document line by line, in memory that does not depend on its size.

    For documents that are too large to be read whole, and for a few features of many documents. It notices what a line
    shows by itself, and at the end a wrong number of features; not links without a target, ids that occur twice, and
    cycles, which `read` refuses as well. `progress` and `max_unpacked_bytes` are as those of `read`.
    """
    return _native.read_lines(arguments.path(path, "path"), progress,
                              arguments.count(max_unpacked_bytes, "max_unpacked_bytes"))


def check(document: Union[_native.Document, Path]) -> list[Finding]:
    """All that does not conform to the current data model, in a document or in the file of that name.

    The rules are about upgrades of the built-in library. What those of other libraries would still do is not found;
    `Upgrader.pending` tells of them.
    """
    return _opened(document, "document").check()


def diff(before: Union[_native.Document, Path], after: Union[_native.Document, Path]) -> Difference:
    """What two documents, or the files of these names, differ in."""
    return _native.compare(_opened(before, "before"), _opened(after, "after"))


def upgrade_file(source: Path, target: Path, *, worker: bool = True, progress: Optional[jobs.Progress] = None,
                 timeout: Optional[float] = None, identifiers: Union[str, Iterable[str], None] = None,
                 retry: bool = False, overwrite: bool = False, backup_suffix: str = "",
                 libraries: Union[Path, Iterable[Path]] = (), use_installed: bool = True, data: Optional[Path] = None,
                 language: str = "en", max_features_created: Optional[int] = None,
                 max_unpacked_bytes: Optional[int] = None) -> UpgradeResult:
    """Reads `source`, upgrades it, and writes the result to `target`, which may be the same file with `overwrite`.

    In a worker, a process of its own, a crash of an upgrade, or one that takes too much memory or time, is a
    `WorkerError`, and the files are as they were. `timeout` are seconds, for all of it: more than 0, or None (or
    `math.inf`) for as long as it takes; it needs a worker. `progress` is told how far the upgrade is; it is not
    interrupted when the time is up. All others are as those of `read`, `Upgrader`, `Upgrader.upgrade` and `Document.write`.
    """
    limit = arguments.seconds(timeout, "timeout")
    in_worker = arguments.flag(worker, "worker")
    if limit is not None and not in_worker:
        raise ValueError("timeout needs a worker: only a process of its own can be stopped when its time is up")
    arguments.function(progress, "progress")
    target = arguments.path(target, "target")
    job = jobs.Job(
        source=arguments.path(source, "source"), target=target,
        identifiers=None if identifiers is None else arguments.texts(identifiers, "identifiers"),
        retry=arguments.flag(retry, "retry"), overwrite=arguments.flag(overwrite, "overwrite"),
        backup_suffix=arguments.suffix(backup_suffix, "backup_suffix", target),
        max_features_created=arguments.count(max_features_created, "max_features_created"),
        max_unpacked_bytes=arguments.count(max_unpacked_bytes, "max_unpacked_bytes"),
        libraries=jobs.Libraries(arguments.paths(libraries, "libraries"), arguments.flag(use_installed, "use_installed"),
                                 None if data is None else arguments.path(data, "data"),
                                 arguments.text(language, "language")))
    if in_worker:
        return supervision.run_in_worker(job, progress, limit)
    return jobs.run(job, progress)


def _opened(document: Union[_native.Document, Path], name: str) -> _native.Document:
    if isinstance(document, _native.Document):
        return document
    if not isinstance(document, (str, bytes, os.PathLike)):
        raise TypeError(f"{name} is a Document or a path, not {type(document).__name__}")
    return read(document)
