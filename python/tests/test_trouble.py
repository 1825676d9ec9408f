"""Bad arguments, callbacks that raise, threads and many runs: each error is clear, and the next run
is as the first one."""

from __future__ import annotations

import os
import pickle
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import Any, Optional

import pytest
from mtranslate import Question, Severity, Status, TranslationError, translate


@pytest.fixture(autouse=True)
def next_run_is_good() -> Any:
    yield
    assert translate("x = 1;").text == "x := 1;\n"


WRONG = [
    ({}, TypeError, "either text or file must be given"),
    ({"text": "x", "file": "f.m"}, TypeError, "either text or file must be given"),
    ({"text": 3}, TypeError, "text must be str or bytes, not int"),
    ({"text": "a\0b"}, ValueError, "text has a NUL"),
    ({"text": "\ud800"}, ValueError, "surrogates not allowed"),
    ({"file": 3}, TypeError, "file must be a path, not int"),
    ({"text": "x", "sources": ["f.m"]}, TypeError, "sources must be a mapping of names to texts"),
    ({"text": "x", "sources": {"f.m": None}}, TypeError, "the source 'f.m' must be str or bytes"),
    ({"text": "x", "folders": "src"}, TypeError, "folders must be a list of paths, not str"),
    ({"text": "x", "folders": [None]}, TypeError, "a folder must be a path, not NoneType"),
    ({"text": "x", "language": "c"}, ValueError, "must be classic, matlab or octave"),
    ({"text": "x", "library": "no"}, ValueError, "library must be one of used, apart, whole"),
    ({"text": "x", "max_memory": "1"}, TypeError, "max_memory must be int, not str"),
    ({"text": "x", "max_memory": -1}, ValueError, "max_memory must be from 1 to 1048576 MB"),
    ({"text": "x", "rules": "r.toml"}, TypeError, "rules must be Rules, not str"),
    ({"text": "x", "answer": "f"}, TypeError, "answer must be a function, not str"),
    ({"text": "x", "answer": lambda q: 3}, TypeError, "what answer returns must be str or bytes"),
    ({"text": "x", "answer": lambda q: "\0"}, ValueError, "what answer returns has a NUL"),
    ({"text": "f(1)", "result_kind": lambda name: 99}, ValueError, "99 is not a valid ResultKind"),
    ({"file": "f.m", "read": lambda name: 3}, TypeError, "what read returns must be str or bytes"),
    ({"text": "f(1)", "find": lambda search: 3}, TypeError, "what find returns must be a path"),
]


@pytest.mark.parametrize("arguments, error, text", WRONG)
def test_wrong_arguments(arguments: dict[str, Any], error: type[Exception], text: str) -> None:
    with pytest.raises(error) as raised:
        translate(**arguments)
    assert text in str(raised.value)


UNFINISHED = [
    ({"file": "/nowhere/f.m"}, Status.UNREADABLE, "unable to open /nowhere/f.m"),
    ({"file": "f.m", "disk": False}, Status.UNREADABLE, "unable to open f.m"),
    ({"text": "x = 1;\n" * 500000, "max_memory": 1}, Status.TOO_LARGE, "memory"),
    ({"text": "x", "answer": lambda q: translate("y").text}, Status.REFUSED, "already running"),
]


@pytest.mark.parametrize(
    "arguments, status, text", UNFINISHED, ids=[row[1].name for row in UNFINISHED]
)
def test_runs_that_give_nothing(arguments: dict[str, Any], status: Status, text: str) -> None:
    with pytest.raises(TranslationError) as raised:
        translate(**arguments)
    assert raised.value.status == status and text in str(raised.value)


def test_an_error_of_classic_stops_the_run() -> None:
    result = translate("x = (", language="classic")
    assert (result.status, result.text, result.is_complete) == (Status.STOPPED, "", False)
    assert result.failure and result.messages[-1].severity == Severity.ERROR


@pytest.mark.parametrize(
    "source", [b"x=1\0\xff\r2", b"\xff\xfe", b"\xef\xbb\xbfx = 'a\xc3", b"\r\r", b""]
)
@pytest.mark.parametrize("language", ["matlab", "octave", "classic"])
def test_sources_of_any_bytes(source: bytes, language: str) -> None:
    result = translate(file="f.m", sources={"f.m": source}, language=language)
    result.to_html().encode()
    for message in result.messages:
        str(message).encode()


def test_texts_keep_their_bytes() -> None:
    assert translate(b"x = 'a\xff';").text_bytes == b'x := "a\xff";\n'
    assert translate("x = 'a\udcff';").text_bytes == b'x := "a\xff";\n'
    assert translate(b"x = 'a\xff';").text == 'x := "a\ufffd";\n'


def test_ten_megabytes() -> None:
    source = "x = 1; % a comment\n" * 550000
    result = translate(source, details=False)
    assert result.text == "x := 1; # a comment\n" * 550000
    assert len(result.to_html()) < 1000000


def test_the_view_of_many_messages_ends() -> None:
    result = translate("f(:, :, k, l) = []; \n" * 20000)
    assert len(result.messages) == 20000 and len(result.to_html()) < 3000000


@pytest.mark.parametrize("name", ["read", "answer", "allow", "find", "result_kind"])
@pytest.mark.parametrize(
    "error", [RuntimeError("mine"), KeyboardInterrupt()], ids=["error", "break"]
)
def test_callbacks_that_raise(tmp_path: Path, name: str, error: BaseException) -> None:
    (tmp_path / "main.m").write_text("y = f(1); z = g(y) + 1;\n")
    (tmp_path / "f.m").write_text("function y = f(x)\ny = x;\nend\n")
    calls = []

    def fail(argument: object) -> Any:
        calls.append(argument)
        raise error

    callback: dict[str, Any] = {name: fail}
    with pytest.raises(type(error)) as raised:
        translate(file=tmp_path / "main.m", **callback)
    assert raised.value is error and len(calls) == 1


def test_threads_wait_for_each_other() -> None:
    def run(number: int) -> bool:
        def answer(question: Question) -> Optional[str]:
            return f"{question.name}_{number}" if question.name in "ab" else None

        result = translate("x = a; y = b;", answer=answer)
        return result.text == f"x := a_{number};\ny := b_{number};\n"

    with ThreadPoolExecutor(8) as pool:
        assert all(pool.map(run, range(2000)))


def test_a_child_of_a_process_with_a_run_under_way() -> None:
    begun, done = threading.Event(), threading.Event()

    def answer(_: Question) -> None:
        begun.set()
        done.wait(0.2)

    thread = threading.Thread(target=translate, args=("x = a;",), kwargs={"answer": answer})
    thread.start()
    begun.wait()
    child = os.fork()
    if child == 0:
        os._exit(0 if translate("x = 2;").text == "x := 2;\n" else 1)
    thread.join()
    assert os.waitpid(child, 0)[1] == 0


def resident() -> int:
    """What the process holds, in bytes."""
    return int(Path("/proc/self/statm").read_text().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def test_many_runs_do_not_grow() -> None:
    def run(number: int) -> None:
        text = f"x = f({number}) + g; % ü\nx(a, b) = [];\ntry, y = (1; end\n"
        translate(text, answer=lambda q: "g" if q.name == "g" else None, read=lambda name: None)
        with pytest.raises(ZeroDivisionError):
            translate("x = f;", answer=lambda q: str(1 / 0))

    for number in range(500):
        run(number)
    before = resident()
    for number in range(5000):
        run(number)
    assert resident() - before < 1000000


def test_many_files_of_read() -> None:
    texts = {f"f{k}.m": f"function y = f{k}(x)\ny = '{'ab' * k}';\nend\n" for k in range(300)}
    calls = "\n".join(f"x{k} = f{k}(1);" for k in range(300))
    main = translate(
        file="main.m", read=lambda name: {**texts, "main.m": calls}.get(name), disk=False
    )
    assert all(f'"{"ab" * k}"' in main.text for k in range(300))


def test_what_crosses_processes() -> None:
    error = TranslationError(Status.TOO_LARGE, "too much")
    again = pickle.loads(pickle.dumps(error))
    assert (again.status, str(again)) == (Status.TOO_LARGE, "too much")
    result = translate("x = f(1)")
    assert pickle.loads(pickle.dumps(result)) == result
