"""The view for notebooks: well formed, nothing of a source as markup, lines beside each other."""

from __future__ import annotations

import re
from html.parser import HTMLParser

import pytest
from mtranslate import Translation, translate

EVIL = "</td><script>alert(1)</script>\"'&amp; <img src=x onerror=y>"
NO_END = {"meta"}


class Checker(HTMLParser):
    """Sees that elements are closed in turn, and collects what there is."""

    def __init__(self) -> None:
        super().__init__(convert_charrefs=True)
        self.open: list[str] = []
        self.tags: set[str] = set()
        self.attributes: list[tuple[str, str]] = []
        self.text = ""

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        self.tags.add(tag)
        self.attributes += [(name, value or "") for name, value in attrs]
        if tag not in NO_END:
            self.open.append(tag)

    def handle_endtag(self, tag: str) -> None:
        assert self.open.pop() == tag

    def handle_data(self, data: str) -> None:
        self.text += data


def checked(html: str) -> Checker:
    checker = Checker()
    checker.feed(html)
    checker.close()
    assert not checker.open
    assert not checker.tags & {"script", "img", "link", "iframe"}
    names = {name for name, _ in checker.attributes}
    assert names <= {
        "class",
        "id",
        "title",
        "href",
        "data-line",
        "lang",
        "charset",
        "name",
        "content",
    }
    ids = {value for name, value in checker.attributes if name == "id"}
    assert all(value[1:] in ids for name, value in checker.attributes if name == "href")
    assert "://" not in html
    return checker


@pytest.mark.parametrize(
    "translation",
    [
        translate(f"x = '{EVIL}'; % {EVIL}\nx = ({EVIL}\n"),
        translate('f(1 "<b>&amp;</td>")'),
        translate(f"x = '{EVIL}' + (", language="classic"),
        translate(file=f"{EVIL}.m", sources={f"{EVIL}.m": f"foo_{EVIL}"}, disk=False),
        translate("x = y(1);", answer=lambda question: EVIL),
        translate(""),
    ],
    ids=["text", "message", "classic", "file", "answer", "empty"],
)
def test_nothing_of_a_source_is_markup(translation: Translation) -> None:
    for html in (translation.to_html(), translation._repr_html_()):
        text = checked(html).text
        for line in (translation.source or "").splitlines():
            assert line.strip() in text
        for line in translation.text.splitlines():
            assert line in text
        for message in translation.messages:
            assert message.text in text


def beside(translation: Translation) -> list[tuple[str, str]]:
    """The rows of the view: numbers of lines of the source, and of the host text."""
    rows = re.findall(
        r"<tr[^>]*><td>(.*?)</td><td>(.*?)</td></tr>", translation.to_html(), re.DOTALL
    )
    return [
        (
            " ".join(re.findall(r'data-line="(\d+)"', a)),
            " ".join(re.findall(r'data-line="(\d+)"', b)),
        )
        for a, b in rows
    ]


def test_lines_stand_beside_each_other() -> None:
    source = (
        "y = f(1, ...\n  2);\n\nz = other(3);\nfunction y = f(x, y)\nif x\n  y = 2;\nend\nend\n"
    )
    files = {"main.m": source, "other.m": "function y = other(x)\ny = x;\nend\n"}
    result = translate(file="main.m", sources=files, disk=False)
    rows = dict(beside(result))
    lines = result.text.splitlines()

    def text_beside(number: int) -> str:
        return " ".join(lines[int(line) - 1].strip() for line in rows[str(number)].split())

    assert list(rows) == [*map(str, range(1, 10)), ""]
    assert [text_beside(n) for n in (1, 2, 3, 4, 7, 8)] == [
        "y := f(1, 2);",
        "",
        "",
        "z := other(3);",
        "y := 2;",
        "end if;",
    ]
    assert text_beside(5).startswith("f := proc( ") and "return" not in text_beside(5)
    assert text_beside(9).startswith("return y") and text_beside(9).endswith("end proc;")
    last = " ".join(lines[int(line) - 1] for line in rows[""].split())
    assert last.startswith("other := proc") and "f := proc" not in last
    shown = sorted(int(line) for lines_of_row in rows.values() for line in lines_of_row.split())
    assert shown == [n for n, line in enumerate(lines, 1) if line]


def test_messages_are_marked() -> None:
    html = translate("ä = 1; x = foo(1) + bar(2);\nx(a, b) = [];\n").to_html()
    marks = re.findall(r'<mark class="(\w+)" title="([^"]*)">(.*?)</mark> ?', html)
    assert ("warning", "foo") in [(kind, text) for kind, _, text in marks]
    assert ("gap", "x(a, b)") in [(kind, text) for kind, _, text in marks]
    assert any("is found nowhere [MT401]" in title for _, title, _ in marks)
    assert html.count("<details ") == html.count(" <a href=") > 2
