"""What the host has for MATLAB's functions, as files."""

from __future__ import annotations

import os
from typing import Any

from mtranslate._arguments import Path, c_path
from mtranslate._interface import ffi
from mtranslate._library import load_rules, lock


class RulesError(ValueError):
    """There are mistakes in rules; the text has a line with its place for each, as the tool prints
    them."""


class Rules:
    """The rules of files in TOML, as the tool's --rules reads them. A later file replaces what
    earlier ones say of a name. Read once, for any number of translations.

    Raises RulesError, and OSError where a file cannot be read.
    """

    def __init__(self, *paths: Path) -> None:
        self._paths = tuple(os.fsdecode(path) for path in paths)
        self._lib = load_rules()
        texts = [c_path(path, "a path of rules") for path in paths]
        with lock:
            array = ffi.new("char *[]", [*texts, ffi.NULL])
            pointer = self._lib.mTranslateRulesRead(array, len(texts))
        if not pointer:
            raise MemoryError
        self._pointer = ffi.gc(pointer, self._lib.mTranslateRulesRelease)
        self.check()

    def __repr__(self) -> str:
        return f"Rules({', '.join(map(repr, self._paths))})"

    def check(self) -> None:
        """Raises what has gone wrong so far: also MemoryError while they were asked."""
        status = self._lib.mTranslateRulesStatus(self._pointer)
        text = os.fsdecode(ffi.string(self._lib.mTranslateRulesMistakes(self._pointer)))
        if status == self._lib.MTRANSLATE_RULES_MISTAKEN:
            raise RulesError(text.rstrip("\n"))
        if status == self._lib.MTRANSLATE_RULES_UNREADABLE:
            raise OSError(text)
        if status == self._lib.MTRANSLATE_RULES_NO_MEMORY:
            raise MemoryError

    @property
    def has_display(self) -> bool:
        """Whether they have a form to display values."""
        return bool(self._lib.mTranslateRulesDisplay(self._pointer))

    def answer(self, question: Any) -> Any:
        """The library's question, and its answer: for translate alone."""
        return self._lib.mTranslateRulesAnswer(self._pointer, question)

    def result_kind(self, name: Any) -> int:
        """Likewise."""
        return int(self._lib.mTranslateRulesResultKind(self._pointer, name))
