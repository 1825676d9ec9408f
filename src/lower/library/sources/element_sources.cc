// What is done with each element.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Abs[] = R"(function y = abs(x)
% Distances from zero.
y = x;
if ndims(x) > 2
    y = given_to('abs');
elseif numel(x) > 0
    if x.' == x'
        y = x.*(1 - 2*(x < 0));
    else
        y = sqrt(x.*conj(x));
    end
end
)";

const char IsNan[] = R"(function answer = isnan(x)
% What is not equal to itself is no number.
answer = x ~= x;
)";

const char Find[] = R"(function places = find(x, count)
% Where x is not zero; of these places count at most.
chosen = x ~= 0;
places = 1:numel(x);
places = places(chosen(:).');
if size(x, 1) ~= 1
    places = places(:);
end
if nargin > 1
    if numel(places) > count
        places = places(1:count);
    end
end
)";

const char FindFirst[] = R"(function places = find_first(x, count, order)
% The first places where x is not zero.
places = find(x, count);
)";

const char FindPlaces[] = R"(function [row, col, values] = find_places(x)
% The rows and columns in which x is not zero, and what stands there.
row = find(x);
col = row;
values = row;
height = size(x, 1);
for k = 1:numel(row)
    place = row(k);
    values(k) = x(place);
    width = 1;
    while place > height
        place = place - height;
        width = width + 1;
    end
    row(k) = place;
    col(k) = width;
end
)";

const char Nnz[] = R"(function count = nnz(x)
% How many elements are not zero.
count = 0;
for k = 1:numel(x)
    if x(k) ~= 0
        count = count + 1;
    end
end
)";

// Words: the function, no values, the form of some, what they are.
const char Apply[] = R"(function y = $1(f, x, other)
% $4 of f for the elements of x, or of x and other, in the shape of x.
y = $2;
if numel(x) > 0
    if nargin < 3
        y = $3(called(f, x));
    else
        y = $3(called(f, x, other));
    end
    if size(x, 1) ~= 1
        y = reshape(y, size(x));
    end
end
)";

const char IsEqual[] = R"(function answer = isequal(one, other)
% Whether two arrays of numbers are the same.
answer = false;
if ndims(one) == ndims(other)
    if size(one) == size(other)
        answer = true;
        for k = 1:numel(one)
            if one(k) ~= other(k)
                answer = false;
            end
        end
    end
end
)";

// Words: the function, what it gives of real numbers, of others.
const char ComplexPart[] = R"(function y = $1(x)
% The $1 parts of numbers.
y = x + 0;
if ndims(x) > 2
    y = given_to('$1');
elseif numel(x) > 0
    if x.' == x'
        y = $2;
    elseif x - x == 0
        y = $3;
    else
        y = given_to('$1');
    end
end
)";

const char Num2Cell[] = R"(function c = num2cell(x)
% A cell for each number.
c = cell(size(x));
for k = 1:numel(x)
    c{k} = x(k);
end
)";

const char Cell2Mat[] = R"(function y = cell2mat(c)
% The arrays that a cell holds, joined.
y = [];
if ndims(c) > 2
    y = given_to('cell2mat');
elseif holds_texts(c)
    y = given_to('cell2mat');
elseif size(c, 1) == 1
    y = [c{:}];
elseif numel(c) > 0
    lines = cell(1, size(c, 1));
    for row = 1:size(c, 1)
        parts = cell(1, size(c, 2));
        for column = 1:size(c, 2)
            parts{column} = c{row, column};
        end
        lines{row} = [parts{:}];
    end
    y = vertcat(lines{:});
end
)";

const char Expanded[] = R"(function y = bsxfun(f, a, b)
% f of two matrices, of which rows, columns and single values are repeated.
sides = size(a);
others = size(b);
if ndims(a) > 2 | ndims(b) > 2 | numel(a) == 0 | numel(b) == 0
    y = given_to('bsxfun');
elseif sides(1) ~= others(1) & sides(1) ~= 1 & others(1) ~= 1
    y = given_to('bsxfun');
elseif sides(2) ~= others(2) & sides(2) ~= 1 & others(2) ~= 1
    y = given_to('bsxfun');
else
    height = larger(sides(1), others(1));
    width = larger(sides(2), others(2));
    left = repmat(a, height./sides(1), width./sides(2));
    right = repmat(b, height./others(1), width./others(2));
    y = f(left, right);
end
)";

const char Positions[] = R"(function places = positions(count, index)
% The positions, of so many, that an index or a mask selects.
places = 1:count;
places = places(index);
)";

// Words: the function, what the whole is, one element of it as a part.
const char PartOf[] = R"(function part = $1(x, index)
% What an index or a mask selects of $2, also where that is one element.
places = 1:numel(x);
places = places(index);
part = x(index);
if numel(places) == 1
    part = $3;
end
)";

const char LacksCell[] = R"(function answer = lacks_cell(c, k)
% Whether element k of a cell is not there, or without elements.
answer = true;
if k <= numel(c)
    if numel(c{k}) > 0
        answer = false;
    end
end
)";

const char LacksField[] = R"(function answer = lacks_field(c, k, name)
% Whether element k is not there, or without such a field.
answer = true;
if k <= numel(c)
    if numel(c{k}) > 0
        if isfield(c{k}, name)
            answer = false;
        end
    end
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"isequal", 2, 2, 1, NEEDS_NUMBERS | GIVES_TRUTH, nullptr, IsEqual, {}},
    {"abs", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Abs, {}},
    {"isnan", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_TEST | GIVES_TRUTH, nullptr, Asked,
     {"is_nan", "isnan(x)", "x"}},
    {"isnan", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_DENIED | GIVES_TRUTH, nullptr, Asked,
     {"not_nan", "~isnan(x)", "x"}},
    {"isnan", 1, 1, 1, NEEDS_NO_TEXT, nullptr, IsNan, {}},
    {"find", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Find, {}},
    {"find", 3, 3, 1, NEEDS_FIRST, nullptr, FindFirst, {}},
    {"find", 1, 1, 3, NEEDS_NO_TEXT, nullptr, FindPlaces, {}},
    {"nnz", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Nnz, {}},
    {"real", 1, 1, 1, NEEDS_NO_TEXT, nullptr, ComplexPart,
     {"real", "x + 0", "x./2 + conj(x)./2"}},
    {"imag", 1, 1, 1, NEEDS_NO_TEXT, nullptr, ComplexPart,
     {"imag", "0*(x == x)", "(x./2 - conj(x)./2)./1i"}},
    {"num2cell", 1, 1, 1, NEEDS_NUMBERS, nullptr, Num2Cell, {}},
    {"cell2mat", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Cell2Mat, {}},
    {"bsxfun", 3, 3, 1, NEEDS_NO_TEXT | NEEDS_PAIRING_FIRST, nullptr, Expanded, {}},
    {"%positions", 2, 2, 1, NEEDS_NOTHING, nullptr, Positions, {}},
    {"%cell_part", 2, 2, 1, NEEDS_NOTHING, nullptr, PartOf,
     {"cell_part", "a cell", "{x(places(1))}"}},
    {"%part", 2, 2, 1, NEEDS_NOTHING, nullptr, PartOf,
     {"part", "a cell or an array", "part_at(x, places(1))"}},
    {"%lacks_cell", 2, 2, 1, NEEDS_NOTHING, nullptr, LacksCell, {}},
    {"%lacks_field", 3, 3, 1, NEEDS_NOTHING, nullptr, LacksField, {}},
    {"apply", 2, 3, 1, NEEDS_NOTHING, nullptr, Apply, {"apply", "[]", "row_of", "The values"}},
    {"apply in cells", 2, 3, 1, NEEDS_NOTHING, nullptr, Apply,
     {"apply_in_cells", "{}", "cells_of", "Cells with the values"}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources element_sources() { return named_rows(Rows, Index); }
