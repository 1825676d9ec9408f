// Whole numbers, remainders, and kinds of numbers.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char IsRounded[] = R"(function answer = is_rounded(x)
% Whether the class of x holds whole numbers alone: there half of 1 is 1.
answer = false;
if numel(x) > 0
    half = (x(1).*0 + 1)./2;
    answer = half == 1;
end
)";

const char IsPlain[] = R"(function answer = is_plain(x)
% Whether no number of x has an imaginary part, or a class that holds whole numbers alone.
answer = true;
if numel(x) > 0
    line = x(:).';
    is_real = line == x(:)' | line ~= line;
    answer = false;
    if is_real
        answer = ~is_rounded(x);
    end
end
)";

const char WholePart[] = R"(function y = whole_part(x)
% The largest whole number that is not above a number. Beyond 2^52 all are whole.
y = x;
distance = x.*(1 - 2*(x < 0));
if x ~= x' & x == x
    y = builtin('floor', x);
elseif distance < 4503599627370496 & (x.*0 + 1)./2 < 1
    step = 1;
    while step <= distance
        step = 2*step;
    end
    y = 0;
    while step > 1
        step = step./2;
        if y + step <= distance
            y = y + step;
        end
    end
    if x < 0
        if y < distance
            y = y + 1;
        end
        y = -y;
    end
end
)";

// Words: the function, its value, what it is.
const char Rounding[] = R"(function y = $1(x)
% The elements, $3.
y = x + 0;
if numel(x) == 1
    y = $1_of(x);
else
    for k = 1:numel(x)
        y(k) = $1_of(x(k));
    end
end
end

function y = $1_of(x)
y = x;
if x == x'
    whole = whole_part(x);
    part = x - whole;
    y = $2;
elseif x == x
    y = builtin('$1', x);
end
end
)";

// Words: the function, how the quotient is rounded, what is left of a division by zero. Quotients
// of integer classes are rounded, so that half of 1 is 1: they are the host's.
const char Remainder[] = R"(function y = $1(a, b)
% What is left of each two elements when they are divided.
y = b + 0;
if numel(b) == 1
    y = a + 0;
end
if numel(y) == 1
    y = $1_of(a, b);
elseif numel(a) > 1 & numel(b) > 1 & (size(a, 1) ~= size(b, 1) | numel(a) ~= numel(b))
    y = builtin('$1', a, b);
else
    for k = 1:numel(y)
        y(k) = $1_of(element_of(a, k), element_of(b, k));
    end
end
end

function y = $1_of(a, b)
quotient = a./b;
if b == 0
    y = $3;
elseif b ~= b
    y = b;
elseif b - b ~= 0
    y = a;
elseif (quotient.*0 + 1)./2 == 1
    y = builtin('$1', a, b);
else
    y = a - $2(quotient).*b;
    nearest = whole_part(quotient + 0.5);
    is_multiple = whole_part(b) ~= b & ((quotient - nearest)./nearest).^2 < eps.^2;
    if is_multiple
        y = 0;
    end
end
end
)";

const char Sign[] = R"(function y = sign(x)
% 1, 0 or -1; what is no number stays.
y = x + 0;
if numel(x) == 1
    y = sign_of(x);
else
    for k = 1:numel(x)
        y(k) = sign_of(x(k));
    end
end
end

function y = sign_of(x)
y = 0 + (x > 0) - (x < 0);
if x ~= x
    y = x;
elseif x ~= x'
    y = builtin('sign', x);
end
end
)";

const char IsInf[] = R"(function answer = isinf(x)
% What is a number, but its distance from itself is none.
answer = x == x & x - x ~= x - x;
)";

const char IsFinite[] = R"(function answer = isfinite(x)
% What has no distance from itself.
answer = x - x == 0;
)";

// Words: the function, when a bit of the result is set, which bits they are.
const char Bits[] = R"(function y = $1(a, b)
% The bits that $3 of each two whole numbers.
y = b + 0;
if numel(b) == 1
    y = a + 0;
end
if numel(y) == 1
    y = $1_of(a, b);
elseif numel(a) > 1 & numel(b) > 1 & (size(a, 1) ~= size(b, 1) | numel(a) ~= numel(b))
    y = builtin('$1', a, b);
else
    for k = 1:numel(y)
        y(k) = $1_of(element_of(a, k), element_of(b, k));
    end
end
end

function y = $1_of(a, b)
y = 0;
if ((a + b).*0 + 1)./2 == 1
    y = builtin('$1', a, b);
    return
end
power = 1;
for k = 1:53
    half = whole_part(a./2);
    other_half = whole_part(b./2);
    set = a - 2*half + b - 2*other_half;
    if set $2
        y = y + power;
    end
    a = half;
    b = other_half;
    power = 2*power;
end
end
)";

const char BitShift[] = R"(function y = bitshift(x, count)
% Whole numbers with their bits moved up, or down for a negative count; 53 bits stay.
y = mod(floor(x.*2.^count), 9007199254740992);
if numel(x) > 0
    if (x.*0 + 1)./2 == 1
        y = builtin('bitshift', x, count);
    end
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"is_rounded", 1, 1, 1, FOR_LIBRARY, nullptr, IsRounded, {}},
    {"is_plain", 1, 1, 1, FOR_LIBRARY, nullptr, IsPlain, {}},
    {"whole_part", 1, 1, 1, FOR_LIBRARY, nullptr, WholePart, {}},
    {"floor", 1, 1, 1, NEEDS_NO_TEXT | NEEDS_SINGLES, nullptr, WholePart, {}},
    {"floor", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Rounding, {"floor", "whole", "rounded down"}},
    {"ceil", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Rounding,
     {"ceil", "whole + (part > 0)", "rounded up"}},
    {"fix", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Rounding,
     {"fix", "whole + (part > 0 & x < 0)", "rounded towards zero"}},
    {"round", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Rounding,
     {"round", "whole + (part > 0.5 | part == 0.5 & x > 0)", "rounded; halves away from zero"}},
    {"mod", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Remainder, {"mod", "whole_part", "a"}},
    {"rem", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Remainder, {"rem", "fix", "0./b"}},
    {"bitand", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Bits, {"bitand", "== 2", "both have"}},
    {"bitor", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Bits, {"bitor", ">= 1", "one has"}},
    {"bitxor", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Bits, {"bitxor", "== 1", "only one has"}},
    {"bitshift", 2, 2, 1, NEEDS_NO_TEXT, nullptr, BitShift, {}},
    {"sign", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Sign, {}},
    {"isinf", 1, 1, 1, NEEDS_NO_TEXT, nullptr, IsInf, {}},
    {"isfinite", 1, 1, 1, NEEDS_NO_TEXT, nullptr, IsFinite, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources number_sources() { return named_rows(Rows, Index); }
