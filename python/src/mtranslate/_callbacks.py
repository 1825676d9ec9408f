"""What the library asks the caller's functions during a run."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any, Callable, Optional, Union

from mtranslate import _read, records
from mtranslate._arguments import Path, Text, c_path, c_text, text_bytes
from mtranslate._interface import ffi
from mtranslate._library import lib, path, string
from mtranslate.rules import Rules

ReadFunction = Callable[[str], Optional[Text]]
AnswerFunction = Callable[[records.Question], Optional[Text]]
AllowFunction = Callable[[records.File], bool]
FindFunction = Callable[[records.Search], Optional[Path]]
ResultKindFunction = Callable[[str], Optional[Union[records.ResultKind, int]]]


@dataclass
class Callbacks:
    """The functions of a run, and what they have raised."""

    read: Optional[ReadFunction]
    answer: Optional[AnswerFunction]
    allow: Optional[AllowFunction]
    find: Optional[FindFunction]
    result_kind: Optional[ResultKindFunction]
    rules: Optional[Rules]
    error: Optional[BaseException] = None
    kept: dict[str, Any] = field(default_factory=dict)
    """The last answer of each, which the library copies when it has it."""

    def enter(self, request: Any) -> None:
        """Into a request. Raises TypeError for what cannot be called."""
        for name, function in _FUNCTIONS.items():
            given = getattr(self, name)
            if given is not None and not callable(given):
                raise TypeError(f"{name} must be a function, not {type(given).__name__}")
            if given or (self.rules and hasattr(self.rules, name)):
                setattr(request, name, function)

    def keep(self, name: str, answer: Any) -> Any:
        self.kept[name] = answer
        return answer


running: list[Callbacks] = []
"""Those of the run that is under way, at the end; kept by who holds the lock."""


def _note(_: object, error: BaseException, __: object) -> None:
    """Keeps the error until the run has ended; the rest is answered without asking."""
    running[-1].error = error


def _callback(result: str, parameters: str, otherwise: object) -> Callable[[Any], Any]:
    """Makes a function of the library's kind; otherwise: its answer after an error."""

    def make(function: Callable[..., Any]) -> Any:
        def ask(_: object, *arguments: Any) -> Any:
            run = running[-1]
            return otherwise if run.error else function(run, *arguments)

        return ffi.callback(f"{result}(void *, {parameters})", ask, error=otherwise, onerror=_note)

    return make


@_callback("int32_t", "const char *, const char **, size_t *", lib.MTRANSLATE_FILE_FAILED)
def _read_file(run: Any, name: Any, text: Any, length: Any) -> Any:
    found = run.read(path(name))
    if found is None:
        return lib.MTRANSLATE_FILE_ABSENT
    data = run.keep("read", text_bytes(found, "what read returns"))
    text[0] = run.keep("text", ffi.from_buffer("char[]", data))
    length[0] = len(data)
    return lib.MTRANSLATE_FILE_TEXT


@_callback("const char *", "const mTranslateProgramQuestion *", ffi.NULL)
def _answer(run: Any, question: Any) -> Any:
    text = run.answer(_read.read_question(question)) if run.answer else None
    if text is not None:
        return run.keep("answer", c_text(text, "what answer returns"))
    return run.rules.answer(question) if run.rules else ffi.NULL


@_callback("int32_t", "const mTranslateProgramFile *", 0)
def _allow(run: Any, file: Any) -> Any:
    return 1 if run.allow(_read.read_file(file)) else 0


@_callback("const char *", "const mTranslateProgramSearch *", ffi.NULL)
def _find(run: Any, search: Any) -> Any:
    found = run.find(_read.read_search(search))
    return ffi.NULL if found is None else run.keep("find", c_path(found, "what find returns"))


@_callback("int32_t", "const char *", 0)
def _result_kind(run: Any, name: Any) -> Any:
    kind = run.result_kind(string(name)) if run.result_kind else None
    if kind is not None:
        return records.ResultKind(kind)
    return run.rules.result_kind(name) if run.rules else records.ResultKind.UNKNOWN


_FUNCTIONS = {
    "read": _read_file,
    "answer": _answer,
    "allow": _allow,
    "find": _find,
    "result_kind": _result_kind,
}
