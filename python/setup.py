"""Builds the package: the interface from the project's headers, and the libraries in the folder that
the environment's MTRANSLATE_LIBRARIES names. Without it, those of a checkout are in
../build/release/lib, and a source distribution, which holds the library's sources in project/,
builds them by cmake. Without the library of rules there are none.
Everything else is said in pyproject.toml."""

from __future__ import annotations

import os
import shutil
import sys
from pathlib import Path
from subprocess import check_call

from cffi import FFI
from setuptools import setup
from setuptools.command.build_py import build_py
from setuptools.command.sdist import sdist

try:
    from setuptools.command.bdist_wheel import bdist_wheel
except ImportError:  # before setuptools 70
    from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from declarations import declarations, version  # noqa: E402

IS_CHECKOUT = not (HERE / "project").is_dir()
PROJECT = HERE.parent if IS_CHECKOUT else HERE / "project"
OUTPUT = PROJECT / "build/python" if IS_CHECKOUT else HERE / "build"

# What the libraries are built of.
SOURCES = (
    *("CMakeLists.txt", "LICENSE", "THIRD_PARTY_NOTICES", "python/CMakeLists.txt"),
    *("cli", "cmake", "host", "include", "python/native", "src"),
)


def libraries() -> Path:
    """The folder of the libraries, which are built there in a source distribution."""
    given = os.environ.get("MTRANSLATE_LIBRARIES")
    if given or IS_CHECKOUT:
        return Path(given or PROJECT / "build/release/lib")
    folder = OUTPUT / "libraries"
    options = ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG"]
    options += [f"-DMTRANSLATE_{part}=OFF" for part in ("TESTS", "BENCH", "INSTALL")]
    check_call(["cmake", *options, "-S", PROJECT, "-B", folder])
    targets = ["mtranslate", "mtranslate_rules"]
    check_call(["cmake", "--build", folder, "--parallel", "--target", *targets])
    return folder / "lib"


class SourceDistribution(sdist):
    """Adds the sources of the libraries."""

    def make_release_tree(self, base_dir: str, files: list[str]) -> None:
        super().make_release_tree(base_dir, files)
        shutil.copy(HERE / "declarations.py", base_dir)
        for name in SOURCES:
            source, target = PROJECT / name, Path(base_dir, "project", name)
            target.parent.mkdir(parents=True, exist_ok=True)
            if source.is_dir():
                shutil.copytree(source, target)
            else:
                shutil.copy(source, target)


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
        built = libraries()
        if not (built / "libmtranslate.so").exists():
            sys.exit(f"no library in {built}: build it first (scripts/python does)")
        for name in ("LICENSE", "THIRD_PARTY_NOTICES"):
            self.copy_file(str(PROJECT / name), str(folder / name))
        for name in ("libmtranslate.so", "libmtranslate_rules.so"):
            if (built / name).exists():
                self.copy_file(str(built / name), str(folder / name))


class PlatformWheel(bdist_wheel):
    """For every Python 3, and for the platform of the library."""

    def finalize_options(self) -> None:
        super().finalize_options()
        self.root_is_pure = False

    def get_tag(self) -> tuple[str, str, str]:
        return "py3", "none", super().get_tag()[2]


OUTPUT.mkdir(parents=True, exist_ok=True)
setup(
    version=version(PROJECT),
    cmdclass={
        "build_py": BuildPackage,
        "bdist_wheel": PlatformWheel,
        "sdist": SourceDistribution,
    },
    options={"build": {"build_base": str(OUTPUT / "base")}, "egg_info": {"egg_base": str(OUTPUT)}},
)
