// Many values that become one: of an array, or of each of its columns or rows.
#include "lower/library/needs.h"
#include "lower/library/sources.h"

namespace {

const char Folded[] = R"(function y = folded(f, x, side)
% What f makes of the columns (side 1) or the rows (2) of x; for side 0, of a row as a whole or else
% of the columns.
sides = size(x);
if side > 2
    y = x;
elseif side > 0
    across = 3 - side;
    if sides(across) == 1
        y = f(x);
    elseif side == 1
        y = zeros(1, sides(2));
        for k = 1:sides(2)
            y(k) = f(x(:, k));
        end
    else
        y = zeros(sides(1), 1);
        for k = 1:sides(1)
            y(k) = f(x(k, :));
        end
    end
elseif sides(1) == 1
    y = f(x);
elseif sides(1) + sides(2) == 0
    y = f(x);
else
    y = folded(f, x, 1);
end
)";

const char Sum[] = R"(function y = sum(x, side)
% Sums of columns, or along a side.
if ndims(x) > 2
    y = given_to('sum');
elseif nargin < 2
    y = folded(@total, x, 0);
else
    y = folded(@total, x, side);
end
)";

const char SumOfVector[] = R"(function y = total(x)
% The sum of a row or a column.
y = 0;
for k = 1:numel(x)
    y = y + x(k);
end
)";

const char Prod[] = R"(function y = prod(x, side)
% Products of columns, or along a side.
if ndims(x) > 2
    y = given_to('prod');
elseif nargin < 2
    y = folded(@product, x, 0);
else
    y = folded(@product, x, side);
end
)";

const char ProdOfVector[] = R"(function y = product(x)
% The product of a row or a column.
y = 1;
for k = 1:numel(x)
    y = y.*x(k);
end
)";

const char Mean[] = R"(function y = mean(x, side)
% Means of columns, or along a side.
if ndims(x) > 2
    y = given_to('mean');
elseif nargin < 2
    y = folded(@middle, x, 0);
else
    y = folded(@middle, x, side);
end
)";

const char MeanOfVector[] = R"(function y = middle(x)
% The mean of a row or a column.
y = 0;
for k = 1:numel(x)
    y = y + x(k);
end
y = y./numel(x);
)";

const char Any[] = R"(function y = any(x, side)
% Whether an element is a number other than zero: of columns, or along a side.
if ndims(x) > 2
    y = given_to('any');
elseif nargin < 2
    y = folded(@some, x, 0) == 1;
else
    y = folded(@some, x, side) == 1;
end
)";

const char AnyOfVector[] = R"(function y = some(x)
% Whether an element is a number other than zero of a row or a column, as 1 or 0.
y = 0;
for k = 1:numel(x)
    is_found = x(k) ~= 0 & x(k) == x(k);
    if is_found
        y = 1;
    end
end
)";

const char All[] = R"(function y = all(x, side)
% Whether no element is zero: of columns, or along a side.
if ndims(x) > 2
    y = given_to('all');
elseif nargin < 2
    y = folded(@every, x, 0) == 1;
else
    y = folded(@every, x, side) == 1;
end
)";

const char AllOfVector[] = R"(function y = every(x)
% Whether no element is zero of a row or a column, as 1 or 0.
y = 1;
for k = 1:numel(x)
    if x(k) == 0
        y = 0;
    end
end
)";

// clang-format off
const LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"folded", 3, 3, 1, FOR_LIBRARY, nullptr, Folded},
    {"total", 1, 1, 1, FOR_LIBRARY, nullptr, SumOfVector},
    {"sum", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, SumOfVector},
    {"sum", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Sum},
    {"product", 1, 1, 1, FOR_LIBRARY, nullptr, ProdOfVector},
    {"prod", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, ProdOfVector},
    {"prod", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Prod},
    {"middle", 1, 1, 1, FOR_LIBRARY, nullptr, MeanOfVector},
    {"mean", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, MeanOfVector},
    {"mean", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Mean},
    {"some", 1, 1, 1, FOR_LIBRARY, nullptr, AnyOfVector},
    {"any", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Any},
    {"every", 1, 1, 1, FOR_LIBRARY, nullptr, AllOfVector},
    {"all", 1, 2, 1, NEEDS_NO_TEXT, nullptr, All},
};
// clang-format on

}  // namespace

LibrarySources fold_sources() { return {Rows, sizeof Rows / sizeof *Rows}; }
