"""MATLAB source to the language of a host computer-algebra system.

    >>> import mtranslate
    >>> print(mtranslate.translate("x = 2; y = x^2 + 1").text, end="")
    x := 2;
    y := x^2 + 1;
"""

from mtranslate._translate import explain, message_kinds, translate
from mtranslate._version import VERSION as __version__
from mtranslate.records import (
    HANDLE,
    RESULTS_UNKNOWN,
    RESULTS_VARY,
    Call,
    CallEnd,
    Comment,
    End,
    File,
    FileKind,
    Function,
    LinesKind,
    Message,
    MessageKind,
    Name,
    NameKind,
    Piece,
    Question,
    QuestionKind,
    Range,
    ResultKind,
    Search,
    SearchKind,
    Severity,
    Statement,
    Statistics,
    Status,
)
from mtranslate.rules import Rules, RulesError
from mtranslate.translation import Translation, TranslationError

__all__ = [
    "HANDLE",
    "RESULTS_UNKNOWN",
    "RESULTS_VARY",
    "Call",
    "CallEnd",
    "Comment",
    "End",
    "File",
    "FileKind",
    "Function",
    "LinesKind",
    "Message",
    "MessageKind",
    "Name",
    "NameKind",
    "Piece",
    "Question",
    "QuestionKind",
    "Range",
    "ResultKind",
    "Rules",
    "RulesError",
    "Search",
    "SearchKind",
    "Severity",
    "Statement",
    "Statistics",
    "Status",
    "Translation",
    "TranslationError",
    "__version__",
    "explain",
    "message_kinds",
    "translate",
]
