"""Builds the package in a checkout of the project: the interface from the project's headers,
and the libraries in the folder that the environment's MTRANSLATE_LIBRARIES names, else in
../build/release/lib. Without that of rules there are none.
Everything else is said in pyproject.toml."""

from __future__ import annotations

import os
import sys
from pathlib import Path

from cffi import FFI
from setuptools import setup
from setuptools.command.build_py import build_py

try:
    from setuptools.command.bdist_wheel import bdist_wheel
except ImportError:  # before setuptools 70
    from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from declarations import declarations, version  # noqa: E402

PROJECT = HERE.parent
OUTPUT = PROJECT / "build/python"
LIBRARIES = Path(os.environ.get("MTRANSLATE_LIBRARIES") or PROJECT / "build/release/lib")


class BuildPackage(build_py):
    """Adds what is made of the headers, and the library."""

    def run(self) -> None:
        super().run()
        folder = Path(self.build_lib) / "mtranslate"
        folder.mkdir(parents=True, exist_ok=True)
        interface = FFI()
        interface.set_source("mtranslate._interface", None)
        interface.cdef(declarations(PROJECT))
        interface.emit_python_code(str(folder / "_interface.py"))
        (folder / "_version.py").write_text(f'VERSION = "{version(PROJECT)}"\n')
        if not (LIBRARIES / "libmtranslate.so").exists():
            sys.exit(f"no library in {LIBRARIES}: build it first (scripts/python does)")
        for name in ("LICENSE", "THIRD_PARTY_NOTICES"):
            self.copy_file(str(PROJECT / name), str(folder / name))
        for name in ("libmtranslate.so", "libmtranslate_rules.so"):
            if (LIBRARIES / name).exists():
                self.copy_file(str(LIBRARIES / name), str(folder / name))


class PlatformWheel(bdist_wheel):
    """For every Python 3, and for the platform of the library."""

    def finalize_options(self) -> None:
        super().finalize_options()
        self.root_is_pure = False

    def get_tag(self) -> tuple[str, str, str]:
        return "py3", "none", super().get_tag()[2]


if not (PROJECT / "include").is_dir():
    sys.exit(f"{PROJECT}/include is not there: the package is built in a checkout of the project")
OUTPUT.mkdir(parents=True, exist_ok=True)
setup(
    version=version(PROJECT),
    cmdclass={"build_py": BuildPackage, "bdist_wheel": PlatformWheel},
    options={"build": {"build_base": str(OUTPUT / "base")}, "egg_info": {"egg_base": str(OUTPUT)}},
)
