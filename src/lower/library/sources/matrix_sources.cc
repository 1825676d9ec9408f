// Parts of matrices, and sums along them.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

// Words: the function, the rows, the columns.
const char Flip[] = R"(function y = $1(x)
% The $1 of a matrix: the same elements in the other direction.
y = x;
if ndims(x) > 2
    y = given_to('$1');
elseif numel(x) > 0
    y = x($2, $3);
end
)";

const char Diff[] = R"(function y = diff(x)
% What is between neighbours in a row or in columns.
y = [];
height = size(x, 1);
if ndims(x) > 2
    y = given_to('diff');
elseif height == 1
    if numel(x) > 1
        y = x(2:numel(x)) - x(1:numel(x) - 1);
    end
elseif height > 1
    y = x(2:height, :) - x(1:height - 1, :);
end
)";

// Words: the function, the operator, what is added up.
const char Cumulation[] = R"(function y = $1(x, side)
% $3 of the elements so far, in a row, in columns or along a side.
y = x + 0;
along = 1;
if nargin > 1
    along = side;
elseif size(x, 1) == 1
    along = 2;
end
if ndims(x) > 2 | is_rounded(x)
    y = given_to('$1');
elseif along == 1
    for k = 2:size(x, 1)
        y(k, :) = y(k - 1, :) $2 x(k, :);
    end
elseif along == 2
    for k = 2:size(x, 2)
        y(:, k) = y(:, k - 1) $2 x(:, k);
    end
end
)";

const char Diag[] = R"(function y = diag(x)
% A square matrix with the elements on its diagonal, or the diagonal of a matrix.
y = [];
count = numel(x);
if ndims(x) > 2 | is_rounded(x)
    y = given_to('diag');
elseif count == 1
    y = x;
elseif count > 0
    if size(x, 1) == 1 | size(x, 2) == 1
        y = zeros(count, count);
        for k = 1:count
            y(k, k) = x(k);
        end
    else
        count = smaller(size(x, 1), size(x, 2));
        y = zeros(count, 1);
        for k = 1:count
            y(k) = x(k, k);
        end
    end
end
)";

const char Trace[] = R"(function y = trace(x)
% The sum of the diagonal.
y = 0;
if is_rounded(x)
    y = given_to('trace');
elseif numel(x) == 1
    y = x;
else
    for k = 1:smaller(size(x, 1), size(x, 2))
        y = y + x(k, k);
    end
end
)";

// Words: the function, where an element goes.
const char Triangle[] = R"(function y = $1(x, shift)
% A matrix without what is on one side of a diagonal.
y = x;
border = 0;
if nargin > 1
    border = shift;
end
if numel(x) == 1
    if 0 $2 border
        y = 0;
    end
else
    for row = 1:size(x, 1)
        for column = 1:size(x, 2)
            if column - row $2 border
                y(row, column) = 0;
            end
        end
    end
end
)";

const char Kron[] = R"(function y = kron(a, b)
% A block for each element of a: the element times b.
y = [];
if numel(a) == 1
    y = a.*b;
elseif numel(a) > 1
    lines = cell(1, size(a, 1));
    for row = 1:size(a, 1)
        blocks = cell(1, size(a, 2));
        for column = 1:size(a, 2)
            blocks{column} = a(row, column).*b;
        end
        lines{row} = [blocks{:}];
    end
    y = vertcat(lines{:});
end
)";

const char VarOfVector[] = R"(function y = variance(x)
% The variance of a row or a column.
y = 0;
count = numel(x);
if count > 1
    distances = x - middle(x);
    y = total(distances.*conj(distances))./(count - 1);
elseif count == 1
    y = x - x;
else
    y = NaN;
end
)";

const char StdOfVector[] = R"(function y = deviation(x)
% The standard deviation of a row or a column.
y = sqrt(variance(x));
)";

const char MedianOfVector[] = R"(function y = median_of(x)
% The median of a row or a column.
y = NaN;
count = numel(x);
if count > 0
    places = ordered(x);
    half = whole_part(count./2);
    y = x(places(half + 1));
    if half + half == count
        y = (x(places(half)) + y)./2;
    end
    largest_one = x(places(count));
    if largest_one ~= largest_one
        y = largest_one;
    end
end
)";

const char Norm[] = R"(function y = norm(x)
% The length of a row or a column.
y = 0;
if size(x, 1) == 1 | size(x, 2) == 1
    y = sqrt(total(x.*conj(x)));
elseif numel(x) > 0
    y = given_to('norm');
end
)";

const char NormOf[] = R"(function y = norm_of(x, power)
% The norm of a row or a column for 1, 2 and Inf, or of a matrix for 1 and Inf.
is_vector = size(x, 1) == 1 | size(x, 2) == 1;
if numel(x) == 0
    y = 0;
elseif power == 2 & is_vector
    y = norm(x);
elseif power == 1 & is_vector
    y = total(abs(x));
elseif power == Inf & is_vector
    y = largest(abs(x));
elseif power == 1
    y = max(sum(abs(x), 1));
elseif power == Inf
    y = max(sum(abs(x), 2));
else
    y = given_to('norm');
end
)";

const char Dot[] = R"(function y = dot(a, b)
% The sum of the products of two rows or columns.
y = 0;
if size(a, 1) ~= 1 & size(a, 2) ~= 1
    y = given_to('dot');
elseif numel(a) ~= numel(b)
    y = given_to('dot');
else
    for k = 1:numel(a)
        y = y + conj(a(k)).*b(k);
    end
end
)";

const char Sub2Ind[] = R"(function place = sub2ind(sides, row, column)
% Places in a matrix, counted down.
place = row + (column - 1)*sides(1);
)";

const char Ind2Sub[] = R"(function [row, column] = ind2sub(sides, place)
% Rows and columns of places in a matrix, which are counted down.
column = floor((place - 1)./sides(1)) + 1;
row = place - (column - 1)*sides(1);
)";

const char Spread[] = R"(function y = spread(rows, columns, values, height, width, room)
% A matrix with sums of values in their places, zeros elsewhere.
if nargin > 3
    y = zeros(height, width);
else
    y = zeros(max(rows(:)), max(columns(:)));
end
count = larger(numel(rows), larger(numel(columns), numel(values)));
for k = 1:count
    row = element_of(rows, k);
    column = element_of(columns, k);
    y(row, column) = y(row, column) + element_of(values, k);
end
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"fliplr", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Flip, {"fliplr", ":", "size(x, 2):-1:1"}},
    {"flipud", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Flip, {"flipud", "size(x, 1):-1:1", ":"}},
    {"diff", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Diff, {}},
    {"cumsum", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Cumulation, {"cumsum", "+", "Sums"}},
    {"cumprod", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Cumulation, {"cumprod", ".*", "Products"}},
    {"diag", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Diag, {}},
    {"trace", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Trace, {}},
    {"tril", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Triangle, {"tril", ">"}},
    {"triu", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Triangle, {"triu", "<"}},
    {"kron", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Kron, {}},
    {"variance", 1, 1, 1, FOR_LIBRARY, nullptr, VarOfVector, {}},
    {"deviation", 1, 1, 1, FOR_LIBRARY, nullptr, StdOfVector, {}},
    {"median_of", 1, 1, 1, FOR_LIBRARY, nullptr, MedianOfVector, {}},
    {"norm", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Norm, {}},
    {"norm", 2, 2, 1, NEEDS_NO_TEXT, nullptr, NormOf, {}},
    {"dot", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Dot, {}},
    {"sub2ind", 3, 3, 1, NEEDS_NO_TEXT, nullptr, Sub2Ind, {}},
    {"ind2sub", 2, 2, 2, NEEDS_NO_TEXT | NEEDS_TWO_RESULTS, nullptr, Ind2Sub, {}},
    {"sparse", 3, 3, 1, NEEDS_NO_TEXT, nullptr, Spread, {}},
    {"sparse", 5, 6, 1, NEEDS_NO_TEXT, nullptr, Spread, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources matrix_sources() { return named_rows(Rows, Index); }
