"""The library: found, loaded and looked over once, when the package is imported."""

from __future__ import annotations

import os
import threading
from pathlib import Path
from typing import Any, Optional

from mtranslate._interface import ffi
from mtranslate._version import VERSION

# What is released when Python ends may be so after the library has been closed.
_FLAGS = ffi.RTLD_NOW | ffi.RTLD_NODELETE


def _soname() -> str:
    """What the installed library is called: before version 1 by major and minor version."""
    major, minor, _ = VERSION.split(".")
    return f"libmtranslate.so.{major}" + (f".{minor}" if major == "0" else "")


def _load() -> Any:
    """The one that the environment's MTRANSLATE_LIBRARY names, else that of the package, else the
    one that is installed. Raises ImportError, also for one that is older than the package."""
    bundled = Path(__file__).with_name("libmtranslate.so")
    path = os.environ.get("MTRANSLATE_LIBRARY") or (str(bundled) if bundled.exists() else _soname())
    try:
        library = ffi.dlopen(path, _FLAGS)
        found = ffi.string(library.mTranslateVersion()).decode()
    except (OSError, AttributeError) as error:
        raise ImportError(f"the library of mtranslate cannot be loaded: {error}") from error
    has, needs = ([int(part) for part in text.split(".")] for text in (found, VERSION))
    if has[:2] != needs[:2] or has < needs:
        raise ImportError(f"{path} has the version {found}, mtranslate needs {VERSION}")
    return library


lib = _load()


def load_rules() -> Any:
    """The library of rules, which the package may lack: ImportError then."""
    try:
        return ffi.dlopen(str(Path(__file__).with_name("libmtranslate_rules.so")), _FLAGS)
    except OSError as error:
        raise ImportError(f"the library of rules cannot be loaded: {error}") from error


# One run at a time. A thread that has it may take it again: what a callback asks of the library
# then is for the library to refuse.
lock = threading.RLock()
# A process that is made in the middle of a run would never see its end.
os.register_at_fork(before=lock.acquire, after_in_parent=lock.release, after_in_child=lock.release)


def string(pointer: Any) -> str:
    """A text of the library; what is no UTF-8 in it is replaced."""
    return ffi.string(pointer).decode("utf-8", "replace")  # type: ignore[no-any-return]


def string_or_none(pointer: Any) -> Optional[str]:
    """The same; None for null."""
    return string(pointer) if pointer else None


def path_or_none(pointer: Any) -> Optional[str]:
    """A name of a file as Python has it, also where it is no UTF-8; None for null."""
    return os.fsdecode(ffi.string(pointer)) if pointer else None


def path(pointer: Any) -> str:
    """The same of what is never null."""
    return os.fsdecode(ffi.string(pointer))
