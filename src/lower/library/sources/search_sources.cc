// What is found in texts, and what is cut off.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char IsLine[] = R"(function answer = is_line(x)
% Whether x is a text of one row that begins with a printable character.
answer = false;
if holds_texts(x)
    answer = is_text(x, 'a');
end
)";

const char HasLetter[] = R"(function answer = has_letter(letters, x)
% Whether a character is one of the letters.
answer = false;
for k = 1:numel(letters)
    switch x
        case {letters(k)}
            answer = true;
            break
    end
end
)";

const char IsLetter[] = R"(function answer = is_letter(x)
% Whether x is a printable character.
answer = has_letter('etaoinsrhldcumfpgwybvkxjqzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 !"#$%&''()*+,-./:;<=>?@[\]^_`{|}~', x);
)";

const char StrFind[] = R"(function places = strfind(text, pattern)
% Where a pattern begins in a text.
places = [];
count = numel(pattern);
if numel(text) > 0
    if count == 0
        places = given_to('strfind');
    elseif is_line(text)
        for k = 1:numel(text) - count + 1
            switch text(k:k + count - 1)
                case {pattern}
                    places(numel(places) + 1) = k;
            end
        end
    else
        places = given_to('strfind');
    end
end
)";

const char FindStr[] = R"(function places = findstr(one, other)
% Where the shorter one of two texts begins in the other.
places = [];
if numel(one) > 0 & numel(other) > 0
    if numel(one) >= numel(other)
        places = strfind_text(one, other);
    else
        places = strfind_text(other, one);
    end
end
)";

// Where two places of the pattern overlap, the host knows what becomes of them.
const char StrRep[] = R"(function y = strrep(text, pattern, word)
% A text with a word in the places of a pattern.
y = text;
count = numel(pattern);
if numel(text) > 0
    if count == 0
        y = given_to('strrep');
    elseif is_line(text)
        places = strfind_text(text, pattern);
        if numel(places) > 0
            if has_overlaps(places, count)
                y = given_to('strrep');
            else
                y = with_words(text, places, count, word);
            end
        end
    else
        y = given_to('strrep');
    end
end
end

function answer = has_overlaps(places, count)
answer = false;
for k = 2:numel(places)
    if places(k) - places(k - 1) < count
        answer = true;
    end
end
end

function y = with_words(text, places, count, word)
y = text(1);
long = 0;
at = 1;
for k = 1:numel(places) + 1
    last = numel(text);
    if k <= numel(places)
        last = places(k) - 1;
    end
    for n = at:last
        long = long + 1;
        y(long) = text(n);
    end
    if k <= numel(places)
        for n = 1:numel(word)
            long = long + 1;
            y(long) = word(n);
        end
        at = places(k) + count;
    end
end
if long == 0
    y = '';
end
end
)";

// Other characters than a blank that may be cut off are the host's.
// Words: the function, whether the beginning may be cut, what is cut.
const char Trim[] = R"(function y = $1(x)
% A text without blanks $3.
y = x;
if numel(x) > 0
    if is_line(x)
        first = 1;
        last = numel(x);
        while last > 0 & has_letter(' ', x(last))
            last = last - 1;
        end
        if last == 0
            y = '';
        elseif is_letter(x(last))
            while $2 & has_letter(' ', x(first))
                first = first + 1;
            end
            if is_letter(x(first))
                y = x(first:last);
            else
                y = given_to('$1');
            end
        else
            y = given_to('$1');
        end
    else
        y = given_to('$1');
    end
end
)";

const char StrTok[] = R"(function [word, rest] = strtok(text, marks)
% What stands in front of the first mark, without marks before it, and what follows.
word = '';
rest = '';
if numel(text) > 0
    if is_line(text)
        [word, rest] = word_of(text, marks);
    else
        [word, rest] = given_to('strtok');
    end
end
end

function [word, rest] = word_of(text, marks)
word = '';
rest = '';
count = numel(text);
first = 1;
while first <= count & has_letter(marks, text(smaller(first, count)))
    first = first + 1;
end
last = first;
while last <= count & ~has_letter(marks, text(smaller(last, count)))
    last = last + 1;
end
if last > first
    word = text(first:last - 1);
end
if last <= count
    rest = text(last:count);
end
end
)";

const char StrTokAtBlanks[] = R"(function [word, rest] = strtok_at_blanks(text)
% The same with blanks as marks. Of a text with other white space it is the host's.
is_printable = true;
if is_line(text)
    for k = 1:numel(text)
        is_printable = is_printable & is_letter(text(k));
    end
end
if is_printable
    [word, rest] = strtok(text, ' ');
else
    [word, rest] = given_to('strtok');
end
)";

// Words: the function, what compares.
const char StrNCmp[] = R"(function answer = $1(one, other, count)
% $2 of the first characters of two texts.
answer = false;
if count > numel(one) & count > numel(other)
    if given_to('$1')
        answer = true;
    end
elseif count <= numel(one) & count <= numel(other)
    answer = $2(one(1:count), other(1:count));
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"is_line", 1, 1, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, IsLine, {}},
    {"has_letter", 2, 2, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, HasLetter, {}},
    {"is_letter", 1, 1, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, IsLetter, {}},
    {"strfind", 2, 2, 1, NEEDS_TEXTS_AFTER, nullptr, StrFind, {}},
    {"strfind_text", 2, 2, 1, FOR_LIBRARY, nullptr, StrFind, {}},
    {"findstr", 2, 2, 1, NEEDS_TEXT_FIRST, nullptr, FindStr, {}},
    {"findstr", 2, 2, 1, NEEDS_TEXT_LAST, nullptr, FindStr, {}},
    {"strrep", 3, 3, 1, NEEDS_TEXTS_AFTER, nullptr, StrRep, {}},
    {"deblank", 1, 1, 1, NEEDS_NOTHING, nullptr, Trim, {"deblank", "first < 1", "at its end"}},
    {"strtrim", 1, 1, 1, NEEDS_NOTHING, nullptr, Trim,
     {"strtrim", "first < last", "at its ends"}},
    {"strtok", 2, 2, 2, NEEDS_TEXTS_AFTER, nullptr, StrTok, {}},
    {"strtok", 1, 1, 2, NEEDS_NOTHING, nullptr, StrTokAtBlanks, {}},
    {"strncmp", 3, 3, 1, NEEDS_TEXTS | GIVES_TRUTH, nullptr, StrNCmp, {"strncmp", "same_text"}},
    {"strncmpi", 3, 3, 1, NEEDS_TEXTS | GIVES_TRUTH, nullptr, StrNCmp, {"strncmpi", "alike_text"}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources search_sources() { return named_rows(Rows, Index); }
