"""What translations give: the same bytes as the tool, records that fit, the README's examples."""

from __future__ import annotations

import doctest
import enum
import os
import re
import subprocess
from pathlib import Path
from typing import Any

import mtranslate
import pytest
from mtranslate import Severity, records, translate
from mtranslate._interface import ffi
from mtranslate._library import lib

ROOT = Path(__file__).resolve().parents[2]
TOOL = ROOT / "build/release/bin/mtranslate"


@pytest.mark.parametrize("folder, language", [("examples", "matlab"), ("tests/classic", "classic")])
def test_golden_files(folder: str, language: str, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(ROOT)
    goldens = sorted(Path(folder).glob("*.out"))
    assert len(goldens) > 4
    for golden in goldens:
        source = golden.with_suffix(".m")
        file = source if source.exists() else golden.with_suffix("") / "main.m"
        translation = translate(file=file, language=language)
        assert translation.text_bytes == golden.read_bytes(), file
        assert translation.text == golden.read_text(encoding="utf-8")


def sources_of_cases() -> list[bytes]:
    """The left sides of all rows and blocks of the project's tables, for whatever test they are."""
    sources = []
    for table in sorted((ROOT / "tests/cases").glob("*.txt")):
        lines = table.read_bytes().split(b"\n")
        sources += [
            line.split(b" => ")[0].replace(b"\\n", b"\n") for line in lines if b" => " in line
        ]
        blocks = re.split(rb"\n\s*\n", b"\n".join(lines))
        sources += [
            b"\n".join(line.split(b" | ")[0].rstrip() for line in block.split(b"\n"))
            for block in blocks
            if b" | " in block
        ]
    return sources


def test_same_bytes_as_the_tool(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(tmp_path)
    sources = sources_of_cases()
    assert len(sources) > 1500
    os.mkdir("src")
    for number, source in enumerate(sources):
        Path(f"src/case_{number}.m").write_bytes(source)
    subprocess.run([TOOL, "src", "-O", "out"], stderr=subprocess.DEVNULL, check=False)
    compared = 0
    for number, source in enumerate(sources):
        name = f"src/case_{number}.m"
        translation = translate(
            file=name, sources={name: source}, library="apart", find=lambda search: None
        )
        output = Path(f"out/case_{number}.txt")
        if output.exists():
            assert translation.text_bytes == output.read_bytes(), source
            compared += 1
        assert "</html>" in translation.to_html()
    assert compared > 1500


def test_readme(monkeypatch: pytest.MonkeyPatch) -> None:
    readme = ROOT / "python/README.md"
    monkeypatch.chdir(ROOT)
    result = doctest.testfile(str(readme), module_relative=False, optionflags=doctest.ELLIPSIS)
    assert result.attempted > 10 and result.failed == 0
    assert doctest.testmod(mtranslate).failed == 0


ENUMERATIONS = {
    "PROGRAM": records.Status,
    "SEVERITY": records.Severity,
    "IS": records.FileKind,
    "QUESTION": records.QuestionKind,
    "SEARCH": records.SearchKind,
    "RESULT": records.ResultKind,
    "LINES": records.LinesKind,
    "CALL": records.CallEnd,
    "NAME": records.NameKind,
}


@pytest.mark.parametrize("prefix, kind", ENUMERATIONS.items())
def test_enumerations_are_those_of_the_header(prefix: str, kind: type[enum.IntEnum]) -> None:
    begin = f"MTRANSLATE_{prefix}_"
    header = {name[len(begin) :]: getattr(lib, name) for name in dir(lib) if name.startswith(begin)}
    assert header == {member.name: member.value for member in kind}


def records_below(record: Any) -> list[Any]:
    """The record and all that it leads to, whose struct begins with a size."""
    fields = {name: getattr(record, name) for name, _ in ffi.typeof(record).item.fields}
    found = [record]
    for value in fields.values():
        if not isinstance(value, ffi.CData) or not value:
            continue
        item = ffi.typeof(value).item
        if item.kind == "struct" and dict(item.fields).get("size"):
            found += records_below(value)
        elif item.kind == "pointer" and item.item.kind == "struct":
            found += records_below(value[0])
    return found


def test_structs_have_the_sizes_of_the_library() -> None:
    request = ffi.new(
        "mTranslateProgramRequest *", {"size": ffi.sizeof("mTranslateProgramRequest")}
    )
    command = ffi.new("char[]", b"x = f(1); % c\ntry, end\nfunction f(x)\nend\n")
    request.command = command
    request.flags = lib.MTRANSLATE_DETAILS | lib.MTRANSLATE_OUTLINE
    with ffi.gc(lib.mTranslateProgram(request), lib.mTranslateProgramRelease) as result:
        found = records_below(result)
        assert {ffi.typeof(record).item.cname for record in found} >= {
            f"struct mTranslate{name}"
            for name in ["ProgramResult", "ProgramMessage", "MessageKind", "ProgramPiece"]
            + ["ProgramFunction", "ProgramCall", "ProgramName", "ProgramComment"]
            + ["ProgramStatement", "ProgramStatistics", "ProgramRange"]
        }
        for record in found:
            assert record.size == ffi.sizeof(ffi.typeof(record).item)


def test_what_a_translation_tells() -> None:
    source = "% hälf\ny = half(4);\nfunction y = half(x)\ny = x/two();\nend\n"
    result = translate(source, tree=True, values=True)
    assert result.is_complete and result.source == source and result.file is None
    assert [function.name for function in result.functions] == ["half"]
    assert [(call.name, call.end.name, call.function) for call in result.calls] == [
        ("half", "OF_OWN", None),
        ("two", "OF_UNKNOWN", 0),
    ]
    assert result.statistics and (result.statistics.lines, result.statistics.comments) == (5, 1)
    assert [comment.is_kept for comment in result.comments] == [True]
    assert {name.text: name.kind.name for name in result.names if name.function == 0} == {
        "y": "OUTPUT",
        "x": "PARAMETER",
        "two": "FUNCTION",
    }
    assert result.tree and "(= y half(" in result.tree and result.values
    message = next(message for message in result.messages if "two" in message.operands)
    assert (message.severity, message.code, message.source_line) == (
        Severity.WARNING,
        "MT401",
        "y = x/two();",
    )
    assert str(message) == "<text>:4:7: warning: the function 'two' is found nowhere [MT401]"
    bare = translate(source, details=False)
    assert bare.text == result.text and not bare.pieces and not bare.names and not bare.tree


def test_what_arguments_change(tmp_path: Path) -> None:
    (tmp_path / "f.m").write_text("function y = f(x)\ny = x;\nend\n")
    (tmp_path / "main.m").write_text("f(1);\n")
    asked: list[str] = []

    def answer(question: mtranslate.Question) -> None:
        asked.append(f"{question.name}({', '.join(question.arguments)})")

    def ends(**arguments: Any) -> list[str]:
        return [call.end.name for call in translate(**arguments).calls]

    main = {"main.m": "f(1);"}
    assert ends(text="f(1);") == ends(file="main.m", sources=main) == ["OF_UNKNOWN"]
    assert ends(text="f(1);", folders=[tmp_path]) == ends(file=tmp_path / "main.m") == ["OF_FILE"]
    assert ends(text="f(1);", folders=[tmp_path], disk=False) == ["OF_UNKNOWN"]
    assert ends(text="f(1);", find=lambda search: tmp_path / "f.m") == ["OF_FILE"]
    for arguments, call, is_asked in [
        ({}, "f(1)", True),
        ({"translator": False}, "f(1)", False),
        ({}, 'display("x", x)', False),
        ({"display": True}, 'display("x", x)', True),
    ]:
        asked.clear()
        translate("f(1);\nx = 3", answer=answer, **arguments)
        assert (call in asked) == is_asked, (arguments, asked)
    assert translate("f(1, 2) = [];", only_read=True).messages == ()
    texts = {
        library: translate("x = sum(y);", library=library) for library in ("used", "apart", "whole")
    }
    assert [texts[library].needs_library for library in texts] == [False, True, False]
    assert len(texts["apart"].text) < len(texts["used"].text) < len(texts["whole"].text)
    number = translate("x = f(1)*g(2);", result_kind=lambda name: mtranslate.ResultKind.NUMBER)
    assert number.text == "x := f(1)*g(2);\n"


def test_columns() -> None:
    place = translate("x = '𝄞\u00e4'; y = f(1);").messages[0].place
    assert place and (place.column, place.column_utf16, place.column_characters) == (19, 16, 15)
    assert (place.end_column, place.end_column_utf16, place.end_column_characters) == (20, 17, 16)
    assert (place.begin, place.end) == (18, 19)


def test_message_kinds() -> None:
    kinds = mtranslate.message_kinds()
    assert len({kind.code for kind in kinds}) == len(kinds) > 40
    assert mtranslate.explain("mt203") == mtranslate.explain("deletion")
    assert "What to do: " in str(mtranslate.explain("MT203"))
    with pytest.raises(KeyError, match="MT999"):
        mtranslate.explain("MT999")


def test_rules(tmp_path: Path) -> None:
    rules = mtranslate.Rules(ROOT / "examples/rules/neutral.toml")
    source = "d = depth(3); x = pi*hypot(d, 2)\n"
    file = tmp_path / "f.m"
    file.write_text(source)
    command = [TOOL, "--rules", ROOT / "examples/rules/neutral.toml", file]
    printed = subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout
    assert translate(source, rules=rules).text_bytes == printed
    answered = translate(source, rules=rules, answer=lambda q: "PI" if q.name == "pi" else None)
    assert "x := PI*root(d^2 + 2^2)" in answered.text
    bad = tmp_path / "bad.toml"
    bad.write_text("[functions]\nf = 3\n")
    with pytest.raises(mtranslate.RulesError, match=r"bad.toml:2:5: error: expected a form"):
        mtranslate.Rules(bad)
    with pytest.raises(OSError, match="No such file"):
        mtranslate.Rules(tmp_path / "none.toml")
