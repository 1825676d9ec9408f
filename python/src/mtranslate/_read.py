"""The library's records as those of Python."""

from __future__ import annotations

from functools import lru_cache
from typing import Any, Callable, Optional, TypeVar

from mtranslate import records
from mtranslate._interface import ffi
from mtranslate._library import path, path_or_none, string, string_or_none

T = TypeVar("T")


def listed(pointers: Any, count: int, read: Callable[[Any], T]) -> tuple[T, ...]:
    """A list of the library, which is null where it is empty."""
    return tuple(read(pointer) for pointer in ffi.unpack(pointers, count)) if count else ()


def place_in_list(index: int) -> Optional[int]:
    return index if index >= 0 else None


def severity_of(number: int) -> records.Severity:
    """One that is not known yet is a note."""
    return records.Severity(min(number, records.Severity.NOTE))


def read_range(c: Any) -> records.Range:
    return records.Range(
        path_or_none(c.file),
        c.begin,
        c.end,
        c.line,
        c.column,
        c.end_line,
        c.end_column,
        c.column_utf16,
        c.end_column_utf16,
        c.column_characters,
        c.end_column_characters,
    )


def read_range_or_none(c: Any) -> Optional[records.Range]:
    return read_range(c) if c else None


def read_kind(c: Any) -> records.MessageKind:
    return records.MessageKind(
        severity=severity_of(c.severity),
        code=string(c.code),
        name=string(c.name),
        form=string(c.form),
        operand_count=c.operand_count,
        explanation=string(c.explanation),
        example=string_or_none(c.example),
        help=string(c.help),
    )


@lru_cache(maxsize=None)
def _kind_at(address: int) -> records.MessageKind:
    """Kinds are constants of the library."""
    return read_kind(ffi.cast("mTranslateMessageKind *", address))


def read_message(c: Any) -> records.Message:
    line = None
    if c.source_line:
        line = bytes(ffi.buffer(c.source_line, c.source_line_length)).decode("utf-8", "replace")
    return records.Message(
        severity=severity_of(c.severity),
        code=string(c.code),
        name=string(c.name),
        text=string(c.text),
        help=string(c.help),
        operands=listed(c.operands, c.operand_count, string),
        place=read_range_or_none(c.place),
        source_line=line,
        called_from=path_or_none(c.called_from),
        called_from_line=c.called_from_line,
        kind=_kind_at(int(ffi.cast("uintptr_t", c.kind))) if c.kind else None,
    )


def read_file(c: Any) -> records.File:
    text = None
    if c.text:
        text = bytes(ffi.buffer(c.text, c.text_length)).decode("utf-8", "replace")
    return records.File(
        path(c.name), path(c.path), records.FileKind(c.kind), c.bytes, c.device, c.inode, text
    )


def read_piece(c: Any) -> records.Piece:
    return records.Piece(records.LinesKind(c.kind), read_range(c.place), c.first_line, c.last_line)


def read_function(c: Any) -> records.Function:
    return records.Function(place_in_list(c.outer), string(c.name), read_range(c.place))


def read_statement(c: Any) -> records.Statement:
    return records.Statement(
        place_in_list(c.outer), bool(c.is_read), bool(c.has_message), read_range(c.place)
    )


def read_call(c: Any) -> records.Call:
    return records.Call(
        end=records.CallEnd(c.end),
        name=string(c.name),
        target=path_or_none(c.target),
        function=place_in_list(c.function),
        statement=place_in_list(c.statement),
        place=read_range(c.place),
    )


def read_name(c: Any) -> records.Name:
    return records.Name(
        kind=records.NameKind(c.kind),
        text=string(c.text),
        function=place_in_list(c.function),
        definition=read_range_or_none(c.definition),
        uses=listed(c.uses, c.use_count, read_range),
    )


def read_comment(c: Any) -> records.Comment:
    return records.Comment(bool(c.is_kept), read_range(c.place))


def read_statistics(c: Any) -> Optional[records.Statistics]:
    if not c:
        return None
    return records.Statistics(
        c.lines, c.bytes, c.statements, c.without_message, c.comments, c.comments_kept
    )


def read_end(c: Any) -> Optional[records.End]:
    return records.End(path_or_none(c.path), c.line, c.offset) if c else None


def read_question(c: Any) -> records.Question:
    return records.Question(
        records.QuestionKind(c.kind),
        string(c.name),
        listed(c.arguments, c.argument_count, string),
        c.results,
    )


def read_search(c: Any) -> records.Search:
    return records.Search(
        records.SearchKind(c.kind),
        string(c.name),
        string_or_none(c.class_name),
        path_or_none(c.caller),
    )
