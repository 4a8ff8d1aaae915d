"""What can go wrong, told so that the user knows what to do next."""
from __future__ import annotations

from typing import ClassVar, Optional, TypeVar

_AnError = TypeVar("_AnError", bound="Error")


class Error(Exception):
    """Something could not be done.

    The text of the exception holds all of it; the attributes hold the parts. `file` and `line` (from 1) are None
    where no file or line is to blame. `problem` is what went wrong, `advice` the next move.
    """

    kind: ClassVar[str] = "error"

    file: Optional[str]
    line: Optional[int]
    problem: str
    advice: str

    def __init__(self, text: str, *, problem: Optional[str] = None, file: Optional[str] = None,
                 line: Optional[int] = None, advice: str = "") -> None:
        super().__init__(text)
        self.problem = text if problem is None else problem
        self.file = file
        self.line = line
        self.advice = advice

    @classmethod
    def about(cls: type[_AnError], file: str, problem: str, advice: str) -> _AnError:
        """The error whose text is made of these parts."""
        return cls(f"{file}: {problem}. {advice}", problem=problem, file=file, advice=advice)

    def __reduce__(self) -> tuple[object, ...]:
        # Keywords are not among the arguments with which an exception is made again in another process.
        return type(self), self.args, self.__dict__


class UnreadableError(Error):
    """A file cannot be opened or read."""

    kind = "unreadable"


class InvalidDocumentError(Error):
    """What a file holds is not a sound document."""

    kind = "invalid"


class NewerDocumentError(Error):
    """A document was written by a later release."""

    kind = "newer"


class WriteError(Error):
    """The result could not be written; whatever stood there before is as it was."""

    kind = "unwritable"


class ChangedError(Error):
    """Another program has changed the file meanwhile; nothing was written."""

    kind = "changed"


class InstallationError(Error):
    """A library, catalog or message file is missing, broken or does not fit."""

    kind = "installation"


class UsageError(Error):
    """The caller asked for what cannot be: an unknown identifier, a feature that was removed."""

    kind = "usage"


class StoppedError(Error):
    """Work was stopped: by its caller, by a limit, or by a routine that gave up."""

    kind = "stopped"


class WorkerError(Error):
    """The process that upgraded a file crashed, was killed, or took too long; the files are as they were.

    `exit_code` is the process's, negative for the signal that ended it; None where its time was up. `output` is
    the end of what it printed.
    """

    kind = "worker"

    exit_code: Optional[int] = None
    output: str = ""
