"""Arguments of Python as the library takes them."""

from __future__ import annotations

import os
from typing import Any, Union

from mtranslate._interface import ffi

Text = Union[str, bytes]
Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]


def text_bytes(text: object, what: str) -> bytes:
    """A text in UTF-8; bytes as they are. Raises TypeError, and ValueError for a str that has
    no UTF-8."""
    if isinstance(text, str):
        return text.encode("utf-8", "surrogateescape")
    if isinstance(text, (bytes, bytearray, memoryview)):
        return bytes(text)
    raise TypeError(f"{what} must be str or bytes, not {type(text).__name__}")


def c_text(text: object, what: str) -> Any:
    """A text with a NUL after it. Raises as text_bytes, and ValueError for one that has a NUL."""
    return _ended(text_bytes(text, what), what)


def c_path(name: object, what: str) -> Any:
    """A path likewise."""
    if not isinstance(name, (str, bytes, os.PathLike)):
        raise TypeError(f"{what} must be a path, not {type(name).__name__}")
    return _ended(os.fsencode(name), what)


def _ended(data: bytes, what: str) -> Any:
    if b"\0" in data:
        raise ValueError(f"{what} has a NUL")
    return ffi.new("char[]", data)
