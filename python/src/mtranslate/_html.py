"""A translation as HTML: its source with the lines that each line has become beside it.

No script, nothing that is loaded, and only colours that are at home on a light and on a dark page:
those around it, and washes over them.
"""

from __future__ import annotations

import hashlib
from html import escape
from typing import TYPE_CHECKING, Optional

from mtranslate.records import LinesKind, Message, Severity

if TYPE_CHECKING:
    from mtranslate.translation import Translation

_MOST_LINES = 2000
"""Of a source or a text in a view; a browser has trouble with many more."""

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
    sources = lines_of(translation.source)
    texts = lines_of(translation.text)
    name = "mt" + hashlib.sha256(repr((sources, texts)).encode("utf-8", "replace")).hexdigest()[:12]
    messages = list(enumerate(translation.messages))
    at_lines: dict[int, list[tuple[int, Message]]] = {}
    for index, message in messages:
        if message.place and message.place.file == translation.file:
            at_lines.setdefault(message.place.line, []).append((index, message))
    beside = lines_beside(translation, texts)
    rows = []
    for number, line in enumerate(sources[:_MOST_LINES], 1):
        own = at_lines.get(number, [])
        rows.append(
            f"<tr{' class=marked' if own else ''}><td>{source_line(number, line, own, name)}</td>"
            f"<td>{text_lines(beside.get(number, []), texts)}</td></tr>"
        )
    rest = beside.get(None, [])
    if rest:
        title = "functions of other files, and of the library" if beside.keys() - {None} else ""
        rows.append(f"<tr><td><i>{title}</i></td><td>{text_lines(rest, texts)}</td></tr>")
    left_out = max(0, len(sources) - _MOST_LINES)
    return (
        f'<div class="mtranslate"><style>{_STYLE}</style>'
        f"<table><thead><tr><th>{escape(translation.file or 'Source')}</th>"
        f"<th>Translation</th></tr></thead><tbody>{''.join(rows)}</tbody></table>"
        + (f"<p>{left_out} more lines are not shown.</p>" if left_out else "")
        + (f"<p>{escape(translation.failure)}</p>" if translation.failure else "")
        + "".join(message_entry(index, message, name) for index, message in messages)
        + "</div>"
    )


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


def text_lines(numbers: list[int], texts: list[str]) -> str:
    return "".join(code(number, escape(texts[number - 1])) for number in numbers[:_MOST_LINES])


def code(number: int, content: str) -> str:
    return f'<code data-line="{number}">{content or " "}</code>'


def source_line(number: int, line: str, own: list[tuple[int, Message]], name: str) -> str:
    """A line with its messages marked; where they overlap, those that begin later are not."""
    parts = []
    done = 0
    links = ""
    for index, message in own:
        assert message.place
        begin = message.place.column_characters - 1
        end = message.place.end_column_characters - 1
        end = max(end, begin + 1) if message.place.end_line == number else len(line)
        if begin >= done:
            marked = escape(line[begin:end]) or " "
            parts.append(
                f'{escape(line[done:begin])}<mark class="{class_of(message)}" '
                f'title="{escape(str(message))}">{marked}</mark>'
            )
            done = end
        links += f' <a href="#{name}-{index}">{escape(message.code or "error")}</a>'
    return code(number, "".join(parts) + escape(line[done:]) + links)


def class_of(message: Message) -> str:
    return Severity(message.severity).name.lower()


def message_entry(index: int, message: Message, name: str) -> str:
    """A message, which opens to what it means."""
    place = ""
    if message.place:
        file = f"{message.place.file}:" if message.place.file else ""
        place = f"{file}{message.place.line}:{message.place.column_characters} "
    head = (
        f'{escape(place)}<b class="{class_of(message)}">{class_of(message)}</b> '
        f"{escape(message.text)} {escape(message.code)}"
    )
    explained = ""
    if message.kind:
        explained = f"<p>{escape(message.kind.explanation)}</p>"
        if message.kind.example:
            explained += f"<pre>{escape(message.kind.example)}</pre>"
    if message.help:
        explained += f"<p>{escape(message.help)}</p>"
    return f'<details id="{name}-{index}"><summary>{head}</summary>{explained}</details>'
