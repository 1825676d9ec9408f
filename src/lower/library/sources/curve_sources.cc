// Polynomials, lines through points, and counts.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Polyval[] = R"(function y = polyval(factors, x)
% A polynomial, the highest power first, of each element.
if numel(factors) == 0
    y = zeros(size(x));
elseif numel(x) == 1
    y = factors(1);
else
    y = zeros(size(x)) + factors(1);
end
for k = 2:numel(factors)
    y = y.*x + factors(k);
end
)";

// What has fewer points than factors has several solutions.
const char Polyfit[] = R"(function factors = polyfit(x, y, degree)
% The polynomial of least squares through points.
if numel(x) <= degree
    factors = given_to('polyfit');
else
    powers = cell(1, degree + 1);
    for k = 0:degree
        powers{k + 1} = x(:).^(degree - k);
    end
    solution = [powers{:}]\y(:);
    factors = solution.';
end
)";

const char AreaUnder[] = R"(function areas = areas_under(x, y)
% The areas under a line from its first point to each one, y in a row or a column.
areas = 0;
if numel(y) > 1
    areas = zeros(size(y));
end
for k = 2:numel(y)
    areas(k) = areas(k - 1) + (x(k) - x(k - 1)).*(y(k - 1) + y(k))./2;
end
)";

// Words: the function, what follows the areas up to each point, how many that leaves, its places.
const char Trapz[] = R"(function y = $1(x, heights)
% The areas under lines through points, in a row or in columns.
if nargin < 2
    lines = x;
    places = 1:numel(x);
else
    lines = heights;
    places = x;
end
if numel(lines) == 0 | ndims(lines) > 2
    y = given_to('$1');
elseif size(places, 1) ~= 1 & size(places, 2) ~= 1
    y = given_to('$1');
elseif size(lines, 1) == 1 | size(lines, 2) == 1
    areas = areas_under(places, lines);
    y = areas$2;
else
    y = zeros($3, size(lines, 2));
    for n = 1:size(lines, 2)
        areas = areas_under(places, lines(:, n));
        y($4, n) = areas$2;
    end
end
)";

const char Interp1[] = R"(function y = interp1(x, heights, places)
% The heights of a line through points at places; what is outside is no number.
if size(heights, 1) ~= 1 & size(heights, 2) ~= 1 | numel(x) ~= numel(heights) | numel(x) < 2
    y = given_to('interp1');
else
    order = ordered(x);
    y = places + 0;
    for k = 1:numel(places)
        place = places(k);
        height = NaN;
        for n = 2:numel(x)
            left = x(order(n - 1));
            right = x(order(n));
            if left <= place & place <= right
                low = heights(order(n - 1));
                high = heights(order(n));
                if place == left
                    height = low;
                elseif place == right
                    height = high;
                else
                    height = low + (place - left)./(right - left).*(high - low);
                end
            end
        end
        y(k) = height;
    end
end
)";

const char Cross[] = R"(function y = cross(a, b)
% What is at right angles to two vectors of three numbers.
y = 0;
if numel(a) ~= 3 | numel(b) ~= 3
    y = given_to('cross');
elseif size(a, 1) ~= size(b, 1)
    y = given_to('cross');
else
    y = a + b;
    y(1) = a(2).*b(3) - a(3).*b(2);
    y(2) = a(3).*b(1) - a(1).*b(3);
    y(3) = a(1).*b(2) - a(2).*b(1);
end
)";

const char Histc[] = R"(function counts = histc(x, edges)
% How many elements are from one edge up to the next, and on the last one.
if size(x, 1) ~= 1 & size(x, 2) ~= 1
    counts = given_to('histc');
elseif numel(x) == 1
    counts = given_to('histc');
else
    counts = 0*(1:numel(edges));
    for k = 1:numel(x)
        for n = 1:numel(edges)
            if n == numel(edges)
                if x(k) == edges(n)
                    counts(n) = counts(n) + 1;
                end
            elseif x(k) >= edges(n) & x(k) < edges(n + 1)
                counts(n) = counts(n) + 1;
            end
        end
    end
    if size(x, 1) ~= 1
        counts = counts(:);
    end
end
)";

const char Accumarray[] = R"(function y = accumarray(places, values, sides)
% Sums of values in their places, zeros elsewhere.
if size(places, 2) > 2
    y = given_to('accumarray');
elseif size(places, 2) == 2
    if nargin < 3
        y = sparse(places(:, 1), places(:, 2), values);
    else
        y = sparse(places(:, 1), places(:, 2), values, sides(1), sides(2));
    end
elseif nargin < 3
    y = sparse(places, 1, values);
elseif numel(sides) == 2
    y = sparse(places, 1, values, sides(1), sides(2));
else
    y = given_to('accumarray');
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"polyval", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Polyval, {}},
    {"polyfit", 3, 3, 1, NEEDS_NO_TEXT, nullptr, Polyfit, {}},
    {"areas_under", 2, 2, 1, FOR_LIBRARY, nullptr, AreaUnder, {}},
    {"trapz", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Trapz, {"trapz", "(numel(areas))", "1", "1"}},
    {"cumtrapz", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Trapz, {"cumtrapz", "", "size(lines, 1)", ":"}},
    {"interp1", 3, 3, 1, NEEDS_NO_TEXT, nullptr, Interp1, {}},
    {"cross", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Cross, {}},
    {"histc", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Histc, {}},
    {"accumarray", 2, 3, 1, NEEDS_NO_TEXT, nullptr, Accumarray, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources curve_sources() { return named_rows(Rows, Index); }
