"""The declarations of the library's headers, as cffi reads them.

Used when the package is built, so that there is no copy of them to keep.
"""

from __future__ import annotations

import re
from pathlib import Path

HEADERS = (
    "include/mtranslate.h",
    "include/mtranslate_program.h",
    "python/native/rules.h",
)


def declarations(folder: Path) -> str:
    """What the headers of the project in the folder declare, without comments and macros."""
    text = "".join(plain((folder / name).read_text(encoding="utf-8")) for name in HEADERS)
    return re.sub(r"\bMTRANSLATE_(API|VARIABLE)\b", "", text)


def plain(header: str) -> str:
    """A header without what cffi does not read. What C++ alone sees is left out; the rest of the
    conditions only chooses macros."""
    header = re.sub(r"/\*.*?\*/", " ", header, flags=re.DOTALL)
    header = re.sub(r"\\\n", " ", header)
    header = re.sub(r"^#ifdef __cplusplus$.*?^#endif$", "", header, flags=re.DOTALL | re.MULTILINE)
    return re.sub(r"^\s*#.*$", "", header, flags=re.MULTILINE)


def version(folder: Path) -> str:
    """The version that the headers tell, "MAJOR.MINOR.PATCH"."""
    text = (folder / HEADERS[0]).read_text(encoding="utf-8")
    parts = re.findall(r"^#define MTRANSLATE_VERSION_[MP]\w+ (\d+)$", text, re.MULTILINE)
    if len(parts) != 3:
        raise ValueError(f"{folder / HEADERS[0]} tells no version")
    return ".".join(parts)
