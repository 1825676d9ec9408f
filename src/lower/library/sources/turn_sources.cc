// Matrices that are turned, shifted, or built along their diagonals.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Rot90[] = R"(function y = rot90(x, times)
% A matrix turned by so many quarters, against the clock.
quarters = 1;
if nargin > 1
    quarters = mod(times, 4);
end
y = x;
if ndims(x) > 2
    y = given_to('rot90');
elseif quarters == 1
    y = flipud(x.');
elseif quarters == 2
    y = flipud(fliplr(x));
elseif quarters == 3
    y = fliplr(x.');
end
)";

const char Flip[] = R"(function y = flip(x, side)
% The same elements in the other direction: of a row, of columns or along a side.
y = x;
along = 1;
if nargin > 1
    along = side;
elseif size(x, 1) == 1
    along = 2;
end
if ndims(x) > 2
    y = given_to('flip');
elseif along == 1
    y = flipud(x);
elseif along == 2
    y = fliplr(x);
end
)";

const char CircShift[] = R"(function y = circshift(x, count, side)
% The elements moved on, in a row, in columns or along a side. The last ones come first.
y = x;
along = 1;
if nargin > 2
    along = side;
elseif size(x, 1) == 1
    along = 2;
end
if ndims(x) > 2
    y = given_to('circshift');
elseif numel(count) == 1
    if numel(x) > 1
        sides = size(x);
        if along == 1 & sides(1) > 1
            y = x(mod((0:sides(1) - 1) - count, sides(1)) + 1, :);
        elseif along == 2 & sides(2) > 1
            y = x(:, mod((0:sides(2) - 1) - count, sides(2)) + 1);
        end
    end
elseif numel(count) == 2
    y = circshift(circshift(x, count(1), 1), count(2), 2);
else
    y = given_to('circshift');
end
)";

const char Permute[] = R"(function y = permute(x, order)
% The sides in another order: a matrix as it is, or transposed.
y = x;
if ndims(x) > 2
    y = given_to('permute');
elseif order(1) == 2 & order(2) == 1
    y = x.';
elseif order(1) ~= 1 | order(2) ~= 2
    y = given_to('permute');
end
)";

const char Squeeze[] = R"(function y = squeeze(x)
% Without sides of 1. A matrix has two sides in any case.
y = x;
if ndims(x) > 2
    y = given_to('squeeze');
end
)";

const char Toeplitz[] = R"(function y = toeplitz(column, line)
% Each diagonal has one value, from the first column and the first row.
above = column;
below = column;
if nargin > 1
    above = line;
elseif numel(column) > 0
    below = conj(column);
    below(1) = column(1);
end
if numel(below) == 1 & numel(above) == 1
    y = column;
else
    y = zeros(numel(below), numel(above));
    for row = 1:numel(below)
        for place = 1:numel(above)
            if row < place
                y(row, place) = above(place - row + 1);
            else
                y(row, place) = below(row - place + 1);
            end
        end
    end
end
)";

const char Hankel[] = R"(function y = hankel(column, line)
% Each diagonal from right to left has one value, from the first column and the last row.
height = numel(column);
width = height;
if nargin > 1
    width = numel(line);
end
if height == 1 & width == 1
    y = column;
else
    y = zeros(height, width);
    for row = 1:height
        for place = 1:width
            shift = row + place - 1;
            if shift <= height
                y(row, place) = column(shift);
            elseif nargin > 1
                y(row, place) = line(shift - height + 1);
            end
        end
    end
end
)";

const char Ndgrid[] = R"(function [x, y] = ndgrid(down, across)
% One value in every column of x, the other in every row of y.
if nargin < 2
    [x, y] = ndgrid(down, down);
else
    values = down(:);
    x = joined(values, numel(across));
    values = across(:);
    line = values.';
    y = stacked(line, numel(down));
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"rot90", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Rot90, {}},
    {"flip", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Flip, {}},
    {"circshift", 2, 3, 1, NEEDS_NO_TEXT, nullptr, CircShift, {}},
    {"permute", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Permute, {}},
    {"squeeze", 1, 1, 1, NEEDS_NOTHING, nullptr, Squeeze, {}},
    {"toeplitz", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Toeplitz, {}},
    {"hankel", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Hankel, {}},
    {"ndgrid", 1, 2, 2, NEEDS_NO_TEXT | NEEDS_TWO_RESULTS, nullptr, Ndgrid, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources turn_sources() { return named_rows(Rows, Index); }
