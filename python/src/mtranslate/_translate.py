"""The request: a run of the library, from its arguments to its records."""

from __future__ import annotations

from collections.abc import Iterable, Mapping
from typing import Any, Literal, Optional

from mtranslate import _read, records
from mtranslate._arguments import Path, Text, c_path, c_text, text_bytes
from mtranslate._callbacks import (
    AllowFunction,
    AnswerFunction,
    Callbacks,
    FindFunction,
    ReadFunction,
    ResultKindFunction,
    running,
)
from mtranslate._interface import ffi
from mtranslate._library import lib, lock, string, string_or_none
from mtranslate.rules import Rules
from mtranslate.translation import Translation, TranslationError

_LIBRARY_FLAGS = {
    "used": 0,
    "apart": lib.MTRANSLATE_LIBRARY_APART,
    "whole": lib.MTRANSLATE_WHOLE_LIBRARY,
}


def translate(
    text: Optional[Text] = None,
    *,
    file: Optional[Path] = None,
    sources: Optional[Mapping[str, Text]] = None,
    folders: Optional[Iterable[Path]] = None,
    language: Literal["matlab", "octave", "classic"] = "matlab",
    disk: bool = True,
    translator: bool = True,
    display: bool = False,
    library: Literal["used", "apart", "whole"] = "used",
    details: bool = True,
    tree: bool = False,
    values: bool = False,
    only_read: bool = False,
    max_memory: int = 0,
    rules: Optional[Rules] = None,
    read: Optional[ReadFunction] = None,
    answer: Optional[AnswerFunction] = None,
    allow: Optional[AllowFunction] = None,
    find: Optional[FindFunction] = None,
    result_kind: Optional[ResultKindFunction] = None,
) -> Translation:
    """Translates a text or a file, with the functions that it calls.

    What is wrong with a source is told by messages. One run at a time: threads wait for each other.

    text, file: one of them; what is translated, without NULs, or the name of its file.
    sources: texts by the names of their files, such as "src/f.m"; they may hold anything.
    folders: where called functions are looked for, the first one first; without them beside the
        file, and for a text nowhere.
    language: "matlab", "octave" or "classic".
    disk: False: no file or folder of the disk is looked at.
    translator: False: no calls are asked for, and no called files looked for.
    display: True: answer is asked how to display the values of statements without semicolon;
        so are rules that have a form for it.
    library: the functions of MATLAB's library that the translator brings along: "used": the text
        holds those that it calls; "apart": none; "whole": all.
    details: False: no pieces, functions, statements, calls, names, comments, statistics and texts
        of files, which take most of the time of large sources.
    tree, values: True: the tree, and the tree with what is known of values.
    only_read: True: the source is read, with messages about that and the tree, and no more.
    max_memory: of the run, in MB, 1 to 1048576; 0: by the length of its sources.
    rules: what the host has, from files; asked after answer and result_kind.
    read: answers the text of a file that is none of the sources, or None: asked for each path once.
    answer: answers the host's text for a name or a call, or None: calls come out in general form.
    allow: whether a file of the disk may be opened.
    find: answers the path of the file that a name means, or None, in the place of folders.
    result_kind: answers what the result is of a function that no file defines.

    What these functions raise ends the run and is raised by translate. They may not translate.

    Raises TranslationError where a file cannot be read or memory is exhausted, TypeError and
    ValueError for wrong arguments.
    """
    if (text is None) == (file is None):
        raise TypeError("either text or file must be given")
    if rules is not None and not isinstance(rules, Rules):
        raise TypeError(f"rules must be Rules, not {type(rules).__name__}")
    callbacks = Callbacks(read, answer, allow, find, result_kind, rules)
    keep: list[Any] = []  # the request's texts, until the run has ended
    request = ffi.new("mTranslateProgramRequest *")
    request.size = ffi.sizeof("mTranslateProgramRequest")
    if text is not None:
        request.command = _kept(keep, c_text(text, "text"))
    else:
        request.file = _kept(keep, c_path(file, "file"))
    request.language = _kept(keep, c_text(language, "language"))
    request.max_memory = _size(max_memory)
    request.flags = _flags(disk, translator, display or bool(rules and rules.has_display), library)
    request.flags |= _telling(details, tree, values, only_read)
    _enter_sources(request, keep, sources)
    _enter_folders(request, keep, folders)
    callbacks.enter(request)
    command = None if text is None else text_bytes(text, "text").decode("utf-8", "replace")
    with lock:
        running.append(callbacks)
        try:
            result = ffi.gc(lib.mTranslateProgram(request), lib.mTranslateProgramRelease)
        finally:
            running.pop()
    with result:
        if callbacks.error:
            raise callbacks.error
        if rules:
            rules.check()
        return _translation(result, command)


def _kept(keep: list[Any], value: Any) -> Any:
    keep.append(value)
    return value


def _size(max_memory: object) -> int:
    if not isinstance(max_memory, int):
        raise TypeError(f"max_memory must be int, not {type(max_memory).__name__}")
    if not 0 <= max_memory <= 1048576:
        raise ValueError("max_memory must be from 1 to 1048576 MB, or 0")
    return max_memory


def _flags(disk: bool, translator: bool, display: bool, library: str) -> int:
    """Those that say what is done."""
    if library not in _LIBRARY_FLAGS:
        raise ValueError(f"library must be one of {', '.join(_LIBRARY_FLAGS)}, not {library!r}")
    flags: int = _LIBRARY_FLAGS[library]
    if not disk:
        flags |= lib.MTRANSLATE_WITHOUT_DISK
    if not translator:
        flags |= lib.MTRANSLATE_WITHOUT_TRANSLATOR
    if display:
        flags |= lib.MTRANSLATE_DISPLAYS
    return flags


def _telling(details: bool, tree: bool, values: bool, only_read: bool) -> int:
    """Those that say what is told."""
    flags = 0
    if details:
        flags |= lib.MTRANSLATE_DETAILS | lib.MTRANSLATE_OUTLINE | lib.MTRANSLATE_TEXTS
    if tree:
        flags |= lib.MTRANSLATE_TREE
    if values:
        flags |= lib.MTRANSLATE_VALUES
    if only_read:
        flags |= lib.MTRANSLATE_ONLY_READ
    return flags


def _enter_sources(request: Any, keep: list[Any], sources: Optional[Mapping[str, Text]]) -> None:
    if not sources:
        return
    if not isinstance(sources, Mapping):
        kind = type(sources).__name__
        raise TypeError(f"sources must be a mapping of names to texts, not {kind}")
    entries = _kept(keep, ffi.new("mTranslateProgramSource[]", len(sources)))
    for entry, (name, text) in zip(entries, sources.items()):
        entry.size = ffi.sizeof("mTranslateProgramSource")
        entry.name = _kept(keep, c_path(name, "the name of a source"))
        data = text_bytes(text, f"the source {name!r}")
        entry.text = _kept(keep, ffi.from_buffer("char[]", data))
        entry.length = len(data)
    request.sources = entries
    request.source_count = len(sources)


def _enter_folders(request: Any, keep: list[Any], folders: Optional[Iterable[Path]]) -> None:
    if folders is None:
        return
    if isinstance(folders, (str, bytes)) or not isinstance(folders, Iterable):
        raise TypeError(f"folders must be a list of paths, not {type(folders).__name__}")
    paths = [_kept(keep, c_path(folder, "a folder")) for folder in folders]
    request.folders = _kept(keep, ffi.new("char *[]", [*paths, ffi.NULL]))
    request.folder_count = len(paths)


def _translation(result: Any, command: Optional[str]) -> Translation:
    """Of a result. Raises TranslationError, and ValueError for an invalid request."""
    status = records.Status(result.status)
    messages = _read.listed(result.messages, result.message_count, _read.read_message)
    end = _read.read_end(result.end)
    if status == records.Status.INVALID:
        raise ValueError(string(result.failure))
    if status not in (records.Status.DONE, records.Status.STOPPED):
        raise TranslationError(status, string(result.failure), messages, end)
    text = bytes(ffi.buffer(result.text, result.text_length))
    files = _read.listed(result.files, result.file_count, _read.read_file)
    own = files[0] if files and command is None else None
    return Translation(
        status=status,
        text=text.decode("utf-8", "replace"),
        text_bytes=text,
        failure=string_or_none(result.failure),
        end=end,
        messages=messages,
        files=files,
        file=own.name if own else None,
        source=own.text if own else command,
        pieces=_read.listed(result.pieces, result.piece_count, _read.read_piece),
        functions=_read.listed(result.functions, result.function_count, _read.read_function),
        statements=_read.listed(result.statements, result.statement_count, _read.read_statement),
        calls=_read.listed(result.calls, result.call_count, _read.read_call),
        names=_read.listed(result.names, result.name_count, _read.read_name),
        comments=_read.listed(result.comments, result.comment_count, _read.read_comment),
        statistics=_read.read_statistics(result.statistics),
        tree=string_or_none(result.tree),
        values=string_or_none(result.values),
        needs_library=bool(result.needs_library),
    )


def message_kinds() -> tuple[records.MessageKind, ...]:
    """All kinds of messages, by their codes."""
    count = ffi.new("size_t *")
    kinds = lib.mTranslateMessageKinds(count)
    return _read.listed(kinds, count[0], _read.read_kind)


def explain(code_or_name: str) -> records.MessageKind:
    """The kind with the code, such as "MT203", in any case, or the name, such as "deletion". Raises
    KeyError when there is none."""
    kind = lib.mTranslateFindMessageKind(c_text(code_or_name, "code_or_name"))
    if not kind:
        raise KeyError(code_or_name)
    return _read.read_kind(kind)
