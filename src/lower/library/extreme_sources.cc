// The largest and the smallest.
#include "lower/library/needs.h"
#include "lower/library/sources.h"

namespace {

const char Chosen[] = R"(function y = chosen(is_first, a, b)
% Of each two elements that of a where is_first says so, else that of b.
y = b;
if numel(b) == 1
    y = a;
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
end

function y = element_of(x, k)
y = x;
if numel(x) > 1
    y = x(k);
end
end
)";

const char Max[] = R"(function [y, place] = max(x, other, side)
% The largest elements of columns, or along a side, and their places.
y = [];
place = [];
if nargin < 3
    along = 0;
else
    along = side;
end
if ndims(x) > 2
    [y, place] = given_to('max');
elseif numel(x) > 0
    y = folded(@largest, x, along);
    if nargout > 1
        place = folded(@place_of_largest, x, along);
    end
end
)";

const char MaxOfVector[] = R"(function [y, place] = largest(x)
% The largest element of a row or a column, and its place. What is no number comes last.
y = [];
place = [];
if numel(x) > 0
    y = x(1);
    place = 1;
    for k = 2:numel(x)
        element = x(k);
        comes_first = element > y | y ~= y & element == element;
        if comes_first
            y = element;
            place = k;
        end
    end
end
)";

const char MaxPlace[] = R"(function place = place_of_largest(x)
% The place of the largest element of a row or a column.
[y, place] = largest(x);
)";

const char MaxOfNumbers[] = R"(function y = larger(a, b)
% The larger one of two numbers.
y = b;
is_first = a > b | b ~= b;
if is_first
    y = a;
end
)";

const char MaxOfArrays[] = R"(function y = larger_ones(a, b)
% Of each two elements the larger one.
y = chosen(a > b | b ~= b, a, b);
)";

const char MaxAsValue[] = R"(function [y, place] = max_or_larger(x, other)
% The largest elements of x, or of each two elements the larger one.
if nargin > 1
    y = larger_ones(x, other);
elseif nargout > 1
    [y, place] = max(x);
else
    y = max(x);
end
)";

const char Min[] = R"(function [y, place] = min(x, other, side)
% The smallest elements of columns, or along a side, and their places.
y = [];
place = [];
if nargin < 3
    along = 0;
else
    along = side;
end
if ndims(x) > 2
    [y, place] = given_to('min');
elseif numel(x) > 0
    y = folded(@smallest, x, along);
    if nargout > 1
        place = folded(@place_of_smallest, x, along);
    end
end
)";

const char MinOfVector[] = R"(function [y, place] = smallest(x)
% The smallest element of a row or a column, and its place. What is no number comes last.
y = [];
place = [];
if numel(x) > 0
    y = x(1);
    place = 1;
    for k = 2:numel(x)
        element = x(k);
        comes_first = element < y | y ~= y & element == element;
        if comes_first
            y = element;
            place = k;
        end
    end
end
)";

const char MinPlace[] = R"(function place = place_of_smallest(x)
% The place of the smallest element of a row or a column.
[y, place] = smallest(x);
)";

const char MinOfNumbers[] = R"(function y = smaller(a, b)
% The smaller one of two numbers.
y = b;
is_first = a < b | b ~= b;
if is_first
    y = a;
end
)";

const char MinOfArrays[] = R"(function y = smaller_ones(a, b)
% Of each two elements the smaller one.
y = chosen(a < b | b ~= b, a, b);
)";

const char MinAsValue[] = R"(function [y, place] = min_or_smaller(x, other)
% The smallest elements of x, or of each two elements the smaller one.
if nargin > 1
    y = smaller_ones(x, other);
elseif nargout > 1
    [y, place] = min(x);
else
    y = min(x);
end
)";

// clang-format off
const LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"chosen", 3, 3, 1, FOR_LIBRARY, nullptr, Chosen},
    {"@max", 1, 2, 2, NEEDS_NOTHING, nullptr, MaxAsValue},
    {"max", 1, 1, 2, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, MaxOfVector},
    {"largest", 1, 1, 2, FOR_LIBRARY, nullptr, MaxOfVector},
    {"place_of_largest", 1, 1, 1, FOR_LIBRARY, nullptr, MaxPlace},
    {"max", 1, 1, 2, NEEDS_NO_TEXT, nullptr, Max},
    {"max", 3, 3, 2, NEEDS_NO_TEXT | NEEDS_EMPTY_SECOND, nullptr, Max},
    {"max", 2, 2, 1, NEEDS_NO_TEXT | NEEDS_SINGLES, nullptr, MaxOfNumbers},
    {"max", 2, 2, 1, NEEDS_NO_TEXT, nullptr, MaxOfArrays},
    {"larger_ones", 2, 2, 1, FOR_LIBRARY, nullptr, MaxOfArrays},
    {"@min", 1, 2, 2, NEEDS_NOTHING, nullptr, MinAsValue},
    {"min", 1, 1, 2, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, MinOfVector},
    {"smallest", 1, 1, 2, FOR_LIBRARY, nullptr, MinOfVector},
    {"place_of_smallest", 1, 1, 1, FOR_LIBRARY, nullptr, MinPlace},
    {"min", 1, 1, 2, NEEDS_NO_TEXT, nullptr, Min},
    {"min", 3, 3, 2, NEEDS_NO_TEXT | NEEDS_EMPTY_SECOND, nullptr, Min},
    {"min", 2, 2, 1, NEEDS_NO_TEXT | NEEDS_SINGLES, nullptr, MinOfNumbers},
    {"min", 2, 2, 1, NEEDS_NO_TEXT, nullptr, MinOfArrays},
    {"smaller_ones", 2, 2, 1, FOR_LIBRARY, nullptr, MinOfArrays},
};
// clang-format on

}  // namespace

LibrarySources extreme_sources() { return {Rows, sizeof Rows / sizeof *Rows}; }
