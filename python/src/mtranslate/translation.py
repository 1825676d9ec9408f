"""What a translation gives, and the error of one that gives nothing."""

from __future__ import annotations

from collections import Counter
from dataclasses import dataclass
from typing import Optional

from mtranslate import records
from mtranslate._html import page, view


@dataclass(frozen=True, repr=False)
class Translation:
    """What a run gives. What it tells of the run's own source, from pieces to statistics, is there
    where details are asked for, in matlab and octave; else it is empty."""

    status: records.Status
    """DONE; or STOPPED, in classic, where an error of the source has ended the run."""
    text: str
    """The host text; empty where the run is not done. What is no UTF-8 is replaced by U+FFFD."""
    text_bytes: bytes
    """The same, byte by byte."""
    failure: Optional[str]
    """What has ended the run, in a line; None where it is done."""
    end: Optional[records.End]
    """How far a run has come that is not done."""
    messages: tuple[records.Message, ...]
    """Those of the run's own source first, then of each called file, by their places."""
    files: tuple[records.File, ...]
    """In the order in which they have been opened, that of the request first."""
    file: Optional[str]
    """The name of the run's own source in its shortest form; None for a text without name."""
    source: Optional[str]
    """The run's own source, where it is known: a text, or a file in matlab and octave."""
    pieces: tuple[records.Piece, ...]
    """Which lines come from where, by their first lines."""
    functions: tuple[records.Function, ...]
    """In source order, nested ones too."""
    statements: tuple[records.Statement, ...]
    """In source order."""
    calls: tuple[records.Call, ...]
    """In source order."""
    names: tuple[records.Name, ...]
    """By their first uses."""
    comments: tuple[records.Comment, ...]
    """In source order."""
    statistics: Optional[records.Statistics]
    tree: Optional[str]
    """As the tool's --dump-tree prints it, where it is asked for."""
    values: Optional[str]
    """As the tool's --dump-values prints it, where it is asked for."""
    needs_library: bool
    """Whether the text leaves out functions that it calls: those of library="apart"."""

    @property
    def is_complete(self) -> bool:
        """Whether all is translated: the run is done, without errors and gaps."""
        return self.status == records.Status.DONE and not any(
            message.severity <= records.Severity.GAP for message in self.messages
        )

    def __repr__(self) -> str:
        """Short, as a prompt shows it: such as "<Translation of f.m: 12 lines, 1 gap>"."""
        name = self.file or "a text"
        if self.failure is not None:
            return f"<Translation of {name}: {self.failure}>"
        counts = Counter(message.severity for message in self.messages)
        parts = [(len(self.text.splitlines()), "line")]
        parts += [(counts[kind], kind.name.lower()) for kind in records.Severity if counts[kind]]
        told = ", ".join(f"{count} {word}{'s' * (count != 1)}" for count, word in parts)
        return f"<Translation of {name}: {told}>"

    def to_html(self) -> str:
        """A page of HTML for a browser: source and translation side by side."""
        return page(self)

    def _repr_html_(self) -> str:
        """The same for a notebook."""
        return view(self)


class TranslationError(Exception):
    """A run that gives nothing: a file is absent or cannot be read, or it would take more memory
    than it may, or than there is."""

    status: records.Status
    """UNREADABLE, TOO_LARGE, NO_MEMORY or REFUSED."""
    messages: tuple[records.Message, ...]
    """What was told until then; what has ended the run is the last one."""
    end: Optional[records.End]
    """How far the run has come."""

    def __init__(
        self,
        status: records.Status,
        failure: str,
        messages: tuple[records.Message, ...] = (),
        end: Optional[records.End] = None,
    ) -> None:
        super().__init__(status, failure, messages, end)
        self.status = status
        self.messages = messages
        self.end = end

    def __str__(self) -> str:
        return str(self.args[1])
