"""What calls give: data without a tie to a document, which can be compared, printed and passed to other processes."""
from __future__ import annotations

import dataclasses
import enum
from collections.abc import Iterator
from typing import TYPE_CHECKING, Optional

if TYPE_CHECKING:
    import numpy
    import numpy.typing


@dataclasses.dataclass(frozen=True)
class Link:
    """A link to the feature of that id, where the feature itself is not at hand: in lines of a file."""

    id: int


@dataclasses.dataclass(frozen=True)
class RecordedUpgrade:
    """An upgrade that a document has been through."""

    identifier: str
    library: Optional[str]  #: The upgrade library that it came from; None where the document does not say.
    version: Optional[str]  #: Of that library, then.


@dataclasses.dataclass(frozen=True)
class Header:
    """What a document tells in its first line."""

    version: int  #: Of the format.
    upgrades: tuple[RecordedUpgrade, ...]
    features: int  #: How many it announces.


@dataclasses.dataclass(frozen=True)
class KnownUpgrade:
    """An upgrade that can be run."""

    identifier: str
    library: str
    library_version: str
    purposes: tuple[str, ...]  #: What its routines do, a sentence each.
    late_types: tuple[str, ...]  #: Of the features that it concerns.
    is_of_document: bool  #: Whether it converts the document as a whole.


@dataclasses.dataclass(frozen=True)
class UpgradeFailure:
    """A piece of a run that failed."""

    identifier: str
    feature_id: Optional[int]  #: None for a conversion of the whole document.
    late_type: str  #: The feature's, when its turn came.
    code: int  #: The routine's result, a negative number.
    is_ignored: bool  #: Whether the table of its class ignores the result, so that the later upgrades ran.


@dataclasses.dataclass(frozen=True)
class UpgradeResult:
    """What a run of upgrades did."""

    identifiers: tuple[str, ...]  #: What was run, in the order of running; the document records it.
    failures: tuple[UpgradeFailure, ...]  #: In the order of the work.
    features_changed: int
    features_created: int
    features_removed: int


class FindingKind(enum.Enum):
    """What can become of what does not conform. The values are the words of the program's JSON."""

    PENDING = "pending"  #: An upgrade that the document has not been through yet would change it.
    LEFT_BEHIND = "leftBehind"  #: Its upgrade ran, and could not change it.
    BEYOND_UPGRADES = "beyondUpgrades"  #: No upgrade changes it, or running its upgrade again would do harm.
    UNKNOWN = "unknown"  #: A late type that no part of the program knows; its features are kept as they are.


@dataclasses.dataclass(frozen=True)
class Finding:
    """Something in a document that does not conform to the current data model, or that nobody knows."""

    kind: FindingKind
    feature_id: int  #: Of an unknown late type, that of the first feature.
    late_type: str
    identifier: Optional[str]  #: The upgrade that changes the feature, or would have.
    reason: str  #: What is wrong; the same for all that one rule finds.
    damage: str  #: What keeps the upgrade from changing it, with the keys; may be empty.
    key: str  #: The attributes, components or supports concerned, by ", "; may be empty.
    remedy: str  #: What a person can do instead of the upgrade; may be empty.
    explanation: str  #: Reason and damage as one sentence, without the full stop.
    next_step: str  #: What to do, as one sentence.
    needs_person: bool
    count: int  #: How many features are of the unknown late type; 1 for all others.

    @property
    def keys(self) -> tuple[str, ...]:
        """The attributes, components or supports concerned, one by one."""
        return tuple(self.key.split(", ")) if self.key else ()


@dataclasses.dataclass(frozen=True)
class ChangedField:
    """A field in which two states of a feature differ."""

    field: str  #: The document file's word for it: "type", "alias", "attributes", "modes", ...
    key: Optional[str]  #: The attribute's name, for "attributes" and "modes".
    before: Optional[str]  #: The JSON text of the value; None when the state had none.
    after: Optional[str]


@dataclasses.dataclass(frozen=True)
class ChangedFeature:
    """A feature that differs between two documents."""

    id: int
    late_type: str  #: Of the second state; of the first, for a feature that was removed.
    fields: tuple[ChangedField, ...]


@dataclasses.dataclass(frozen=True)
class OtherSource:
    """An upgrade that both documents record, but not of the same library, or not of the same version of it."""

    identifier: str
    library_before: Optional[str]  #: None where the document does not say, as of the built-in library.
    version_before: Optional[str]  #: None likewise.
    library_after: Optional[str]
    version_after: Optional[str]


@dataclasses.dataclass(frozen=True)
class Difference:
    """What two states of a document differ in. Features are matched by id. False when they are the same."""

    upgrades_before: tuple[str, ...]  #: Recorded in the first only.
    upgrades_after: tuple[str, ...]  #: Recorded in the second only.
    other_sources: tuple[OtherSource, ...]  #: In the order of the first.
    changed: tuple[ChangedFeature, ...]
    created: tuple[ChangedFeature, ...]  #: Only in the second, in its order.
    removed: tuple[ChangedFeature, ...]  #: Only in the first, in its order.
    moved: tuple[int, ...]  #: Ids; as few as explain the new order of sons.

    def __bool__(self) -> bool:
        return any((self.upgrades_before, self.upgrades_after, self.other_sources, self.changed, self.created,
                    self.removed, self.moved))


class Kind(enum.IntEnum):
    """What a feature has under a key. The numbers are those in `Columns.kinds`."""

    NONE = 0
    REAL = 1
    INTEGER = 2
    BOOLEAN = 3
    STRING = 4
    LINK = 5
    LIST = 6


@dataclasses.dataclass(frozen=True, eq=False)
class Columns:
    """The features of a document in NumPy arrays, a row per feature, in document order.

    `columns["Value"]` are the numbers of an attribute that was asked for. Iteration gives the names of these, and the
    length is the number of features.
    """

    ids: numpy.typing.NDArray[numpy.int64]
    fathers: numpy.typing.NDArray[numpy.int64]  #: Ids; 0 for a root.
    late_types: numpy.typing.NDArray[numpy.uint32]  #: Positions in `late_type_names`.
    late_type_names: tuple[str, ...]  #: Each that occurs, in the order of first use.
    #: By attribute: numbers as reals, booleans as 0 and 1, links as ids, and NaN for all others.
    values: dict[str, numpy.typing.NDArray[numpy.float64]]
    kinds: dict[str, numpy.typing.NDArray[numpy.uint8]]  #: By attribute: what the feature has, as `Kind`.

    def __len__(self) -> int:
        return len(self.ids)

    def __getitem__(self, key: str) -> numpy.typing.NDArray[numpy.float64]:
        return self.values[key]

    def __contains__(self, key: object) -> bool:
        return key in self.values

    def __iter__(self) -> Iterator[str]:
        """The names of the attributes that were asked for."""
        return iter(self.values)

    def __repr__(self) -> str:
        return f"<Columns of {len(self)} features: {', '.join(map(repr, self.values)) or 'no attributes'}>"

    def is_of_type(self, late_type: str) -> numpy.typing.NDArray[numpy.bool_]:
        """A mask of the features of that late type."""
        known = late_type in self.late_type_names
        # No late type has a position behind the last one.
        place = self.late_type_names.index(late_type) if known else len(self.late_type_names)
        mask: numpy.typing.NDArray[numpy.bool_] = self.late_types == place
        return mask
