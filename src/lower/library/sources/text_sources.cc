// Texts.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Strcmp[] = R"(function answer = strcmp(one, other)
% Whether two texts are the same.
answer = false;
switch one
    case {other}
        answer = true;
end
)";

// Numbers are equal to the characters that have them as codes: the host's.
const char IsEqualText[] = R"(function answer = is_equal_text(one, other)
% Whether two values are the same, of which one is a text.
answer = same_text(one, other);
if ~answer
    if numel(one) == numel(other)
        if ~(holds_texts(one) & holds_texts(other))
            if given_to('isequal')
                answer = true;
            end
        end
    end
end
)";

// Words: the function, the argument that may be anything, the text.
const char StrcmpInTest[] = R"(function answer = $1(one, other)
% Whether $2 is the text, or a cell of nothing else.
answer = false;
switch $2
    case {$3}
        answer = true;
    otherwise
        found = 0;
        for k = 1:numel($2)
            switch $2(k)
                case {$3}
                    found = found + 1;
            end
        end
        if found > 0 & found == numel($2)
            answer = true;
            if numel($3) == 1
                if is_text($2, $3)
                    answer = false;
                end
            end
        end
end
)";

// Words: the function, the argument that may be anything, the text.
const char StrcmpDenied[] = R"(function answer = $1(one, other)
% Whether $2 is not the text, nor a cell that holds it.
answer = true;
switch $2
    case {$3}
        answer = false;
    otherwise
        for k = 1:numel($2)
            switch $2(k)
                case {$3}
                    answer = false;
            end
        end
        if ~answer
            if numel($3) == 1
                answer = is_text($2, $3);
            end
        end
end
)";

// Words: the function, the argument that may be anything, the text.
const char StrcmpAsValue[] = R"(function answer = $1(one, other)
% Whether $2 is the text, or which elements are, of a cell in a row. Of others the host says it.
answer = same_text(one, other);
if ~answer
    if numel($2) == 0
        answer = given_to('strcmp');
    elseif is_line($2)
        answer = false;
    elseif holds_texts($2) & size($2, 1) == 1
        found = 0*(1:numel($2));
        for k = 1:numel($2)
            if same_text($2(k), $3)
                found(k) = 1;
            end
        end
        answer = found == 1;
    else
        answer = given_to('strcmp');
    end
end
)";

// Words: the function, how long an element is, its characters that count, what they do.
const char StrMatch[] = R"(function places = $1(text, cells, option)
% Which elements are texts that $4 the text.
if numel(text) == 0
    places = given_to('strmatch');
else
    chosen = 0*(1:numel(cells));
    for k = 1:numel(cells)
        part = cells{k};
        if numel(part) $2 numel(text)
            chosen(k) = same_text($3, text);
        end
    end
    places = find(chosen);
    places = places(:);
end
)";

const char IsText[] = R"(function answer = is_text(x, letter)
% Whether x is the text of its elements, and no cells of the same characters.
answer = false;
copied = letter;
lengths = 0;
for k = 1:numel(x)
    lengths = lengths + numel(x(k));
    if lengths == k
        copied(k) = x(k);
    end
end
if lengths == numel(x)
    switch x
        case {copied}
            answer = true;
    end
end
)";

// Words: the function, what compares, its name.
const char StrcmpiOf[] = R"(function answer = $1(one, other)
% $2 of texts in small letters.
answer = $2(lower(one), lower(other));
)";

// Words: the function, the letters that are changed, what they become.
const char Letters[] = R"(function y = $1(x)
% Texts with letters of one kind.
y = x;
from = '$2';
into = '$3';
for k = 1:numel(x)
    part = x(k);
    if numel(part) > 1
        y(k) = $1(part);
    else
        for n = 1:26
            switch part
                case {from(n)}
                    y(k) = into(n);
            end
        end
    end
end
)";

const char Digits[] = R"(function y = digits(x, least)
% The digits of a whole number from 0 on, of so many at least.
power = 1;
count = 1;
while power*10 <= x | count < least
    power = power*10;
    count = count + 1;
end
all_digits = '0123456789';
y = '0';
for k = 1:count
    n = 1;
    while x >= power
        x = x - power;
        n = n + 1;
    end
    y(k) = all_digits(n);
    power = power./10;
end
)";

// Of numbers that are not finite, and of those of which a digit may be uncertain, the host's.
const char Int2Str[] = R"(function y = int2str(x)
% A number, rounded, in digits.
y = '0';
if numel(x) == 1
    distance = abs(x);
    if distance < 4503599627370496 & x == x'
        y = digits(round(distance), 1);
        if x <= -0.5
            y = signed(y);
        end
    else
        y = given_to('int2str');
    end
else
    y = given_to('int2str');
end
end

function y = signed(x)
y = '-';
for k = 1:numel(x)
    y(k + 1) = x(k);
end
end
)";

const char Num2Str[] = R"(function y = num2str(x)
% A number in digits, with four after the point or five in all.
y = '0';
if numel(x) == 1
    distance = abs(x);
    if x ~= x'
        y = given_to('num2str');
    elseif distance == round(distance)
        y = int2str(x);
    elseif distance < 100000000 & distance >= 0.0001
        places = 4;
        power = 10000;
        while distance*power < 10000
            places = places + 1;
            power = power*10;
        end
        nearest = round(distance*power);
        doubt = abs(abs(distance*power - nearest) - 0.5);
        if doubt < 0.01
            y = given_to('num2str');
        else
            y = with_point(digits(nearest, places + 1), places, x < 0);
        end
    else
        y = given_to('num2str');
    end
else
    y = given_to('num2str');
end
end

function y = with_point(x, places, is_negative)
zero = '0';
point = '.';
y = '-';
last = numel(x);
kept = true;
while kept
    kept = false;
    if places > 0
        switch x(last)
            case {zero}
                last = last - 1;
                places = places - 1;
                kept = true;
        end
    end
end
shift = 0;
if is_negative
    shift = 1;
end
for k = 1:last
    if k == last - places + 1
        y(k + shift) = point;
        shift = shift + 1;
    end
    y(k + shift) = x(k);
end
end
)";

const char Num2StrOfAny[] = R"(function y = text_of(x)
% A number in digits; a text stays.
y = x;
if holds_texts(x) == 0
    y = number_text(x);
end
)";

// Words: the function. Anything but a number of at most 15 digits is the host's.
const char Str2Num[] = R"(function y = $1(x)
% The number that a text spells: blanks, a sign, digits, perhaps a point among them, blanks.
marks = '0123456789.-+ ';
value = 0;
power = 1;
factor = 1;
count = 0;
state = 0;
for k = 1:numel(x)
    n = 0;
    for place = 1:14
        switch x(k)
            case {marks(place)}
                n = place;
        end
    end
    if n == 14
        if state > 0
            state = 4;
        end
    elseif n > 11 & state == 0
        state = 1;
        if n == 12
            factor = -1;
        end
    elseif n == 11 & state < 3
        state = 3;
    elseif n > 0 & n < 11 & state < 4
        value = 10*value + n - 1;
        count = count + 1;
        if state == 3
            power = 10*power;
        else
            state = 2;
        end
    else
        count = 99;
    end
end
if count > 0 & count < 16
    y = factor*value./power;
else
    y = given_to('$1');
end
)";

#define CAPITALS "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
#define SMALL "abcdefghijklmnopqrstuvwxyz"

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"strcmp", 2, 2, 1, NEEDS_TEXTS | GIVES_TRUTH, nullptr, Strcmp, {}},
    {"isequal", 2, 2, 1, NEEDS_TEXT_FIRST | GIVES_TRUTH, nullptr, IsEqualText, {}},
    {"isequal", 2, 2, 1, NEEDS_TEXT_LAST | GIVES_TRUTH, nullptr, IsEqualText, {}},
    {"strcmp", 2, 2, 1, NEEDS_TEST | NEEDS_TEXT_LAST | GIVES_TRUTH, nullptr, StrcmpInTest,
     {"is_same_text", "one", "other"}},
    {"strcmp", 2, 2, 1, NEEDS_TEST | NEEDS_TEXT_FIRST | GIVES_TRUTH, nullptr, StrcmpInTest,
     {"has_same_text", "other", "one"}},
    {"strcmp", 2, 2, 1, NEEDS_DENIED | NEEDS_TEXT_LAST | GIVES_TRUTH, nullptr, StrcmpDenied,
     {"is_other_text", "one", "other"}},
    {"strcmp", 2, 2, 1, NEEDS_DENIED | NEEDS_TEXT_FIRST | GIVES_TRUTH, nullptr, StrcmpDenied,
     {"has_other_text", "other", "one"}},
    {"strcmp", 2, 2, 1, NEEDS_TEXT_LAST, nullptr, StrcmpAsValue, {"which_same_text", "one", "other"}},
    {"strcmp", 2, 2, 1, NEEDS_TEXT_FIRST, nullptr, StrcmpAsValue, {"same_text_which", "other", "one"}},
    {"which_same_text", 2, 2, 1, FOR_LIBRARY, nullptr, StrcmpAsValue, {"which_same_text", "one", "other"}},
    {"same_text_which", 2, 2, 1, FOR_LIBRARY, nullptr, StrcmpAsValue, {"same_text_which", "other", "one"}},
    {"is_same_text", 2, 2, 1, FOR_LIBRARY, nullptr, StrcmpInTest, {"is_same_text", "one", "other"}},
    {"has_same_text", 2, 2, 1, FOR_LIBRARY, nullptr, StrcmpInTest, {"has_same_text", "other", "one"}},
    {"is_other_text", 2, 2, 1, FOR_LIBRARY, nullptr, StrcmpDenied, {"is_other_text", "one", "other"}},
    {"has_other_text", 2, 2, 1, FOR_LIBRARY, nullptr, StrcmpDenied, {"has_other_text", "other", "one"}},
    {"same_text", 2, 2, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, Strcmp, {}},
    {"alike_text", 2, 2, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, StrcmpiOf, {"strcmpi", "same_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_TEXTS | GIVES_TRUTH, nullptr, StrcmpiOf, {"strcmpi", "same_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_TEST | NEEDS_TEXT_LAST | GIVES_TRUTH, nullptr, StrcmpiOf,
     {"is_alike_text", "is_same_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_TEST | NEEDS_TEXT_FIRST | GIVES_TRUTH, nullptr, StrcmpiOf,
     {"has_alike_text", "has_same_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_DENIED | NEEDS_TEXT_LAST | GIVES_TRUTH, nullptr, StrcmpiOf,
     {"is_unlike_text", "is_other_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_DENIED | NEEDS_TEXT_FIRST | GIVES_TRUTH, nullptr, StrcmpiOf,
     {"has_unlike_text", "has_other_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_TEXT_LAST, nullptr, StrcmpiOf, {"which_alike_text", "which_same_text"}},
    {"strcmpi", 2, 2, 1, NEEDS_TEXT_FIRST, nullptr, StrcmpiOf, {"alike_text_which", "same_text_which"}},
    {"strmatch", 2, 2, 1, NEEDS_CELL_SECOND, nullptr, StrMatch,
     {"strmatch", ">=", "part(1:numel(text))", "begin with"}},
    {"strmatch", 3, 3, 1, NEEDS_CELL_SECOND | NEEDS_EXACT, nullptr, StrMatch,
     {"strmatch_exactly", "==", "part", "are"}},
    {"is_text", 2, 2, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, IsText, {}},
    {"lower", 1, 1, 1, NEEDS_NOTHING, nullptr, Letters, {"lower", CAPITALS, SMALL}},
    {"upper", 1, 1, 1, NEEDS_NOTHING, nullptr, Letters, {"upper", SMALL, CAPITALS}},
    {"digits", 2, 2, 1, FOR_LIBRARY, nullptr, Digits, {}},
    {"int2str", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Int2Str, {}},
    {"%d", 1, 1, 1, NEEDS_NOTHING, nullptr, Int2Str, {}},
    {"num2str", 1, 1, 1, NEEDS_NUMBERS, nullptr, Num2Str, {}},
    {"number_text", 1, 1, 1, FOR_LIBRARY, nullptr, Num2Str, {}},
    {"num2str", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Num2StrOfAny, {}},
    {"str2num", 1, 1, 1, NEEDS_NOTHING, nullptr, Str2Num, {"str2num"}},
    {"str2double", 1, 1, 1, NEEDS_NOTHING, nullptr, Str2Num, {"str2double"}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources text_sources() { return named_rows(Rows, Index); }
