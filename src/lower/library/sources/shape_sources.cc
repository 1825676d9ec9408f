// Shapes of arrays.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Length[] = R"(function most = length(x)
% The longest side of x; 0 without elements.
most = numel(x);
if most > 0
    most = 1;
    sides = size(x);
    for k = 1:numel(sides)
        if sides(k) > most
            most = sides(k);
        end
    end
end
)";

const char Size[] = R"(function [height, width, depth] = size_of(x, side)
% The sides of x: all, the one asked for, or one for each result.
sides = size(x);
if nargin > 1
    height = 1;
    if side <= numel(sides)
        height = sides(side);
    end
elseif nargout < 2
    height = sides;
else
    height = sides(1);
    width = sides(2);
    depth = 1;
    for k = 3:numel(sides)
        depth = depth*sides(k);
    end
    if nargout == 2
        width = width*depth;
    end
end
)";

const char IsVector[] = R"(function answer = isvector(x)
% Whether x is a row or a column.
answer = false;
if ndims(x) == 2 & (size(x, 1) == 1 | size(x, 2) == 1)
    answer = true;
end
)";

const char IsRow[] = R"(function answer = isrow(x)
% Whether x is a row.
answer = false;
if ndims(x) == 2 & size(x, 1) == 1
    answer = true;
end
)";

const char IsColumn[] = R"(function answer = iscolumn(x)
% Whether x is a column.
answer = false;
if ndims(x) == 2 & size(x, 2) == 1
    answer = true;
end
)";

const char IsSquare[] = R"(function answer = issquare(x)
% Whether x has as many rows as columns.
answer = false;
if ndims(x) == 2 & size(x, 1) == size(x, 2)
    answer = true;
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"length", 1, 1, 1, NEEDS_NOTHING, nullptr, Length, {}},
    {"size", 1, 2, 1, NEEDS_SECOND_SINGLE, nullptr, Size, {}},
    {"size", 1, 1, 3, NEEDS_NOTHING, nullptr, Size, {}},
    {"@size", 1, 2, 3, NEEDS_NOTHING, nullptr, Size, {}},
    {"isvector", 1, 1, 1, GIVES_TRUTH, nullptr, IsVector, {}},
    {"isrow", 1, 1, 1, GIVES_TRUTH, nullptr, IsRow, {}},
    {"iscolumn", 1, 1, 1, GIVES_TRUTH, nullptr, IsColumn, {}},
    {"issquare", 1, 1, 1, GIVES_TRUTH, nullptr, IsSquare, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources shape_sources() { return named_rows(Rows, Index); }
