"""What a translation tells, and what it asks: plain records.

Offsets are in bytes from 0; lines and columns count from 1; ends are not included, but for those of
lines. Texts of sources that are no UTF-8 have U+FFFD in the place of what is none.
"""

from __future__ import annotations

from dataclasses import dataclass, field
from enum import IntEnum
from typing import Optional


class Status(IntEnum):
    """How a run has ended."""

    DONE = 0
    """What can be translated is; the messages tell what is not."""
    STOPPED = 1
    """The first error of a source has ended it: in classic only."""
    UNREADABLE = 2
    """A file is absent or cannot be read."""
    TOO_LARGE = 3
    """It would take more memory, or text, than it may."""
    NO_MEMORY = 4
    """The system gives no more memory."""
    INVALID = 5
    """The request is not as described; translate raises ValueError for it."""
    REFUSED = 6
    """Another run is under way in the process: a callback has tried to translate."""


class Severity(IntEnum):
    """How much a message matters."""

    ERROR = 0
    """The source is not valid, or of a part of the language that is left out."""
    GAP = 1
    """Valid, and without a form in the host's language: it stays as a comment."""
    WARNING = 2
    """Translated, and it may mean something else."""
    NOTE = 3
    """Translated, and worth a look."""


class FileKind(IntEnum):
    """What stands behind a path."""

    GIVEN = 0
    """A text of the caller."""
    REGULAR = 1
    PIPE = 2
    DEVICE = 3
    OTHER = 4


class QuestionKind(IntEnum):
    """What the host is asked for."""

    NAME = 0
    """Its text for a name."""
    CALL = 1
    """Its text for a call, or for a construct that is offered as one."""


class SearchKind(IntEnum):
    """Whose file is looked for."""

    FILE = 0
    """Of a function or a script."""
    METHOD = 1
    """Of a method or a constructor."""


class ResultKind(IntEnum):
    """What the first result of a call is."""

    UNKNOWN = 0
    NUMBER = 1
    """A single number."""
    TRUTH = 2
    """A single truth value."""
    TEXT = 3
    CELL = 4
    RECORD = 5
    SEVERAL = 6
    """An array of any number of elements."""


class LinesKind(IntEnum):
    """What lines of the host text come from."""

    STATEMENT = 0
    """A statement, with what it needs in front."""
    HEAD = 1
    """A part of one that holds others: if, elseif, case."""
    END = 2
    """Its end, or that of a function."""
    COMMENT = 3
    FUNCTION = 4
    """The head of a function, with declarations."""
    PRELUDE = 5
    """What parameters need in front of the statements."""
    RESULT = 6
    """The return that a function ends with."""
    GAP = 7
    """Source that is put as comments."""


class CallEnd(IntEnum):
    """What becomes of a call."""

    OF_OWN = 0
    """A function of the same file is called."""
    OF_FILE = 1
    """One of another file, or a script."""
    OF_HOST = 2
    """The host has answered."""
    OF_LANGUAGE = 3
    """The translator has a form for it."""
    OF_CLASS = 4
    """Only classes have it: the host gets the call as it is."""
    OF_UNKNOWN = 5
    """None of these: the host gets the call as it is."""


class NameKind(IntEnum):
    """What a name is."""

    FUNCTION = 0
    """Not of the function: how each use ends, the calls tell."""
    VARIABLE = 1
    PARAMETER = 2
    OUTPUT = 3
    GLOBAL = 4
    PERSISTENT = 5


@dataclass(frozen=True)
class Range:
    """A part of a source."""

    file: Optional[str]
    """Its name in the shortest form; None for a text that has none."""
    begin: int
    end: int
    line: int
    column: int
    """In bytes; those in units of UTF-16 and in characters stand below."""
    end_line: int
    end_column: int
    column_utf16: int
    end_column_utf16: int
    column_characters: int
    end_column_characters: int


@dataclass(frozen=True)
class MessageKind:
    """What is the same for all messages of a code."""

    severity: Severity
    code: str
    """Such as "MT203"."""
    name: str
    """Such as "deletion"."""
    form: str
    """The text of a message, with a %s for each operand."""
    operand_count: int
    explanation: str
    example: Optional[str]
    """A source with this message alone; None for none."""
    help: str
    """What to do."""

    def __str__(self) -> str:
        lines = [f"{self.code}, {self.name} ({self.severity.name.lower()})", "", self.explanation]
        if self.example is not None:
            lines += ["", "Example:", *("    " + line for line in self.example.splitlines())]
        return "\n".join([*lines, "", "What to do: " + self.help])


@dataclass(frozen=True)
class Message:
    """Something that is to be told about a source."""

    severity: Severity
    code: str
    """Empty for what ended the run."""
    name: str
    """Empty for the same."""
    text: str
    """In one line."""
    help: str
    """What to do; may be empty."""
    operands: tuple[str, ...]
    """What stands in the text: names, mostly."""
    place: Optional[Range]
    source_line: Optional[str]
    """The line it begins in, without line end."""
    called_from: Optional[str]
    """The file that calls that of the place, where it is not the run's own."""
    called_from_line: int
    kind: Optional[MessageKind] = field(repr=False)
    """None for what ended the run."""

    def __str__(self) -> str:
        """Such as "f.m:2:11: warning: what is said [MT301]"; columns are in characters."""
        begin = ""
        if self.place:
            file = self.place.file or "<text>"
            begin = f"{file}:{self.place.line}:{self.place.column_characters}: "
        code = f" [{self.code}]" if self.code else ""
        return f"{begin}{self.severity.name.lower()}: {self.text}{code}"


@dataclass(frozen=True)
class File:
    """A file that a run opens."""

    name: str
    """In the shortest form."""
    path: str
    """As the run makes it of a folder and a name."""
    kind: FileKind
    bytes: int
    """Of what is on the disk; the next two are what it is known by there."""
    device: int
    inode: int
    text: Optional[str]
    """What has been read, where details are asked for, in matlab and octave."""


@dataclass(frozen=True)
class Piece:
    """A part of a source and the lines of the host text that come from it. Several pieces may share
    a line, and a part may be several pieces."""

    kind: LinesKind
    place: Range
    """Empty where nothing stands in the source."""
    first_line: int
    last_line: int
    """Included."""


@dataclass(frozen=True)
class Function:
    """A function of the run's own source."""

    outer: Optional[int]
    """The function around it, by its place in Translation.functions."""
    name: str
    place: Range


@dataclass(frozen=True)
class Statement:
    """A statement of the run's own source."""

    outer: Optional[int]
    """The statement that holds it, by its place in Translation.statements."""
    is_read: bool
    """False where it could not be read: its place may hold many."""
    has_message: bool
    """Whether an error, a gap or a warning is about it, and not about what it holds."""
    place: Range


@dataclass(frozen=True)
class Call:
    """A call, or a handle of a function, in the run's own source."""

    end: CallEnd
    name: str
    target: Optional[str]
    """The file that holds what is called."""
    function: Optional[int]
    """In which it stands, by its place in Translation.functions."""
    statement: Optional[int]
    """The innermost in which it stands, by its place in Translation.statements."""
    place: Range
    """Of the name."""


@dataclass(frozen=True)
class Name:
    """A name of a function or of the statements of the run's own source."""

    kind: NameKind
    text: str
    function: Optional[int]
    """To which it belongs, by its place in Translation.functions; None for the statements."""
    definition: Optional[Range]
    """The first place that gives it a value, or the function of the same file."""
    uses: tuple[Range, ...]
    """All places, in source order."""


@dataclass(frozen=True)
class Comment:
    """A comment of the run's own source."""

    is_kept: bool
    """Whether it stands in the host text."""
    place: Range


@dataclass(frozen=True)
class Statistics:
    """What the run's own source holds."""

    lines: int
    bytes: int
    statements: int
    """What could not be read is one."""
    without_message: int
    """Those without error, gap and warning, all of whose calls end."""
    comments: int
    """Each line of a block comment is one."""
    comments_kept: int


@dataclass(frozen=True)
class End:
    """Where a run has ended that is not done."""

    path: Optional[str]
    """Of the file that it read then; None for a text without name."""
    line: int
    """0 for none."""
    offset: int


@dataclass(frozen=True)
class Question:
    """What the host is asked."""

    kind: QuestionKind
    name: str
    """Of the source."""
    arguments: tuple[str, ...]
    """Of a call: their host texts."""
    results: int
    """How many are asked for, or RESULTS_UNKNOWN, RESULTS_VARY or HANDLE."""


RESULTS_UNKNOWN = -1
"""In classic, and for names: it is not known how many results are asked for."""
RESULTS_VARY = -2
"""How many results are asked for is known only where the translation runs."""
HANDLE = -3
"""The name asked for is that of a function handle."""


@dataclass(frozen=True)
class Search:
    """A name whose file is looked for."""

    kind: SearchKind
    name: str
    """Of a function, with the dots of packages; of a method alone."""
    class_name: Optional[str]
    """Of a method; None: of any class that has it."""
    caller: Optional[str]
    """Path of the file that calls it; None for a text without name."""
