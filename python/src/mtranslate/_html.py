"""A translation as HTML: its source with the lines that each line has become beside it.

No script, nothing that is loaded, and only colours that are at home on a light and on a dark page:
those around it, and washes over them.
"""

from __future__ import annotations

import hashlib
from collections.abc import Sequence
from html import escape
from typing import TYPE_CHECKING, Optional

from mtranslate.records import LinesKind, Message

if TYPE_CHECKING:
    from mtranslate.translation import Translation

_MOST_LINES = 2000
"""Of a source or a text in a view; a browser has trouble with many more."""
_MOST_MESSAGES = 500

_STYLE = """
.mtranslate { color: inherit; font-size: 13px; line-height: 1.45; }
.mtranslate table { border-collapse: collapse; width: 100%; table-layout: fixed; margin: 0;
  border: 1px solid rgba(128, 128, 128, .35); font-size: inherit; }
.mtranslate tr { background: none; }
.mtranslate th, .mtranslate td { text-align: left; vertical-align: top; padding: 1px 8px;
  border: 0; background: none; }
.mtranslate th { padding: 4px 8px; font-weight: 600;
  border-bottom: 1px solid rgba(128, 128, 128, .35); }
.mtranslate th:first-child { width: 44%; }
.mtranslate th + th, .mtranslate td + td { border-left: 1px solid rgba(128, 128, 128, .35); }
.mtranslate tr.marked td { background: rgba(128, 128, 128, .08); }
.mtranslate code { display: block; position: relative; padding: 0 0 0 3.4em; margin: 0;
  background: none; color: inherit; font: 12px/1.5 ui-monospace, "DejaVu Sans Mono", monospace;
  white-space: pre-wrap; overflow-wrap: anywhere; }
.mtranslate code::before { content: attr(data-line); position: absolute; left: 0; width: 2.6em;
  text-align: right; opacity: .5; }
.mtranslate mark { color: inherit; border-radius: 2px; padding: 0 1px; }
.mtranslate .error { background: rgba(220, 40, 40, .28); }
.mtranslate .gap { background: rgba(230, 120, 0, .30); }
.mtranslate .warning { background: rgba(220, 180, 0, .32); }
.mtranslate .note { background: rgba(50, 130, 230, .24); }
.mtranslate a { color: inherit; text-decoration: underline; font-size: 11px; opacity: .8; }
.mtranslate details, .mtranslate p { margin: 4px 0; text-align: left; }
.mtranslate summary { cursor: pointer; }
.mtranslate summary > b { font-weight: 600; border-radius: 2px; padding: 0 4px; }
.mtranslate details > p, .mtranslate details > pre { margin: 4px 0 4px 1.6em; max-width: 50em; }
.mtranslate pre { background: rgba(128, 128, 128, .1); color: inherit; padding: 4px 8px;
  font: 12px/1.5 ui-monospace, "DejaVu Sans Mono", monospace; white-space: pre-wrap; }
"""


def page(translation: Translation) -> str:
    """A whole page, which follows the browser's choice of light and dark."""
    title = escape(translation.file or "mtranslate")
    return (
        '<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8">'
        '<meta name="color-scheme" content="light dark">'
        f"<title>{title}</title><style>body {{ font-family: sans-serif; margin: 16px; }}</style>"
        f"</head><body>{view(translation)}</body></html>\n"
    )


def view(translation: Translation) -> str:
    """A part of a page."""
    shown = View(translation)
    return (
        f'<div class="mtranslate"><style>{_STYLE}</style>'
        f"<table><thead><tr><th>{escape(translation.file or 'Source')}</th>"
        f"<th>Translation</th></tr></thead><tbody>{shown.rows()}</tbody></table>"
        f"{shown.messages()}</div>"
    )


class View:
    """What a view is made of."""

    def __init__(self, translation: Translation) -> None:
        self._translation = translation
        self._source = lines_of(translation.source)
        self._text = lines_of(translation.text)
        key = repr((self._source, self._text, translation.messages))
        # Links stay within the view when a notebook has several.
        self._name = "mt" + hashlib.sha256(key.encode("utf-8", "replace")).hexdigest()[:12]
        self._at_lines: dict[int, list[tuple[int, Message]]] = {}
        for index, message in enumerate(translation.messages):
            if message.place and message.place.file == translation.file:
                self._at_lines.setdefault(message.place.line, []).append((index, message))

    def rows(self) -> str:
        """Without pieces there is one, with everything in it."""
        lines = range(1, min(len(self._source), _MOST_LINES) + 1)
        more = left_out(self._source, _MOST_LINES, "lines of the source")
        if not self._translation.pieces:
            source = "".join(map(self._source_line, lines))
            text = self._lines(range(1, len(self._text) + 1))
            return f"<tr><td>{source}{more}</td><td>{text}</td></tr>"
        beside = lines_beside(self._translation, self._text)
        rows = "".join(self._row(line, beside.get(line, [])) for line in lines)
        if more:
            rows += f"<tr><td>{more}</td><td></td></tr>"
        if None in beside:
            title = "<i>functions of other files, and of the library</i>"
            rows += f"<tr><td>{title}</td><td>{self._lines(beside[None])}</td></tr>"
        return rows

    def _row(self, line: int, beside: Sequence[int]) -> str:
        marked = " class=marked" if line in self._at_lines else ""
        return f"<tr{marked}><td>{self._source_line(line)}</td><td>{self._lines(beside)}</td></tr>"

    def _lines(self, numbers: Sequence[int]) -> str:
        """Lines of the host text."""
        shown = (code(line, escape(self._text[line - 1])) for line in numbers[:_MOST_LINES])
        return "".join(shown) + left_out(numbers, _MOST_LINES, "lines")

    def _source_line(self, number: int) -> str:
        """A line with its messages marked; where they overlap, those that begin later are not."""
        line = self._source[number - 1]
        parts = []
        done = 0
        links = ""
        for index, message in self._at_lines.get(number, []):
            begin, end = columns_of(message, len(line))
            if begin >= done:
                parts += [escape(line[done:begin]), mark(message, line[begin:end])]
                done = end
            if index < _MOST_MESSAGES:
                link = escape(message.code or message.severity.name.lower())
                links += f' <a href="#{self._name}-{index}">{link}</a>'
        return code(number, "".join(parts) + escape(line[done:]) + links)

    def messages(self) -> str:
        """Each opens to what it means."""
        told = self._translation.messages
        entries = (
            f'<details id="{self._name}-{index}">{explained(message)}</details>'
            for index, message in enumerate(told[:_MOST_MESSAGES])
        )
        return "".join(entries) + left_out(told, _MOST_MESSAGES, "messages")


def left_out(things: Sequence[object], most: int, what: str) -> str:
    more = len(things) - most
    return f"<p>{more} more {what} are not shown.</p>" if more > 0 else ""


def lines_of(text: Optional[str]) -> list[str]:
    """Its lines, as the library counts them."""
    if not text:
        return []
    lines = text.replace("\r\n", "\n").replace("\r", "\n").split("\n")
    return lines if lines[-1] else lines[:-1]


def lines_beside(translation: Translation, texts: list[str]) -> dict[Optional[int], list[int]]:
    """The lines of the host text that stand beside each line of the source; beside None, those of
    other files and of the library. A line of several pieces stands beside the first one; blank ones
    of no piece are left out."""
    origins: dict[int, int] = {}
    returns: list[int] = []  # they stand beside the end of their function, not beside its head
    for piece in translation.pieces:
        if piece.place.file != translation.file:
            continue
        for line in range(piece.first_line, piece.last_line + 1):
            origins[line] = min(piece.place.line, origins.get(line, piece.place.line))
            if piece.kind == LinesKind.RESULT:
                returns.append(line)
    for line in reversed(returns):
        origins[line] = origins.get(line + 1, origins[line])
    beside: dict[Optional[int], list[int]] = {}
    for line in range(1, len(texts) + 1):
        if line in origins or texts[line - 1]:
            beside.setdefault(origins.get(line), []).append(line)
    return beside


def code(number: int, content: str) -> str:
    return f'<code data-line="{number}">{content or " "}</code>'


def columns_of(message: Message, length: int) -> tuple[int, int]:
    """Where it stands in the line that it begins in: characters from 0, one at least."""
    assert message.place
    begin = message.place.column_characters - 1
    if message.place.end_line != message.place.line:
        return begin, max(length, begin + 1)
    return begin, max(message.place.end_column_characters - 1, begin + 1)


def mark(message: Message, part: str) -> str:
    return (
        f'<mark class="{message.severity.name.lower()}" title="{escape(str(message))}">'
        f"{escape(part) or ' '}</mark>"
    )


def explained(message: Message) -> str:
    place = ""
    if message.place:
        file = f"{message.place.file}:" if message.place.file else ""
        place = f"{file}{message.place.line}:{message.place.column_characters} "
    severity = message.severity.name.lower()
    text = (
        f'<summary>{escape(place)}<b class="{severity}">{severity}</b> '
        f"{escape(message.text)} {escape(message.code)}</summary>"
    )
    if message.kind:
        text += f"<p>{escape(message.kind.explanation)}</p>"
        if message.kind.example:
            text += f"<pre>{escape(message.kind.example)}</pre>"
    return text + (f"<p>{escape(message.help)}</p>" if message.help else "")
