"""Analysis documents: read, walk, query, change, upgrade, check, compare and write them.

    import hvxupgrade

    document = hvxupgrade.read("bracket.hvxdoc")
    hvxupgrade.Upgrader().upgrade(document)
    for pressure in document.of_type("HVXPressure"):
        print(pressure.alias, dict(pressure.items()))
    document.write("bracket.new.hvxdoc")

`read_lines` goes through documents of any size in bounded memory. `upgrade_file` upgrades a file in a process of its
own, so that a crash does not take this one with it. Whatever goes wrong is an `Error`, which carries the file, the line
and advice.
"""
from . import _native
from ._native import Document, Feature, FeatureIterator, FeatureLine, Lines, Upgrader
from .errors import (ChangedError, Error, InstallationError, InvalidDocumentError, NewerDocumentError, StoppedError,
                     UnreadableError, UsageError, WorkerError, WriteError)
from .files import check, diff, read, read_header, read_lines, upgrade_file
from .results import (ChangedFeature, ChangedField, Columns, Difference, Finding, FindingKind, Header, Kind, KnownUpgrade,
                      Link, OtherSource, RecordedUpgrade, UpgradeFailure, UpgradeResult)

__version__ = _native.__version__

__all__ = [
    "ChangedError", "ChangedFeature", "ChangedField", "Columns", "Difference", "Document", "Error", "Feature",
    "FeatureIterator", "FeatureLine", "Finding", "FindingKind", "Header", "InstallationError", "InvalidDocumentError",
    "Kind", "KnownUpgrade", "Lines", "Link", "NewerDocumentError", "OtherSource", "RecordedUpgrade", "StoppedError",
    "UnreadableError", "UpgradeFailure", "UpgradeResult", "Upgrader", "UsageError", "WorkerError", "WriteError",
    "check", "diff", "read", "read_header", "read_lines", "upgrade_file",
]
