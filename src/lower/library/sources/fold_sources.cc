// Many values that become one: of an array, or of each of its columns or rows.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char Folded[] = R"(function y = folded(f, x, side)
% What f makes of the columns (side 1) or the rows (2) of x; for side 0, of a row as a whole or else
% of the columns. Along a further side each element is alone.
sides = size(x);
if numel(x) == 1
    y = f(x);
elseif side > 2
    y = x;
    for k = 1:numel(x)
        y(k) = f(x(k));
    end
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

// Words: the function, that of vectors, what follows its value, what the values are.
const char Fold[] = R"(function y = $1(x, side)
% $4: of columns, or along a side.
if ndims(x) > 2
    y = given_to('$1');
elseif nargin < 2
    y = folded(@$2, x, 0)$3;
else
    y = folded(@$2, x, side)$3;
end
)";

// Words: the function, that of vectors, MATLAB's, what the values are.
const char WeightedFold[] = R"(function y = $1(x, weight, side)
% $4 along a side, with the usual weight.
if ndims(x) > 2
    y = given_to('$3');
else
    y = folded(@$2, x, side);
end
)";

// Words: the function, its value for no elements, the operator, MATLAB's function. What an integer
// class cannot hold is the host's.
const char FoldOfVector[] = R"(function y = $1(x)
% The $4 of a row or a column.
y = $2;
if is_rounded(x)
    y = builtin('$4', x);
else
    for k = 1:numel(x)
        y = y $3 x(k);
    end
end
)";

const char MeanOfVector[] = R"(function y = middle(x)
% The mean of a row or a column.
y = total(x)./numel(x);
)";

// Words: the function, what decides, the value then, the value else.
const char Decision[] = R"(function y = $1(x)
% $3 when $2 for an element of a row or a column, else $4.
y = $4;
for k = 1:numel(x)
    element = x(k);
    is_found = $2;
    if is_found
        y = $3;
    end
end
)";

#define TOTAL \
    { "total", "0", "+", "sum" }
#define PRODUCT \
    { "product", "1", ".*", "prod" }

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"folded", 3, 3, 1, FOR_LIBRARY, nullptr, Folded, {}},
    {"total", 1, 1, 1, FOR_LIBRARY, nullptr, FoldOfVector, TOTAL},
    {"sum", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, FoldOfVector, TOTAL},
    {"sum", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Fold, {"sum", "total", "", "Sums"}},
    {"product", 1, 1, 1, FOR_LIBRARY, nullptr, FoldOfVector, PRODUCT},
    {"prod", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, FoldOfVector, PRODUCT},
    {"prod", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Fold, {"prod", "product", "", "Products"}},
    {"middle", 1, 1, 1, FOR_LIBRARY, nullptr, MeanOfVector, {}},
    {"mean", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR, nullptr, MeanOfVector, {}},
    {"mean", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Fold, {"mean", "middle", "", "Means"}},
    {"var", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Fold, {"var", "variance", "", "Variances"}},
    {"std", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Fold, {"std", "deviation", "", "Deviations"}},
    {"var", 3, 3, 1, NEEDS_NO_TEXT | NEEDS_USUAL_WEIGHT | NEEDS_PLANE, nullptr, WeightedFold,
     {"var_along", "variance", "var", "Variances"}},
    {"std", 3, 3, 1, NEEDS_NO_TEXT | NEEDS_USUAL_WEIGHT | NEEDS_PLANE, nullptr, WeightedFold,
     {"std_along", "deviation", "std", "Deviations"}},
    {"median", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Fold, {"median", "median_of", "", "Medians"}},
    {"some", 1, 1, 1, FOR_LIBRARY, nullptr, Decision,
     {"some", "element ~= 0 & element == element", "1", "0"}},
    {"any", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR | NEEDS_TEST | GIVES_TRUTH, nullptr, Decision,
     {"has_any", "element ~= 0 & element == element", "true", "false"}},
    {"any", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_TEST | GIVES_TRUTH, nullptr, Asked,
     {"is_any", "any(x)", "x"}},
    {"any", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_DENIED | GIVES_TRUTH, nullptr, Asked,
     {"not_any", "~any(x)", "x"}},
    {"any", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Fold,
     {"any", "some", " == 1", "Whether an element is a number other than zero"}},
    {"every", 1, 1, 1, FOR_LIBRARY, nullptr, Decision, {"every", "element == 0", "0", "1"}},
    {"all", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_VECTOR | NEEDS_TEST | GIVES_TRUTH, nullptr, Decision,
     {"has_all", "element == 0", "false", "true"}},
    {"all", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_TEST | GIVES_TRUTH, nullptr, Asked,
     {"is_all", "all(x)", "x"}},
    {"all", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_DENIED | GIVES_TRUTH, nullptr, Asked,
     {"not_all", "~all(x)", "x"}},
    {"all", 1, 2, 1, NEEDS_NO_TEXT, nullptr, Fold,
     {"all", "every", " == 1", "Whether no element is zero"}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources fold_sources() { return named_rows(Rows, Index); }
