// Arrays that are made.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Filled[] = R"(function x = filled(value, height, width)
% A matrix of one value. Without a width the height stands for both sides.
x = [];
if nargin < 3
    if numel(height) == 1
        x = filled(value, height, height);
    elseif numel(height) == 2
        x = filled(value, height(1), height(2));
    else
        x = builtin('zeros', height) + value;
    end
elseif height > 0
    if width > 0
        line = zeros(1, width) + value;
        x = stacked(line, height);
    else
        line = zeros(height, 1);
        x = line(:, 1:0);
    end
elseif width > 0
    line = zeros(1, width);
    x = line(1:0, :);
end
)";

const char FilledSpare[] = R"(function x = filled_beforehand(value, height, width, room)
% The same, with room for so many others, which arrays have in any case.
x = zeros(height, width) + value;
)";

const char Cells[] = R"(function c = cells(height, width)
% Empty cells. Without a width the height stands for both sides.
line = {};
c = line(1:0, :);
if nargin < 2
    if numel(height) == 1
        c = cells(height, height);
    elseif numel(height) == 2
        c = cells(height(1), height(2));
    else
        c = builtin('cell', height);
    end
elseif height > 0
    if width > 0
        line = cell(1, width);
        c = stacked(line, height);
    else
        line = cell(height, 1);
        c = line(:, 1:0);
    end
elseif width > 0
    line = cell(1, width);
    c = line(1:0, :);
end
)";

const char Eye[] = R"(function x = eye(height, width)
% Ones where row and column are the same, zeros elsewhere.
if nargin < 2
    x = zeros(height);
else
    x = zeros(height, width);
end
if numel(x) == 1
    x = 1;
elseif numel(x) > 1
    count = size(x, 1);
    if size(x, 2) < count
        count = size(x, 2);
    end
    for k = 1:count
        x(k, k) = 1;
    end
end
)";

const char Repmat[] = R"(function y = repmat(x, height, width)
% Copies of x side by side and above each other.
y = [];
if nargin < 3
    if numel(height) == 1
        y = repmat(x, height, height);
    elseif numel(height) == 2
        y = repmat(x, height(1), height(2));
    else
        y = builtin('repmat', x, height);
    end
elseif height > 0
    if width > 0
        line = joined(x, width);
        y = stacked(line, height);
    end
end
)";

const char Reshape[] = R"(function y = reshape(x, height, width)
% The elements of x, column by column.
y = [];
if nargin < 3
    if numel(height) == 2
        y = reshape(x, height(1), height(2));
    else
        y = builtin('reshape', x, height);
    end
elseif isempty(height)
    y = reshape(x, numel(x)./width, width);
elseif isempty(width)
    y = reshape(x, height, numel(x)./height);
elseif numel(x) > 0
    values = x(:);
    if height == 1
        y = values.';
    else
        parts = cell(1, width);
        for k = 1:width
            parts{k} = values((k - 1)*height + 1:k*height);
        end
        y = [parts{:}];
    end
end
)";

const char Linspace[] = R"(function x = linspace(first, last, count)
% Numbers with the same distance between each other.
if nargin < 3
    x = linspace(first, last, 100);
elseif numel(first) ~= 1 | numel(last) ~= 1
    x = given_to('linspace');
else
    x = last;
    if count > 1
        x = first + (0:count - 1)*((last - first)./(count - 1));
        x(count) = last;
    end
end
)";

const char Meshgrid[] = R"(function [x, y] = meshgrid(across, down)
% One value in every row of x, the other in every column of y.
if nargin < 2
    [x, y] = meshgrid(across, across);
else
    values = across(:);
    line = values.';
    x = stacked(line, numel(down));
    values = down(:);
    y = joined(values, numel(across));
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"zeros", 1, 2, 1, NEEDS_NO_TEXT, "0", Filled, {}},
    {"ones", 1, 2, 1, NEEDS_NO_TEXT, "1", Filled, {}},
    {"sparse", 2, 2, 1, NEEDS_NO_TEXT, "0", Filled, {}},
    {"spalloc", 2, 3, 1, NEEDS_NO_TEXT, "0", FilledSpare, {}},
    {"speye", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Eye, {}},
    {"Inf", 1, 2, 1, NEEDS_NO_TEXT, "1./0", Filled, {}},
    {"inf", 1, 2, 1, NEEDS_NO_TEXT, "1./0", Filled, {}},
    {"NaN", 1, 2, 1, NEEDS_NO_TEXT, "0./0", Filled, {}},
    {"nan", 1, 2, 1, NEEDS_NO_TEXT, "0./0", Filled, {}},
    {"cell", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Cells, {}},
    {"eye", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Eye, {}},
    {"repmat", 2, 3, 1, NEEDS_JOINABLE, nullptr, Repmat, {}},
    {"reshape", 2, 3, 1, NEEDS_JOINABLE, nullptr, Reshape, {}},
    {"linspace", 2, 3, 1, NEEDS_NO_TEXT, nullptr, Linspace, {}},
    {"meshgrid", 1, 2, 2, NEEDS_NO_TEXT, nullptr, Meshgrid, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources array_sources() { return named_rows(Rows, Index); }
