// The largest and the smallest.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char ElementOf[] = R"(function y = element_of(x, k)
% An element, or x itself where it is a single value.
y = x;
if numel(x) > 1
    y = x(k);
end
)";

const char Chosen[] = R"(function y = chosen(is_first, a, b)
% Of each two elements that of a where is_first says so, else that of b.
y = b + 0;
if numel(b) == 1
    y = a + 0;
end
if numel(y) == 1
    y = b;
    if is_first
        y = a;
    end
else
    for k = 1:numel(y)
        if is_first(k)
            y(k) = element_of(a, k);
        else
            y(k) = element_of(b, k);
        end
    end
end
)";

// Words: the function, that of vectors, that of two values, what comes first.
const char Extreme[] = R"(function [y, place] = $1(x, other, side)
% The $2 elements of columns, or along a side, and their places.
y = [];
place = [];
if nargin < 3
    along = 0;
else
    along = side;
end
if ndims(x) > 2 | ~is_plain(x)
    [y, place] = given_to('$1');
elseif numel(x) > 0
    y = folded(@$2, x, along);
    if nargout > 1
        place = folded(@place_of_$2, x, along);
    end
end
)";

const char ExtremeOfVector[] = R"(function [y, place] = $2(x)
% The $2 element of a row or a column, and its place. What is no number comes last.
y = [];
place = [];
if ~is_plain(x)
    [y, place] = builtin('$1', x);
elseif numel(x) > 0
    y = x(1) + 0;
    place = 1;
    for k = 2:numel(x)
        element = x(k) + 0;
        comes_first = element $4 y | y ~= y & element == element;
        if comes_first
            y = element;
            place = k;
        end
    end
end
)";

const char ExtremePlace[] = R"(function place = place_of_$2(x)
% The place of the $2 element of a row or a column.
[y, place] = $2(x);
)";

const char ExtremeOfNumbers[] = R"(function y = $3(a, b)
% The $3 one of two numbers.
y = b;
if is_rounded(a) | is_rounded(b)
    y = builtin('$1', a, b);
else
    is_first = a $4 b | b ~= b;
    if is_first
        y = a;
    end
end
)";

const char ExtremeOfArrays[] = R"(function y = $3_ones(a, b)
% Of each two elements the $3 one.
if is_rounded(a) | is_rounded(b)
    y = builtin('$1', a, b);
else
    y = chosen(a $4 b | b ~= b, a, b);
end
)";

const char ExtremeAsValue[] = R"(function [y, place] = $1_or_$3(x, other)
% The $2 elements of x, or of each two elements the $3 one.
if nargin > 1
    y = $3_ones(x, other);
elseif nargout > 1
    [y, place] = $1(x);
else
    y = $1(x);
end
)";

#define LARGEST \
    { "max", "largest", "larger", ">" }
#define SMALLEST \
    { "min", "smallest", "smaller", "<" }

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"element_of", 2, 2, 1, FOR_LIBRARY, nullptr, ElementOf, {}},
    {"chosen", 3, 3, 1, FOR_LIBRARY, nullptr, Chosen, {}},
    {"@max", 1, 2, 2, NEEDS_NOTHING, nullptr, ExtremeAsValue, LARGEST},
    {"max", 1, 1, 2, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, ExtremeOfVector, LARGEST},
    {"largest", 1, 1, 2, FOR_LIBRARY, nullptr, ExtremeOfVector, LARGEST},
    {"place_of_largest", 1, 1, 1, FOR_LIBRARY, nullptr, ExtremePlace, LARGEST},
    {"max", 1, 1, 2, NEEDS_NO_TEXT, nullptr, Extreme, LARGEST},
    {"max", 3, 3, 2, NEEDS_NO_TEXT | NEEDS_EMPTY_SECOND, nullptr, Extreme, LARGEST},
    {"max", 2, 2, 1, NEEDS_NO_TEXT | NEEDS_SINGLES, nullptr, ExtremeOfNumbers, LARGEST},
    {"max", 2, 2, 1, NEEDS_NO_TEXT, nullptr, ExtremeOfArrays, LARGEST},
    {"larger", 2, 2, 1, FOR_LIBRARY, nullptr, ExtremeOfNumbers, LARGEST},
    {"larger_ones", 2, 2, 1, FOR_LIBRARY, nullptr, ExtremeOfArrays, LARGEST},
    {"@min", 1, 2, 2, NEEDS_NOTHING, nullptr, ExtremeAsValue, SMALLEST},
    {"min", 1, 1, 2, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, ExtremeOfVector, SMALLEST},
    {"smallest", 1, 1, 2, FOR_LIBRARY, nullptr, ExtremeOfVector, SMALLEST},
    {"place_of_smallest", 1, 1, 1, FOR_LIBRARY, nullptr, ExtremePlace, SMALLEST},
    {"min", 1, 1, 2, NEEDS_NO_TEXT, nullptr, Extreme, SMALLEST},
    {"min", 3, 3, 2, NEEDS_NO_TEXT | NEEDS_EMPTY_SECOND, nullptr, Extreme, SMALLEST},
    {"min", 2, 2, 1, NEEDS_NO_TEXT | NEEDS_SINGLES, nullptr, ExtremeOfNumbers, SMALLEST},
    {"min", 2, 2, 1, NEEDS_NO_TEXT, nullptr, ExtremeOfArrays, SMALLEST},
    {"smaller", 2, 2, 1, FOR_LIBRARY, nullptr, ExtremeOfNumbers, SMALLEST},
    {"smaller_ones", 2, 2, 1, FOR_LIBRARY, nullptr, ExtremeOfArrays, SMALLEST},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources extreme_sources() { return named_rows(Rows, Index); }
