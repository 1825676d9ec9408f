// Order, and sets of numbers. Texts are sorted and found by the host.
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"

namespace {

const char HoldsTexts[] = R"(function answer = holds_texts(x)
% Whether x begins with a character, or is a cell that begins with a text.
answer = false;
if numel(x) > 0
    part = x(1);
    if numel(part) > 0
        answer = is_letter(part(1));
    else
        answer = true;
    end
end
)";

// Words: the function, when b comes before a, what comes first.
const char Ordered[] = R"(function places = $1(x)
% The places of the elements, the $3 first. Equal ones stay in order.
count = numel(x);
places = 1:count;
width = 1;
while width < count
    merged = 0*places;
    first = 1;
    while first <= count
        middle = smaller(first + width, count + 1);
        last = smaller(middle + width, count + 1);
        left = first;
        right = middle;
        for k = first:last - 1
            takes_right = left == middle;
            if left < middle & right < last
                a = x(places(left));
                b = x(places(right));
                takes_right = $2;
            end
            if takes_right
                merged(k) = places(right);
                right = right + 1;
            else
                merged(k) = places(left);
                left = left + 1;
            end
        end
        first = last;
    end
    places = merged;
    width = 2*width;
end
)";

// Words: the function, what orders.
const char Sort[] = R"(function [y, place] = $1(x, order)
% The elements of a row or of columns in order, and their places.
y = x;
place = [];
if holds_texts(x)
    [y, place] = given_to('sort');
elseif ndims(x) > 2 | ~is_plain(x)
    [y, place] = given_to('sort');
elseif size(x, 1) == 1
    if numel(x) == 1
        place = 1;
    elseif numel(x) > 1
        place = $2(x);
        for k = 1:numel(x)
            y(k) = x(place(k));
        end
    end
elseif size(x, 1) > 1
    place = 0*x;
    for n = 1:size(x, 2)
        line = x(:, n);
        places = $2(line);
        for k = 1:numel(line)
            y(k, n) = line(places(k));
            place(k, n) = places(k);
        end
    end
end
)";

const char Unique[] = R"(function y = unique(x)
% The different elements in order, in a row if x is one.
y = x;
if holds_texts(x)
    y = given_to('unique');
elseif ~is_plain(x)
    y = given_to('unique');
elseif numel(x) > 0
    places = ordered(x);
    y = 0*places;
    y(1) = x(places(1));
    count = 1;
    for k = 2:numel(x)
        if x(places(k)) ~= y(count)
            count = count + 1;
            y(count) = x(places(k));
        end
    end
    y = y(1:count);
    if size(x, 1) ~= 1
        y = y(:);
    end
end
)";

const char Union[] = R"(function y = union(one, other)
% The different elements of both in order, in a row if both are one.
if numel(one) == 0 | numel(other) == 0
    y = given_to('union');
elseif holds_texts(one) | holds_texts(other)
    y = given_to('union');
else
    y = unique(vertcat(one(:), other(:)));
    if size(one, 1) == 1 & size(other, 1) == 1
        y = y(:).';
    end
end
)";

const char IsMember[] = R"(function answer = ismember(x, set)
% Which elements are in a set.
if holds_texts(x)
    answer = given_to('ismember');
elseif holds_texts(set)
    answer = given_to('ismember');
elseif numel(x) == 1
    answer = has_element(set, x) == 1;
else
    found = x;
    for k = 1:numel(x)
        found(k) = has_element(set, x(k));
    end
    answer = found == 1;
end
)";

const char HasElement[] = R"(function answer = has_element(set, x)
% 1 or 0, as x is in the set.
answer = 0;
for k = 1:numel(set)
    if set(k) == x
        answer = 1;
    end
end
)";

const char Intersect[] = R"(function y = intersect(one, other)
% The different elements that are in both, in order, in a row if both are one.
if numel(one) == 0 | numel(other) == 0
    y = given_to('intersect');
elseif holds_texts(one) | holds_texts(other)
    y = given_to('intersect');
else
    y = common(unique(one), other, 1);
    if size(one, 1) == 1 & size(other, 1) == 1
        y = y(:).';
    else
        y = y(:);
    end
end
)";

const char SetXor[] = R"(function y = setxor(one, other)
% The different elements that are in one of both only, in order, in a row if both are one.
if numel(one) == 0 | numel(other) == 0
    y = given_to('setxor');
elseif holds_texts(one) | holds_texts(other)
    y = given_to('setxor');
else
    left = common(unique(one), other, 0);
    right = common(unique(other), one, 0);
    y = unique(vertcat(left(:), right(:)));
    if size(one, 1) == 1 & size(other, 1) == 1
        y = y(:).';
    end
end
)";

const char Common[] = R"(function y = common(x, set, wanted)
% The elements of x that are in a set (1) or not (0).
y = x;
count = 0;
for k = 1:numel(x)
    if has_element(set, x(k)) == wanted
        count = count + 1;
        y(count) = x(k);
    end
end
y = y(1:count);
)";

// Words: the function, the number of an element that is in the other set: which are kept.
const char Selection[] = R"(function y = $1(one, other)
% The elements of one, in order, that are in other (1) or not (0): $2.
if holds_texts(one)
    y = given_to('$1');
elseif holds_texts(other)
    y = given_to('$1');
else
    y = unique(one);
    count = 0;
    for k = 1:numel(y)
        if has_element(other, y(k)) == $2
            count = count + 1;
            y(count) = y(k);
        end
    end
    y = y(1:count);
end
)";

const char Remaining[] = R"(function places = remaining(count, gone)
% The positions from 1 to count but those that are gone.
places = 1:count;
places = left_positions(places, places(gone));
)";

// A range leaves a cell also of one element.
const char Without[] = R"(function y = without(x, gone)
% The elements of an array or a cell but those that are gone.
left = remaining(numel(x), gone);
if numel(left) == 1
    y = from_to(x, left(1), left(1));
else
    y = x(left);
end
)";

const char WithEach[] = R"(function y = with_each(c, chosen, value)
% A cell with the value in all places that are chosen.
y = c;
for k = 1:numel(chosen)
    if chosen(k)
        y{k} = value;
    end
end
)";

const char WithCells[] = R"(function y = with_cells(c, places, cells)
% A cell with what is in others in some places, one for each or the same for all.
y = c;
at = 1;
for k = 1:numel(places)
    y{places(k)} = cells{at};
    if at < numel(cells)
        at = at + 1;
    end
end
)";

// clang-format off
constexpr LibrarySource Rows[] = {
    // least, most arguments, results, what it needs, what it is given first
    {"holds_texts", 1, 1, 1, FOR_LIBRARY | GIVES_TRUTH, nullptr, HoldsTexts, {}},
    {"ordered", 1, 1, 1, FOR_LIBRARY, nullptr, Ordered,
     {"ordered", "b < a | a ~= a & b == b", "smallest"}},
    {"ordered_down", 1, 1, 1, FOR_LIBRARY, nullptr, Ordered,
     {"ordered_down", "b > a | b ~= b & a == a", "largest"}},
    {"sort", 1, 1, 2, NEEDS_NO_TEXT, nullptr, Sort, {"sort", "ordered"}},
    {"sort", 2, 2, 2, NEEDS_DESCEND, nullptr, Sort, {"sort_down", "ordered_down"}},
    {"unique", 1, 1, 1, NEEDS_NO_TEXT, nullptr, Unique, {}},
    {"union", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Union, {}},
    {"has_element", 2, 2, 1, FOR_LIBRARY, nullptr, HasElement, {}},
    {"ismember", 2, 2, 1, NEEDS_NO_TEXT, nullptr, IsMember, {}},
    {"common", 3, 3, 1, FOR_LIBRARY, nullptr, Common, {}},
    {"intersect", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Intersect, {}},
    {"setxor", 2, 2, 1, NEEDS_NO_TEXT, nullptr, SetXor, {}},
    {"setdiff", 2, 2, 1, NEEDS_NO_TEXT, nullptr, Selection, {"setdiff", "0"}},
    {"remaining", 2, 2, 1, FOR_LIBRARY, nullptr, Remaining, {}},
    {"%remaining", 2, 2, 1, NEEDS_NOTHING, nullptr, Remaining, {}},
    {"%without", 2, 2, 1, NEEDS_NOTHING, nullptr, Without, {}},
    {"%with_each", 3, 3, 1, NEEDS_NOTHING, nullptr, WithEach, {}},
    {"%with_cells", 3, 3, 1, NEEDS_NOTHING, nullptr, WithCells, {}},
};
// clang-format on

constexpr auto Index = index_rows(Rows);

}  // namespace

LibrarySources order_sources() { return named_rows(Rows, Index); }
